#include <VXCore/VXConfigItem.h>
#include <VXCore/VXSettings.h>

#include "VXCoreProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtNetwork/QNetworkProxy>

using namespace Qt::StringLiterals;

namespace {

VXConfigItem<QNetworkProxy> proxyItem()
{
    return {u"Proxy"_s, QNetworkProxy(QNetworkProxy::NoProxy)};
}

QNetworkProxy someProxy()
{
    return {QNetworkProxy::HttpProxy, u"proxy.example"_s, 8080, u"Jürgen, \"J\""_s,
            u"geh;eim %1"_s};
}

QString storedText()
{
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    return settings.value(u"Proxy"_s).toString();
}

} // namespace

class tst_VXConfigItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithTheDefault();
    void anotherValueIsAModification();
    void savingIsNoModification();
    void unmodifiedItemIsSavedToo();
    void numberSurvives();
    void textThatIsNoNumberGivesTheDefault();
    void proxySurvivesTheProcess_data();
    void proxySurvivesTheProcess();
    void proxyIsOneReadableEntry();
    void proxyPasswordIsEnciphered();
    void loadedProxyHasTheCapabilitiesOfItsType();
    void brokenProxyEntryGivesTheDefault_data();
    void brokenProxyEntryGivesTheDefault();
    void missingEntryGivesTheDefault();
    void changedPasswordOnlyLosesThePassword();
};

void tst_VXConfigItem::startsWithTheDefault()
{
    const VXConfigItem<int> item(u"number"_s, 5);
    QCOMPARE(item.key(), u"number"_s);
    QCOMPARE(item.value(), 5);
    QCOMPARE(item.defaultValue(), 5);
    QVERIFY(!item.isModified());
}

void tst_VXConfigItem::anotherValueIsAModification()
{
    VXConfigItem<int> item(u"number"_s, 5);
    item.setValue(5);
    QVERIFY(!item.isModified());
    item.setValue(6);
    QVERIFY(item.isModified());
    QCOMPARE(item.value(), 6);
    QCOMPARE(item.defaultValue(), 5);
}

void tst_VXConfigItem::savingIsNoModification()
{
    VXSettings settings;
    VXConfigItem<int> item(u"number"_s, 5);
    item.setValue(6);
    QVERIFY(item.save(settings));
    QVERIFY(!item.isModified());
    item.setValue(7);
    QVERIFY(item.load(settings));
    QCOMPARE(item.value(), 6);
    QVERIFY(!item.isModified());
}

void tst_VXConfigItem::unmodifiedItemIsSavedToo()
{
    VXSettings settings;
    settings.deleteEntry(u"number"_s);
    VXConfigItem<int> item(u"number"_s, 5);
    QVERIFY(item.save(settings));
    QVERIFY(settings.doesEntryExist(u"number"_s));
}

void tst_VXConfigItem::numberSurvives()
{
    VXSettings settings;
    settings.beginGroup(u"Items"_s);
    VXConfigItem<int> item(u"number"_s, 5);
    item.setValue(-42);
    QVERIFY(item.save(settings));
    QCOMPARE(answerOfOtherProcess({u"read"_s, u"Items"_s, u"number"_s}), u"-42"_s);
}

void tst_VXConfigItem::textThatIsNoNumberGivesTheDefault()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"number"_s, u"many"_s));
    VXConfigItem<int> item(u"number"_s, 5);
    QVERIFY(!item.load(settings));
    QCOMPARE(item.value(), 5);
}

void tst_VXConfigItem::proxySurvivesTheProcess_data()
{
    QTest::addColumn<QNetworkProxy>("proxy");
    QTest::addColumn<QString>("answer");

    QTest::newRow("HTTP with password")
        << someProxy() << u"3|proxy.example|8080|Jürgen, \"J\"|geh;eim %1"_s;
    QTest::newRow("SOCKS without password")
        << QNetworkProxy(QNetworkProxy::Socks5Proxy, u"::1"_s, 1) << u"1|::1|1||"_s;
    QTest::newRow("none") << QNetworkProxy(QNetworkProxy::NoProxy) << u"2||0||"_s;
    QTest::newRow("highest port and type")
        << QNetworkProxy(QNetworkProxy::FtpCachingProxy, u"h"_s, 65535) << u"5|h|65535||"_s;
}

void tst_VXConfigItem::proxySurvivesTheProcess()
{
    QFETCH(QNetworkProxy, proxy);
    QFETCH(QString, answer);
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    VXConfigItem<QNetworkProxy> item = proxyItem();
    item.setValue(proxy);
    QVERIFY(item.save(settings));
    QVERIFY(settings.doesEntryExist(u"Proxy"_s));
    QCOMPARE(answerOfOtherProcess({u"proxy"_s, u"Network"_s}), answer);
}

void tst_VXConfigItem::proxyIsOneReadableEntry()
{
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    VXConfigItem<QNetworkProxy> item = proxyItem();
    item.setValue(someProxy());
    QVERIFY(item.save(settings));

    const QJsonObject record = QJsonDocument::fromJson(storedText().toUtf8()).object();
    QCOMPARE(record.keys(),
             QStringList({u"host"_s, u"password"_s, u"port"_s, u"type"_s, u"user"_s}));
    QCOMPARE(record.value(u"type"_s).toInt(), 3);
    QCOMPARE(record.value(u"host"_s).toString(), u"proxy.example"_s);
    QCOMPARE(record.value(u"port"_s).toInt(), 8080);
    QVERIFY(!storedText().contains(u'\n'));
}

void tst_VXConfigItem::proxyPasswordIsEnciphered()
{
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    VXConfigItem<QNetworkProxy> item = proxyItem();
    item.setValue(someProxy());
    QVERIFY(item.save(settings));
    QFile file(VXSettings::storeFile());
    QVERIFY(file.open(QFile::ReadOnly));
    QVERIFY(!file.readAll().contains("geh;eim"));
    QVERIFY(storedText().contains(u"\"password\":\"$2$"_s));
}

void tst_VXConfigItem::loadedProxyHasTheCapabilitiesOfItsType()
{
    const auto proxy = VXConfigItemCodec<QNetworkProxy>::decode(
        VXConfigItemCodec<QNetworkProxy>::encode(someProxy()));
    QVERIFY(proxy);
    QCOMPARE(*proxy, someProxy());
}

void tst_VXConfigItem::brokenProxyEntryGivesTheDefault_data()
{
    QTest::addColumn<QString>("entry");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("word") << u"proxy"_s;
    QTest::newRow("list") << u"[1,2]"_s;
    QTest::newRow("no type") << uR"({"host":"h","port":1})"_s;
    QTest::newRow("unknown type") << uR"({"type":6,"host":"h","port":1})"_s;
    QTest::newRow("negative type") << uR"({"type":-1,"host":"h","port":1})"_s;
    QTest::newRow("port too large") << uR"({"type":3,"host":"h","port":65536})"_s;
    QTest::newRow("negative port") << uR"({"type":3,"host":"h","port":-1})"_s;
    QTest::newRow("port is a text") << uR"({"type":3,"host":"h","port":"1"})"_s;
    QTest::newRow("broken off") << uR"({"type":3,"host":"h)"_s;
}

void tst_VXConfigItem::brokenProxyEntryGivesTheDefault()
{
    QFETCH(QString, entry);
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    QVERIFY(settings.writeEntry(u"Proxy"_s, entry));
    VXConfigItem<QNetworkProxy> item = proxyItem();
    item.setValue(someProxy());
    QVERIFY(!item.load(settings));
    QCOMPARE(item.value(), QNetworkProxy(QNetworkProxy::NoProxy));
}

void tst_VXConfigItem::missingEntryGivesTheDefault()
{
    VXSettings settings;
    settings.beginGroup(u"Nowhere"_s);
    VXConfigItem<QNetworkProxy> item = proxyItem();
    QVERIFY(!item.load(settings));
    QCOMPARE(item.value(), QNetworkProxy(QNetworkProxy::NoProxy));
}

void tst_VXConfigItem::changedPasswordOnlyLosesThePassword()
{
    const auto proxy = VXConfigItemCodec<QNetworkProxy>::decode(
        uR"({"type":3,"host":"h","port":1,"user":"u","password":"$2$AAAA"})"_s);
    QVERIFY(proxy);
    QCOMPARE(proxy->user(), u"u"_s);
    QCOMPARE(proxy->password(), QString());
}

VX_TEST_MAIN(QCoreApplication, tst_VXConfigItem)

#include "tst_VXConfigItem.moc"
