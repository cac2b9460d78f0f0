#include "VXWifiNameQuery.h"

#include "VXIwdWifiName.h"
#include "VXNetworkManagerWifiName.h"
#include "VXNl80211WifiName.h"
#include "VXWifiNameSource.h"
#include "VXWirelessExtensionsWifiName.h"

#include <QtDBus/QDBusConnection>

#include <utility>

VXWifiNameQuery::VXWifiNameQuery()
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    mySources.push_back(std::make_unique<VXNetworkManagerWifiName>(bus));
    mySources.push_back(std::make_unique<VXIwdWifiName>(bus));
    mySources.push_back(std::make_unique<VXNl80211WifiName>());
    mySources.push_back(std::make_unique<VXWirelessExtensionsWifiName>());
}

VXWifiNameQuery::VXWifiNameQuery(std::vector<std::unique_ptr<VXWifiNameSource>> theSources)
    : mySources(std::move(theSources))
{
}

VXWifiNameQuery::~VXWifiNameQuery() = default;

QString VXWifiNameQuery::wifiName(const QString& theInterface)
{
    for (const std::unique_ptr<VXWifiNameSource>& source : mySources) {
        if (const std::optional<QString> name = source->wifiName(theInterface))
            return *name;
    }
    return {};
}
