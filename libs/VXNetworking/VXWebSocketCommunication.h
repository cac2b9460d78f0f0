#pragma once

#include "VXAbstractCommunication.h"
#include "VXNetworkingExport.h"
#include "VXWebSocketClientWrapper.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>
#include <QtWebSockets/QWebSocketServer>

/// A web channel over a WebSocket server of its own, on the loopback interface only.
///
/// A page learns the address and the token from the query of its own address, see
/// addServerParameter(), and sends the token first. The token appears in the log (each page's
/// first message is logged as no JSON), so log files are confidential while the server runs.
/// Any local program may connect; without the token it gets and does nothing.
class VXNETWORKING_EXPORT VXWebSocketCommunication : public VXAbstractCommunication
{
public:
    /// Starts to listen on a port of the system's choice. When that fails, a warning is logged,
    /// serverUrl() is empty and no page can connect; everything else works.
    explicit VXWebSocketCommunication(const QString& theServerName);

    /// Closes the connections of all pages.
    ~VXWebSocketCommunication() override;

    /// "ws://127.0.0.1:<port>"
    [[nodiscard]] QUrl serverUrl() const override;

    /// theQuery with "webChannelBaseUrl" and "webChannelToken" appended.
    [[nodiscard]] QUrlQuery addServerParameter(const QUrlQuery& theQuery) const override;

    /// A UUID in braces, 38 characters, fresh for each object.
    [[nodiscard]] QString securityToken() const override;

private:
    QWebSocketServer myServer;
    QString mySecurityToken;
    VXWebSocketClientWrapper myClientWrapper; // last: its connections go before the server
};
