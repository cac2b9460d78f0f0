#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>
#include <QtWebChannel/QWebChannelAbstractTransport>

class QJsonObject;
class QWebSocket;

/// One page's connection, as the web channel uses it.
///
/// Nothing passes in either direction before the page has sent "VXSecToken:" and the token as its
/// very first message (RFC 6455 text message). A page that begins otherwise is neither heard nor
/// told anything until it disconnects. What comes in is handled from the event loop, in the
/// socket's thread.
class VXNETWORKING_EXPORT VXWebSocketTransport : public QWebChannelAbstractTransport
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXWebSocketTransport)

public:
    /// theSocket, which is connected, becomes the parent: the transport lives as long as it.
    VXWebSocketTransport(QWebSocket* theSocket, const QString& theToken);

public Q_SLOTS:
    /// Sends theMessage as one compact JSON text; drops it while the page is not authenticated.
    void sendMessage(const QJsonObject& theMessage) override;

private Q_SLOTS:
    void textMessageReceived(const QString& theMessage);

private:
    enum AuthState : qint32
    {
        NotYetAuthenticated = 0,
        Authenticated = 1,
        Rejected = 2,
    };

    void authenticate(const QString& theFirstMessage);
    void deliver(const QString& theMessage);

    QWebSocket* mySocket = nullptr;
    QString myToken;
    qint32 myAuthState = NotYetAuthenticated;
};
