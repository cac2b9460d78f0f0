#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QUrl>
#include <QtWebChannel/QWebChannel>
#include <QtWebChannel/QWebChannelAbstractTransport>
#include <QtWebSockets/QWebSocketServer>

class QWebSocket;

/// The shortest way from a WebSocket to Qt's channel and back: no token, no queue, no log.
class VXBareTransport : public QWebChannelAbstractTransport
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXBareTransport)

public:
    /// theSocket becomes the parent.
    explicit VXBareTransport(QWebSocket* theSocket);

    void sendMessage(const QJsonObject& theMessage) override;

private:
    void deliver(const QString& theMessage);

    QWebSocket* const mySocket;
};

/// Qt's channel on a WebSocket server of its own, the yardstick of the library's communication.
class VXBareChannel : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXBareChannel)

public:
    VXBareChannel();

    [[nodiscard]] QWebChannel& channel() { return myChannel; }
    /// Empty when the server could not listen.
    [[nodiscard]] QUrl serverUrl() const { return myServer.serverUrl(); }

private:
    void takeClient();

    QWebChannel myChannel;
    QWebSocketServer myServer;
};
