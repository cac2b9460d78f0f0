#include <VXNetworking/VXWebSocketCommunication.h>

#include "VXChannelClient.h"
#include "VXLogCapture.h"
#include "VXProbe.h"

#include <VXNetworking/VXAbstractCommunication.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QUuid>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Items = QList<std::pair<QString, QString>>;

/// What a host publishes.
class Screen : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int price READ price NOTIFY priceChanged)

public:
    int price() const { return 1; }

    QStringList coupons;
    std::function<void()> onLeave;

public Q_SLOTS:
    void applyCoupon(const QString& theText) { coupons << theText; }
    void leave()
    {
        if (onLeave)
            onLeave();
    }

Q_SIGNALS:
    void priceChanged();
    void setCouponCode(const QString& theCode);
};

/// The number of a method or signal, by which pages name it.
int numberOf(const char* theSignature)
{
    return Screen::staticMetaObject.indexOfMethod(theSignature);
}

QJsonObject call(const char* theSignature, const QJsonArray& theArguments)
{
    return {{u"type"_s, 6},
            {u"id"_s, 2},
            {u"object"_s, u"wizardScreen"_s},
            {u"method"_s, numberOf(theSignature)},
            {u"args"_s, theArguments}};
}

QJsonObject listenTo(const char* theSignature)
{
    return {
        {u"type"_s, 7}, {u"object"_s, u"wizardScreen"_s}, {u"signal"_s, numberOf(theSignature)}};
}

/// A page that has the channel's objects.
std::unique_ptr<VXChannelClient> openPage(const VXWebSocketCommunication& theCommunication)
{
    auto client = std::make_unique<VXChannelClient>(theCommunication.serverUrl());
    [&] { QTRY_VERIFY(client->isConnected()); }();
    client->sendToken(theCommunication.securityToken());
    client->sendInit();
    [&] { QTRY_COMPARE(client->received().size(), 1); }();
    return client;
}

/// True when a listener at theAddress takes a connection.
bool accepts(const QString& theAddress, quint16 thePort)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(theAddress), thePort);
    return socket.waitForConnected(5000);
}

int withoutFileDescriptors()
{
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_NOFILE, &none) != 0)
        return 1;

    VXLogCapture log;
    VXWebSocketCommunication communication(u"Bestellung"_s);
    for (const VXLogCapture::Line& line : log.lines())
        VXProbe::print(line.text);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    Q_EMIT screen.setCouponCode(u"A"_s);
    VXProbe::print(communication.serverUrl().isEmpty() ? u"no url"_s : u"url"_s);
    VXProbe::print(communication.addServerParameter({}).queryItemValue(u"webChannelBaseUrl"_s));
    VXProbe::print(QString::number(communication.securityToken().size()));
    return 0;
}

} // namespace

class tst_VXWebSocketCommunication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theUrlNamesTheLoopbackAndThePort();
    void eachServerHasItsOwnPort();
    void theTokenIsAFreshUuidInBraces();
    void theQueryHoldsUrlAndTokenInThisOrder();
    void theQueryKeepsOtherItems();
    void theQueryIsReadBackExactly();
    void openingIsLogged();
    void openingIsLogged_data();
    void onlyTheLoopbackAddressIsListenedOn();
    void anApplicationProxyDoesNotMatter();
    void withoutListenerAWarningIsLoggedAndAllElseWorks();
    void aPageWithTheTokenGetsTheObjects();
    void aPageCallsTheObject();
    void aPageHearsTheObjectsSignals();
    void aStrangerHearsNothing();
    void aStrangerCallsNothing();
    void aLaterTokenDoesNotHelp();
    void pagesOfAnyOriginConnect();
    void hostileMessagesDoNoHarm_data();
    void hostileMessagesDoNoHarm();
    void aHundredPagesHearOneSignal();
    void aPageThatLeftIsForgotten();
    void connectionsEndWithTheObject();
    void theObjectMayBeDeletedByAPagesCall();
    void aPageCannotDeleteThePublishedObject();
    void itIsTheWayOfTheBase();
};

void tst_VXWebSocketCommunication::cleanup()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::DefaultProxy));
}

void tst_VXWebSocketCommunication::theUrlNamesTheLoopbackAndThePort()
{
    const VXWebSocketCommunication communication(u"test"_s);
    const QUrl url = communication.serverUrl();
    QVERIFY(url.port() > 0);
    QCOMPARE(url.toString(), u"ws://127.0.0.1:%1"_s.arg(url.port()));
}

void tst_VXWebSocketCommunication::eachServerHasItsOwnPort()
{
    const VXWebSocketCommunication first(u"test"_s);
    const VXWebSocketCommunication second(u"test"_s);
    QVERIFY(first.serverUrl() != second.serverUrl());
}

void tst_VXWebSocketCommunication::theTokenIsAFreshUuidInBraces()
{
    const VXWebSocketCommunication first(u"test"_s);
    const VXWebSocketCommunication second(u"test"_s);
    const QString token = first.securityToken();

    QCOMPARE(token.size(), 38);
    QVERIFY(!QUuid::fromString(token).isNull());
    QCOMPARE(QUuid::fromString(token).toString(), token);
    QCOMPARE(first.securityToken(), token);
    QVERIFY(second.securityToken() != token);
}

void tst_VXWebSocketCommunication::theQueryHoldsUrlAndTokenInThisOrder()
{
    const VXWebSocketCommunication communication(u"test"_s);
    const QUrlQuery query = communication.addServerParameter(QUrlQuery());
    QCOMPARE(query.queryItems(QUrl::FullyDecoded),
             (Items{{u"webChannelBaseUrl"_s, communication.serverUrl().toString()},
                    {u"webChannelToken"_s, communication.securityToken()}}));
}

void tst_VXWebSocketCommunication::theQueryKeepsOtherItems()
{
    const VXWebSocketCommunication communication(u"test"_s);
    const QUrlQuery query = communication.addServerParameter(QUrlQuery(u"page=1&page=2"_s));
    const Items items = query.queryItems();
    QCOMPARE(items.size(), 4);
    QCOMPARE(items.first(2), (Items{{u"page"_s, u"1"_s}, {u"page"_s, u"2"_s}}));
}

void tst_VXWebSocketCommunication::theQueryIsReadBackExactly()
{
    const VXWebSocketCommunication communication(u"test"_s);
    QUrl page(u"qrc:///order.html"_s);
    page.setQuery(communication.addServerParameter(QUrlQuery()));

    const QUrlQuery query(QUrl(page.toString(QUrl::FullyEncoded)));
    QCOMPARE(query.queryItemValue(u"webChannelBaseUrl"_s, QUrl::FullyDecoded),
             communication.serverUrl().toString());
    QCOMPARE(query.queryItemValue(u"webChannelToken"_s, QUrl::FullyDecoded),
             communication.securityToken());
}

void tst_VXWebSocketCommunication::openingIsLogged_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"Bestellung"_s;
    QTest::newRow("empty") << u""_s;
}

void tst_VXWebSocketCommunication::openingIsLogged()
{
    QFETCH(QString, name);
    const VXLogCapture log;
    const VXWebSocketCommunication communication(name);
    QCOMPARE(log.texts(QtInfoMsg), QStringList{u"opened web socket server \"%1\" %2"_s.arg(
                                       name, QString::number(communication.serverUrl().port()))});
    QCOMPARE(log.texts(QtWarningMsg), QStringList());
}

void tst_VXWebSocketCommunication::onlyTheLoopbackAddressIsListenedOn()
{
    const VXWebSocketCommunication communication(u"test"_s);
    const auto port = static_cast<quint16>(communication.serverUrl().port());
    QVERIFY(accepts(u"127.0.0.1"_s, port));
    QVERIFY(!accepts(u"127.0.0.2"_s, port)); // a listener on all addresses would answer
    QVERIFY(!accepts(u"::1"_s, port));

    QFile table(u"/proc/net/tcp"_s);
    QVERIFY(table.open(QIODevice::ReadOnly));
    const QString rows = QString::fromLatin1(table.readAll());
    const QString hexPort = u"%1"_s.arg(port, 4, 16, QLatin1Char('0')).toUpper();
    QVERIFY(rows.contains(u"0100007F:%1 00000000:0000 0A"_s.arg(hexPort)));
    QVERIFY(!rows.contains(u"00000000:%1 00000000:0000 0A"_s.arg(hexPort)));
}

void tst_VXWebSocketCommunication::anApplicationProxyDoesNotMatter()
{
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::Socks5Proxy, u"127.0.0.1"_s, 1));
    const VXWebSocketCommunication communication(u"test"_s);
    QCOMPARE(communication.serverUrl().host(), u"127.0.0.1"_s);
    const auto page = openPage(communication);
    QCOMPARE(page->received().size(), 1);
}

void tst_VXWebSocketCommunication::withoutListenerAWarningIsLoggedAndAllElseWorks()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer itself needs descriptors in the probe");
#endif
    QCOMPARE(VXProbe::run(u"withoutFileDescriptors"_s),
             (QStringList{u"unable to open web socket server: \"Bestellung\""_s, u"no url"_s,
                          QString(), u"38"_s}));
}

void tst_VXWebSocketCommunication::aPageWithTheTokenGetsTheObjects()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);

    const auto page = openPage(communication);
    const QJsonObject answer = page->lastMessage();
    QCOMPARE(answer.value(u"type"_s).toInt(), 10);
    QCOMPARE(answer.value(u"id"_s).toInt(), 1);
    QCOMPARE(answer.value(u"data"_s).toObject().keys(), QStringList{u"wizardScreen"_s});
}

void tst_VXWebSocketCommunication::aPageCallsTheObject()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);

    const auto page = openPage(communication);
    page->send(call("applyCoupon(QString)", {u"SOMMER €"_s}));
    QTRY_COMPARE(screen.coupons, QStringList{u"SOMMER €"_s});
}

void tst_VXWebSocketCommunication::aPageHearsTheObjectsSignals()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    const auto page = openPage(communication);
    page->send(listenTo("setCouponCode(QString)"));
    page->send(call("applyCoupon(QString)", {u"x"_s}));
    QTRY_COMPARE(screen.coupons.size(), 1); // so it listens by now

    Q_EMIT screen.setCouponCode(u"SOMMER"_s);
    QTRY_COMPARE(page->lastMessage().value(u"args"_s).toArray(), QJsonArray{u"SOMMER"_s});
}

void tst_VXWebSocketCommunication::aStrangerHearsNothing()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    VXChannelClient silent(communication.serverUrl());
    VXChannelClient wrong(communication.serverUrl());
    QTRY_VERIFY(silent.isConnected() && wrong.isConnected());
    wrong.sendInit();
    wrong.send(listenTo("setCouponCode(QString)"));

    const auto page = openPage(communication);
    page->send(listenTo("setCouponCode(QString)"));
    page->send(call("applyCoupon(QString)", {u"x"_s}));
    QTRY_COMPARE(screen.coupons.size(), 1);
    Q_EMIT screen.setCouponCode(u"SOMMER"_s);
    QTRY_COMPARE(page->lastMessage().value(u"args"_s).toArray(), QJsonArray{u"SOMMER"_s});

    silent.socket().close();
    wrong.socket().close();
    QTRY_VERIFY(silent.isDisconnected() && wrong.isDisconnected());
    QCOMPARE(silent.received() + wrong.received(), QStringList());
}

void tst_VXWebSocketCommunication::aStrangerCallsNothing()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    VXChannelClient stranger(communication.serverUrl());
    QTRY_VERIFY(stranger.isConnected());
    stranger.send(call("applyCoupon(QString)", {u"first"_s}));
    stranger.send(call("applyCoupon(QString)", {u"second"_s}));

    const auto page = openPage(communication);
    page->send(call("applyCoupon(QString)", {u"mine"_s}));
    QTRY_COMPARE(screen.coupons, QStringList{u"mine"_s});
}

void tst_VXWebSocketCommunication::aLaterTokenDoesNotHelp()
{
    VXWebSocketCommunication communication(u"test"_s);
    const VXLogCapture log;
    VXChannelClient stranger(communication.serverUrl());
    QTRY_VERIFY(stranger.isConnected());
    stranger.sendInit();
    stranger.sendToken(communication.securityToken());
    stranger.sendInit();

    QTRY_COMPARE(
        log.texts(QtWarningMsg),
        (QStringList{u"myAuthState is still not done, 2 , message: \"VXSecToken:%1\""_s.arg(
                         communication.securityToken()),
                     u"myAuthState is still not done, 2 , message: "
                     "\"{\\\"id\\\":1,\\\"type\\\":3}\""_s}));
    QVERIFY(stranger.received().isEmpty());
}

void tst_VXWebSocketCommunication::pagesOfAnyOriginConnect()
{
    const VXWebSocketCommunication communication(u"test"_s);
    QWebSocket socket(u"https://elsewhere.test"_s);
    socket.open(communication.serverUrl());
    QTRY_COMPARE(socket.state(), QAbstractSocket::ConnectedState);
}

void tst_VXWebSocketCommunication::hostileMessagesDoNoHarm_data()
{
    QTest::addColumn<QString>("message");

    QTest::newRow("no type") << u"{}"_s;
    QTest::newRow("type is a text") << u"{\"type\":\"3\"}"_s;
    QTest::newRow("unknown type") << u"{\"type\":4711,\"id\":5}"_s;
    QTest::newRow("negative type") << u"{\"type\":-1}"_s;
    QTest::newRow("call of no object") << u"{\"type\":6,\"id\":5}"_s;
    QTest::newRow("call of an unknown object")
        << u"{\"type\":6,\"id\":5,\"object\":\"x\",\"method\":1,\"args\":[]}"_s;
    QTest::newRow("call of a method beyond the last")
        << u"{\"type\":6,\"id\":5,\"object\":\"wizardScreen\",\"method\":99999,\"args\":[]}"_s;
    QTest::newRow("call of a negative method")
        << u"{\"type\":6,\"id\":5,\"object\":\"wizardScreen\",\"method\":-7,\"args\":[]}"_s;
    QTest::newRow("call with twenty arguments")
        << u"{\"type\":6,\"id\":5,\"object\":\"wizardScreen\",\"method\":\"applyCoupon\","
           "\"args\":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20]}"_s;
    QTest::newRow("call with an object for a text")
        << u"{\"type\":6,\"id\":5,\"object\":\"wizardScreen\",\"method\":\"applyCoupon\","
           "\"args\":[{\"id\":\"wizardScreen\"}]}"_s;
    QTest::newRow("arguments are no list")
        << u"{\"type\":6,\"id\":5,\"object\":\"wizardScreen\",\"method\":\"leave\",\"args\":1}"_s;
    QTest::newRow("signal beyond the last")
        << u"{\"type\":7,\"object\":\"wizardScreen\",\"signal\":99999}"_s;
    QTest::newRow("signal never listened to")
        << u"{\"type\":8,\"object\":\"wizardScreen\",\"signal\":5}"_s;
    QTest::newRow("property beyond the last")
        << u"{\"type\":9,\"object\":\"wizardScreen\",\"property\":999,\"value\":1}"_s;
    QTest::newRow("property that cannot be written")
        << u"{\"type\":9,\"object\":\"wizardScreen\",\"property\":1,\"value\":{\"a\":[]}}"_s;
    QTest::newRow("deep nesting") << u"{\"a\":"_s.repeated(60) + u"1"_s + u"}"_s.repeated(60);
}

void tst_VXWebSocketCommunication::hostileMessagesDoNoHarm()
{
    QFETCH(QString, message);
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    const auto page = openPage(communication);

    page->send(message);
    page->send(call("applyCoupon(QString)", {u"afterwards"_s}));
    QTRY_VERIFY(screen.coupons.contains(u"afterwards"_s));
}

void tst_VXWebSocketCommunication::aHundredPagesHearOneSignal()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    std::vector<std::unique_ptr<VXChannelClient>> pages;
    for (int i = 0; i < 100; ++i) {
        pages.push_back(openPage(communication));
        pages.back()->send(listenTo("setCouponCode(QString)"));
        pages.back()->send(call("applyCoupon(QString)", {u"x"_s}));
    }
    QTRY_COMPARE(screen.coupons.size(), 100);

    Q_EMIT screen.setCouponCode(u"SOMMER"_s);
    QTRY_VERIFY(std::ranges::all_of(pages, [](const auto& thePage) {
        return thePage->lastMessage().value(u"args"_s).toArray() == QJsonArray{u"SOMMER"_s};
    }));
}

void tst_VXWebSocketCommunication::aPageThatLeftIsForgotten()
{
    VXWebSocketCommunication communication(u"test"_s);
    Screen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    auto first = openPage(communication);
    first->send(listenTo("setCouponCode(QString)"));
    first.reset();

    const auto second = openPage(communication);
    second->send(listenTo("setCouponCode(QString)"));
    second->send(call("applyCoupon(QString)", {u"x"_s}));
    QTRY_COMPARE(screen.coupons.size(), 1);
    Q_EMIT screen.setCouponCode(u"SOMMER"_s);
    QTRY_COMPARE(second->lastMessage().value(u"args"_s).toArray(), QJsonArray{u"SOMMER"_s});
}

void tst_VXWebSocketCommunication::connectionsEndWithTheObject()
{
    auto communication = std::make_unique<VXWebSocketCommunication>(u"test"_s);
    const auto page = openPage(*communication);
    VXChannelClient stranger(communication->serverUrl());
    QTRY_VERIFY(stranger.isConnected());
    const auto port = static_cast<quint16>(communication->serverUrl().port());

    communication.reset();
    QTRY_VERIFY(page->isDisconnected() && stranger.isDisconnected());
    QVERIFY(!accepts(u"127.0.0.1"_s, port));
}

void tst_VXWebSocketCommunication::theObjectMayBeDeletedByAPagesCall()
{
    auto communication = std::make_unique<VXWebSocketCommunication>(u"test"_s);
    Screen screen;
    communication->registerObject(u"wizardScreen"_s, &screen);
    const auto page = openPage(*communication);
    screen.onLeave = [&] { communication.reset(); };

    page->send(call("leave()", {}));
    QTRY_VERIFY(page->isDisconnected());
    QVERIFY(!communication);
}

void tst_VXWebSocketCommunication::aPageCannotDeleteThePublishedObject()
{
    VXWebSocketCommunication communication(u"test"_s);
    QPointer<Screen> screen = new Screen; // deleted below
    communication.registerObject(u"wizardScreen"_s, screen);
    const auto page = openPage(communication);

    page->send(call("deleteLater()", {}));
    page->send(call("applyCoupon(QString)", {u"afterwards"_s}));
    QTRY_VERIFY(!screen || !screen->coupons.isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(screen);
    delete screen;
}

void tst_VXWebSocketCommunication::itIsTheWayOfTheBase()
{
    const std::unique_ptr<VXAbstractCommunication> communication =
        std::make_unique<VXWebSocketCommunication>(u"test"_s);
    QCOMPARE(communication->serverUrl().scheme(), u"ws"_s);
    QCOMPARE(communication->securityToken().size(), 38);
    QCOMPARE(communication->addServerParameter({}).queryItems().size(), 2);
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_VXWebSocketCommunication,
                   {u"withoutFileDescriptors"_s, &withoutFileDescriptors})
#include "tst_VXWebSocketCommunication.moc"
