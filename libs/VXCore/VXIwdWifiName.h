#pragma once

#include "VXCoreExport.h"
#include "VXDBusService.h"
#include "VXWifiNameSource.h"

/// Asks iwd, the wireless daemon that some systems run instead of NetworkManager.
class VXCORE_EXPORT VXIwdWifiName : public VXWifiNameSource
{
public:
    /// theBus is the system bus, where iwd lives.
    explicit VXIwdWifiName(const QDBusConnection& theBus);
    ~VXIwdWifiName() override;

    /// Empty for a station that is joined to nothing. Nothing when iwd is not there or does not
    /// know the interface.
    [[nodiscard]] std::optional<QString> wifiName(const QString& theInterface) override;

    /// The service, for its time limits.
    [[nodiscard]] VXDBusService& service() { return myService; }

private:
    VXDBusService myService;
};
