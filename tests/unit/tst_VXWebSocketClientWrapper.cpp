#include <VXNetworking/VXWebSocketClientWrapper.h>

#include "VXChannelClient.h"
#include "VXTestMain.h"

#include <VXNetworking/VXWebSocketTransport.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QSignalSpy>
#include <QtWebSockets/QWebSocketServer>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QString token = u"{01234567-89ab-cdef-0123-456789abcdef}"_s;

/// A server whose pages the wrapper takes.
struct Peer
{
    Peer()
    {
        QVERIFY(server->listen(QHostAddress::LocalHost));
        QObject::connect(
            wrapper.get(), &VXWebSocketClientWrapper::clientConnected, wrapper.get(),
            [this](VXWebSocketTransport* theTransport) { transports.emplace_back(theTransport); });
    }

    std::unique_ptr<VXChannelClient> connectClient()
    {
        const std::size_t before = transports.size();
        auto client = std::make_unique<VXChannelClient>(server->serverUrl());
        [&] { QTRY_COMPARE(transports.size(), before + 1); }();
        [&] { QTRY_VERIFY(client->isConnected()); }();
        return client;
    }

    std::unique_ptr<QWebSocketServer> server =
        std::make_unique<QWebSocketServer>(u"test"_s, QWebSocketServer::NonSecureMode);
    std::unique_ptr<VXWebSocketClientWrapper> wrapper =
        std::make_unique<VXWebSocketClientWrapper>(server.get(), token);
    std::vector<QPointer<VXWebSocketTransport>> transports;
};

} // namespace

class tst_VXWebSocketClientWrapper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theParentIsAsGiven();
    void aConnectionBecomesATransport();
    void theTransportKnowsTheToken();
    void eachConnectionHasItsOwnState();
    void aConnectionWithoutHandshakeIsNone();
    void aClosedConnectionIsDeleted();
    void anAbortedConnectionIsDeleted();
    void whatAPageSentLastIsStillDelivered();
    void openConnectionsAreClosedAndDeletedWithTheWrapper();
    void theServerMayGoFirst();
    void aHundredPagesTalkAtOnce();
};

void tst_VXWebSocketClientWrapper::theParentIsAsGiven()
{
    QWebSocketServer server(u"test"_s, QWebSocketServer::NonSecureMode);
    QObject parent;
    const auto* child = new VXWebSocketClientWrapper(&server, token, &parent);
    QCOMPARE(child->parent(), &parent);
    const VXWebSocketClientWrapper alone(&server, token);
    QVERIFY(alone.parent() == nullptr);
}

void tst_VXWebSocketClientWrapper::aConnectionBecomesATransport()
{
    Peer peer;
    const auto client = peer.connectClient();

    QCOMPARE(peer.transports.size(), 1U);
    QVERIFY(qobject_cast<QWebSocket*>(peer.transports[0]->parent()) != nullptr);
    QVERIFY(!peer.server->hasPendingConnections());
}

void tst_VXWebSocketClientWrapper::theTransportKnowsTheToken()
{
    Peer peer;
    const auto client = peer.connectClient();
    QSignalSpy spy(peer.transports[0], &QWebChannelAbstractTransport::messageReceived);

    client->sendToken(token);
    client->send(u"{}"_s);
    QTRY_COMPARE(spy.count(), 1);
}

void tst_VXWebSocketClientWrapper::eachConnectionHasItsOwnState()
{
    Peer peer;
    const auto stranger = peer.connectClient();
    const auto page = peer.connectClient();
    QSignalSpy strangerSpy(peer.transports[0], &QWebChannelAbstractTransport::messageReceived);
    QSignalSpy pageSpy(peer.transports[1], &QWebChannelAbstractTransport::messageReceived);

    stranger->send(u"{}"_s);
    stranger->send(u"{}"_s);
    page->sendToken(token);
    page->send(u"{}"_s);
    QTRY_COMPARE(pageSpy.count(), 1);
    stranger->send(u"{}"_s);
    page->send(u"{}"_s);
    QTRY_COMPARE(pageSpy.count(), 2);
    QCOMPARE(strangerSpy.count(), 0);
}

void tst_VXWebSocketClientWrapper::aConnectionWithoutHandshakeIsNone()
{
    Peer peer;
    QTcpSocket raw;
    raw.connectToHost(QHostAddress::LocalHost, peer.server->serverPort());
    QVERIFY(raw.waitForConnected());
    raw.write("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    QTRY_COMPARE(raw.state(), QAbstractSocket::UnconnectedState);

    const auto client = peer.connectClient();
    QCOMPARE(peer.transports.size(), 1U);
}

void tst_VXWebSocketClientWrapper::aClosedConnectionIsDeleted()
{
    Peer peer;
    const auto client = peer.connectClient();
    const QPointer<QObject> socket = peer.transports[0]->parent();

    client->socket().close();
    QTRY_VERIFY(!socket);
    QVERIFY(!peer.transports[0]);
    QVERIFY(peer.wrapper->children().isEmpty());
}

void tst_VXWebSocketClientWrapper::anAbortedConnectionIsDeleted()
{
    Peer peer;
    const auto client = peer.connectClient();
    const QPointer<QObject> socket = peer.transports[0]->parent();

    client->socket().abort(); // no farewell of the WebSocket protocol
    QTRY_VERIFY(!socket);
    QVERIFY(peer.wrapper->children().isEmpty());
}

void tst_VXWebSocketClientWrapper::whatAPageSentLastIsStillDelivered()
{
    Peer peer;
    const auto client = peer.connectClient();
    QList<QJsonObject> delivered;
    connect(peer.transports[0], &QWebChannelAbstractTransport::messageReceived, this,
            [&](const QJsonObject& theMessage) { delivered << theMessage; });

    client->sendToken(token);
    client->send(u"{\"a\":1}"_s);
    client->socket().close();
    QTRY_VERIFY(!peer.transports[0]);
    QCOMPARE(delivered, (QList<QJsonObject>{{{u"a"_s, 1}}}));
}

void tst_VXWebSocketClientWrapper::openConnectionsAreClosedAndDeletedWithTheWrapper()
{
    Peer peer;
    const auto first = peer.connectClient();
    const auto second = peer.connectClient();
    const QPointer<QObject> socket = peer.transports[0]->parent();

    peer.wrapper.reset();
    QVERIFY(!socket);
    QVERIFY(!peer.transports[0] && !peer.transports[1]);
    QTRY_VERIFY(first->isDisconnected() && second->isDisconnected());
}

void tst_VXWebSocketClientWrapper::theServerMayGoFirst()
{
    Peer peer;
    const auto client = peer.connectClient();

    peer.server.reset();
    peer.wrapper.reset();
    QTRY_VERIFY(client->isDisconnected());
    QVERIFY(!peer.transports[0]);
}

void tst_VXWebSocketClientWrapper::aHundredPagesTalkAtOnce()
{
    Peer peer;
    QHash<QObject*, QList<int>> numbers;
    connect(peer.wrapper.get(), &VXWebSocketClientWrapper::clientConnected, this,
            [&](VXWebSocketTransport* theTransport) {
                connect(theTransport, &QWebChannelAbstractTransport::messageReceived, this,
                        [&numbers, theTransport](const QJsonObject& theMessage) {
                            numbers[theTransport] << theMessage.value(u"number"_s).toInt();
                        });
            });

    std::vector<std::unique_ptr<VXChannelClient>> clients;
    for (int i = 0; i < 100; ++i)
        clients.push_back(std::make_unique<VXChannelClient>(peer.server->serverUrl()));
    QTRY_COMPARE(peer.transports.size(), 100U);
    QTRY_VERIFY(std::ranges::all_of(clients, [](auto& c) { return c->isConnected(); }));

    for (int i = 0; i < 100; ++i) {
        clients[i]->sendToken(token);
        clients[i]->send(QJsonObject{{u"number"_s, i}});
    }
    QTRY_COMPARE(numbers.size(), 100);
    QList<int> all;
    for (const QList<int>& ofOne : std::as_const(numbers)) {
        QCOMPARE(ofOne.size(), 1);
        all << ofOne;
    }
    std::ranges::sort(all);
    for (int i = 0; i < 100; ++i)
        QCOMPARE(all.at(i), i);

    clients.clear();
    QTRY_VERIFY(peer.wrapper->children().isEmpty());
}

VX_TEST_MAIN(QCoreApplication, tst_VXWebSocketClientWrapper)
#include "tst_VXWebSocketClientWrapper.moc"
