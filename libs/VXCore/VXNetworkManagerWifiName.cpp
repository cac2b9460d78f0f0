#include "VXNetworkManagerWifiName.h"

#include "VXSsid.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusObjectPath>

using namespace Qt::StringLiterals;

namespace {

constexpr uint wifiDeviceType = 2; // NM_DEVICE_TYPE_WIFI

} // namespace

VXNetworkManagerWifiName::VXNetworkManagerWifiName(const QDBusConnection& theBus)
    : myService(theBus, u"org.freedesktop.NetworkManager"_s)
{
}

VXNetworkManagerWifiName::~VXNetworkManagerWifiName() = default;

std::optional<QString> VXNetworkManagerWifiName::wifiName(const QString& theInterface)
{
    if (!myService.begin())
        return std::nullopt;
    const std::optional<QString> path = device(theInterface);
    if (!path)
        return std::nullopt;

    const std::optional<QVariant> type =
        myService.property(*path, u"org.freedesktop.NetworkManager.Device"_s, u"DeviceType"_s);
    if (!type)
        return std::nullopt;
    if (type->toUInt() != wifiDeviceType)
        return QString();

    const std::optional<QString> joined = accessPoint(*path);
    if (!joined)
        return std::nullopt;
    const std::optional<QVariant> ssid =
        myService.property(*joined, u"org.freedesktop.NetworkManager.AccessPoint"_s, u"Ssid"_s);
    if (!ssid)
        return std::nullopt;
    return VXSsid::text(ssid->toByteArray());
}

std::optional<QString> VXNetworkManagerWifiName::device(const QString& theInterface)
{
    const std::optional<QVariant> path =
        myService.call(u"/org/freedesktop/NetworkManager"_s, u"org.freedesktop.NetworkManager"_s,
                       u"GetDeviceByIpIface"_s, {theInterface});
    if (!path || !path->canConvert<QDBusObjectPath>())
        return std::nullopt;
    return path->value<QDBusObjectPath>().path();
}

std::optional<QString> VXNetworkManagerWifiName::accessPoint(const QString& theDevice)
{
    if (auto active = pathProperty(theDevice, u"org.freedesktop.NetworkManager.Device.Wireless"_s,
                                   u"ActiveAccessPoint"_s))
        return active;

    // Older versions tell it only by way of the connection.
    const auto connection =
        pathProperty(theDevice, u"org.freedesktop.NetworkManager.Device"_s, u"ActiveConnection"_s);
    if (!connection)
        return std::nullopt;
    return pathProperty(*connection, u"org.freedesktop.NetworkManager.Connection.Active"_s,
                        u"SpecificObject"_s);
}

std::optional<QString> VXNetworkManagerWifiName::pathProperty(const QString& thePath,
                                                              const QString& theInterface,
                                                              const QString& theName)
{
    const std::optional<QVariant> value = myService.property(thePath, theInterface, theName);
    if (!value || !value->canConvert<QDBusObjectPath>())
        return std::nullopt;
    const QString path = value->value<QDBusObjectPath>().path();
    if (path.isEmpty() || path == u"/") // "no object"
        return std::nullopt;
    return path;
}
