#include "VXWebSocketClientWrapper.h"

#include "VXWebSocketTransport.h"

#include <QtWebSockets/QWebSocket>
#include <QtWebSockets/QWebSocketServer>

VXWebSocketClientWrapper::VXWebSocketClientWrapper(QWebSocketServer* theServer,
                                                   const QString& theToken, QObject* theParent)
    : QObject(theParent)
    , myServer(theServer)
    , myToken(theToken)
{
    connect(theServer, &QWebSocketServer::newConnection, this,
            &VXWebSocketClientWrapper::handleNewConnection);
}

void VXWebSocketClientWrapper::handleNewConnection()
{
    QWebSocket* socket = myServer->nextPendingConnection();
    if (socket == nullptr)
        return;

    // The server hands it out without an owner, and nobody else would ever delete it.
    socket->setParent(this);
    connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
    auto* transport = new VXWebSocketTransport(socket, myToken); // child of the socket
    Q_EMIT clientConnected(transport);
}
