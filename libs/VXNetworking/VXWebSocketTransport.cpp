#include "VXWebSocketTransport.h"

#include <QtCore/QDebug>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWebSockets/QWebSocket>

using namespace Qt::StringLiterals;

VXWebSocketTransport::VXWebSocketTransport(QWebSocket* theSocket, const QString& theToken)
    : QWebChannelAbstractTransport(theSocket)
    , mySocket(theSocket)
    , myToken(theToken)
{
    // Queued, because a native object that is called may run an event loop of its own.
    connect(theSocket, &QWebSocket::textMessageReceived, this,
            &VXWebSocketTransport::textMessageReceived, Qt::QueuedConnection);
}

void VXWebSocketTransport::sendMessage(const QJsonObject& theMessage)
{
    // The channel offers every signal to every transport; this is what keeps it from strangers.
    if (myAuthState != Authenticated)
        return;

    const QByteArray json = QJsonDocument(theMessage).toJson(QJsonDocument::Compact);
    mySocket->sendTextMessage(QString::fromUtf8(json));
}

void VXWebSocketTransport::textMessageReceived(const QString& theMessage)
{
    if (myAuthState == NotYetAuthenticated) {
        authenticate(theMessage);
        if (myAuthState == Rejected)
            return;
    }
    if (myAuthState != Authenticated) {
        qWarning() << "myAuthState is still not done," << myAuthState << ", message:" << theMessage;
        return;
    }
    // The token message comes here too and is no JSON: one warning per connection is normal.
    deliver(theMessage);
}

void VXWebSocketTransport::authenticate(const QString& theFirstMessage)
{
    // What follows the token does not matter.
    const bool hasToken = theFirstMessage.startsWith(u"VXSecToken:%1"_s.arg(myToken));
    myAuthState = hasToken ? Authenticated : Rejected;
}

void VXWebSocketTransport::deliver(const QString& theMessage)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(theMessage.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError) {
        qWarning() << "Failed to parse text message as JSON object:" << theMessage
                   << "Error is:" << error.errorString();
        return;
    }
    if (!document.isObject()) {
        qWarning() << "Received JSON message that is not an object: " << theMessage;
        return;
    }
    Q_EMIT messageReceived(document.object(), this); // may delete this
}
