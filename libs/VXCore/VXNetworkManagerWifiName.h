#pragma once

#include "VXCoreExport.h"
#include "VXDBusService.h"
#include "VXWifiNameSource.h"

/// Asks NetworkManager for the network that a wireless device is joined to.
class VXCORE_EXPORT VXNetworkManagerWifiName : public VXWifiNameSource
{
public:
    /// theBus is the system bus, where NetworkManager lives.
    explicit VXNetworkManagerWifiName(const QDBusConnection& theBus);
    ~VXNetworkManagerWifiName() override;

    /// Empty for a device that is not wireless. Nothing when NetworkManager is not there, does not
    /// know the interface, or does not manage what the device is joined to.
    [[nodiscard]] std::optional<QString> wifiName(const QString& theInterface) override;

    /// The service, for its time limits.
    [[nodiscard]] VXDBusService& service() { return myService; }

private:
    [[nodiscard]] std::optional<QString> device(const QString& theInterface);
    [[nodiscard]] std::optional<QString> accessPoint(const QString& theDevice);
    [[nodiscard]] std::optional<QString>
    pathProperty(const QString& thePath, const QString& theInterface, const QString& theName);

    VXDBusService myService;
};
