#include "VXHttpbinServer.h"
#include "VXMicrosocksServer.h"
#include "VXNginxServer.h"
#include "VXTestMain.h"
#include "VXTinyproxyServer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

/// The servers themselves, asked by plain Qt.
class tst_foreign_servers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void httpbinAnswersWhatItWasAsked();
    void nginxServesFilesByTls();
    void nginxCompressesText();
    void nginxStoresWhatIsPut();
    void nginxRefusesALargeBody();
    void nginxAsksForAPasswordBeforeItHandsOn();
    void aProxyResolvesNamesThatOnlyItKnows_data();
    void aProxyResolvesNamesThatOnlyItKnows();
    void aProxyAsksForItsPassword_data();
    void aProxyAsksForItsPassword();

    void aMissingProgramNamesItsPackage();
    void aProgramThatEndsShowsItsOutput();
    void aTakenPortIsNotTakenForTheServer();
    void startedAgainTheFirstProcessIsGone();
    void itDiesWithTheProcessThatStartedIt();

private:
    std::unique_ptr<QNetworkReply> finished(QNetworkReply* theReply);

    VXTestCertificates myCertificates;
};

namespace {

const QByteArray text = QByteArray("Zeile\n").repeated(1000);

QJsonObject jsonOf(QNetworkReply& theReply)
{
    return QJsonDocument::fromJson(theReply.readAll()).object();
}

int statusOf(const QNetworkReply& theReply)
{
    return theReply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// Runs a program that is not the server it should be.
class OddServer : public VXForeignServer
{
public:
    OddServer(const QString& theProgram, const QStringList& theArguments)
        : VXForeignServer(u"odd-package"_s)
        , myProgram(theProgram)
        , myArguments(theArguments)
    {
    }

    QStringList neededFiles() const override { return {myProgram}; }
    Launch prepare() override
    {
        ++prepared;
        return {myProgram, myArguments};
    }

    int prepared = 0;

private:
    const QString myProgram;
    const QStringList myArguments;
};

/// Finds its port taken at the first start.
class BeatenServer : public VXTinyproxyServer
{
public:
    Launch prepare() override
    {
        if (!rival.isListening())
            rival.listen(QHostAddress::LocalHost, port());
        return VXTinyproxyServer::prepare();
    }

    QTcpServer rival;
};

} // namespace

std::unique_ptr<QNetworkReply> tst_foreign_servers::finished(QNetworkReply* theReply)
{
    QSignalSpy spy(theReply, &QNetworkReply::finished);
    if (!theReply->isFinished())
        spy.wait(60000);
    return std::unique_ptr<QNetworkReply>(theReply);
}

void tst_foreign_servers::httpbinAnswersWhatItWasAsked()
{
    VXHttpbinServer server;
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkAccessManager manager;
    QNetworkRequest request(server.url(u"/anything/a?b=c"_s));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_s);
    const auto reply = finished(manager.put(request, "Inhalt"));
    QCOMPARE(statusOf(*reply), 200);
    const QJsonObject answer = jsonOf(*reply);
    QCOMPARE(answer[u"method"].toString(), u"PUT"_s);
    QCOMPARE(answer[u"data"].toString(), u"Inhalt"_s);
    QCOMPARE(answer[u"args"][u"b"].toString(), u"c"_s);
}

void tst_foreign_servers::nginxServesFilesByTls()
{
    VXNginxServer server(myCertificates.leaf());
    server.addDocument(u"a.bin"_s, text);
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkRequest request(server.tlsUrl(u"/a.bin"_s));
    QSslConfiguration configuration;
    configuration.setCaCertificates({myCertificates.authority().certificate});
    request.setSslConfiguration(configuration);
    QNetworkAccessManager manager;
    const auto reply = finished(manager.get(request));
    QCOMPARE(reply->errorString(), u"Unknown error"_s); // none
    QCOMPARE(reply->readAll(), text);

    QTRY_COMPARE(server.records().size(), 1);
    const QJsonObject record = server.records().constFirst();
    QCOMPARE(record[u"protocol"].toString(), u"HTTP/2.0"_s); // plain Qt takes it when offered
    QCOMPARE(record[u"uri"].toString(), u"/a.bin"_s);
    QCOMPARE(record[u"sent"].toInt(), 6000);
}

void tst_foreign_servers::nginxCompressesText()
{
    VXNginxServer server(myCertificates.leaf());
    server.addDocument(u"a.json"_s, text);
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkAccessManager manager;
    const auto reply = finished(manager.get(QNetworkRequest(server.url(u"/a.json"_s))));
    QCOMPARE(reply->readAll(), text);
    QTRY_COMPARE(server.records().size(), 1);
    QCOMPARE(server.records().constFirst()[u"encoding"].toString(), u"gzip"_s);
    QVERIFY(server.records().constFirst()[u"sent"].toInt() < 600);
}

void tst_foreign_servers::nginxStoresWhatIsPut()
{
    VXNginxServer server(myCertificates.leaf());
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkAccessManager manager;
    const auto reply = finished(manager.put(QNetworkRequest(server.url(u"/upload/b"_s)), text));
    QCOMPARE(statusOf(*reply), 201);
    QFile file(server.documentPath(u"upload/b"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), text);
}

void tst_foreign_servers::nginxRefusesALargeBody()
{
    VXNginxServer server(myCertificates.leaf());
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkAccessManager manager;
    const auto reply = finished(manager.put(QNetworkRequest(server.url(u"/small/b"_s)), text));
    QCOMPARE(statusOf(*reply), 413);
    QVERIFY(!QFile::exists(server.documentPath(u"small/b"_s)));
}

void tst_foreign_servers::nginxAsksForAPasswordBeforeItHandsOn()
{
    VXNginxServer server(myCertificates.leaf());
    server.addDocument(u"a.bin"_s, text);
    QVERIFY2(server.start(), qPrintable(server.errorString()));

    QNetworkAccessManager manager;
    const QNetworkRequest request(server.askingUrl(u"/a.bin"_s));
    const auto refused = finished(manager.get(request));
    QCOMPARE(statusOf(*refused), 401);

    connect(&manager, &QNetworkAccessManager::authenticationRequired, this,
            [](QNetworkReply*, QAuthenticator* authenticator) {
                authenticator->setUser(u"karin"_s);
                authenticator->setPassword(u"geheim"_s);
            });
    const auto served = finished(manager.get(request));
    QCOMPARE(statusOf(*served), 200);
    QCOMPARE(served->readAll(), text);
}

void tst_foreign_servers::aProxyResolvesNamesThatOnlyItKnows_data()
{
    QTest::addColumn<bool>("isSocks");

    QTest::newRow("tinyproxy") << false;
    QTest::newRow("microsocks") << true;
}

void tst_foreign_servers::aProxyResolvesNamesThatOnlyItKnows()
{
    QFETCH(bool, isSocks);
    VXTinyproxyServer tinyproxy;
    VXMicrosocksServer microsocks;
    VXForeignServer& proxy = isSocks ? static_cast<VXForeignServer&>(microsocks) : tinyproxy;
    proxy.setHostNames({u"origin.test"_s});
    QVERIFY2(proxy.start(), qPrintable(proxy.errorString()));
    VXNginxServer origin(myCertificates.leaf());
    origin.addDocument(u"a.bin"_s, text);
    QVERIFY2(origin.start(), qPrintable(origin.errorString()));

    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy(isSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy,
                                   u"127.0.0.1"_s, proxy.port()));
    QUrl url = origin.url(u"/a.bin"_s);
    url.setHost(u"origin.test"_s);
    const auto reply = finished(manager.get(QNetworkRequest(url)));
    QCOMPARE(statusOf(*reply), 200);
    QCOMPARE(reply->readAll(), text);
    QTRY_VERIFY(proxy.output().contains("origin.test"));
    QTRY_COMPARE(origin.records().size(), 1);
    QVERIFY(origin.records().constFirst()[u"host"].toString().startsWith(u"origin.test:"));
}

void tst_foreign_servers::aProxyAsksForItsPassword_data()
{
    QTest::addColumn<bool>("isSocks");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("isServed");

    QTest::newRow("tinyproxy, right") << false << u"geheim"_s << true;
    QTest::newRow("tinyproxy, wrong") << false << u"falsch"_s << false;
    QTest::newRow("microsocks, right") << true << u"geheim"_s << true;
    QTest::newRow("microsocks, wrong") << true << u"falsch"_s << false;
}

void tst_foreign_servers::aProxyAsksForItsPassword()
{
    QFETCH(bool, isSocks);
    QFETCH(QString, password);
    QFETCH(bool, isServed);
    VXTinyproxyServer tinyproxy;
    VXMicrosocksServer microsocks;
    tinyproxy.setCredentials(u"karin"_s, u"geheim"_s);
    microsocks.setCredentials(u"karin"_s, u"geheim"_s);
    VXForeignServer& proxy = isSocks ? static_cast<VXForeignServer&>(microsocks) : tinyproxy;
    proxy.setHostNames({u"origin.test"_s});
    QVERIFY2(proxy.start(), qPrintable(proxy.errorString()));
    VXNginxServer origin(myCertificates.leaf());
    origin.addDocument(u"a.bin"_s, text);
    QVERIFY2(origin.start(), qPrintable(origin.errorString()));

    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy(isSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy,
                                   u"127.0.0.1"_s, proxy.port(), u"karin"_s, password));
    QUrl url = origin.url(u"/a.bin"_s);
    url.setHost(u"origin.test"_s);
    const auto reply = finished(manager.get(QNetworkRequest(url)));
    QCOMPARE(statusOf(*reply) == 200, isServed);
    QCOMPARE(reply->error() == QNetworkReply::NoError, isServed);
}

void tst_foreign_servers::aMissingProgramNamesItsPackage()
{
    OddServer server(u"/usr/sbin/no-such-server"_s, {});
    QVERIFY(!server.start());
    QCOMPARE(server.errorString(), u"/usr/sbin/no-such-server is missing: install the package "
                                   "odd-package (script/bootstrap does)"_s);
}

void tst_foreign_servers::aProgramThatEndsShowsItsOutput()
{
    OddServer server(u"/bin/sh"_s, {u"-c"_s, u"echo no licence >&2; exit 3"_s});
    QVERIFY(!server.start());
    QVERIFY2(server.errorString().contains(u"odd-package"), qPrintable(server.errorString()));
    QVERIFY2(server.errorString().contains(u"no licence"), qPrintable(server.errorString()));
    QCOMPARE(server.prepared, 5);
}

void tst_foreign_servers::aTakenPortIsNotTakenForTheServer()
{
    BeatenServer server;
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    QVERIFY(server.rival.isListening());
    QVERIFY(server.port() != server.rival.serverPort());
}

void tst_foreign_servers::startedAgainTheFirstProcessIsGone()
{
    VXTinyproxyServer server;
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    const qint64 first = server.processId();
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    QVERIFY(server.processId() != first);
    QCOMPARE(kill(static_cast<pid_t>(first), 0), -1);
}

void tst_foreign_servers::itDiesWithTheProcessThatStartedIt()
{
    // A copy of this program starts a server, tells its process and is killed.
    QProcess copy;
    copy.start(QCoreApplication::applicationFilePath(), {u"--hold"_s});
    QVERIFY(copy.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(copy.canReadLine(), 60000);
    const auto server = static_cast<pid_t>(copy.readLine().trimmed().toInt());
    QVERIFY(server > 0);
    QCOMPARE(kill(server, 0), 0);
    copy.kill();
    QVERIFY(copy.waitForFinished());
    QTRY_COMPARE(kill(server, 0), -1);
}

namespace {

int holdAServer(int theArgumentCount, char* theArguments[])
{
    const QCoreApplication application(theArgumentCount, theArguments);
    VXTinyproxyServer server;
    printf("%lld\n", server.start() ? server.processId() : 0LL);
    fflush(stdout);
    return application.exec();
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const VXTestEnvironment environment;
    if (theArgumentCount == 2 && qstrcmp(theArguments[1], "--hold") == 0)
        return holdAServer(theArgumentCount, theArguments);
    QCoreApplication application(theArgumentCount, theArguments);
    tst_foreign_servers test;
    return QTest::qExec(&test, theArgumentCount, theArguments);
}

#include "tst_foreign_servers.moc"
