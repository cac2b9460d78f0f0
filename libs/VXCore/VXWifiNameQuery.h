#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

#include <memory>
#include <vector>

class VXWifiNameSource;

/// Asks several sources for the name of a wireless network, one after the other.
///
/// For one thread at a time: the sources remember which service did not answer.
class VXCORE_EXPORT VXWifiNameQuery
{
    Q_DISABLE_COPY_MOVE(VXWifiNameQuery)

public:
    /// Asks this computer: NetworkManager, then iwd, both on the system bus, then the kernel
    /// through nl80211, then through the older wireless extensions. Blocks at most 300 ms per
    /// service, and a service that let us wait that long is left alone for a minute.
    VXWifiNameQuery();

    /// Asks theSources in that order.
    explicit VXWifiNameQuery(std::vector<std::unique_ptr<VXWifiNameSource>> theSources);
    ~VXWifiNameQuery();

    /// The first answer; empty when no source has one.
    [[nodiscard]] QString wifiName(const QString& theInterface);

private:
    std::vector<std::unique_ptr<VXWifiNameSource>> mySources;
};
