#pragma once

#include "VXCoreExport.h"
#include "VXWifiNameSource.h"

/// Asks the driver through the wireless extensions, which older kernels have.
class VXCORE_EXPORT VXWirelessExtensionsWifiName : public VXWifiNameSource
{
public:
    VXWirelessExtensionsWifiName();
    ~VXWirelessExtensionsWifiName() override;

    /// Empty for an interface that is joined to nothing. Nothing when it is not wireless, its
    /// driver knows no wireless extensions, or it is unknown.
    [[nodiscard]] std::optional<QString> wifiName(const QString& theInterface) override;
};
