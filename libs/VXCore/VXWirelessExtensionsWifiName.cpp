#include "VXWirelessExtensionsWifiName.h"

#include "VXSsid.h"

#include <array>
#include <cstring>

#include <linux/wireless.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

VXWirelessExtensionsWifiName::VXWirelessExtensionsWifiName() = default;

VXWirelessExtensionsWifiName::~VXWirelessExtensionsWifiName() = default;

std::optional<QString> VXWirelessExtensionsWifiName::wifiName(const QString& theInterface)
{
    const QByteArray name = theInterface.toLocal8Bit();
    if (name.isEmpty() || name.size() >= IFNAMSIZ)
        return std::nullopt;

    std::array<char, IW_ESSID_MAX_SIZE + 1> ssid{};
    iwreq request{};
    std::memcpy(request.ifr_name, name.constData(), static_cast<size_t>(name.size()));
    request.u.essid.pointer = ssid.data();
    request.u.essid.length = IW_ESSID_MAX_SIZE;

    const int descriptor = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool isKnown = ::ioctl(descriptor, SIOCGIWESSID, &request) == 0;
    if (descriptor >= 0)
        ::close(descriptor);
    if (!isKnown)
        return std::nullopt;
    // Without the flag any network would do: nothing is joined.
    if (request.u.essid.flags == 0)
        return QString();
    const qsizetype length = qMin<qsizetype>(request.u.essid.length, IW_ESSID_MAX_SIZE);
    return VXSsid::text({ssid.data(), length});
}
