#include <VXNetworking/VXNetworkSettings.h>

#include "VXFileSizeLimit.h"
#include "VXLogCapture.h"
#include "VXProbe.h"
#include "VXTestMain.h"

#include <VXNetworking/VXProxyFactory.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>
#include <QtCore/QSettings>
#include <QtCore/QUrl>

#include <array>
#include <atomic>
#include <limits>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

QNetworkProxyQuery serviceQuery()
{
    return QNetworkProxyQuery(QUrl(u"http://service.test/"_s));
}

/// Prints what the instance of this process read from the settings, one line each.
int printSettings()
{
    const VXNetworkSettings* settings = VXNetworkSettings::instance();
    VXProbe::print(settings->proxyChoice().encode());
    VXProbe::print(QString::number(settings->proxyType()));
    VXProbe::print(settings->proxyHostName());
    VXProbe::print(QString::number(settings->proxyPort()));
    VXProbe::print(settings->proxyUser());
    VXProbe::print(settings->proxyPassword());
    return 0;
}

/// Prints the warnings of loading.
int printWarnings()
{
    const VXLogCapture log;
    (void)VXNetworkSettings::instance();
    for (const QString& text : log.texts(QtWarningMsg))
        VXProbe::print(text);
    return 0;
}

int saveManualProxy()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceManual);
    settings->setProxyType(QNetworkProxy::Socks5Proxy);
    settings->setProxyHostName(u"pröxy.test"_s);
    settings->setProxyPort(1080);
    settings->setProxyUser(u"Jürgen; \"x\", %1"_s);
    settings->setProxyPassword(u"ge,heim\"%;\\\u20ac"_s);
    settings->saveSettings();
    return 0;
}

int changeWithoutSaving()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceManual);
    settings->setProxyHostName(u"unsaved.test"_s);
    return 0;
}

int saveDefaults()
{
    VXNetworkSettings::instance()->saveSettings();
    return 0;
}

/// Reads the settings while the disk has room for a file that loses an entry, but for none that
/// gets another.
int printWithoutRoom()
{
    const VXFileSizeLimit limit(QFileInfo(VXSettings::storeFile()).size() + 4096);
    return printSettings();
}

/// Prints the answer to a query while the system decides, and what Qt itself says.
int printSystemAnswer()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceSystem);
    const QList<QNetworkProxy> answer = settings->proxyForQuery(serviceQuery());
    VXProbe::print(answer == QNetworkProxyFactory::systemProxyForQuery(serviceQuery())
                       ? u"as Qt"_s
                       : u"not as Qt"_s);
    for (const QNetworkProxy& proxy : answer)
        VXProbe::print(settings->proxyAsString(proxy));
    return 0;
}

/// Prints whether making the instance installs the factory of the process.
int printInstalledFactory()
{
    QNetworkProxyFactory::setApplicationProxyFactory(nullptr);
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceManual);
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"proxy.test"_s);
    for (const QNetworkProxy& proxy : QNetworkProxyFactory::proxyForQuery(serviceQuery()))
        VXProbe::print(settings->proxyAsString(proxy));
    return 0;
}

QNetworkProxy proxyWithout(QNetworkProxy::ProxyType theType)
{
    QNetworkProxy proxy(theType, u"h"_s, 8080);
    proxy.setCapabilities({});
    return proxy;
}

} // namespace

class tst_VXNetworkSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void withoutSettingsThereIsNoProxy();
    void savedSettingsReachAnotherProcess();
    void theStoredEntryShowsNoPassword();
    void unsavedChangesAreGone();
    void savingUnchangedValuesWritesBothEntries();
    void damagedEntriesGiveTheDefaults_data();
    void damagedEntriesGiveTheDefaults();
    void aDamagedEntryIsReported();
    void anUnknownChoiceCountsAsNone();
    void oldKeysAreMigrated();
    void oldKeysAreGoneAfterTheMigration();
    void oldKeysStayUntilTheNewOnesAreStored();
    void oldCredentialsWithoutUseAuthAreDropped();
    void oldDefaultsAreHttpWithoutPort();
    void oldKeysThatSayTheSameStillWriteTheProxy();
    void oldKeysWithBadNumbersAreMigrated_data();
    void oldKeysWithBadNumbersAreMigrated();
    void otherSettingsSurviveTheMigration();
    void theFactoryIsInstalledByTheInstance();
    void theInstanceIsOneObject();
    void settersChangeOneThingEach();
    void portsOutsideTheRangeBecomeZero_data();
    void portsOutsideTheRangeBecomeZero();
    void noChoiceAnswersNoProxy();
    void anUndecodableChoiceAnswersNoProxy();
    void theManualChoiceAnswersTheStoredProxy();
    void theSystemChoiceAnswersTheWholeList();
    void proxiesAsText_data();
    void proxiesAsText();
    void typesAsText_data();
    void typesAsText();
    void capabilitiesAsText_data();
    void capabilitiesAsText();
    void threadsMayAskWhileTheSettingsChange();

private:
    static void writeStore(const QByteArray& theContent);
    static QStringList storedKeys();
    static QVariant stored(const QString& theKey);
};

// The store of this program's probes: the default place in the private home.
static QString storePath()
{
    return VXSettings::storeFile();
}

void tst_VXNetworkSettings::writeStore(const QByteArray& theContent)
{
    QVERIFY(QDir().mkpath(QFileInfo(storePath()).path()));
    QFile file(storePath());
    QVERIFY2(file.open(QFile::WriteOnly | QFile::Truncate), qPrintable(file.errorString()));
    QCOMPARE(file.write(theContent), theContent.size());
}

QStringList tst_VXNetworkSettings::storedKeys()
{
    QStringList keys = QSettings(storePath(), QSettings::IniFormat).allKeys();
    keys.sort();
    return keys;
}

QVariant tst_VXNetworkSettings::stored(const QString& theKey)
{
    return QSettings(storePath(), QSettings::IniFormat).value(theKey);
}

void tst_VXNetworkSettings::init()
{
    QFile::remove(storePath());
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceNone);
    settings->setProxyType(QNetworkProxy::NoProxy);
    settings->setProxyHostName(QString());
    settings->setProxyPort(0);
    settings->setProxyUser(QString());
    settings->setProxyPassword(QString());
}

void tst_VXNetworkSettings::withoutSettingsThereIsNoProxy()
{
    QCOMPARE(VXProbe::run(u"print"_s), (QStringList{u"no"_s, u"2"_s, u""_s, u"0"_s, u""_s, u""_s}));
    QVERIFY(!QFile::exists(storePath()));
}

void tst_VXNetworkSettings::savedSettingsReachAnotherProcess()
{
    QCOMPARE(VXProbe::run(u"save"_s), QStringList{u""_s});
    QCOMPARE(VXProbe::run(u"print"_s),
             (QStringList{u"my"_s, u"1"_s, u"pröxy.test"_s, u"1080"_s, u"Jürgen; \"x\", %1"_s,
                          u"ge,heim\"%;\\\u20ac"_s}));
    QCOMPARE(storedKeys(), (QStringList{u"Network/Proxy"_s, u"Network/ProxyChoice"_s}));
    QCOMPARE(stored(u"Network/ProxyChoice"_s).toString(), u"my"_s);
}

void tst_VXNetworkSettings::theStoredEntryShowsNoPassword()
{
    QCOMPARE(VXProbe::run(u"save"_s), QStringList{u""_s});
    const QString entry = stored(u"Network/Proxy"_s).toString();
    QVERIFY2(entry.contains(u"pröxy.test"_s), qPrintable(entry));
    QVERIFY2(!entry.contains(u"heim"_s), qPrintable(entry));
}

void tst_VXNetworkSettings::unsavedChangesAreGone()
{
    QCOMPARE(VXProbe::run(u"change"_s), QStringList{u""_s});
    QCOMPARE(VXProbe::run(u"print"_s).constFirst(), u"no"_s);
}

void tst_VXNetworkSettings::savingUnchangedValuesWritesBothEntries()
{
    QCOMPARE(VXProbe::run(u"saveDefaults"_s), QStringList{u""_s});
    QCOMPARE(storedKeys(), (QStringList{u"Network/Proxy"_s, u"Network/ProxyChoice"_s}));
    QCOMPARE(stored(u"Network/ProxyChoice"_s).toString(), u"no"_s);
}

void tst_VXNetworkSettings::damagedEntriesGiveTheDefaults_data()
{
    QTest::addColumn<QByteArray>("proxy");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("proxy.test:8080");
    QTest::newRow("cut off") << QByteArray(R"("{\"host\":\"h\",\"po")");
    QTest::newRow("bad type") << QByteArray(
        R"("{\"type\":99,\"host\":\"h\",\"port\":1,\"user\":\"\",\"password\":\"\"}")");
    QTest::newRow("bad port") << QByteArray(R"("{\"type\":3,\"host\":\"h\",\"port\":70000}")");
}

void tst_VXNetworkSettings::damagedEntriesGiveTheDefaults()
{
    QFETCH(QByteArray, proxy);
    writeStore("[Network]\nProxyChoice=my\nProxy=" + proxy + "\n");
    QCOMPARE(VXProbe::run(u"print"_s), (QStringList{u"my"_s, u"2"_s, u""_s, u"0"_s, u""_s, u""_s}));
}

void tst_VXNetworkSettings::aDamagedEntryIsReported()
{
    writeStore("[Network]\nProxyChoice=my\nProxy=proxy.test:8080\n");
    QCOMPARE(VXProbe::run(u"warnings"_s),
             QStringList{u"the entry Network/Proxy of %1 cannot be read"_s.arg(storePath())});
}

void tst_VXNetworkSettings::anUnknownChoiceCountsAsNone()
{
    writeStore("[Network]\nProxyChoice=perhaps\n");
    QCOMPARE(VXProbe::run(u"print"_s).constFirst(), u"no"_s);
}

namespace {

constexpr auto oldSettings = "[General]\n"
                             "HttpProxyChoice=my\n"
                             "HttpProxy=proxy.test\n"
                             "HttpProxyPort=3128\n"
                             "HttpProxyType=4\n"
                             "HttpProxyUseAuth=true\n"
                             "HttpProxyLogin=hans\n"
                             "HttpProxyPwd=pu21U2V4jTE=\n";

} // namespace

void tst_VXNetworkSettings::oldKeysAreMigrated()
{
    // The deployment names the key that older versions enciphered the password with.
    QFile deployment(QFileInfo(storePath()).path() + u"/deployment.ini"_s);
    QVERIFY(QDir().mkpath(QFileInfo(storePath()).path()));
    QVERIFY(deployment.open(QFile::WriteOnly));
    deployment.write("[Crypto]\nlegacyDesKey=0123456789abcdef\n");
    deployment.close();
    qputenv("VX_DEPLOYMENT_CONFIG", deployment.fileName().toLocal8Bit());
    const auto restore = qScopeGuard([] { qunsetenv("VX_DEPLOYMENT_CONFIG"); });

    const QStringList migrated{u"my"_s, u"4"_s, u"proxy.test"_s, u"3128"_s, u"hans"_s, u"geheim"_s};
    writeStore(oldSettings);
    QCOMPARE(VXProbe::run(u"print"_s), migrated);
    QCOMPARE(VXProbe::run(u"print"_s), migrated); // now from the new entries
}

void tst_VXNetworkSettings::oldKeysAreGoneAfterTheMigration()
{
    writeStore(oldSettings);
    QCOMPARE(VXProbe::run(u"print"_s).constFirst(), u"my"_s);
    QCOMPARE(storedKeys(), (QStringList{u"Network/Proxy"_s, u"Network/ProxyChoice"_s}));
    QCOMPARE(stored(u"Network/ProxyChoice"_s).toString(), u"my"_s);
    QVERIFY(stored(u"Network/Proxy"_s).toString().contains(u"proxy.test"_s));
}

void tst_VXNetworkSettings::oldKeysStayUntilTheNewOnesAreStored()
{
    writeStore(oldSettings);
    QCOMPARE(VXProbe::run(u"printWithoutRoom"_s).value(2), u"proxy.test"_s);
    QCOMPARE(storedKeys().size(), 7);
    QCOMPARE(VXProbe::run(u"print"_s).value(2), u"proxy.test"_s);
    QCOMPARE(storedKeys(), (QStringList{u"Network/Proxy"_s, u"Network/ProxyChoice"_s}));
}

void tst_VXNetworkSettings::oldCredentialsWithoutUseAuthAreDropped()
{
    writeStore(QByteArray(oldSettings).replace("UseAuth=true", "UseAuth=false"));
    QCOMPARE(VXProbe::run(u"print"_s),
             (QStringList{u"my"_s, u"4"_s, u"proxy.test"_s, u"3128"_s, u""_s, u""_s}));
}

void tst_VXNetworkSettings::oldDefaultsAreHttpWithoutPort()
{
    writeStore("[General]\nHttpProxyChoice=sys\nHttpProxy=proxy.test\nHttpProxyLogin=hans\n");
    QCOMPARE(VXProbe::run(u"print"_s),
             (QStringList{u"sys"_s, u"3"_s, u"proxy.test"_s, u"0"_s, u""_s, u""_s}));
}

void tst_VXNetworkSettings::oldKeysThatSayTheSameStillWriteTheProxy()
{
    writeStore("[General]\nHttpProxyChoice=no\nHttpProxyType=2\n");
    QCOMPARE(VXProbe::run(u"print"_s), (QStringList{u"no"_s, u"2"_s, u""_s, u"0"_s, u""_s, u""_s}));
    QCOMPARE(storedKeys(), (QStringList{u"Network/Proxy"_s, u"Network/ProxyChoice"_s}));
}

void tst_VXNetworkSettings::oldKeysWithBadNumbersAreMigrated_data()
{
    QTest::addColumn<QByteArray>("port");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("storedPort");
    QTest::addColumn<QString>("storedType");

    QTest::newRow("words") << QByteArray("many") << QByteArray("good") << u"0"_s << u"0"_s;
    QTest::newRow("too large") << QByteArray("70000") << QByteArray("9") << u"0"_s << u"3"_s;
    QTest::newRow("negative") << QByteArray("-1") << QByteArray("-1") << u"0"_s << u"3"_s;
}

void tst_VXNetworkSettings::oldKeysWithBadNumbersAreMigrated()
{
    QFETCH(QByteArray, port);
    QFETCH(QByteArray, type);
    QFETCH(QString, storedPort);
    QFETCH(QString, storedType);

    writeStore(QByteArray(oldSettings)
                   .replace("Port=3128", "Port=" + port)
                   .replace("Type=4", "Type=" + type)
                   .replace("UseAuth=true", "UseAuth=0"));
    QCOMPARE(VXProbe::run(u"print"_s),
             (QStringList{u"my"_s, storedType, u"proxy.test"_s, storedPort, u""_s, u""_s}));
}

void tst_VXNetworkSettings::otherSettingsSurviveTheMigration()
{
    writeStore(oldSettings + QByteArray("Window=wide\n[Network]\nOther=1\n"));
    QCOMPARE(VXProbe::run(u"print"_s).constFirst(), u"my"_s);
    QCOMPARE(storedKeys(), (QStringList{u"Network/Other"_s, u"Network/Proxy"_s,
                                        u"Network/ProxyChoice"_s, u"Window"_s}));
    QCOMPARE(stored(u"Window"_s).toString(), u"wide"_s);
}

void tst_VXNetworkSettings::theFactoryIsInstalledByTheInstance()
{
    QCOMPARE(VXProbe::run(u"factory"_s),
             QStringList{u":[NO PWD]@proxy.test:0 (HTTP Proxy) (Tunneling capability ,Caching "
                         u"capability ,Hostname lookup capability)"_s});
}

void tst_VXNetworkSettings::theInstanceIsOneObject()
{
    QCOMPARE(VXNetworkSettings::instance(), VXSingleton<VXNetworkSettings>::instance());
    // The factory lives in the library: it answers with what was set on the instance of this
    // program only when both reach the same object.
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyChoice(ProxyChoiceManual);
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"one.test"_s);
    QCOMPARE(VXProxyFactory().queryProxy(serviceQuery()).constFirst().hostName(), u"one.test"_s);
}

void tst_VXNetworkSettings::settersChangeOneThingEach()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"proxy.test"_s);
    settings->setProxyPort(65535);
    settings->setProxyUser(u"hans"_s);
    settings->setProxyPassword(u"geheim"_s);
    settings->setProxyChoice(ProxyChoiceSystem);

    QCOMPARE(settings->proxyType(), QNetworkProxy::HttpProxy);
    QCOMPARE(settings->proxyHostName(), u"proxy.test"_s);
    QCOMPARE(settings->proxyPort(), 65535);
    QCOMPARE(settings->proxyUser(), u"hans"_s);
    QCOMPARE(settings->proxyPassword(), u"geheim"_s);
    QVERIFY(settings->proxyChoice() == ProxyChoiceSystem);
    QVERIFY(settings->proxy() == QNetworkProxy(QNetworkProxy::HttpProxy, u"proxy.test"_s, 65535,
                                               u"hans"_s, u"geheim"_s));
}

void tst_VXNetworkSettings::portsOutsideTheRangeBecomeZero_data()
{
    QTest::addColumn<int>("port");
    for (const int port : {-1, 65536, 70000, std::numeric_limits<int>::max()})
        QTest::addRow("%d", port) << port;
}

void tst_VXNetworkSettings::portsOutsideTheRangeBecomeZero()
{
    QFETCH(int, port);
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyPort(8080);
    const VXLogCapture log;
    settings->setProxyPort(port);
    QCOMPARE(settings->proxyPort(), 0);
    QCOMPARE(log.texts(QtWarningMsg).size(), 1);
    QVERIFY(log.texts(QtWarningMsg).constFirst().contains(QString::number(port)));
}

void tst_VXNetworkSettings::noChoiceAnswersNoProxy()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"proxy.test"_s);
    QCOMPARE(settings->proxyForQuery(serviceQuery()),
             QList<QNetworkProxy>{QNetworkProxy(QNetworkProxy::NoProxy)});
}

void tst_VXNetworkSettings::anUndecodableChoiceAnswersNoProxy()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyHostName(u"proxy.test"_s);
    settings->setProxyChoice(static_cast<VXProxyChoiceEnum>(7));
    QCOMPARE(settings->proxyForQuery(serviceQuery()),
             QList<QNetworkProxy>{QNetworkProxy(QNetworkProxy::NoProxy)});
}

void tst_VXNetworkSettings::theManualChoiceAnswersTheStoredProxy()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyType(QNetworkProxy::Socks5Proxy);
    settings->setProxyHostName(u"proxy.test"_s);
    settings->setProxyPort(1080);
    settings->setProxyUser(u"hans"_s);
    settings->setProxyPassword(u"geheim"_s);
    settings->setProxyChoice(ProxyChoiceManual);
    const QList<QNetworkProxy> answer = settings->proxyForQuery(serviceQuery());
    QCOMPARE(answer, QList<QNetworkProxy>{QNetworkProxy(QNetworkProxy::Socks5Proxy, u"proxy.test"_s,
                                                        1080, u"hans"_s, u"geheim"_s)});
}

void tst_VXNetworkSettings::theSystemChoiceAnswersTheWholeList()
{
    qputenv("http_proxy", "http://u:p@127.0.0.1:3128");
    const auto restore = qScopeGuard([] { qunsetenv("http_proxy"); });
    QCOMPARE(VXProbe::run(u"system"_s),
             (QStringList{u"as Qt"_s,
                          u"u:[PWD]@127.0.0.1:3128 (HTTP Proxy) (Tunneling capability ,Caching "
                          u"capability ,Hostname lookup capability)"_s,
                          u"No Proxy"_s}));
}

void tst_VXNetworkSettings::proxiesAsText_data()
{
    QTest::addColumn<QNetworkProxy>("proxy");
    QTest::addColumn<QString>("text");

    QNetworkProxy login = proxyWithout(QNetworkProxy::HttpProxy);
    login.setUser(u"u"_s);
    login.setPassword(u"secret"_s);
    QTest::newRow("user and password") << login << u"u:[PWD]@h:8080 (HTTP Proxy) ()"_s;
    QNetworkProxy userOnly = proxyWithout(QNetworkProxy::HttpProxy);
    userOnly.setUser(u"u"_s);
    QTest::newRow("user only") << userOnly << u"u:[NO PWD]@h:8080 (HTTP Proxy) ()"_s;
    QTest::newRow("no credentials")
        << proxyWithout(QNetworkProxy::Socks5Proxy) << u":[NO PWD]@h:8080 (Socks 5 Proxy) ()"_s;
    QTest::newRow("no proxy") << QNetworkProxy(QNetworkProxy::NoProxy, u"h"_s, 1, u"u"_s, u"p"_s)
                              << u"No Proxy"_s;
    QTest::newRow("default") << QNetworkProxy(QNetworkProxy::DefaultProxy)
                             << u":[NO PWD]@:0 (Default Proxy) (Tunneling capability ,Listening "
                                u"capability ,UDP Tunneling capability)"_s;
    QTest::newRow("capabilities")
        << QNetworkProxy(QNetworkProxy::HttpCachingProxy, u"h"_s, 1)
        << u":[NO PWD]@h:1 (HTTP Caching Proxy) (Caching capability ,Hostname lookup capability)"_s;
    QNetworkProxy markers = proxyWithout(QNetworkProxy::HttpProxy);
    markers.setUser(u"u%3%4"_s);
    markers.setHostName(u"h%1%3"_s);
    QTest::newRow("place markers") << markers << u"u%3%4:[NO PWD]@h%1%3:8080 (HTTP Proxy) ()"_s;
}

void tst_VXNetworkSettings::proxiesAsText()
{
    QFETCH(QNetworkProxy, proxy);
    QFETCH(QString, text);
    const QString actual = VXNetworkSettings::instance()->proxyAsString(proxy);
    QVERIFY(!actual.contains(u"secret"_s));
    QCOMPARE(actual, text);
}

void tst_VXNetworkSettings::typesAsText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    QTest::newRow("default") << 0 << u"Default Proxy"_s;
    QTest::newRow("socks") << 1 << u"Socks 5 Proxy"_s;
    QTest::newRow("none") << 2 << u"No Proxy"_s;
    QTest::newRow("http") << 3 << u"HTTP Proxy"_s;
    QTest::newRow("http caching") << 4 << u"HTTP Caching Proxy"_s;
    QTest::newRow("ftp caching") << 5 << u"FTP Caching Proxy"_s;
    QTest::newRow("beyond") << 6 << u"Unknown Proxy Type"_s;
}

void tst_VXNetworkSettings::typesAsText()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QCOMPARE(VXNetworkSettings::instance()->describeProxyType(
                 static_cast<QNetworkProxy::ProxyType>(type)),
             text);
}

void tst_VXNetworkSettings::capabilitiesAsText_data()
{
    QTest::addColumn<int>("capabilities");
    QTest::addColumn<QStringList>("texts");

    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("1") << 1 << QStringList{u"Tunneling capability"_s};
    QTest::newRow("2") << 2 << QStringList{u"Listening capability"_s};
    QTest::newRow("4") << 4 << QStringList{u"UDP Tunneling capability"_s};
    QTest::newRow("8") << 8 << QStringList{u"Caching capability"_s};
    QTest::newRow("16") << 16 << QStringList{u"Hostname lookup capability"_s};
    QTest::newRow("others") << 96 << QStringList();
    QTest::newRow("all") << 127
                         << QStringList{u"Tunneling capability"_s, u"Listening capability"_s,
                                        u"UDP Tunneling capability"_s, u"Caching capability"_s,
                                        u"Hostname lookup capability"_s};
}

void tst_VXNetworkSettings::capabilitiesAsText()
{
    QFETCH(int, capabilities);
    QFETCH(QStringList, texts);
    QNetworkProxy proxy(QNetworkProxy::HttpProxy);
    proxy.setCapabilities(QNetworkProxy::Capabilities(capabilities));
    QCOMPARE(VXNetworkSettings::instance()->describeProxyCapabilities(proxy), texts);
}

void tst_VXNetworkSettings::threadsMayAskWhileTheSettingsChange()
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"first.test"_s);
    settings->setProxyChoice(ProxyChoiceManual);
    std::atomic<bool> isDone = false;
    std::atomic<int> wrongAnswers = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([settings, &isDone, &wrongAnswers] {
            while (!isDone) {
                const QList<QNetworkProxy> answer = settings->proxyForQuery(serviceQuery());
                const QString host = answer.constFirst().hostName();
                if (answer.size() != 1 || (host != u"first.test"_s && host != u"second.test"_s))
                    ++wrongAnswers;
            }
        });
    }
    for (int i = 0; i < 2000; ++i)
        settings->setProxyHostName(i % 2 == 0 ? u"second.test"_s : u"first.test"_s);
    isDone = true;
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(wrongAnswers.load(), 0);
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_VXNetworkSettings, {u"change"_s, &changeWithoutSaving},
                   {u"factory"_s, &printInstalledFactory}, {u"print"_s, &printSettings},
                   {u"printWithoutRoom"_s, &printWithoutRoom}, {u"save"_s, &saveManualProxy},
                   {u"saveDefaults"_s, &saveDefaults}, {u"system"_s, &printSystemAnswer},
                   {u"warnings"_s, &printWarnings})

#include "tst_VXNetworkSettings.moc"
