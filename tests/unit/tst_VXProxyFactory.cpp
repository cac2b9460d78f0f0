#include <VXNetworking/VXProxyFactory.h>

#include "VXRawPeer.h"
#include "VXTestMain.h"

#include <VXNetworking/VXNetworkSettings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QList<QNetworkProxy> answerTo(const QUrl& theUrl)
{
    return VXProxyFactory().queryProxy(QNetworkProxyQuery(theUrl));
}

void chooseManualProxy(quint16 thePort)
{
    VXNetworkSettings* settings = VXNetworkSettings::instance();
    settings->setProxyType(QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"127.0.0.1"_s);
    settings->setProxyPort(thePort);
    settings->setProxyChoice(ProxyChoiceManual);
}

} // namespace

class tst_VXProxyFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void localHostsGetTwoDefaultProxies_data();
    void localHostsGetTwoDefaultProxies();
    void otherHostsGetTheSettingsAnswer_data();
    void otherHostsGetTheSettingsAnswer();
    void upperCaseArrivesLowerCased();
    void anEmptyQueryGetsTheSettingsAnswer();
    void withoutChoiceOtherHostsConnectDirectly();
    void theProcessFollowsTheSettings();
    void aManagersOwnFactorySendsLocalHostsDirectly();
    void aChangedChoiceCountsForTheNextRequest();

private:
    static void get(QNetworkAccessManager& theManager, const QUrl& theUrl, QByteArray& theBody);
};

void tst_VXProxyFactory::cleanup()
{
    VXNetworkSettings::instance()->setProxyChoice(ProxyChoiceNone);
}

void tst_VXProxyFactory::localHostsGetTwoDefaultProxies_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<VXProxyChoiceEnum>("choice");

    const QList<std::pair<QByteArray, VXProxyChoiceEnum>> choices{
        {"none", ProxyChoiceNone}, {"system", ProxyChoiceSystem}, {"manual", ProxyChoiceManual}};
    const QStringList hosts{u"localhost"_s,   u"localhost:8080"_s, u"localhost.localdomain"_s,
                            u"127.0.0.1"_s,   u"127.0.0.1:1"_s,    u"127.255.255.254"_s,
                            u"[::1]"_s,       u"[::1]:8080"_s,     u"[::ffff:127.0.0.1]"_s,
                            u"2130706433"_s,  u"0x7f000001"_s,     u"127.1"_s,
                            u"%6cocalhost"_s, u"localhost."_s};
    for (const auto& [name, choice] : choices) {
        for (const QString& host : hosts)
            QTest::addRow("%s, %s", name.constData(), qPrintable(host))
                << QUrl(u"https://"_s + host + u"/path"_s) << choice;
    }
}

void tst_VXProxyFactory::localHostsGetTwoDefaultProxies()
{
    QFETCH(QUrl, url);
    QFETCH(VXProxyChoiceEnum, choice);

    chooseManualProxy(3128);
    VXNetworkSettings::instance()->setProxyChoice(choice);
    const QList<QNetworkProxy> answer = answerTo(url);
    QCOMPARE(answer.size(), 2);
    QVERIFY(answer.at(0) == QNetworkProxy());
    QVERIFY(answer.at(1) == QNetworkProxy());
    QCOMPARE(answer.at(0).type(), QNetworkProxy::DefaultProxy);
}

void tst_VXProxyFactory::otherHostsGetTheSettingsAnswer_data()
{
    QTest::addColumn<QUrl>("url");

    for (const QString& host : {u"service.test"_s, u"localhosts.test"_s, u"my.localhost"_s,
                                u"xlocalhost"_s, u"localhostx"_s, u"192.168.1.1"_s, u"126.0.0.1"_s,
                                u"0.0.0.0"_s, u"[::]"_s, u"[fe80::1]"_s})
        QTest::addRow("%s", qPrintable(host)) << QUrl(u"http://"_s + host + u"/"_s);
}

void tst_VXProxyFactory::otherHostsGetTheSettingsAnswer()
{
    QFETCH(QUrl, url);

    chooseManualProxy(3128);
    const QList<QNetworkProxy> answer = answerTo(url);
    QCOMPARE(answer.size(), 1);
    QVERIFY(answer.at(0) == QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 3128));
}

void tst_VXProxyFactory::upperCaseArrivesLowerCased()
{
    // The comparison is case-sensitive, but every way into a query lowers the host's case.
    chooseManualProxy(3128);
    QCOMPARE(answerTo(QUrl(u"http://LOCALHOST/"_s)).size(), 2);
    QCOMPARE(VXProxyFactory().queryProxy(QNetworkProxyQuery(u"LOCALHOST"_s, 80)).size(), 2);
}

void tst_VXProxyFactory::anEmptyQueryGetsTheSettingsAnswer()
{
    chooseManualProxy(3128);
    const QList<QNetworkProxy> answer = VXProxyFactory().queryProxy(QNetworkProxyQuery());
    QCOMPARE(answer.size(), 1);
    QCOMPARE(answer.at(0).type(), QNetworkProxy::HttpProxy);
}

void tst_VXProxyFactory::withoutChoiceOtherHostsConnectDirectly()
{
    const QList<QNetworkProxy> answer = answerTo(QUrl(u"http://service.test/"_s));
    QCOMPARE(answer.size(), 1);
    QVERIFY(answer.at(0) == QNetworkProxy(QNetworkProxy::NoProxy));
}

void tst_VXProxyFactory::get(QNetworkAccessManager& theManager, const QUrl& theUrl,
                             QByteArray& theBody)
{
    const std::unique_ptr<QNetworkReply> reply(theManager.get(QNetworkRequest(theUrl)));
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->error(), QNetworkReply::NoError);
    theBody = reply->readAll();
}

void tst_VXProxyFactory::theProcessFollowsTheSettings()
{
    VXRawPeer proxy;
    proxy.setAnswer(VXRawAnswer::http(200, "from the proxy"));
    chooseManualProxy(proxy.port());

    QNetworkAccessManager manager;
    QByteArray body;
    get(manager, QUrl(u"http://service.test/order?a=1"_s), body);
    QCOMPARE(body, QByteArray("from the proxy"));
    QCOMPARE(proxy.requests().size(), 1);
    QCOMPARE(proxy.requests().at(0).target(), QByteArray("http://service.test/order?a=1"));
    QCOMPARE(proxy.requests().at(0).header("Host"), QByteArray("service.test"));
}

void tst_VXProxyFactory::aManagersOwnFactorySendsLocalHostsDirectly()
{
    VXRawPeer proxy;
    VXRawPeer server;
    proxy.setAnswer(VXRawAnswer::http(200, "from the proxy"));
    server.setAnswer(VXRawAnswer::http(200, "from the server"));
    chooseManualProxy(proxy.port());

    QNetworkAccessManager manager;
    manager.setProxyFactory(new VXProxyFactory); // the manager deletes it
    QByteArray body;
    get(manager, server.url(u"/local"_s), body);
    QCOMPARE(body, QByteArray("from the server"));
    QCOMPARE(server.requests().at(0).target(), QByteArray("/local"));
    get(manager, QUrl(u"http://service.test/far"_s), body);
    QCOMPARE(body, QByteArray("from the proxy"));
    QCOMPARE(proxy.requests().size(), 1);
    QCOMPARE(proxy.requests().at(0).target(), QByteArray("http://service.test/far"));
}

void tst_VXProxyFactory::aChangedChoiceCountsForTheNextRequest()
{
    VXRawPeer first;
    VXRawPeer second;
    first.setAnswer(VXRawAnswer::http(200, "first"));
    second.setAnswer(VXRawAnswer::http(200, "second"));

    QNetworkAccessManager manager;
    QByteArray body;
    chooseManualProxy(first.port());
    get(manager, QUrl(u"http://service.test/"_s), body);
    QCOMPARE(body, QByteArray("first"));
    chooseManualProxy(second.port());
    get(manager, QUrl(u"http://service.test/"_s), body);
    QCOMPARE(body, QByteArray("second"));
}

VX_TEST_MAIN(QCoreApplication, tst_VXProxyFactory)

#include "tst_VXProxyFactory.moc"
