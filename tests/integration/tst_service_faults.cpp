#include "VXChannelClient.h"
#include "VXDialogVisitor.h"
#include "VXFolderContent.h"
#include "VXGapMeter.h"
#include "VXHoldings.h"
#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXPhoneSocket.h"
#include "VXPlainHttpClient.h"
#include "VXRawPeer.h"
#include "VXReliabilityDocument.h"
#include "VXTestMain.h"
#include "VXWorker.h"

#include <VXCore/VXPlatformIndependent.h>
#include <VXNetworking/VXCloudLoginAbstract.h>
#include <VXNetworking/VXCloudSessionOAuth2.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>
#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString partnersText = u"Anmeldefehler auf dem Server des Online-Partners."_s; // of 1008
const QString formerToken = u"former"_s;
constexpr qint64 mostGrowth = 2 << 20; // bytes

QString number(qint64 theNumber)
{
    return QString::number(theNumber);
}

// --- login servers

class Session : public VXCloudSessionOAuth2
{
public:
    explicit Session(const QUrl& theServer)
        : myServer(theServer)
    {
        parseOAuth2Reply({{u"access_token"_s, formerToken}, {u"refresh_token"_s, formerToken}});
    }

    [[nodiscard]] QString clientId() const override { return u"client"_s; }
    [[nodiscard]] QUrl logoutUrl() const override { return myServer; }
    [[nodiscard]] QUrl tokenUrl() const override { return myServer; }

    /// "as before", "open" with another token, or "closed".
    [[nodiscard]] QString state() const
    {
        if (accessToken() == formerToken && refreshToken() == formerToken)
            return u"as before"_s;
        return isOpen() ? u"open"_s : u"closed"_s;
    }

private:
    QUrl myServer;
};

class Login : public VXCloudLoginAbstract
{
public:
    using VXCloudLoginAbstract::VXCloudLoginAbstract;

    [[nodiscard]] QByteArray loginRequestData(const VXCredentials&) const override { return "x"; }
};

struct LoginRow
{
    const char* name;
    VXRawAnswer answer;
    bool isDead = false; // nobody listens
};

QList<LoginRow> loginRows()
{
    const auto reply = [](const QByteArray& body, int status = 200) {
        return VXRawAnswer::http(status, body, {"Content-Type: application/json"});
    };
    return {
        {"a token", reply(R"({"access_token":"t","expires_in":3600,"refresh_token":"r"})")},
        {"a web page", reply("<html><body>Willkommen</body></html>")},
        {"nothing", reply("")},
        {"no token", reply(R"({"expires_in":3600})")},
        {"a number as token", reply(R"({"access_token":5,"expires_in":3600})")},
        {"a token over several lines",
         reply("{\n\"access_token\":\"t\",\n\"expires_in\":3600,\n\"refresh_token\":\"r\"\n}")},
        {"400 with JSON", reply(R"({"error":"invalid_grant"})", 400)},
        {"401 with JSON", reply(R"({"error":"invalid_client"})", 401)},
        {"401 without a body", reply("", 401)},
        {"500 without a body", reply("", 500)},
        {"503 with a page", reply("<html>", 503)},
        {"close before the answer", VXRawAnswer().close()},
        {"nobody listens", {}, true},
    };
}

/// Code and state of the session, code, token and text of the older login; in this thread.
QStringList logIn(const QUrl& theServer)
{
    const VXCredentials credentials(u"karin"_s, u"geheim"_s);
    Session session(theServer);
    const VXNetworkingError opened = session.open(credentials, nullptr);
    QString token = formerToken;
    const VXNetworkingError loggedIn = Login(theServer).performLogin(credentials, token);
    VXNetworkAccessManager::releaseThreadInstance();
    const QString text = loggedIn.errorText();
    return {number(opened.errorCode()), session.state(), number(loggedIn.errorCode()),
            token == formerToken ? u"as before"_s
            : token.isEmpty()    ? u"empty"_s
                                 : u"the reply"_s,
            text == partnersText ? u"of 1008"_s
            : text.isEmpty()     ? u"-"_s
                                 : text};
}

// --- the web channel

struct ChannelRow
{
    const char* name;
    int connections = 1;
    QStringList messages = {}; // of the first connection; TOKEN is the message with the token
    bool isHuge = false;       // 100 MiB follow
};

QList<ChannelRow> channelRows()
{
    const QString wrong = u"hello"_s;
    const QString token = u"TOKEN"_s;
    return {
        {"wrong first message, then the token", 1, {wrong, token}},
        {"first message of 100 MiB", 1, {}, true},
        {"wrong first message, then one of 100 MiB", 1, {wrong}, true},
        {"token, then a message of 100 MiB", 1, {token}, true},
        {"1000 connections without a word", 1000},
    };
}

bool waitFor(const std::function<bool()>& theCondition)
{
    return QTest::qWaitFor(theCondition, 60000);
}

/// Waits until the channel has handled what was sent before. What it does is queued behind the
/// first of the two.
void exchangePings(VXChannelClient& theClient)
{
    for (int i = 0; i < 2; ++i) {
        QSignalSpy pong(&theClient.socket(), &QWebSocket::pong);
        theClient.socket().ping();
        (void)waitFor([&pong] { return pong.count() == 1; });
    }
}

/// Whether the channel tells its objects.
QString answerOf(VXChannelClient& theClient)
{
    theClient.sendInit();
    exchangePings(theClient);
    return theClient.received().isEmpty() ? u"silent"_s : u"answers"_s;
}

bool areConnected(const std::vector<std::unique_ptr<VXChannelClient>>& theClients)
{
    return std::ranges::all_of(theClients,
                               [](const auto& client) { return client->isConnected(); });
}

/// The fault, from this thread; then what the first connection gets, and what a page gets.
QStringList attack(const ChannelRow& theRow, const QUrl& theServer, const QString& theToken)
{
    std::vector<std::unique_ptr<VXChannelClient>> crowd;
    for (int i = 0; i < theRow.connections; ++i) {
        crowd.push_back(std::make_unique<VXChannelClient>(theServer));
        const bool isRowFull = (i + 1) % 20 == 0 || i + 1 == theRow.connections; // of the listener
        if (isRowFull && !waitFor([&crowd] { return areConnected(crowd); }))
            return {u"connection %1 refused"_s.arg(i)};
    }
    VXChannelClient& first = *crowd.front();
    for (const QString& message : theRow.messages)
        message == u"TOKEN"_s ? first.sendToken(theToken) : first.send(message);
    if (theRow.isHuge)
        first.send(QString(100 << 20, u'x'));

    VXChannelClient page(theServer);
    if (!waitFor([&page] { return page.isConnected(); }))
        return {u"page refused"_s};
    page.sendToken(theToken);
    return {answerOf(first), answerOf(page)};
}

// --- photos

struct PhotoRow
{
    const char* name;
    QByteArray file; // as the query has it
};

QList<PhotoRow> photoRows()
{
    return {
        {"path upwards", "..%2F..%2Fx.jpg"},
        {"absolute path", "%2Fetc%2Fx.jpg"},
        {"path into a folder that is there", "folder%2Fx.jpg"},
        {"path with backslashes", "..%5C..%5Cx.jpg"},
        {"NUL in the name", "x%00y.jpg"},
        {"NUL before a path", "x%00%2F..%2F..%2Fy.jpg"},
        {"no name", ""},
        {"name of two dots", ".."},
        {"name of 250 bytes", QByteArray(246, 'n') + ".jpg"},
        {"name of 255 bytes", QByteArray(251, 'n') + ".jpg"},
    };
}

/// The names of files, a long one by its size.
QString names(const QString& theFolder)
{
    QStringList names = QDir(theFolder).entryList(QDir::Files | QDir::Hidden);
    for (QString& name : names) {
        if (name.size() > 100)
            name = u"a name of %1 bytes"_s.arg(name.size());
    }
    return names.isEmpty() ? u"nothing"_s : names.join(u' ');
}

/// A browser that opens nothing.
class NoBrowser : public VXPlatformIndependent
{
public:
    bool openUrl(const QUrl&) override { return true; }
};

void ignoreMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

/// Faults around logins, the web channel and the reception of photos; the outcomes stand in
/// docs/reliability.md.
class tst_service_faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aTokenServerAnswers_data();
    void aTokenServerAnswers();
    void aSessionEndsWithTheApplication_data();
    void aSessionEndsWithTheApplication();
    void thePortOfTheRedirectIsTaken_data();
    void thePortOfTheRedirectIsTaken();
    void aStrangerOnTheChannel_data();
    void aStrangerOnTheChannel();
    void aPhotoWithAnOddName_data();
    void aPhotoWithAnOddName();
    void theInterfaceIsGoneBeforeThePhotoIsStored();
    void theDocumentHasNoOtherRows_data();
    void theDocumentHasNoOtherRows();

private:
    static void compare(const QString& theHeading, const QStringList& theMeasured);
};

void tst_service_faults::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    VXPlatformIndependent::setInstance(std::make_unique<NoBrowser>());
    // Both ends of a thousand connections are in this process.
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = qMin<rlim_t>(limit.rlim_max, 4096);
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

/// Holds what was measured against the row of the document that has the name of the test's row.
void tst_service_faults::compare(const QString& theHeading, const QStringList& theMeasured)
{
    const QString name = QString::fromUtf8(QTest::currentDataTag());
    const QStringList cells = VXReliabilityDocument::rows(theHeading).value(name);
    const QString measured = name + u" | "_s + theMeasured.join(u" | "_s);
    QVERIFY2(cells.size() == theMeasured.size(), qPrintable(measured));
    for (qsizetype i = 0; i < cells.size(); ++i)
        QVERIFY2(VXReliabilityDocument::allows(cells.at(i), theMeasured.at(i)),
                 qPrintable(measured));
}

void tst_service_faults::aTokenServerAnswers_data()
{
    QTest::addColumn<int>("row");

    const QList<LoginRow> rows = loginRows();
    for (int i = 0; i < rows.size(); ++i)
        QTest::newRow(rows.at(i).name) << i;
}

void tst_service_faults::aTokenServerAnswers()
{
    QFETCH(int, row);
    const LoginRow login = loginRows().at(row);
    auto peer = std::make_unique<VXRawPeer>();
    peer->setAnswer(login.answer);
    const QUrl url = peer->url();
    if (login.isDead)
        peer.reset();
    for (const VXWhere where : {VXWhere::ApplicationThread, VXWhere::QtThread, VXWhere::Worker})
        compare(u"Login servers"_s, vxRun(where, [&url] { return logIn(url); }));
}

void tst_service_faults::aSessionEndsWithTheApplication_data()
{
    QTest::addColumn<int>("status"); // 0: closes; -1: nobody listens

    QTest::newRow("accepted") << 200;
    QTest::newRow("refused") << 400;
    QTest::newRow("failed with 503") << 503;
    QTest::newRow("closed without an answer") << 0;
    QTest::newRow("nobody listens") << -1;
}

void tst_service_faults::aSessionEndsWithTheApplication()
{
    QFETCH(int, status);
    auto peer = std::make_unique<VXRawPeer>();
    peer->setAnswer(status > 0 ? VXRawAnswer::http(status) : VXRawAnswer().close());
    Session session(peer->url());
    session.setLogoutOnClose(true);
    if (status < 0)
        peer.reset();
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    const bool isForgotten = session.accessToken().isEmpty() && session.refreshToken().isEmpty();
    compare(u"Quitting with a session"_s,
            {isForgotten ? u"forgotten"_s : u"kept"_s, number(clock.elapsed() / 1000)});
    if (peer)
        QVERIFY(peer->requests().constFirst().body.endsWith("token=former"));
}

void tst_service_faults::thePortOfTheRedirectIsTaken_data()
{
    QTest::addColumn<QHostAddress>("address");

    QTest::newRow("free") << QHostAddress();
    QTest::newRow("taken on 127.0.0.1") << QHostAddress(QHostAddress::LocalHost);
    QTest::newRow("taken on ::1") << QHostAddress(QHostAddress::LocalHostIPv6);
    QTest::newRow("taken on every address") << QHostAddress(QHostAddress::Any);
}

void tst_service_faults::thePortOfTheRedirectIsTaken()
{
    QFETCH(QHostAddress, address);
    QTcpServer other;
    if (!address.isNull())
        QVERIFY2(other.listen(address, 1031), qPrintable(other.errorString()));
    const VXLogCapture log;
    VXOAuth2ExternalLoginDialog dialog(QUrl(u"https://login.test/"_s), u"My Service"_s);
    const VXDialogVisitor user([](QDialog* theDialog) {
        theDialog->findChild<QPushButton*>()->click(); // the only one
    });
    const bool isCancelled = dialog.exec() == QDialog::Rejected && user.count() == 1;
    compare(u"Port of the redirect"_s,
            {number(log.texts(QtWarningMsg).size()),
             isCancelled ? u"shown, cancelled by its button"_s : u"-"_s});
}

void tst_service_faults::aStrangerOnTheChannel_data()
{
    QTest::addColumn<int>("row");

    const QList<ChannelRow> rows = channelRows();
    for (int i = 0; i < rows.size(); ++i)
        QTest::newRow(rows.at(i).name) << i;
}

void tst_service_faults::aStrangerOnTheChannel()
{
    QFETCH(int, row);
    const ChannelRow stranger = channelRows().at(row);
    VXWebSocketCommunication channel(u"faults"_s);
    QObject published;
    channel.registerObject(u"published"_s, &published);
    const auto attackOnce = [&] {
        return vxRun(VXWhere::QtThread, [&] {
            return attack(stranger, channel.serverUrl(), channel.securityToken());
        });
    };
    // Messages of 100 MiB would be shown with the test's output.
    const QtMessageHandler handler = qInstallMessageHandler(ignoreMessage);
    attackOnce(); // memory that is kept for later is taken here
    QCoreApplication::processEvents();
    const VXHoldings before = VXHoldings::now();
    VXGapMeter meter;
    QStringList measured = attackOnce();
    measured << number(meter.milliseconds());
    VXHoldings growth;
    const bool isSettled = QTest::qWaitFor(
        [&] {
            growth = VXHoldings::now().since(before);
            return growth.descriptors <= 0 &&
                   (!VXHoldings::isMemoryMeasurable || growth.memory <= mostGrowth);
        },
        20000);
    qInstallMessageHandler(handler);
    measured << (VXHoldings::isMemoryMeasurable ? number(growth.memory >> 20) : u"0"_s);
    qInfo().noquote() << measured.join(u" | "_s);
    compare(u"Web channel"_s, measured);
    QVERIFY(isSettled);
}

void tst_service_faults::aPhotoWithAnOddName_data()
{
    QTest::addColumn<QByteArray>("file");

    for (const PhotoRow& row : photoRows())
        QTest::newRow(row.name) << row.file;
}

void tst_service_faults::aPhotoWithAnOddName()
{
    QFETCH(QByteArray, file);
    const QTemporaryDir disk;
    const QString folder = disk.filePath(u"a/b/photos"_s);
    QVERIFY(QDir().mkpath(folder + u"/folder"_s));
    VXLocalUploadService service(nullptr);
    service.setTargetFolder(folder);
    service.start();
    QSignalSpy uploads(&service, &VXLocalUploadService::filesUploaded);
    const QByteArray token = service.nextToken().toLatin1();
    const QMap<QString, QByteArray> before = VXFolderContent::of(disk.path());

    VXPlainHttpClient phone(QHostAddress(service.url().host()),
                            static_cast<quint16>(service.url().port()));
    QCOMPARE(phone.ask("GET /translations.json?" + token).status, 200);
    const auto answer = phone.ask("POST /upload?file=" + file, {"Cookie: sid=" + token}, "photo");
    compare(u"Photos from phones"_s, {number(answer.status), QString::fromLatin1(answer.body),
                                      number(uploads.count()), names(folder)});
    // Nothing else has changed, in the folder or outside.
    QMap<QString, QByteArray> after = VXFolderContent::of(disk.path());
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        QCOMPARE(after.take(folder + u'/' + name), "photo"_ba);
    QCOMPARE(after, before);
}

void tst_service_faults::theInterfaceIsGoneBeforeThePhotoIsStored()
{
    const QTemporaryDir folder;
    VXLocalUploadService service(nullptr);
    service.setTargetFolder(folder.path());
    service.start();
    QSignalSpy uploads(&service, &VXLocalUploadService::filesUploaded);
    const QByteArray token = service.nextToken().toLatin1();
    const QByteArray host = service.url().host().toLatin1();
    const auto port = static_cast<quint16>(service.url().port());

    // The photo waits in the socket: this thread, where the service lives, does not read it yet.
    std::unique_ptr<VXPhoneSocket> phone;
    std::thread sender([&] {
        if (!VXPhoneSocket::enterNetwork(1))
            return;
        phone = std::make_unique<VXPhoneSocket>(host, port);
        phone->send("POST /upload?" + token +
                    " HTTP/1.1\r\nHost: x\r\nContent-Length: 5\r\n\r\n"
                    "photo");
    });
    sender.join();
    QVERIFY(phone && phone->isOpen());
    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    service.updateConnections();
    QCOMPARE(service.selectedConnection(), -1);
    QTRY_COMPARE(uploads.count(), 1);
    const QString heading = u"Photos from phones"_s;
    QCOMPARE(VXReliabilityDocument::rows(heading).value(u"interface gone"_s),
             (QStringList{u"none"_s, u"none"_s, number(uploads.count()), names(folder.path())}));

    // When it is back, the next photo comes as ever.
    QCOMPARE(VXLan::ip(u"address add 10.77.0.1/24 dev lan0"_s), QString());
    service.updateConnections();
    VXPlainHttpClient next(QHostAddress(service.url().host()),
                           static_cast<quint16>(service.url().port()));
    const QByteArray target = "POST /upload?" + service.nextToken().toLatin1();
    QCOMPARE(next.ask(target, {}, "photo").status, 200);
}

void tst_service_faults::theDocumentHasNoOtherRows_data()
{
    QTest::addColumn<QString>("heading");
    QTest::addColumn<qsizetype>("count");

    QTest::newRow("logins") << u"Login servers"_s << loginRows().size();
    QTest::newRow("quits") << u"Quitting with a session"_s << qsizetype(6); // one: stalled_logout
    QTest::newRow("ports") << u"Port of the redirect"_s << qsizetype(4);
    QTest::newRow("channel") << u"Web channel"_s << channelRows().size();
    QTest::newRow("photos") << u"Photos from phones"_s << photoRows().size() + 1;
}

void tst_service_faults::theDocumentHasNoOtherRows()
{
    QFETCH(QString, heading);
    QFETCH(qsizetype, count);
    QCOMPARE(VXReliabilityDocument::rows(heading).size(), count);
}

VX_TEST_MAIN(QApplication, tst_service_faults)

#include "tst_service_faults.moc"
