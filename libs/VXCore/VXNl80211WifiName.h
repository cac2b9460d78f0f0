#pragma once

#include "VXCoreExport.h"
#include "VXWifiNameSource.h"

class VXNetlinkMessage;

/// Asks the kernel's wireless subsystem, nl80211. Needs no privileges and no service.
class VXCORE_EXPORT VXNl80211WifiName : public VXWifiNameSource
{
public:
    VXNl80211WifiName();
    ~VXNl80211WifiName() override;

    /// Empty for a wireless interface that is joined to nothing. Nothing when the interface is
    /// not wireless, is unknown, or the kernel has no wireless subsystem.
    [[nodiscard]] std::optional<QString> wifiName(const QString& theInterface) override;

    /// What the kernel is asked first: the number of its family "nl80211".
    [[nodiscard]] static VXNetlinkMessage familyQuestion();

    /// The name in the kernel's answer to "get interface", as wifiName() returns it.
    [[nodiscard]] static QString nameIn(const VXNetlinkMessage& theAnswer);
};
