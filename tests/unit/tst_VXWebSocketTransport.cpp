#include <VXNetworking/VXWebSocketTransport.h>

#include "VXChannelClient.h"
#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtNetwork/QHostAddress>
#include <QtTest/QSignalSpy>
#include <QtWebSockets/QWebSocketServer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString token = u"{01234567-89ab-cdef-0123-456789abcdef}"_s;
const QString tokenMessage = u"VXSecToken:{01234567-89ab-cdef-0123-456789abcdef}"_s;
const QString tokenWarning = u"Failed to parse text message as JSON object: \""_s + tokenMessage +
                             u"\" Error is: \"illegal value\""_s;

/// A client and the transport of its connection.
struct Connection
{
    Connection();

    /// Sends theMessages, and waits until the last of them was handled.
    void sendAll(const QStringList& theMessages);

    QWebSocketServer server{u"test"_s, QWebSocketServer::NonSecureMode};
    std::unique_ptr<VXChannelClient> client;
    QPointer<QWebSocket> socket; // child of the server
    QPointer<VXWebSocketTransport> transport;
};

Connection::Connection()
{
    QVERIFY(server.listen(QHostAddress::LocalHost));
    client = std::make_unique<VXChannelClient>(server.serverUrl());
    QTRY_VERIFY(server.hasPendingConnections());
    socket = server.nextPendingConnection();
    socket->setParent(&server);
    transport = new VXWebSocketTransport(socket, token);
    QTRY_VERIFY(client->isConnected());
}

void Connection::sendAll(const QStringList& theMessages)
{
    QSignalSpy spy(socket, &QWebSocket::textMessageReceived);
    for (const QString& message : theMessages)
        client->send(message);
    QTRY_COMPARE(spy.count(), theMessages.size());
    QCoreApplication::sendPostedEvents(); // the transport's queued connection
}

QStringList warnings(const VXLogCapture& theLog)
{
    return theLog.texts(QtWarningMsg);
}

/// Of the row: it gets no further than into the log.
void verifyThatTheMessageIsDropped()
{
    QFETCH(QString, message);
    QFETCH(QString, warning);
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);
    const VXLogCapture log;

    connection.sendAll({tokenMessage, message});
    QCOMPARE(spy.count(), 0);
    QCOMPARE(warnings(log), (QStringList{tokenWarning, warning}));
}

} // namespace

class tst_VXWebSocketTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSocketIsTheParent();
    void theTransportDiesWithItsSocket();
    void beforeTheTokenNothingIsSent();
    void theTokenAuthenticates_data();
    void theTokenAuthenticates();
    void theTokenMessageItselfIsLoggedAsNoJson();
    void otherFirstMessagesReject_data();
    void otherFirstMessagesReject();
    void aRejectionIsSilent();
    void aRejectedConnectionStaysRejected();
    void aRejectedConnectionIsSentNothing();
    void anObjectIsDelivered();
    void objectsKeepTheirOrder();
    void brokenJsonIsLoggedAndDropped_data();
    void brokenJsonIsLoggedAndDropped();
    void jsonThatIsNoObjectIsLoggedAndDropped_data();
    void jsonThatIsNoObjectIsLoggedAndDropped();
    void afterABadMessageTheConnectionGoesOn();
    void binaryMessagesAreIgnored();
    void deliveryIsQueued();
    void aSlotMayRunAnEventLoopWhileThePageLeaves();
    void aSlotMayDeleteTheSocket();
    void objectsAreSentAsCompactJson();
    void textKeepsItsCharacters();
    void oneMegabytePassesBothWays();
    void sendingToAClosedConnectionDoesNothing();
};

void tst_VXWebSocketTransport::theSocketIsTheParent()
{
    const Connection connection;
    QCOMPARE(connection.transport->parent(), connection.socket);
}

void tst_VXWebSocketTransport::theTransportDiesWithItsSocket()
{
    Connection connection;
    delete connection.socket;
    QVERIFY(!connection.transport);
}

void tst_VXWebSocketTransport::beforeTheTokenNothingIsSent()
{
    Connection connection;
    connection.transport->sendMessage({{u"secret"_s, 1}});
    connection.sendAll({tokenMessage});
    connection.transport->sendMessage({{u"open"_s, 2}});

    QTRY_COMPARE(connection.client->received(), QStringList{u"{\"open\":2}"_s});
}

void tst_VXWebSocketTransport::theTokenAuthenticates_data()
{
    QTest::addColumn<QString>("first");

    QTest::newRow("exact") << tokenMessage;
    QTest::newRow("more behind it") << tokenMessage + u"xyz"_s;
    QTest::newRow("an object behind it") << tokenMessage + u"{\"a\":1}"_s;
}

void tst_VXWebSocketTransport::theTokenAuthenticates()
{
    QFETCH(QString, first);
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    connection.sendAll({first, u"{\"a\":2}"_s});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toJsonObject(), (QJsonObject{{u"a"_s, 2}}));
}

void tst_VXWebSocketTransport::theTokenMessageItselfIsLoggedAsNoJson()
{
    Connection connection;
    const VXLogCapture log;
    connection.sendAll({tokenMessage, u"{}"_s, u"{}"_s});
    QCOMPARE(warnings(log), QStringList{tokenWarning});
}

void tst_VXWebSocketTransport::otherFirstMessagesReject_data()
{
    QTest::addColumn<QString>("first");

    QTest::newRow("empty") << QString();
    QTest::newRow("valid JSON") << u"{\"type\":3,\"id\":1}"_s;
    QTest::newRow("JSON with the token") << u"{\"token\":\"%1\"}"_s.arg(tokenMessage);
    QTest::newRow("no prefix") << token;
    QTest::newRow("prefix in lower case") << tokenMessage.toLower();
    QTest::newRow("token in upper case") << u"VXSecToken:"_s + token.toUpper();
    QTest::newRow("blank before it") << u" "_s + tokenMessage;
    QTest::newRow("blank within") << u"VXSecToken: "_s + token;
    QTest::newRow("one character short") << tokenMessage.chopped(1);
    QTest::newRow("no braces") << u"VXSecToken:"_s + token.sliced(1).chopped(1);
    QTest::newRow("other token") << u"VXSecToken:{01234567-89ab-cdef-0123-456789abcdee}"_s;
}

void tst_VXWebSocketTransport::otherFirstMessagesReject()
{
    QFETCH(QString, first);
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    connection.sendAll({first, u"{\"a\":1}"_s});
    QCOMPARE(spy.count(), 0);
}

void tst_VXWebSocketTransport::aRejectionIsSilent()
{
    Connection connection;
    const VXLogCapture log;
    connection.sendAll({u"hello"_s});
    QCOMPARE(warnings(log), QStringList());
    QVERIFY(connection.client->isConnected());
}

void tst_VXWebSocketTransport::aRejectedConnectionStaysRejected()
{
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);
    const VXLogCapture log;

    connection.sendAll({u"{\"a\":1}"_s, tokenMessage, u"{\"a\":2}"_s});
    QCOMPARE(spy.count(), 0);
    QCOMPARE(warnings(log),
             (QStringList{
                 u"myAuthState is still not done, 2 , message: \""_s + tokenMessage + u"\""_s,
                 u"myAuthState is still not done, 2 , message: \"{\\\"a\\\":2}\""_s,
             }));
}

void tst_VXWebSocketTransport::aRejectedConnectionIsSentNothing()
{
    Connection connection;
    connection.sendAll({u"{\"a\":1}"_s, tokenMessage});
    connection.transport->sendMessage({{u"secret"_s, 1}});

    connection.socket->sendTextMessage(u"the end"_s);
    QTRY_COMPARE(connection.client->received(), QStringList{u"the end"_s});
}

void tst_VXWebSocketTransport::anObjectIsDelivered()
{
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    connection.sendAll({tokenMessage, u" {\"text\":\"Gutschein \\u20ac ä 😀\",\"list\":[1]} "_s});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toJsonObject(),
             (QJsonObject{{u"text"_s, u"Gutschein € ä 😀"_s}, {u"list"_s, QJsonArray{1}}}));
    QCOMPARE(spy.at(0).at(1).value<QWebChannelAbstractTransport*>(), connection.transport);
}

void tst_VXWebSocketTransport::objectsKeepTheirOrder()
{
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    QStringList messages{tokenMessage};
    for (int i = 0; i < 50; ++i)
        messages << u"{\"i\":%1}"_s.arg(i);
    connection.sendAll(messages);

    QCOMPARE(spy.count(), 50);
    for (int i = 0; i < 50; ++i)
        QCOMPARE(spy.at(i).at(0).toJsonObject().value(u"i"_s).toInt(), i);
}

void tst_VXWebSocketTransport::brokenJsonIsLoggedAndDropped_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("warning");

    QTest::newRow("unterminated") << u"{bad"_s
                                  << u"Failed to parse text message as JSON object: \"{bad\" "
                                     "Error is: \"unterminated object\""_s;
    QTest::newRow("bare string") << u"\"text\""_s
                                 << u"Failed to parse text message as JSON object: "
                                    "\"\\\"text\\\"\" Error is: \"illegal value\""_s;
    QTest::newRow("empty") << u""_s
                           << u"Failed to parse text message as JSON object: \"\" "
                              "Error is: \"illegal value\""_s;
    QTest::newRow("two objects") << u"{}{}"_s
                                 << u"Failed to parse text message as JSON object: \"{}{}\" "
                                    "Error is: \"garbage at the end of the document\""_s;
    QTest::newRow("line feed stays within the line")
        << u"x\ny"_s
        << u"Failed to parse text message as JSON object: \"x\\ny\" Error is: \"illegal value\""_s;
}

void tst_VXWebSocketTransport::brokenJsonIsLoggedAndDropped()
{
    verifyThatTheMessageIsDropped();
}

void tst_VXWebSocketTransport::jsonThatIsNoObjectIsLoggedAndDropped_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("warning");

    QTest::newRow("empty array") << u"[]"_s
                                 << u"Received JSON message that is not an object:  \"[]\""_s;
    QTest::newRow("array of an object")
        << u"[{\"a\":1}]"_s
        << u"Received JSON message that is not an object:  \"[{\\\"a\\\":1}]\""_s;
}

void tst_VXWebSocketTransport::jsonThatIsNoObjectIsLoggedAndDropped()
{
    verifyThatTheMessageIsDropped();
}

void tst_VXWebSocketTransport::afterABadMessageTheConnectionGoesOn()
{
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    connection.sendAll({tokenMessage, u"{bad"_s, u"[]"_s, u"{\"a\":1}"_s});
    QCOMPARE(spy.count(), 1);
    QVERIFY(connection.client->isConnected());
}

void tst_VXWebSocketTransport::binaryMessagesAreIgnored()
{
    Connection connection;
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    connection.client->socket().sendBinaryMessage("{\"a\":1}");
    connection.sendAll({tokenMessage, u"{\"a\":2}"_s});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toJsonObject(), (QJsonObject{{u"a"_s, 2}}));
}

void tst_VXWebSocketTransport::deliveryIsQueued()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);

    Q_EMIT connection.socket->textMessageReceived(u"{}"_s);
    QCOMPARE(spy.count(), 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(spy.count(), 1);
}

void tst_VXWebSocketTransport::aSlotMayRunAnEventLoopWhileThePageLeaves()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    connect(connection.socket, &QWebSocket::disconnected, connection.socket, &QObject::deleteLater);
    bool hasReturned = false;
    connect(connection.transport, &QWebChannelAbstractTransport::messageReceived, this, [&] {
        connection.client->socket().close();
        QTRY_VERIFY(!connection.transport); // an event loop within the delivery
        hasReturned = true;
    });

    connection.client->send(u"{}"_s);
    QTRY_VERIFY(hasReturned);
    QVERIFY(!connection.socket);
}

void tst_VXWebSocketTransport::aSlotMayDeleteTheSocket()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    connect(connection.transport, &QWebChannelAbstractTransport::messageReceived, this,
            [&] { delete connection.socket; });

    connection.client->send(u"{}"_s);
    QTRY_VERIFY(connection.client->isDisconnected());
    QVERIFY(!connection.transport);
}

void tst_VXWebSocketTransport::objectsAreSentAsCompactJson()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    connection.transport->sendMessage(
        {{u"b"_s, QJsonArray{1, 2}}, {u"a"_s, QJsonObject{{u"c"_s, true}}}});

    QTRY_COMPARE(connection.client->received(), QStringList{u"{\"a\":{\"c\":true},\"b\":[1,2]}"_s});
}

void tst_VXWebSocketTransport::textKeepsItsCharacters()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    connection.transport->sendMessage({{u"text"_s, u"Gutschein € ä 😀"_s}});

    QTRY_COMPARE(connection.client->received(), QStringList{u"{\"text\":\"Gutschein € ä 😀\"}"_s});
}

void tst_VXWebSocketTransport::oneMegabytePassesBothWays()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    QSignalSpy spy(connection.transport, &QWebChannelAbstractTransport::messageReceived);
    const QJsonObject message{{u"data"_s, QString(1 << 20, u'x')}};

    connection.client->send(message);
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toJsonObject(), message);

    connection.transport->sendMessage(message);
    QTRY_COMPARE(connection.client->received().size(), 1);
    QCOMPARE(connection.client->lastMessage(), message);
}

void tst_VXWebSocketTransport::sendingToAClosedConnectionDoesNothing()
{
    Connection connection;
    connection.sendAll({tokenMessage});
    connection.client->socket().close();
    QTRY_COMPARE(connection.socket->state(), QAbstractSocket::UnconnectedState);

    connection.transport->sendMessage({{u"a"_s, 1}});
    QVERIFY(connection.client->received().isEmpty());
}

VX_TEST_MAIN(QCoreApplication, tst_VXWebSocketTransport)
#include "tst_VXWebSocketTransport.moc"
