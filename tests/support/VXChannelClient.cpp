#include "VXChannelClient.h"

#include <QtCore/QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int initMessage = 3; // of Qt's web channel protocol

} // namespace

VXChannelClient::VXChannelClient(const QUrl& theServer)
{
    connect(&mySocket, &QWebSocket::textMessageReceived, this,
            [this](const QString& theText) { myReceived << theText; });
    connect(&mySocket, &QWebSocket::disconnected, this, [this] { myIsDisconnected = true; });
    connect(&mySocket, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error), this,
            [this] { myIsRefused = !isConnected(); });
    mySocket.open(theServer);
}

bool VXChannelClient::isConnected() const
{
    return mySocket.state() == QAbstractSocket::ConnectedState;
}

void VXChannelClient::send(const QString& theText)
{
    mySocket.sendTextMessage(theText);
}

void VXChannelClient::send(const QJsonObject& theMessage)
{
    send(QString::fromUtf8(QJsonDocument(theMessage).toJson(QJsonDocument::Compact)));
}

void VXChannelClient::sendToken(const QString& theToken)
{
    send(u"VXSecToken:"_s + theToken);
}

void VXChannelClient::sendInit()
{
    send(QJsonObject{{u"type"_s, initMessage}, {u"id"_s, 1}});
}

QJsonObject VXChannelClient::lastMessage() const
{
    if (myReceived.isEmpty())
        return {};
    return QJsonDocument::fromJson(myReceived.constLast().toUtf8()).object();
}
