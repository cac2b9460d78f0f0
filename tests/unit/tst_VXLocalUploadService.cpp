#include <VXNetworking/VXLocalUploadService.h>

#include "VXFileContent.h"
#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXPlainHttpClient.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXLogger.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMetaMethod>
#include <QtCore/QProcess>
#include <QtCore/QSet>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QNetworkProxyFactory>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QHostAddress lan(u"10.77.0.1"_s);
const QHostAddress firstPhone(u"10.77.0.21"_s);  // addresses of the loopback: local, but others
const QHostAddress secondPhone(u"10.77.0.22"_s); // than the server's

/// The arguments of one urlChanged().
struct Change
{
    QString url;
    QString wifiName;
    int index = 0;
    int count = 0;

    friend bool operator==(const Change&, const Change&) = default;
};

char* toString(const Change& theChange)
{
    return QTest::toString(u"%1 [%2] %3 of %4"_s.arg(theChange.url, theChange.wifiName)
                               .arg(theChange.index)
                               .arg(theChange.count));
}

/// A service with all that it says.
class Service : public VXLocalUploadService
{
public:
    Service()
        : VXLocalUploadService(nullptr)
        , uploads(this, &VXLocalUploadService::filesUploaded)
        , folders(this, &VXLocalUploadService::targetFolderChanged)
    {
        connect(this, &VXLocalUploadService::doLog, this, [this](const QString& theLine) {
            lines.append(theLine);
            events.append(u"log "_s + theLine);
        });
        connect(this, &VXLocalUploadService::filesUploaded, this, [this](const QFileInfo& theFile) {
            events.append(u"file "_s + theFile.filePath());
        });
        connect(this, &VXLocalUploadService::targetFolderChanged, this,
                [this](const QString& theFolder) { events.append(u"folder "_s + theFolder); });
        connect(this, &VXLocalUploadService::urlChanged, this,
                [this](const QUrl& theUrl, const QString& theWifi, int theIndex, int theCount) {
                    changes.append({theUrl.toString(), theWifi, theIndex, theCount});
                    events.append(u"url"_s);
                });
        VXLogger::instance()->setSink([this](const QString& theChannel, const QString& theLine) {
            if (theChannel == u"qrupload") {
                actions.append(theLine);
                events.append(theLine);
            }
        });
    }

    ~Service() override { VXLogger::instance()->setSink({}); }

    void forget()
    {
        lines.clear();
        changes.clear();
        actions.clear();
        events.clear();
        uploads.clear();
        folders.clear();
    }

    quint16 port() const { return static_cast<quint16>(url().port()); }

    QStringList lines;
    QList<Change> changes;
    QStringList actions;
    QStringList events; // everything in order
    QSignalSpy uploads;
    QSignalSpy folders;
};

/// A service that listens on 10.77.0.1 and has forgotten its start.
class RunningService : public Service
{
public:
    explicit RunningService(const QString& theFolder)
    {
        setTargetFolder(theFolder);
        start();
        forget();
    }
};

} // namespace

/// Runs in a network namespace: the service listens on addresses of a LAN.
class tst_VXLocalUploadService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    // life cycle and values
    void methodsStandInTheirOrder();
    void aNewServiceHasATokenAndDoesNotListen();
    void tokensAreFiveCharactersOfTheAlphabet();
    void startListensTwiceAndAnswersOnBothPorts();
    void startTellsItsStepsInOrder();
    void theDebugLogHasEachLine();
    void afterTheServiceIsGoneNobodyIsAdmitted();
    void fileInfoTravelsThroughQueuedConnections();
    void boldifyWrapsTheText();
    void theTextsOfThePageAreGerman();

    // interfaces
    void aWirelessAddressComesBeforeAWiredOne();
    void twoWirelessAddressesComeInReverseOrder();
    void anInterfaceWithIpv6OnlyIsLeftOut();
    void onlyTheFirstAddressOfAnInterfaceCounts();
    void pointToPointAndDeadInterfacesAreLeftOut();
    void eachInterfaceIsLoggedInSevenLines();
    void nextConnectionGoesRoundTheAddresses();
    void nextConnectionWithOneAddressListensAgain();
    void withoutAnInterfaceTheReasonIsPublished();
    void aNullAddressIsNeverListenedOn();
    void updateWithTheSameAddressesSaysNothing();
    void updateWithAnotherCountPublishesTheSameUrl();
    void updateWithAsManyOtherAddressesSaysNothing();
    void aNewNetworkNameWaitsForTheNextSignal();
    void updateMovesOnWhenTheAddressIsLost();
    void anAddressThatReturnsAnswersOnItsOldPort();
    void aFailedListenPublishesPortZero();
    void aProxyOfTheApplicationDoesNotStopTheServer_data();
    void aProxyOfTheApplicationDoesNotStopTheServer();

    // admission
    void theTokenAdmitsOneFirstVisit();
    void aQueryWithMoreThanTheTokenIsRefused();
    void aTokenOfAnotherCaseIsRefused();
    void theCookieOfTheClientAdmits_data();
    void theCookieOfTheClientAdmits();
    void theCookieOfAnotherClientIsRefused();
    void aClientMayHoldSeveralTokens();
    void redeemingPublishesANewToken();

    // routes
    void theRootIsTheIndexPage();
    void aPathIsLookedUpWithoutItsSlash();
    void anAssetRenewsOrClearsTheCookie();
    void anUnknownAssetIsNotFound();
    void theTextsAreSentWithBothStatuses();
    void everyMethodReachesEveryRoute_data();
    void everyMethodReachesEveryRoute();
    void requestsAreWrittenWithMethodAndUrl();

    // uploads
    void anUploadIsStoredAndToldInOrder();
    void theStoredNameIsSafe_data();
    void theStoredNameIsSafe();
    void aRefusedUploadStoresNothing();
    void aSecondUploadReplacesTheFirst();
    void anEmptyBodyMakesAnEmptyFile();
    void aLargeBodyArrivesUnchanged();
    void theFolderIsMadeWithItsParents();
    void aFolderThatCannotBeMadeIsAnsweredOk();
    void aShortWriteLeavesTheOldFile();
    void aNameTooLongForTheDiskIsAnsweredOk();
    void bothHostNamesAreLoggedLater();
    void theLocalHostIsTheOneThatThePhoneCalled();

    // target folder
    void theDefaultFolderIsSettledOnce();
    void withoutPicturesFolderTheAbsolutePathIsUsed();
    void settingTheFolderIsAlwaysAnnounced();

private:
    QString target() const { return myFolder->filePath(u"target"_s); }
    VXPlainHttpClient::Answer ask(const Service& theService, const QByteArray& theRequestLine,
                                  const QHostAddress& theSource = firstPhone,
                                  const QByteArrayList& theHeaders = {},
                                  const QByteArray& theBody = {});
    /// Makes the first phone known to the service and returns its token.
    QByteArray admit(Service& theService, const QHostAddress& thePhone = firstPhone);

    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXLocalUploadService::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    QCOMPARE(VXLan::ip(u"address add 10.77.0.21/32 dev lo"_s), QString());
    QCOMPARE(VXLan::ip(u"address add 10.77.0.22/32 dev lo"_s), QString());
}

void tst_VXLocalUploadService::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    VXFileContent::write(myFolder->filePath(u"assets/index.html"_s), "<h1>index</h1>");
    VXFileContent::write(myFolder->filePath(u"assets/css/site.css"_s), "body{}");
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::QrUpload,
                                           myFolder->filePath(u"assets"_s));
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {});
}

void tst_VXLocalUploadService::cleanup()
{
    for (const QString& name : {u"lan1"_s, u"lan2"_s, u"lan3"_s})
        VXLan::removeInterface(name);
    [[maybe_unused]] const QString mayStandAlready =
        VXLan::ip(u"address add 10.77.0.1/24 dev lan0"_s);
}

VXPlainHttpClient::Answer tst_VXLocalUploadService::ask(const Service& theService,
                                                        const QByteArray& theRequestLine,
                                                        const QHostAddress& theSource,
                                                        const QByteArrayList& theHeaders,
                                                        const QByteArray& theBody)
{
    VXPlainHttpClient client(QHostAddress(theService.url().host()), theService.port(), theSource);
    return client.ask(theRequestLine, theHeaders, theBody);
}

QByteArray tst_VXLocalUploadService::admit(Service& theService, const QHostAddress& thePhone)
{
    const QByteArray token = theService.nextToken().toLatin1();
    if (ask(theService, "GET /translations.json?" + token, thePhone).status != 200)
        return {};
    theService.forget();
    return token;
}

// --- life cycle and values

void tst_VXLocalUploadService::methodsStandInTheirOrder()
{
    const QMetaObject& meta = VXLocalUploadService::staticMetaObject;
    QByteArrayList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        methods.append(meta.method(index).methodSignature());
    QCOMPARE(methods, QByteArrayList({"filesUploaded(QFileInfo)", "targetFolderChanged(QString)",
                                      "doLog(QString)", "urlChanged(QUrl,QString,int,int)",
                                      "nextConnection()", "updateConnections()"}));
}

void tst_VXLocalUploadService::aNewServiceHasATokenAndDoesNotListen()
{
    Service service;
    QCOMPARE(service.nextToken().size(), 5);
    QCOMPARE(service.selectedConnection(), -1);
    QCOMPARE(service.url(), QUrl(u"http://:0/?"_s + service.nextToken()));
    QCOMPARE(service.events, QStringList());
}

void tst_VXLocalUploadService::tokensAreFiveCharactersOfTheAlphabet()
{
    const QString alphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-."_s;
    QSet<QString> tokens;
    QSet<QChar> characters;
    for (int round = 0; round < 300; ++round) {
        const QString token = Service().nextToken();
        QCOMPARE(token.size(), 5);
        for (const QChar character : token) {
            QVERIFY2(alphabet.contains(character), qPrintable(token));
            characters.insert(character);
        }
        tokens.insert(token);
    }
    // 1500 draws miss one of 39 characters once in 10^15 runs.
    QCOMPARE(characters.size(), 39);
    QVERIFY(tokens.size() > 295);
}

void tst_VXLocalUploadService::startListensTwiceAndAnswersOnBothPorts()
{
    Service service;
    QVERIFY(service.start());

    QCOMPARE(service.changes.size(), 2);
    const QUrl first(service.changes.at(0).url);
    const QUrl second(service.changes.at(1).url);
    QCOMPARE(first.host(), u"10.77.0.1"_s);
    QVERIFY(first.port() > 0);
    QVERIFY(first.port() != second.port());
    QCOMPARE(service.url(), second);
    for (const QUrl& url : {first, second}) {
        VXPlainHttpClient client(lan, static_cast<quint16>(url.port()), firstPhone);
        QCOMPARE(client.ask("GET /").status, 200);
    }
}

void tst_VXLocalUploadService::startTellsItsStepsInOrder()
{
    Service service;
    service.start();

    QCOMPARE(service.actions, QStringList({u"ACTION:startService"_s, u"ACTION:nextConnection"_s}));
    const QString url = service.url().toString();
    const QString first = service.changes.constFirst().url;
    QStringList events = service.events;
    for (qsizetype line = 0; line < 7; ++line) // of the interface, tested by itself
        events.removeAt(3);
    QCOMPARE(
        events,
        QStringList({u"log QR Upload Service starting"_s, u"ACTION:startService"_s,
                     u"ACTION:nextConnection"_s, u"log HostInfo Addresses: "_s, u"url"_s,
                     u"log Server responding to <a href=\"%1\">%1</a><br>"_s.arg(first), u"url"_s,
                     u"log Server responding to <a href=\"%1\">%1</a><br>"_s.arg(url)}));
    QCOMPARE(service.changes.constLast(), (Change{url, QString(), 0, 1}));
}

void tst_VXLocalUploadService::theDebugLogHasEachLine()
{
    QLoggingCategory::setFilterRules(u"default.debug=true"_s);
    Service service;
    const VXLogCapture capture;
    service.log(u"  a \"b\" <c> \u00e4"_s);
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);

    QCOMPARE(capture.texts(QtDebugMsg), QStringList(u"  a \"b\" <c> \u00e4"_s));
    QCOMPARE(service.lines, QStringList(u"  a \"b\" <c> \u00e4"_s));
}

void tst_VXLocalUploadService::afterTheServiceIsGoneNobodyIsAdmitted()
{
    auto service = std::make_unique<RunningService>(target());
    const QByteArray token = admit(*service);
    const quint16 port = service->port();
    service.reset();

    VXPlainHttpClient client(lan, port, firstPhone);
    const auto upload = client.ask("POST /upload?" + token, {}, "photo");
    QCOMPARE(upload.status, 403);
    QCOMPARE(upload.body, "403: Forbidden"_ba);
    const auto texts = client.ask("GET /translations.json?" + token);
    QCOMPARE(texts.status, 403);
    QCOMPARE(texts.body, "403: Forbidden"_ba);
    const auto page = client.ask("GET /");
    QCOMPARE(page.status, 404);
    QCOMPARE(page.body, "404: Resource not Found :-("_ba);
    QVERIFY(!QFileInfo::exists(target()));
}

void tst_VXLocalUploadService::fileInfoTravelsThroughQueuedConnections()
{
    RunningService service(target());
    admit(service);
    QString name;
    QObject receiver;
    connect(
        &service, &VXLocalUploadService::filesUploaded, &receiver,
        [&name](const QFileInfo& theFile) { name = theFile.fileName(); }, Qt::QueuedConnection);

    QVERIFY(QMetaType::fromName("QFileInfo").isRegistered());
    QCOMPARE(ask(service, "POST /upload?file=a.jpg", secondPhone).status, 403);
    const QByteArray token = admit(service, secondPhone);
    QCOMPARE(ask(service, "POST /upload?file=a.jpg", secondPhone, {"Cookie: sid=" + token}).status,
             200);
    QTRY_COMPARE(name, u"a.qrul.jpg"_s);
}

void tst_VXLocalUploadService::boldifyWrapsTheText()
{
    QCOMPARE(VXLocalUploadService::boldify(u"a <i>%1</i>"_s), u"<b>a <i>%1</i></b>"_s);
    QCOMPARE(VXLocalUploadService::boldify(QString()), u"<b></b>"_s);
}

void tst_VXLocalUploadService::theTextsOfThePageAreGerman()
{
    const QJsonObject texts = Service().translations();
    QCOMPARE(texts.keys(), QStringList({u"textButton"_s, u"textGreeting"_s, u"textNoConnect"_s,
                                        u"textProgress"_s, u"textSuccess"_s, u"title"_s}));
    QCOMPARE(texts.value(u"textGreeting"_s).toString(),
             u"Wählen Sie Fotos von Ihrem Mobiltelefon"_s);
    QCOMPARE(texts.value(u"textProgress"_s).toString(), u"Fotos werden übertragen"_s);
    QCOMPARE(texts.value(u"textSuccess"_s).toString(),
             u"Die Fotos wurden erfolgreich übertragen"_s);
    QCOMPARE(texts.value(u"textNoConnect"_s).toString(),
             u"Verbindung konnte nicht hergestellt werden.<br> Bitte scannen Sie erneut den "
             u"QR-Code."_s);
    QCOMPARE(texts.value(u"textButton"_s).toString(), u"Fotos auswählen"_s);
    QCOMPARE(texts.value(u"title"_s).toString(), u"Norvo \u2013 Fotos übertragen"_s);
}

// --- interfaces

void tst_VXLocalUploadService::aWirelessAddressComesBeforeAWiredOne()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan1=Norvo WLAN"_s});

    Service service;
    service.start();
    QCOMPARE(service.changes.constLast(),
             (Change{service.url().toString(), u"Norvo WLAN"_s, 0, 2}));
    QCOMPARE(service.url().host(), u"10.81.0.1"_s);
    service.nextConnection();
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);
}

void tst_VXLocalUploadService::twoWirelessAddressesComeInReverseOrder()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    QCOMPARE(VXLan::addInterface(u"lan2"_s, {u"10.82.0.1/24"_s}), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s,
                                            {u"lan1=one"_s, u"lan2=two"_s});

    Service service;
    service.start();
    QCOMPARE(service.changes.constLast(), (Change{service.url().toString(), u"one, two"_s, 0, 3}));
    QStringList hosts{service.url().host()};
    for (int round = 0; round < 2; ++round) {
        service.nextConnection();
        hosts.append(service.url().host());
    }
    QCOMPARE(hosts, QStringList({u"10.82.0.1"_s, u"10.81.0.1"_s, u"10.77.0.1"_s}));
}

void tst_VXLocalUploadService::anInterfaceWithIpv6OnlyIsLeftOut()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"fd00:81::1/64"_s}), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan1=six"_s});

    Service service;
    service.start();
    QCOMPARE(service.changes.constLast(), (Change{service.url().toString(), QString(), 0, 1}));
    QVERIFY(!service.lines.contains(u"Interface Name: lan1"_s));
}

void tst_VXLocalUploadService::onlyTheFirstAddressOfAnInterfaceCounts()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s, u"10.91.0.1/24"_s}), QString());

    Service service;
    service.start();
    QCOMPARE(service.changes.constLast().count, 2);
    service.nextConnection();
    QCOMPARE(service.url().host(), u"10.81.0.1"_s);
    service.nextConnection();
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);
}

void tst_VXLocalUploadService::pointToPointAndDeadInterfacesAreLeftOut()
{
    // A tunnel as a VPN makes it; a cable whose other end is down; the loopback with addresses.
    QCOMPARE(VXLan::ip(u"tuntap add dev lan1 mode tun"_s), QString());
    QCOMPARE(VXLan::ip(u"address add 10.81.0.1/24 dev lan1"_s), QString());
    QCOMPARE(VXLan::ip(u"link set lan1 up"_s), QString());
    QCOMPARE(VXLan::addInterface(u"lan2"_s, {u"10.82.0.1/24"_s}), QString());
    QCOMPARE(VXLan::unplugInterface(u"lan2"_s), QString());

    Service service;
    service.start();
    QCOMPARE(service.changes.constLast().count, 1);
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);
}

void tst_VXLocalUploadService::eachInterfaceIsLoggedInSevenLines()
{
    QCOMPARE(VXLan::ip(u"link set lan0 address 02:00:00:00:00:77"_s), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan0=<b>WLAN</b>"_s});
    Service service;
    const QStringList seven{u"HW Address: 02:00:00:00:00:77"_s,
                            u"Interface Name: lan0"_s,
                            u"IP Address: 10.77.0.1"_s,
                            u"Netmask: 255.255.255.0"_s,
                            u"Name:lan0"_s,
                            u"SSID:<b>WLAN</b>"_s,
                            u"\n"_s};

    service.nextConnection();
    QCOMPARE(service.lines.first(8), seven + QStringList(u"HostInfo Addresses: "_s));

    service.forget();
    service.updateConnections(); // nothing changed: no heading
    QCOMPARE(service.lines, seven);
}

void tst_VXLocalUploadService::nextConnectionGoesRoundTheAddresses()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    Service service;
    service.start();
    QCOMPARE(service.selectedConnection(), 0);
    const quint16 firstPort = service.port();

    service.forget();
    service.nextConnection();
    QCOMPARE(service.actions, QStringList(u"ACTION:nextConnection"_s));
    QCOMPARE(service.changes, QList<Change>({{service.url().toString(), QString(), 1, 2}}));
    QCOMPARE(service.selectedConnection(), 1);
    service.nextConnection();
    QCOMPARE(service.selectedConnection(), 0);
    QCOMPARE(service.changes.constLast().index, 0);

    // What listened first still answers.
    VXPlainHttpClient client(lan, firstPort, firstPhone);
    QCOMPARE(client.ask("GET /").status, 200);
}

void tst_VXLocalUploadService::nextConnectionWithOneAddressListensAgain()
{
    Service service;
    service.start();
    const quint16 before = service.port();
    service.nextConnection();
    QCOMPARE(service.selectedConnection(), 0);
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);
    QVERIFY(service.port() != before);
    QCOMPARE(ask(service, "GET /").status, 200);
}

void tst_VXLocalUploadService::withoutAnInterfaceTheReasonIsPublished()
{
    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    Service service;
    QVERIFY(service.start());

    QCOMPARE(service.changes,
             QList<Change>({{QString(),
                             u"Es konnte keine Schnittstelle für eingehende Netzwerkverbindungen "
                             u"bereitgestellt werden.\nBitte überprüfen sie Ihre Firewall und "
                             u"Netzwerkeinstellungen."_s,
                             0, 0}}));
    QCOMPARE(service.lines, QStringList(u"QR Upload Service starting"_s));
    QCOMPARE(service.actions, QStringList({u"ACTION:startService"_s, u"ACTION:nextConnection"_s}));

    // The cable is plugged in later; every look finds nothing new to say until then.
    service.forget();
    service.updateConnections();
    QCOMPARE(service.actions, QStringList(u"ACTION:nextConnection"_s));
    QCOMPARE(VXLan::ip(u"address add 10.77.0.1/24 dev lan0"_s), QString());
    service.updateConnections();
    QCOMPARE(service.changes.constLast(), (Change{service.url().toString(), QString(), 0, 1}));
    QCOMPARE(ask(service, "GET /").status, 200);
}

void tst_VXLocalUploadService::aNullAddressIsNeverListenedOn()
{
    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    Service service;
    service.start();

    QCOMPARE(service.url().port(), 0);
    // A listener on 0.0.0.0 would stand in the kernel's list of sockets: local address first.
    QVERIFY(VXFileContent::of(u"/proc/self/net/tcp"_s).startsWith("  sl  local_address"));
    QVERIFY(!VXFileContent::of(u"/proc/self/net/tcp"_s).contains(": 00000000:"));
    QVERIFY(!VXFileContent::of(u"/proc/self/net/tcp6"_s)
                 .contains(": 00000000000000000000000000000000:"));
}

void tst_VXLocalUploadService::updateWithTheSameAddressesSaysNothing()
{
    RunningService service(target());
    service.updateConnections();
    QCOMPARE(service.changes, QList<Change>());
    QCOMPARE(service.actions, QStringList());
}

void tst_VXLocalUploadService::updateWithAnotherCountPublishesTheSameUrl()
{
    RunningService service(target());
    const QString url = service.url().toString();
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan1=WLAN"_s});

    service.updateConnections();
    QCOMPARE(service.changes, QList<Change>({{url, u"WLAN"_s, 1, 2}}));
    QCOMPARE(service.actions, QStringList());

    service.forget();
    VXLan::removeInterface(u"lan1"_s);
    service.updateConnections();
    QCOMPARE(service.changes, QList<Change>({{url, QString(), 0, 1}}));
}

/// The button then counts on from a number that no longer holds, until the next signal.
void tst_VXLocalUploadService::updateWithAsManyOtherAddressesSaysNothing()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    RunningService service(target());
    const QString url = service.url().toString();
    VXLan::removeInterface(u"lan1"_s);
    QCOMPARE(VXLan::addInterface(u"lan2"_s, {u"10.82.0.1/24"_s}), QString());

    service.updateConnections();
    QVERIFY(service.lines.contains(u"IP Address: 10.82.0.1"_s)); // it was seen
    QCOMPARE(service.changes, QList<Change>());
    QCOMPARE(service.actions, QStringList());
    QCOMPARE(service.url().toString(), url);
}

void tst_VXLocalUploadService::aNewNetworkNameWaitsForTheNextSignal()
{
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan0=before"_s});
    RunningService service(target());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {u"lan0=after"_s});
    service.updateConnections();
    QCOMPARE(service.changes, QList<Change>());

    const QByteArray token = service.nextToken().toLatin1(); // redeeming it publishes another
    QCOMPARE(ask(service, "GET /translations.json?" + token).status, 200);
    QCOMPARE(service.changes, QList<Change>({{service.url().toString(), u"after"_s, 0, 1}}));
}

void tst_VXLocalUploadService::updateMovesOnWhenTheAddressIsLost()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    RunningService service(target());
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);

    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    service.updateConnections();
    QCOMPARE(service.url().host(), u"10.81.0.1"_s);
    QCOMPARE(service.changes, QList<Change>({{service.url().toString(), QString(), 0, 1}}));
    QCOMPARE(service.actions, QStringList(u"ACTION:nextConnection"_s));
}

void tst_VXLocalUploadService::anAddressThatReturnsAnswersOnItsOldPort()
{
    RunningService service(target());
    const quint16 port = service.port();
    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    service.updateConnections();
    QCOMPARE(service.changes.constLast().url, QString());
    QCOMPARE(service.changes.constLast().count, 0);

    QCOMPARE(VXLan::ip(u"address add 10.77.0.1/24 dev lan0"_s), QString());
    service.updateConnections();
    QCOMPARE(service.url().host(), u"10.77.0.1"_s);
    VXPlainHttpClient client(lan, port, firstPhone);
    QCOMPARE(client.ask("GET /").status, 200);
}

void tst_VXLocalUploadService::aFailedListenPublishesPortZero()
{
    // The system has a single port to choose from, and that one is taken.
    const QString range = u"/proc/sys/net/ipv4/ip_local_port_range"_s;
    const QByteArray before = VXFileContent::of(range);
    VXFileContent::write(range, "50001 50001");
    QTcpServer other;
    QVERIFY(other.listen(lan, 50001));
    Service service;
    const bool isTrue = service.start();
    VXFileContent::write(range, before);

    QVERIFY(isTrue);
    QCOMPARE(service.url(), QUrl(u"http://10.77.0.1:0/?"_s + service.nextToken()));
    QCOMPARE(service.changes.constLast(), (Change{service.url().toString(), QString(), 0, 1}));
    QCOMPARE(service.lines.constLast(),
             u"Server responding to <a href=\"%1\">%1</a><br>"_s.arg(service.url().toString()));
}

void tst_VXLocalUploadService::aProxyOfTheApplicationDoesNotStopTheServer_data()
{
    QTest::addColumn<int>("type");

    QTest::newRow("none") << int(QNetworkProxy::NoProxy);
    QTest::newRow("SOCKS") << int(QNetworkProxy::Socks5Proxy);
    QTest::newRow("HTTP") << int(QNetworkProxy::HttpProxy);
    QTest::newRow("caching HTTP") << int(QNetworkProxy::HttpCachingProxy);
    QTest::newRow("FTP") << int(QNetworkProxy::FtpCachingProxy);
}

void tst_VXLocalUploadService::aProxyOfTheApplicationDoesNotStopTheServer()
{
    QFETCH(int, type);

    class Factory : public QNetworkProxyFactory
    {
    public:
        explicit Factory(int theType)
            : myProxy(QNetworkProxy::ProxyType(theType), u"10.77.0.99"_s, 9)
        {
        }
        QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery&) override { return {myProxy}; }

    private:
        QNetworkProxy myProxy;
    };
    QNetworkProxyFactory::setApplicationProxyFactory(new Factory(type)); // Qt owns it
    RunningService service(target());
    QNetworkProxyFactory::setApplicationProxyFactory(nullptr);

    QVERIFY(service.port() > 0);
    QCOMPARE(ask(service, "GET /").status, 200);
}

// --- admission

void tst_VXLocalUploadService::theTokenAdmitsOneFirstVisit()
{
    RunningService service(target());
    const QByteArray token = service.nextToken().toLatin1();

    const auto first = ask(service, "GET /?" + token);
    QCOMPARE(first.status, 200);
    QCOMPARE(first.header("Set-Cookie"), "sid=" + token);

    // The second phone has scanned the same code too late.
    QCOMPARE(ask(service, "POST /upload?" + token, secondPhone, {}, "x").status, 403);
    const auto page = ask(service, "GET /?" + token, secondPhone);
    QCOMPARE(page.status, 200);
    QVERIFY(page.headers.contains("Set-Cookie: sid="));

    // The first one may repeat it.
    QCOMPARE(ask(service, "GET /?" + token).header("Set-Cookie"), "sid=" + token);
    QCOMPARE(ask(service, "POST /upload?" + token, firstPhone, {}, "x").status, 200);
}

void tst_VXLocalUploadService::aQueryWithMoreThanTheTokenIsRefused()
{
    RunningService service(target());
    const QByteArray token = service.nextToken().toLatin1();
    for (const QByteArray& query : {token + "&x=1", "x=1&" + token, token + "&", "?" + token,
                                    token + "=", token + "%20", "%20" + token, token.chopped(1)})
        QCOMPARE(ask(service, "GET /translations.json?" + query).status, 403);
    QCOMPARE(service.nextToken().toLatin1(), token); // nobody has redeemed it
    QCOMPARE(ask(service, "GET /translations.json").status, 403);
    QCOMPARE(ask(service, "GET /translations.json?").status, 403);
}

void tst_VXLocalUploadService::aTokenOfAnotherCaseIsRefused()
{
    RunningService service(target());
    QByteArray token = service.nextToken().toLatin1();
    while (token.toLower() == token) { // digits and signs only, once in 250 runs
        admit(service);
        token = service.nextToken().toLatin1();
    }
    QCOMPARE(ask(service, "GET /translations.json?" + token.toLower(), secondPhone).status, 403);
    QCOMPARE(ask(service, "GET /translations.json?" + token, secondPhone).status, 200);
    QCOMPARE(ask(service, "GET /translations.json?" + token.toLower(), secondPhone).status, 403);
}

void tst_VXLocalUploadService::theCookieOfTheClientAdmits_data()
{
    QTest::addColumn<QByteArrayList>("headers"); // TOKEN stands for the client's token
    QTest::addColumn<int>("status");

    QTest::newRow("alone") << QByteArrayList{"Cookie: sid=TOKEN"} << 200;
    QTest::newRow("without blank") << QByteArrayList{"Cookie:sid=TOKEN"} << 200;
    QTest::newRow("second pair") << QByteArrayList{"Cookie: a=b; sid=TOKEN"} << 200;
    QTest::newRow("last of many") << QByteArrayList{"Cookie: a=b;c=d ;  sid = TOKEN ; e"} << 200;
    QTest::newRow("after a wrong one") << QByteArrayList{"Cookie: sid=WRONG; sid=TOKEN"} << 200;
    QTest::newRow("second header") << QByteArrayList{"Cookie: a=b", "Cookie: sid=TOKEN"} << 200;
    QTest::newRow("header in lower case") << QByteArrayList{"cookie: sid=TOKEN"} << 403;
    QTest::newRow("header in capitals") << QByteArrayList{"COOKIE: sid=TOKEN"} << 403;
    QTest::newRow("name in capitals") << QByteArrayList{"Cookie: SID=TOKEN"} << 403;
    QTest::newRow("name with more") << QByteArrayList{"Cookie: xsid=TOKEN"} << 403;
    QTest::newRow("value with more") << QByteArrayList{"Cookie: sid=TOKENx"} << 403;
    QTest::newRow("empty value") << QByteArrayList{"Cookie: sid="} << 403;
    QTest::newRow("no value") << QByteArrayList{"Cookie: sid"} << 403;
    QTest::newRow("no name") << QByteArrayList{"Cookie: =TOKEN"} << 403;
    QTest::newRow("another header") << QByteArrayList{"X-Cookie: sid=TOKEN"} << 403;
    QTest::newRow("empty header") << QByteArrayList{"Cookie:"} << 403;
    QTest::newRow("none") << QByteArrayList{} << 403;
}

void tst_VXLocalUploadService::theCookieOfTheClientAdmits()
{
    QFETCH(QByteArrayList, headers);
    QFETCH(int, status);

    RunningService service(target());
    const QByteArray token = admit(service);
    for (QByteArray& header : headers)
        header.replace("TOKEN", token);
    QCOMPARE(ask(service, "GET /translations.json", firstPhone, headers).status, status);
}

void tst_VXLocalUploadService::theCookieOfAnotherClientIsRefused()
{
    RunningService service(target());
    const QByteArray token = admit(service);
    QCOMPARE(ask(service, "GET /translations.json", secondPhone, {"Cookie: sid=" + token}).status,
             403);
    // The live token is no cookie yet.
    const QByteArray live = service.nextToken().toLatin1();
    QCOMPARE(ask(service, "GET /translations.json", firstPhone, {"Cookie: sid=" + live}).status,
             403);
}

void tst_VXLocalUploadService::aClientMayHoldSeveralTokens()
{
    RunningService service(target());
    const QByteArray first = admit(service);
    const QByteArray second = admit(service);
    for (const QByteArray& token : {first, second}) {
        const auto page = ask(service, "GET /", firstPhone, {"Cookie: sid=" + token});
        QCOMPARE(page.header("Set-Cookie"), "sid=" + token);
    }
}

void tst_VXLocalUploadService::redeemingPublishesANewToken()
{
    RunningService service(target());
    const QString token = service.nextToken();
    const QString url = service.url().toString();

    QCOMPARE(ask(service, "GET /translations.json?" + token.toLatin1()).status, 200);
    QVERIFY(service.nextToken() != token);
    QVERIFY(service.url().toString() != url);
    QCOMPARE(service.changes, QList<Change>({{service.url().toString(), QString(), 0, 1}}));
    QCOMPARE(service.url().toString(), url.chopped(5) + service.nextToken());
    QCOMPARE(service.lines, QStringList()); // the texts are not logged
}

// --- routes

void tst_VXLocalUploadService::theRootIsTheIndexPage()
{
    RunningService service(target());
    const auto page = ask(service, "GET /");
    QCOMPARE(page.status, 200);
    QCOMPARE(page.body, "<h1>index</h1>"_ba);
    QCOMPARE(page.header("Content-Type"), "text/html"_ba);
    QCOMPARE(service.lines,
             QStringList(u"GET request for http://10.77.0.1:%1/"_s.arg(service.port())));
}

void tst_VXLocalUploadService::aPathIsLookedUpWithoutItsSlash()
{
    class Directories : public VXDirectoryConfig
    {
    public:
        QString qrUploadAsset(const QString& thePath) const override
        {
            asked.append(thePath);
            return {};
        }
        mutable QStringList asked;
    };
    auto recording = std::make_unique<Directories>();
    const Directories* const directories = recording.get();
    auto before = VXDirectoryConfig::setInstance(std::move(recording));
    RunningService service(target());

    for (const char* path : {"/css/site.css", "//index.html", "/a%20b%C3%A4.js", "/%2Fetc/passwd",
                             "/x?y=z", "/upload/", "/uploads", "/translations.json/"})
        ask(service, "GET "_ba + path);
    const QStringList asked = directories->asked;
    VXDirectoryConfig::setInstance(std::move(before));

    // "//index.html" names a host and no path: the root.
    QCOMPARE(asked, QStringList({u"css/site.css"_s, u"a b\u00e4.js"_s, u"/etc/passwd"_s, u"x"_s,
                                 u"upload/"_s, u"uploads"_s, u"translations.json/"_s}));
}

void tst_VXLocalUploadService::anAssetRenewsOrClearsTheCookie()
{
    RunningService service(target());
    const auto stranger = ask(service, "GET /css/site.css");
    QCOMPARE(stranger.status, 200);
    QCOMPARE(stranger.header("Content-Type"), "text/css"_ba);
    QVERIFY(stranger.headers.contains("Set-Cookie: sid="));

    const QByteArray token = admit(service);
    const auto known = ask(service, "GET /css/site.css", firstPhone, {"Cookie: a=b; sid=" + token});
    QVERIFY(known.headers.contains("Set-Cookie: sid=" + token));
    QCOMPARE(known.body, "body{}"_ba);
}

void tst_VXLocalUploadService::anUnknownAssetIsNotFound()
{
    RunningService service(target());
    const auto answer = ask(service, "GET /nothing.png");
    QCOMPARE(answer.status, 404);
    QCOMPARE(answer.body, "404: Resource not Found :-("_ba);
    QCOMPARE(answer.header("Content-Type"), "text/html"_ba);
    QVERIFY(answer.header("Set-Cookie").isNull());
    QCOMPARE(service.lines,
             QStringList({u"GET request for http://10.77.0.1:%1/nothing.png"_s.arg(service.port()),
                          u"!!! 404: Resource not found"_s}));
}

void tst_VXLocalUploadService::theTextsAreSentWithBothStatuses()
{
    RunningService service(target());
    const auto stranger = ask(service, "GET /translations.json");
    QCOMPARE(stranger.status, 403);
    const QByteArray token = admit(service);
    const auto known = ask(service, "GET /translations.json?" + token);
    QCOMPARE(known.status, 200);
    QCOMPARE(known.body, stranger.body);
    QCOMPARE(QJsonDocument::fromJson(known.body).object(), service.translations());
    QCOMPARE(known.header("Content-Type"), "application/json"_ba);
}

void tst_VXLocalUploadService::everyMethodReachesEveryRoute_data()
{
    QTest::addColumn<QByteArray>("method");
    for (const char* method :
         {"GET", "PUT", "DELETE", "POST", "HEAD", "OPTIONS", "PATCH", "CONNECT"})
        QTest::newRow(method) << QByteArray(method);
}

void tst_VXLocalUploadService::everyMethodReachesEveryRoute()
{
    QFETCH(QByteArray, method);

    RunningService service(target());
    const QByteArray token = admit(service);
    const QByteArrayList cookie{"Cookie: sid=" + token};
    QCOMPARE(ask(service, method + " /translations.json", firstPhone, cookie).status, 200);
    QCOMPARE(ask(service, method + " /css/site.css", firstPhone, cookie).status, 200);
    QCOMPARE(ask(service, method + " /none", firstPhone, cookie).status, 404);
    const auto stored =
        ask(service, method + " /upload?file=" + method + ".jpg", firstPhone, cookie, "photo");
    QCOMPARE(stored.status, 200);
    QCOMPARE(stored.body, "OK"_ba);
    QCOMPARE(VXFileContent::of(target() + u'/' + QString::fromLatin1(method) + u".qrul.jpg"_s),
             "photo"_ba);
}

void tst_VXLocalUploadService::requestsAreWrittenWithMethodAndUrl()
{
    RunningService service(target());
    ask(service, "PATCH /a%20b?x=%41&y=%2B");
    QCOMPARE(service.lines.constFirst(),
             u"PATCH request for http://10.77.0.1:%1/a b?x=A&y=%2B"_s.arg(service.port()));
}

// --- uploads

void tst_VXLocalUploadService::anUploadIsStoredAndToldInOrder()
{
    RunningService service(target());
    const QByteArray token = admit(service);
    const auto answer = ask(service, "POST /upload?file=IMG_0042.JPG", firstPhone,
                            {"Cookie: sid=" + token}, "the photo");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, "OK"_ba);
    QCOMPARE(answer.header("Content-Type"), "text/html"_ba);

    const QString path = target() + u"/IMG_0042.qrul.JPG"_s;
    QCOMPARE(VXFileContent::of(path), "the photo"_ba);
    QCOMPARE(
        service.events.first(4),
        QStringList({u"log POST request for http://10.77.0.1:%1/upload?file=IMG_0042.JPG"_s.arg(
                         service.port()),
                     u"ACTION:setTargetFolder VALUE:"_s + target(), u"file "_s + path,
                     u"ACTION:saveFile VALUE:"_s + path}));
    QCOMPARE(service.uploads.count(), 1);
    QCOMPARE(service.uploads.at(0).at(0).value<QFileInfo>().absoluteFilePath(), path);
}

void tst_VXLocalUploadService::theStoredNameIsSafe_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QString>("stored");

    QTest::newRow("usual") << "file=IMG_0042.JPG"_ba << u"IMG_0042.qrul.JPG"_s;
    QTest::newRow("two dots") << "file=a.tar.gz"_ba << u"a.tar.qrul.gz"_s;
    QTest::newRow("no suffix") << "file=photo"_ba << u"photo.qrul."_s;
    QTest::newRow("empty") << "file="_ba << u".qrul."_s;
    QTest::newRow("no value") << "file"_ba << u".qrul."_s;
    QTest::newRow("missing item") << "other=a.jpg"_ba << u".qrul."_s;
    QTest::newRow("missing query") << QByteArray() << u".qrul."_s;
    QTest::newRow("umlaut and blank") << "file=%C3%A4%20b.jpg"_ba << u"\u00e4 b.qrul.jpg"_s;
    QTest::newRow("emoji") << "file=%F0%9F%93%B7.jpg"_ba << u"\U0001f4f7.qrul.jpg"_s;
    QTest::newRow("decomposed stays") << "file=a%CC%88.jpg"_ba << u"a\u0308.qrul.jpg"_s;
    QTest::newRow("plus stays") << "file=a+b.jpg"_ba << u"a+b.qrul.jpg"_s;
    QTest::newRow("encoded plus") << "file=a%2Bb.jpg"_ba << u"a+b.qrul.jpg"_s;
    QTest::newRow("percent, encoded") << "file=100%2525.jpg"_ba << u"100%25.qrul.jpg"_s;
    QTest::newRow("place marker") << "file=%251.%252"_ba << u"%1.qrul.%2"_s;
    QTest::newRow("ampersand, encoded") << "file=a%26b.jpg"_ba << u"a&b.qrul.jpg"_s;
    QTest::newRow("further items") << "x=1&file=a.jpg&file=b.jpg"_ba << u"a.qrul.jpg"_s;
    QTest::newRow("path") << "file=a/b.jpg"_ba << u"b.qrul.jpg"_s;
    QTest::newRow("folder") << "file=dir/"_ba << u".qrul."_s;
    QTest::newRow("upwards") << "file=../../etc/passwd"_ba << u"passwd.qrul."_s;
    QTest::newRow("upwards, encoded") << "file=..%2F..%2Fx.jpg"_ba << u"x.qrul.jpg"_s;
    QTest::newRow("absolute") << "file=/etc/passwd"_ba << u"passwd.qrul."_s;
    QTest::newRow("dot") << "file=."_ba << u".qrul."_s;
    QTest::newRow("two dots only") << "file=.."_ba << u"..qrul."_s;
    QTest::newRow("three dots only") << "file=..."_ba << u"...qrul."_s;
    QTest::newRow("hidden") << "file=.hidden"_ba << u".qrul.hidden"_s;
    QTest::newRow("dot at the end") << "file=x."_ba << u"x.qrul."_s;
    QTest::newRow("two dots in front") << "file=..jpg"_ba << u"..qrul.jpg"_s;
    QTest::newRow("two dots inside") << "file=a..jpg"_ba << u"a..qrul.jpg"_s;
    QTest::newRow("resource") << "file=:foo.jpg"_ba << u":foo.qrul.jpg"_s;
    QTest::newRow("resource scheme") << "file=qrc:foo.jpg"_ba << u"qrc:foo.qrul.jpg"_s;
    QTest::newRow("drive") << "file=C:evil.jpg"_ba << u"C:evil.qrul.jpg"_s;
    QTest::newRow("search path") << "file=assets:index.html"_ba << u"assets:index.qrul.html"_s;
    QTest::newRow("backslash") << "file=foo%5Cbar.jpg"_ba << u"foo\\bar.qrul.jpg"_s;
    QTest::newRow("option") << "file=-rf.jpg"_ba << u"-rf.qrul.jpg"_s;
    QTest::newRow("home") << "file=~"_ba << u"~.qrul."_s;
    QTest::newRow("newline") << "file=a%0Ab.jpg"_ba << u"a\nb.qrul.jpg"_s;
    QTest::newRow("U+0000") << "file=b%00c.jpg"_ba << u"bc.qrul.jpg"_s;
    QTest::newRow("U+0000 at the end") << "file=b.jpg%00"_ba << u"b.qrul.jpg"_s;
    QTest::newRow("U+0000 before a slash") << "file=b%00/c.jpg"_ba << u"c.qrul.jpg"_s;
    QTest::newRow("249 bytes of name")
        << "file="_ba + QByteArray(245, 'n') + ".jpg" << QString(245, u'n') + u".qrul.jpg"_s;
}

void tst_VXLocalUploadService::theStoredNameIsSafe()
{
    QFETCH(QByteArray, item);
    QFETCH(QString, stored);

    // Where Qt would look for "assets:index.html", and what a cut name would replace.
    QDir::setSearchPaths(u"assets"_s, {myFolder->filePath(u"assets"_s)});
    VXFileContent::write(target() + u"/b"_s, "old");
    const QString folder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(myFolder->filePath(u"assets/css"_s)));

    RunningService service(target());
    const QByteArray token = admit(service);
    const auto answer =
        ask(service, "POST /upload?" + item, firstPhone, {"Cookie: sid=" + token}, "photo");
    QDir::setCurrent(folder);
    QDir::setSearchPaths(u"assets"_s, {});

    QCOMPARE(answer.status, 200);
    QCOMPARE(service.uploads.at(0).at(0).value<QFileInfo>().filePath(), target() + u'/' + stored);
    const QStringList names =
        QDir(target()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(QSet<QString>(names.begin(), names.end()), (QSet<QString>{u"b"_s, stored}));
    QCOMPARE(VXFileContent::of(target() + u'/' + stored), "photo"_ba);
    QCOMPARE(VXFileContent::of(target() + u"/b"_s), "old"_ba);
    QCOMPARE(QDir(myFolder->filePath(u"assets/css"_s)).entryList(QDir::Files),
             QStringList(u"site.css"_s));
    QCOMPARE(VXFileContent::of(myFolder->filePath(u"assets/index.html"_s)), "<h1>index</h1>"_ba);
}

void tst_VXLocalUploadService::aRefusedUploadStoresNothing()
{
    RunningService service(target());
    const auto answer = ask(service, "POST /upload?file=a.jpg", firstPhone, {}, "photo");
    QCOMPARE(answer.status, 403);
    QCOMPARE(answer.body, "403: Forbidden"_ba);
    QCOMPARE(answer.header("Content-Type"), "text/html"_ba);
    QCOMPARE(service.events,
             QStringList({u"log POST request for http://10.77.0.1:%1/upload?file=a.jpg"_s.arg(
                              service.port()),
                          u"log !!! 403: Forbidden"_s}));
    QVERIFY(!QFileInfo::exists(target()));
}

void tst_VXLocalUploadService::aSecondUploadReplacesTheFirst()
{
    RunningService service(target());
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "first and longer");
    ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "second");
    QCOMPARE(VXFileContent::of(target() + u"/a.qrul.jpg"_s), "second"_ba);
    QCOMPARE(service.uploads.count(), 2);
    // The folder was made once.
    QCOMPARE(service.actions.filter(u"setTargetFolder"_s).size(), 1);
}

void tst_VXLocalUploadService::anEmptyBodyMakesAnEmptyFile()
{
    RunningService service(target());
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    QCOMPARE(ask(service, "POST /upload?file=a.jpg", firstPhone, cookie).status, 200);
    const QFileInfo photo(target() + u"/a.qrul.jpg"_s);
    QVERIFY(photo.exists());
    QCOMPARE(photo.size(), 0);
}

void tst_VXLocalUploadService::aLargeBodyArrivesUnchanged()
{
    QByteArray photo(20'000'000, Qt::Uninitialized);
    for (qsizetype index = 0; index < photo.size(); ++index)
        photo[index] = static_cast<char>(index * 2654435761U >> 24);

    RunningService service(target());
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    QCOMPARE(ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, photo).status, 200);
    QVERIFY(VXFileContent::of(target() + u"/a.qrul.jpg"_s) == photo);
}

void tst_VXLocalUploadService::theFolderIsMadeWithItsParents()
{
    const QString deep = target() + u"/one/tw\u00f6 three"_s;
    RunningService service(deep);
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    QCOMPARE(ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "x").status, 200);
    QCOMPARE(service.actions, QStringList({u"ACTION:setTargetFolder VALUE:"_s + deep,
                                           u"ACTION:saveFile VALUE:"_s + deep + u"/a.qrul.jpg"_s}));
    QCOMPARE(VXFileContent::of(deep + u"/a.qrul.jpg"_s), "x"_ba);
}

void tst_VXLocalUploadService::aFolderThatCannotBeMadeIsAnsweredOk()
{
    VXFileContent::write(target(), "a file stands where the folder should");
    const QString folder = target() + u"/below"_s;
    RunningService service(folder);
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    const auto answer = ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "x");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, "OK"_ba);
    QCOMPARE(service.uploads.count(), 1);
    QVERIFY(!service.uploads.at(0).at(0).value<QFileInfo>().exists());
    QCOMPARE(service.actions,
             QStringList({u"ACTION:setTargetFolder VALUE:"_s + folder,
                          u"ACTION:saveFile VALUE:"_s + folder + u"/a.qrul.jpg"_s}));
}

void tst_VXLocalUploadService::aShortWriteLeavesTheOldFile()
{
    // A disk of 64 KB in the mount namespace of this test.
    QDir().mkpath(target());
    QCOMPARE(QProcess::execute(u"mount"_s,
                               {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=64k"_s, u"tmpfs"_s, target()}),
             0);
    {
        RunningService service(target());
        const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
        ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "old");
        const auto answer =
            ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, QByteArray(1'000'000, 'n'));
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.body, "OK"_ba);
        QCOMPARE(service.uploads.count(), 2);
    }
    const QByteArray kept = VXFileContent::of(target() + u"/a.qrul.jpg"_s);
    const QStringList names =
        QDir(target()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(QProcess::execute(u"umount"_s, {target()}), 0);
    QCOMPARE(kept, "old"_ba);
    QCOMPARE(names, QStringList(u"a.qrul.jpg"_s)); // nothing half-written is left either
}

void tst_VXLocalUploadService::aNameTooLongForTheDiskIsAnsweredOk()
{
    RunningService service(target());
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    const auto answer =
        ask(service, "POST /upload?file=" + QByteArray(300, 'n') + ".jpg", firstPhone, cookie, "x");
    QCOMPARE(answer.status, 200);
    QCOMPARE(service.uploads.count(), 1);
    QVERIFY(!service.uploads.at(0).at(0).value<QFileInfo>().exists());
    QCOMPARE(QDir(target()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void tst_VXLocalUploadService::bothHostNamesAreLoggedLater()
{
    RunningService service(target());
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    ask(service, "POST /upload?file=a.jpg", firstPhone, cookie, "x");
    // Nobody names these addresses here, so their names are the addresses.
    QTRY_VERIFY(service.lines.contains(u"  remote host 10.77.0.21"_s));
    QTRY_VERIFY(service.lines.contains(u"  local host 10.77.0.1"_s));
}

void tst_VXLocalUploadService::theLocalHostIsTheOneThatThePhoneCalled()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    RunningService service(target());
    const quint16 port = service.port();
    const QByteArrayList cookie{"Cookie: sid=" + admit(service)};
    service.nextConnection();
    QCOMPARE(service.url().host(), u"10.81.0.1"_s); // what the code shows now

    VXPlainHttpClient client(lan, port, firstPhone);
    QCOMPARE(client.ask("POST /upload?file=a.jpg", cookie, "x").status, 200);
    QTRY_COMPARE(service.lines.filter(u"  local host "_s),
                 QStringList(u"  local host 10.77.0.1"_s));
}

// --- target folder

void tst_VXLocalUploadService::theDefaultFolderIsSettledOnce()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QVERIFY(QDir().mkpath(pictures));
    Service service;
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    const QString folder = QDir(pictures).canonicalPath() + u"/Kopierte Fotos "_s + today;

    QCOMPARE(service.targetFolder(), folder);
    QCOMPARE(service.targetFolder(), folder);
    QCOMPARE(service.folders.count(), 1);
    QCOMPARE(service.folders.at(0).at(0).toString(), folder);
    QVERIFY(!QFileInfo::exists(folder)); // made when the first photo arrives
    QDir(pictures).removeRecursively();
}

void tst_VXLocalUploadService::withoutPicturesFolderTheAbsolutePathIsUsed()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QDir(pictures).removeRecursively();
    Service service;
    QCOMPARE(service.targetFolder(),
             pictures + u"/Kopierte Fotos "_s + QDate::currentDate().toString(Qt::ISODate));
    QVERIFY(QDir::isAbsolutePath(service.targetFolder()));
}

void tst_VXLocalUploadService::settingTheFolderIsAlwaysAnnounced()
{
    Service service;
    service.setTargetFolder(u"/somewhere"_s);
    service.setTargetFolder(u"/somewhere"_s);
    QCOMPARE(service.folders.count(), 2);
    QCOMPARE(service.targetFolder(), u"/somewhere"_s);
    QCOMPARE(service.actions, QStringList());
}

VX_TEST_MAIN(QCoreApplication, tst_VXLocalUploadService)
#include "tst_VXLocalUploadService.moc"
