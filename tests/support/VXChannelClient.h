#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtWebSockets/QWebSocket>

/// A page's end of the web channel, without the page: a WebSocket client that keeps what it
/// receives.
class VXChannelClient : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXChannelClient)

public:
    /// Connects; isConnected() becomes true, or isRefused().
    explicit VXChannelClient(const QUrl& theServer);

    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] bool isRefused() const { return myIsRefused; }
    [[nodiscard]] bool isDisconnected() const { return myIsDisconnected; }

    void send(const QString& theText);
    void send(const QJsonObject& theMessage);
    void sendToken(const QString& theToken);

    /// Asks the channel for its objects; the answer carries the id 1.
    void sendInit();

    /// What came, oldest first.
    [[nodiscard]] QStringList received() const { return myReceived; }
    /// The last message that came, as an object; empty when none did.
    [[nodiscard]] QJsonObject lastMessage() const;

    QWebSocket& socket() { return mySocket; }

private:
    QWebSocket mySocket;
    QStringList myReceived;
    bool myIsRefused = false;
    bool myIsDisconnected = false;
};
