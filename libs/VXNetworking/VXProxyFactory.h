#pragma once

#include "VXNetworkingExport.h"

#include <QtNetwork/QNetworkProxy>

/// Answers Qt's questions for a proxy with the user's preference; local hosts never get one.
///
/// VXNetworkSettings installs it for the whole process. Qt calls it in the thread of the request,
/// under a lock of its own: never wait for another thread in here.
class VXNETWORKING_EXPORT VXProxyFactory : public QNetworkProxyFactory
{
public:
    /// Two default proxies for "localhost", "localhost.*" and loopback addresses; otherwise what
    /// VXNetworkSettings::proxyForQuery() says.
    [[nodiscard]] QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& theQuery) override;
};
