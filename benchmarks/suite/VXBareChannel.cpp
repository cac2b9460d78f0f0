#include "VXBareChannel.h"

#include <QtCore/QJsonDocument>
#include <QtNetwork/QHostAddress>
#include <QtWebSockets/QWebSocket>

using namespace Qt::StringLiterals;

VXBareTransport::VXBareTransport(QWebSocket* theSocket)
    : QWebChannelAbstractTransport(theSocket)
    , mySocket(theSocket)
{
    connect(theSocket, &QWebSocket::textMessageReceived, this, &VXBareTransport::deliver);
}

void VXBareTransport::sendMessage(const QJsonObject& theMessage)
{
    const QByteArray json = QJsonDocument(theMessage).toJson(QJsonDocument::Compact);
    mySocket->sendTextMessage(QString::fromUtf8(json));
}

void VXBareTransport::deliver(const QString& theMessage)
{
    const QJsonDocument document = QJsonDocument::fromJson(theMessage.toUtf8());
    if (document.isObject()) // the page's token is not
        Q_EMIT messageReceived(document.object(), this);
}

VXBareChannel::VXBareChannel()
    : myServer(u"bare"_s, QWebSocketServer::NonSecureMode)
{
    connect(&myServer, &QWebSocketServer::newConnection, this, &VXBareChannel::takeClient);
    myServer.listen(QHostAddress::LocalHost);
}

void VXBareChannel::takeClient()
{
    QWebSocket* const socket = myServer.nextPendingConnection();
    socket->setParent(this);
    myChannel.connectTo(new VXBareTransport(socket)); // child of the socket
}
