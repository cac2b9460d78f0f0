#include "VXProxyFactory.h"

#include "VXNetworkSettings.h"

#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>

using namespace Qt::StringLiterals;

namespace {

bool isLocal(const QString& theHost)
{
    return theHost == "localhost"_L1 || theHost.startsWith("localhost."_L1) ||
           QHostAddress(theHost).isLoopback();
}

} // namespace

QList<QNetworkProxy> VXProxyFactory::queryProxy(const QNetworkProxyQuery& theQuery)
{
    if (isLocal(theQuery.url().host(QUrl::FullyDecoded)))
        return {QNetworkProxy(), QNetworkProxy()}; // two, on purpose
    return VXNetworkSettings::instance()->proxyForQuery(theQuery);
}
