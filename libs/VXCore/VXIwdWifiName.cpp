#include "VXIwdWifiName.h"

#include "VXSsid.h"

#include <QtCore/QMap>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusObjectPath>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

/// Reads "a{oa{sa{sv}}}"; empty when theAnswer is something else.
Objects managedObjects(const QVariant& theAnswer)
{
    if (!theAnswer.canConvert<QDBusArgument>())
        return {};
    const auto argument = theAnswer.value<QDBusArgument>();
    if (argument.currentSignature() != u"a{oa{sa{sv}}}")
        return {};
    Objects objects;
    argument >> objects;
    return objects;
}

} // namespace

VXIwdWifiName::VXIwdWifiName(const QDBusConnection& theBus)
    : myService(theBus, u"net.connman.iwd"_s)
{
}

VXIwdWifiName::~VXIwdWifiName() = default;

std::optional<QString> VXIwdWifiName::wifiName(const QString& theInterface)
{
    if (!myService.begin())
        return std::nullopt;
    const std::optional<QVariant> answer =
        myService.call(u"/"_s, u"org.freedesktop.DBus.ObjectManager"_s, u"GetManagedObjects"_s);
    if (!answer)
        return std::nullopt;

    const Objects objects = managedObjects(*answer);
    const auto device = std::ranges::find_if(objects, [&](const Interfaces& theObject) {
        return theObject.value(u"net.connman.iwd.Device"_s).value(u"Name"_s) == theInterface;
    });
    if (device == objects.end())
        return std::nullopt;

    // Without the property the station is not joined; the path then leads to no object.
    const QVariantMap station = device->value(u"net.connman.iwd.Station"_s);
    const auto network = station.value(u"ConnectedNetwork"_s).value<QDBusObjectPath>();
    const QVariantMap properties = objects.value(network).value(u"net.connman.iwd.Network"_s);
    return VXSsid::text(properties.value(u"Name"_s).toString().toUtf8());
}
