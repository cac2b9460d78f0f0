#include <VXCore/VXDeploymentConfig.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

VXDeploymentConfig::Entry entryOf(const VXDeploymentConfig& theConfig, const QString& theKey)
{
    for (const VXDeploymentConfig::Entry& entry : theConfig.entries()) {
        if (entry.key == theKey)
            return entry;
    }
    return {};
}

/// The cells of each row of docs/deployment.md that begins with a key, without backticks.
QList<QStringList> documentedKeys()
{
    QFile page(QStringLiteral(VX_SOURCE_DIR) + u"/docs/deployment.md"_s);
    QList<QStringList> rows;
    if (!page.open(QFile::ReadOnly))
        return rows;
    const QStringList lines = QString::fromUtf8(page.readAll()).split(u'\n');
    for (const QString& line : lines) {
        QStringList cells = line.split(" | "_L1);
        if (!line.startsWith("| `"_L1))
            continue;
        cells[0] = cells[0].sliced(2);
        for (QString& cell : cells)
            cell = cell.trimmed();
        cells[0] = cells[0].mid(1, cells[0].size() - 2);
        rows << cells;
    }
    return rows;
}

/// The text between backticks when that is all there is; else null.
QString literal(const QString& theCell)
{
    const bool isLiteral = theCell.size() > 2 && theCell.startsWith(u'`') &&
                           theCell.count(u'`') == 2 && theCell.endsWith(u'`');
    return isLiteral ? theCell.mid(1, theCell.size() - 2) : QString();
}

} // namespace

class tst_VXDeploymentConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void builtInValues_data();
    void builtInValues();
    void computedValuesFollowTheOthers();
    void fileWinsOverBuiltIn();
    void laterLayersWin();
    void fileOfTheConfigurationFolderIsFound();
    void fileOfTheVariableIsRead();
    void missingFileOfTheVariableIsReported();
    void relativePathsAreThoseOfTheFile();
    void programWithoutSlashIsLeftToThePath();
    void unknownKeyGivesOneWarning_data();
    void unknownKeyGivesOneWarning();
    void badValueGivesOneWarningAndKeepsTheOther_data();
    void badValueGivesOneWarningAndKeepsTheOther();
    void badSetterIsRefused();
    void unquotedCommasAreKept();
    void listsKeepCommasInQuotedItems();
    void sessionsOfTheCloudAreOpenKeys();
    void documentListsEveryKey();
    void documentedDefaultsAreThoseInForce();
    void documentedExamplesAreUsable();
    void everyEntryHasItsOrigin();
    void secretsAreNotShown();
    void unreadableFileIsReported_data();
    void unreadableFileIsReported();
    void garbageLinesDoNotHideTheRest();
    void filesAreNeverWritten();
    void readersAndSettersMayWorkAtOnce();

private:
    QString write(const QString& theName, const QByteArray& theContent) const;

    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXDeploymentConfig::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
}

void tst_VXDeploymentConfig::cleanup()
{
    qunsetenv("VX_DEPLOYMENT_CONFIG");
    QDir(qEnvironmentVariable("XDG_CONFIG_HOME") + "/VXNetworking"_L1).removeRecursively();
}

QString tst_VXDeploymentConfig::write(const QString& theName, const QByteArray& theContent) const
{
    const QString path = QDir(myFolder->path()).absoluteFilePath(theName);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(theContent) != theContent.size())
        return {};
    return path;
}

void tst_VXDeploymentConfig::builtInValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    const QString data = VXDeploymentConfig::dataFolder();
    const auto row = [](const char* theKey, const QString& theValue) {
        QTest::newRow(theKey) << QString::fromLatin1(theKey) << theValue;
    };
    row("Program/id", u"1"_s);
    row("Program/name", u"vx-sample"_s);
    row("Program/organization", u"VX"_s);
    row("Program/displayName", u"VX Sample"_s);
    row("Program/version", u"0.1.0"_s);
    row("Program/masterMode", u"false"_s);
    row("Hosts/mapTileHostFragment", QString());
    row("Hosts/analyticsHostFragment", QString());
    row("Hosts/downloadServerUrl", QString());
    row("Platform/platformCertificatesOnly", u"false"_s);
    row("Platform/forceHttps", u"false"_s);
    row("Platform/allowHttp2", u"false"_s);
    row("Platform/urlOpener", QString());
    row("Platform/wifiNames", QString());
    row("Resources/caBundle", data + u"/assets/ca-bundle.pem"_s);
    row("Assets/oAuthSupport", data + u"/assets/oauth"_s);
    row("Assets/qrUpload", data + u"/assets/qrupload"_s);
    row("Assets/startScreen", data + u"/assets/startscreen/html"_s);
    row("Assets/html", data + u"/assets/html"_s);
    row("Assets/bookProposals", data + u"/assets/bookproposals"_s);
    row("Assets/icons", data + u"/assets/icons"_s);
    row("Assets/skin", data + u"/assets/skin.qss"_s);
    row("KeyAccount/generic", u"true"_s);
    row("KeyAccount/name", QString());
    row("KeyAccount/logo", QString());
    row("KeyAccount/text1", u"VX Sample"_s);
    row("Crypto/legacyDesKey", QString());
    row("Log/maskedNames", QString());
    row("Gui/skinMode", u"auto"_s);
    row("Gui/animations", u"true"_s);
    row("Paths/settingsFile",
        qEnvironmentVariable("XDG_CONFIG_HOME") + u"/tst_VXDeploymentConfig/settings.ini"_s);
    row("Crypto/keyFile",
        qEnvironmentVariable("XDG_CONFIG_HOME") + u"/tst_VXDeploymentConfig/crypto.key"_s);
    row("Paths/logFolder",
        qEnvironmentVariable("XDG_DATA_HOME") + u"/tst_VXDeploymentConfig/log"_s);
}

void tst_VXDeploymentConfig::builtInValues()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    const VXDeploymentConfig config;
    QCOMPARE(config.text(key), value);
    QCOMPARE(entryOf(config, key).origin, u"built-in"_s);
}

void tst_VXDeploymentConfig::computedValuesFollowTheOthers()
{
    VXDeploymentConfig config;
    QVERIFY(config.setValue(u"Program/displayName"_s, u"Fotowelt"_s));
    QVERIFY(config.setValue(u"Paths/settingsFile"_s, u"/some/where/s.ini"_s));
    QCOMPARE(config.text(u"KeyAccount/text1"_s), u"Fotowelt"_s);
    QCOMPARE(config.text(u"Crypto/keyFile"_s), u"/some/where/crypto.key"_s);
}

void tst_VXDeploymentConfig::fileWinsOverBuiltIn()
{
    VXDeploymentConfig config;
    QVERIFY(
        config.readFile(write(u"d.ini"_s, "[Program]\nid=8\ndisplayName=Grüße\nmasterMode=1\n"
                                          "[Hosts]\ndownloadServerUrl=https://h.example/x?a=1\n")));
    QCOMPARE(config.number(u"Program/id"_s), 8);
    QCOMPARE(config.text(u"Program/displayName"_s), u"Grüße"_s);
    QVERIFY(config.isEnabled(u"Program/masterMode"_s));
    QCOMPARE(config.url(u"Hosts/downloadServerUrl"_s), QUrl(u"https://h.example/x?a=1"_s));
    QCOMPARE(config.text(u"Program/name"_s), u"vx-sample"_s);
}

void tst_VXDeploymentConfig::laterLayersWin()
{
    qputenv("VX_DEPLOYMENT_CONFIG",
            write(u"1.ini"_s, "[Program]\nid=1001\nname=one\norganization=one\n").toLocal8Bit());
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"2.ini"_s, "[Program]\nid=1002\nname=two\n")));
    QVERIFY(config.setValue(u"Program/id"_s, u"1003"_s));
    QVERIFY(config.readFile(write(u"3.ini"_s, "[Program]\nname=three\n")));
    QCOMPARE(config.text(u"Program/organization"_s), u"one"_s);
    QCOMPARE(config.text(u"Program/name"_s), u"three"_s);
    QCOMPARE(config.number(u"Program/id"_s), 1003);

    QVERIFY(config.readFile(write(u"4.ini"_s, "[Program]\nid=1004\n")));
    QCOMPARE(config.number(u"Program/id"_s),
             1003); // a setter is the strongest, also over later files
}

void tst_VXDeploymentConfig::fileOfTheConfigurationFolderIsFound()
{
    const QString file =
        write(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/VXNetworking/deployment.ini"_s,
              "[Program]\nid=77\n");
    const VXDeploymentConfig config;
    QCOMPARE(config.number(u"Program/id"_s), 77);
    QCOMPARE(entryOf(config, u"Program/id"_s).origin, file);
}

void tst_VXDeploymentConfig::fileOfTheVariableIsRead()
{
    const QString file = write(u"d.ini"_s, "[Program]\nid=78\n");
    qputenv("VX_DEPLOYMENT_CONFIG", file.toLocal8Bit());
    const VXDeploymentConfig config;
    QCOMPARE(entryOf(config, u"Program/id"_s).value, u"78"_s);
    QCOMPARE(entryOf(config, u"Program/id"_s).origin, file);
}

void tst_VXDeploymentConfig::missingFileOfTheVariableIsReported()
{
    qputenv("VX_DEPLOYMENT_CONFIG", "/nowhere/d.ini");
    QTest::ignoreMessage(QtWarningMsg, "/nowhere/d.ini: the deployment file cannot be read");
    const VXDeploymentConfig config;
    QCOMPARE(config.number(u"Program/id"_s), 1);
}

void tst_VXDeploymentConfig::relativePathsAreThoseOfTheFile()
{
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"sub/d.ini"_s, "[Assets]\nqrUpload=../page/\nhtml=/abs/html\n"
                                                  "[Platform]\nurlOpener=./open.sh\n")));
    QCOMPARE(config.text(u"Assets/qrUpload"_s), myFolder->filePath(u"page"_s));
    QCOMPARE(config.text(u"Assets/html"_s), u"/abs/html"_s);
    QCOMPARE(config.text(u"Platform/urlOpener"_s), myFolder->filePath(u"sub/open.sh"_s));
}

void tst_VXDeploymentConfig::programWithoutSlashIsLeftToThePath()
{
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"d.ini"_s, "[Platform]\nurlOpener=firefox\n")));
    QCOMPARE(config.text(u"Platform/urlOpener"_s), u"firefox"_s);
}

void tst_VXDeploymentConfig::unknownKeyGivesOneWarning_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("unknown name") << u"Program/colour"_s << QByteArray("[Program]\ncolour=red\n");
    QTest::newRow("other case") << u"program/id"_s << QByteArray("[program]\nid=8\n");
    QTest::newRow("without section") << u"id"_s << QByteArray("id=8\n");
    QTest::newRow("session without name")
        << u"Cloud/tokenUrl"_s << QByteArray("[Cloud]\ntokenUrl=https://h/\n");
    QTest::newRow("unknown name of a session")
        << u"Cloud/a/colour"_s << QByteArray("[Cloud]\na/colour=red\n");
}

void tst_VXDeploymentConfig::unknownKeyGivesOneWarning()
{
    QFETCH(QString, key);
    QFETCH(QByteArray, content);
    const QString file = write(u"d.ini"_s, content);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(file + u": unknown key \""_s + key + u'"'));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    VXDeploymentConfig config;
    QVERIFY(config.readFile(file));
    QCOMPARE(config.text(key), QString());
    QCOMPARE(config.number(u"Program/id"_s), 1);
}

void tst_VXDeploymentConfig::badValueGivesOneWarningAndKeepsTheOther_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("good");
    QTest::addColumn<QString>("bad");

    QTest::newRow("number") << u"Program/id"_s << u"8"_s << u"eight"_s;
    QTest::newRow("number too large") << u"Program/id"_s << u"8"_s << u"99999999999"_s;
    QTest::newRow("empty number") << u"Program/id"_s << u"8"_s << u""_s;
    QTest::newRow("truth") << u"Platform/forceHttps"_s << u"true"_s << u"perhaps"_s;
    QTest::newRow("address") << u"Hosts/downloadServerUrl"_s << u"https://h/"_s << u"h x/y"_s;
    QTest::newRow("relative address")
        << u"Hosts/downloadServerUrl"_s << u"https://h/"_s << u"h/y"_s;
    QTest::newRow("skin") << u"Gui/skinMode"_s << u"dark"_s << u"pink"_s;
    QTest::newRow("short key") << u"Crypto/legacyDesKey"_s << u"0123456789abcdef"_s << u"0123"_s;
    QTest::newRow("key with other letters")
        << u"Crypto/legacyDesKey"_s << u"0123456789abcdef"_s << u"0123456789abcdeg"_s;
}

void tst_VXDeploymentConfig::badValueGivesOneWarningAndKeepsTheOther()
{
    QFETCH(QString, key);
    QFETCH(QString, good);
    QFETCH(QString, bad);
    const auto content = [&key](const QString& theValue) {
        const qsizetype slash = key.indexOf(u'/');
        return u"[%1]\n%2=\"%3\"\n"_s.arg(key.first(slash), key.sliced(slash + 1), theValue)
            .toUtf8();
    };
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"good.ini"_s, content(good))));
    const QString file = write(u"bad.ini"_s, content(bad));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(file + u": unusable value of \""_s + key + u'"'));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(config.readFile(file));
    QCOMPARE(config.text(key), good);
}

void tst_VXDeploymentConfig::badSetterIsRefused()
{
    VXDeploymentConfig config;
    QTest::ignoreMessage(QtWarningMsg, "setter: unusable value of \"Program/id\"");
    QVERIFY(!config.setValue(u"Program/id"_s, u"x"_s));
    QTest::ignoreMessage(QtWarningMsg, "setter: unknown key \"Program/x\"");
    QVERIFY(!config.setValue(u"Program/x"_s, u"x"_s));
    QCOMPARE(config.number(u"Program/id"_s), 1);
}

void tst_VXDeploymentConfig::unquotedCommasAreKept()
{
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"d.ini"_s, "[Program]\ndisplayName=Fotos, Bücher\n"
                                              "[Hosts]\ndownloadServerUrl=https://h/a,b\n")));
    QCOMPARE(config.text(u"Program/displayName"_s), u"Fotos, Bücher"_s);
    QCOMPARE(config.url(u"Hosts/downloadServerUrl"_s), QUrl(u"https://h/a,b"_s));
}

void tst_VXDeploymentConfig::listsKeepCommasInQuotedItems()
{
    VXDeploymentConfig config;
    QCOMPARE(config.list(u"Platform/wifiNames"_s), QStringList());
    QVERIFY(config.readFile(
        write(u"d.ini"_s, "[Platform]\nwifiNames=\"wlan0=Heim, oben\", wlan1=Gast\n")));
    QCOMPARE(config.list(u"Platform/wifiNames"_s),
             QStringList({u"wlan0=Heim, oben"_s, u"wlan1=Gast"_s}));
}

void tst_VXDeploymentConfig::sessionsOfTheCloudAreOpenKeys()
{
    VXDeploymentConfig config;
    QVERIFY(config.readFile(write(u"d.ini"_s, "[Cloud]\nfotos/tokenUrl=https://h/t\n"
                                              "fotos/clientId=abc\n")));
    QCOMPARE(config.url(u"Cloud/fotos/tokenUrl"_s), QUrl(u"https://h/t"_s));
    QCOMPARE(entryOf(config, u"Cloud/fotos/clientId"_s).value, u"abc"_s);
    QCOMPARE(config.text(u"Cloud/other/clientId"_s), QString());
}

void tst_VXDeploymentConfig::everyEntryHasItsOrigin()
{
    VXDeploymentConfig config;
    const QString file = write(u"d.ini"_s, "[Program]\nid=8\n");
    QVERIFY(config.readFile(file));
    QVERIFY(config.setValue(u"Gui/skinMode"_s, u"dark"_s));
    QCOMPARE(entryOf(config, u"Program/id"_s).origin, file);
    QCOMPARE(entryOf(config, u"Gui/skinMode"_s).origin, u"setter"_s);
    QCOMPARE(entryOf(config, u"Program/name"_s).origin, u"built-in"_s);
    const QList<VXDeploymentConfig::Entry> entries = config.entries();
    QVERIFY(std::ranges::is_sorted(entries, {}, &VXDeploymentConfig::Entry::key));
}

void tst_VXDeploymentConfig::secretsAreNotShown()
{
    VXDeploymentConfig config;
    QCOMPARE(entryOf(config, u"Crypto/legacyDesKey"_s).value, QString());
    QVERIFY(config.setValue(u"Crypto/legacyDesKey"_s, u"0123456789abcdef"_s));
    QVERIFY(config.setValue(u"Cloud/a/clientSecret"_s, u"geheim"_s));
    QCOMPARE(entryOf(config, u"Crypto/legacyDesKey"_s).value, u"***"_s);
    QCOMPARE(entryOf(config, u"Cloud/a/clientSecret"_s).value, u"***"_s);
    QCOMPARE(config.text(u"Cloud/a/clientSecret"_s), u"geheim"_s);
}

void tst_VXDeploymentConfig::unreadableFileIsReported_data()
{
    QTest::addColumn<QString>("file");

    QTest::newRow("missing") << u"/nowhere/d.ini"_s;
    QTest::newRow("folder") << u"/"_s;
    QTest::newRow("device") << u"/dev/zero"_s;
}

void tst_VXDeploymentConfig::unreadableFileIsReported()
{
    QFETCH(QString, file);
    VXDeploymentConfig config;
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(file + u": the deployment file cannot be read"_s));
    QVERIFY(!config.readFile(file));
}

void tst_VXDeploymentConfig::garbageLinesDoNotHideTheRest()
{
    const QString file =
        write(u"d.ini"_s, "\xff\xfe garbage\n[Program]\nno value\nid=8\n[[\n=\n%zz\n");
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(file + u": a line is neither a section nor a value"_s));
    VXDeploymentConfig config;
    QVERIFY(!config.readFile(file));
    QCOMPARE(config.number(u"Program/id"_s), 8);
}

void tst_VXDeploymentConfig::filesAreNeverWritten()
{
    const QByteArray content = "; a comment\n[Program]\nid=8\n";
    const QString path = write(u"d.ini"_s, content);
    VXDeploymentConfig config;
    QVERIFY(config.readFile(path));
    QVERIFY(config.setValue(u"Program/id"_s, u"9"_s));
    QFile file(path);
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(file.readAll(), content);
    QCOMPARE(QDir(myFolder->path()).entryList(QDir::Files), QStringList(u"d.ini"_s));
}

void tst_VXDeploymentConfig::readersAndSettersMayWorkAtOnce()
{
    VXDeploymentConfig config;
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&config, &failures, thread] {
            for (int number = 0; number < 500; ++number) {
                if (thread == 0)
                    config.setValue(u"Program/name"_s, number % 2 ? u"eins"_s : u"zwei"_s);
                const QString name = config.text(u"Program/name"_s);
                if (name != u"eins"_s && name != u"zwei"_s && name != u"vx-sample"_s)
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
}

void tst_VXDeploymentConfig::documentListsEveryKey()
{
    QStringList documented;
    QStringList cloud;
    for (const QStringList& row : documentedKeys())
        (row.at(0).startsWith("Cloud/"_L1) ? cloud : documented) << row.at(0);
    QStringList keys;
    for (const VXDeploymentConfig::Entry& entry : VXDeploymentConfig().entries())
        keys << entry.key;
    QCOMPARE(documented, keys);
    QCOMPARE(cloud, QStringList({u"Cloud/<name>/authorizeUrl"_s, u"Cloud/<name>/clientId"_s,
                                 u"Cloud/<name>/clientSecret"_s, u"Cloud/<name>/grantType"_s,
                                 u"Cloud/<name>/loginUrl"_s, u"Cloud/<name>/revokeUrl"_s,
                                 u"Cloud/<name>/scope"_s, u"Cloud/<name>/serviceName"_s,
                                 u"Cloud/<name>/tokenUrl"_s}));
}

void tst_VXDeploymentConfig::documentedDefaultsAreThoseInForce()
{
    const VXDeploymentConfig config;
    int compared = 0;
    for (const QStringList& row : documentedKeys()) {
        if (row.at(0).startsWith("Cloud/"_L1))
            continue;
        const QString text = literal(row.at(2));
        const QString key = row.at(0);
        if (row.at(2).startsWith("none"_L1))
            QVERIFY2(config.text(key).isEmpty(), qPrintable(key));
        else if (!text.isNull() && key != "KeyAccount/text1"_L1)
            QCOMPARE(config.text(key), text);
        else
            continue;
        ++compared;
    }
    QVERIFY(compared >= 20);
    QCOMPARE(config.text(u"KeyAccount/text1"_s), config.text(u"Program/displayName"_s));
}

void tst_VXDeploymentConfig::documentedExamplesAreUsable()
{
    VXDeploymentConfig config;
    for (const QStringList& row : documentedKeys()) {
        const bool isCloud = row.at(0).startsWith("Cloud/"_L1);
        const QString key = QString(row.at(0)).replace("<name>"_L1, "archive"_L1);
        const QString example = literal(row.at(isCloud ? 2 : 3));
        QVERIFY2(!example.isEmpty(), qPrintable(key));
        QVERIFY2(config.setValue(key, example), qPrintable(key));
        QCOMPARE(config.text(key), example);
    }
}

VX_TEST_MAIN(QCoreApplication, tst_VXDeploymentConfig)

#include "tst_VXDeploymentConfig.moc"
