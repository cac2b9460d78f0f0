#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QObject>
#include <QtCore/QString>

class QWebSocketServer;
class VXWebSocketTransport;

/// Makes a transport of every page that connects to a WebSocket server.
///
/// The connections belong to this object: each is deleted after it was closed, and what is left
/// is closed and deleted with it. Use it in the server's thread.
class VXNETWORKING_EXPORT VXWebSocketClientWrapper : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXWebSocketClientWrapper)

public:
    /// theServer stays the caller's. theToken is what a page has to send first.
    VXWebSocketClientWrapper(QWebSocketServer* theServer, const QString& theToken,
                             QObject* theParent = nullptr);

Q_SIGNALS:
    /// theTransport lives until its page disconnects.
    void clientConnected(VXWebSocketTransport* theTransport);

private Q_SLOTS:
    void handleNewConnection();

private:
    QWebSocketServer* myServer = nullptr;
    QString myToken;
};
