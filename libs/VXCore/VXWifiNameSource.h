#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

#include <optional>

/// One way to learn the name of the wireless network that an interface is joined to.
class VXCORE_EXPORT VXWifiNameSource
{
    Q_DISABLE_COPY_MOVE(VXWifiNameSource)

public:
    VXWifiNameSource() = default;
    virtual ~VXWifiNameSource() = default;

    /// The name; empty when the source knows that there is none; nothing when it cannot tell, so
    /// that the next source should be asked. theInterface is the kernel's name, such as "wlan0".
    [[nodiscard]] virtual std::optional<QString> wifiName(const QString& theInterface) = 0;
};
