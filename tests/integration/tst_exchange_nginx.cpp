#include "VXExchangeMatrix.h"
#include "VXLogCapture.h"
#include "VXNginxServer.h"
#include "VXProgressRecorder.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QCryptographicHash>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using Outcome = VXExchangeMatrix::Outcome;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;
constexpr qint64 downloadSize = 200 * mebibyte;
constexpr qint64 uploadSize = 100 * mebibyte;

} // namespace

/// TLS, large bodies and connections with nginx.
class tst_exchange_nginx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void theBundleMakesAServerTrusted_data();
    void theBundleMakesAServerTrusted();
    void anAcceptedHostIsAskedOnce_data();
    void anAcceptedHostIsAskedOnce();
    void aRefusedHostFailsAndIsAskedAgain_data();
    void aRefusedHostFailsAndIsAskedAgain();
    void theQuestionNamesTheProblem_data();
    void theQuestionNamesTheProblem();
    void withoutValidationNothingIsAsked_data();
    void withoutValidationNothingIsAsked();
    void http2NeedsThePlatformsConsent_data();
    void http2NeedsThePlatformsConsent();
    void aConnectionServesSeveralExchanges_data();
    void aConnectionServesSeveralExchanges();
    void aCompressedAnswerIsInflated_data();
    void aCompressedAnswerIsInflated();
    void aLargeDownloadFillsAFile_data();
    void aLargeDownloadFillsAFile();
    void aLargeUploadArrives_data();
    void aLargeUploadArrives();
    void aBodyBeyondTheLimitIsRefused_data();
    void aBodyBeyondTheLimitIsRefused();
    void aServerThatDiesWithinTheBodyIsAFailure_data();
    void aServerThatDiesWithinTheBodyIsAFailure();
    void aStoppedServerRefuses_data();
    void aStoppedServerRefuses();

private:
    VXNginxServer* serverWith(const VXTestCertificates::Identity& theIdentity);

    VXTestCertificates myKnownAuthority;
    VXTestCertificates myStrangeAuthority;
    QTemporaryDir myFolder;
    QByteArray myLargeHash; // SHA-256 of the file "large" in myFolder
    std::unique_ptr<VXNginxServer> myServer;
};

namespace {

/// Random bytes; nothing can compress them.
QByteArray noise(qint64 theSize)
{
    QByteArray bytes(theSize, Qt::Uninitialized);
    QRandomGenerator generator(4711);
    generator.fillRange(reinterpret_cast<quint32*>(bytes.data()), theSize / 4);
    return bytes;
}

QByteArray hashOfFile(const QString& thePath)
{
    QFile file(thePath);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result();
}

Outcome get(const QUrl& theUrl)
{
    auto exchange = VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    return VXExchangeMatrix::exec(exchange);
}

QString hostKey(const QUrl& theUrl)
{
    return u"%1:%2"_s.arg(theUrl.host()).arg(theUrl.port());
}

bool isRising(const QList<std::pair<qint64, qint64>>& theNotices)
{
    return std::ranges::is_sorted(theNotices, {}, &std::pair<qint64, qint64>::first);
}

} // namespace

void tst_exchange_nginx::initTestCase()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s,
                                                     myKnownAuthority.authority().certificateFile));

    QFile large(myFolder.filePath(u"large"_s));
    QVERIFY(large.open(QIODevice::WriteOnly));
    const QByteArray content = noise(downloadSize);
    QCOMPARE(large.write(content), downloadSize);
    myLargeHash = QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

void tst_exchange_nginx::cleanup()
{
    if (myServer)
        myServer->showOutputOnFailure();
    myServer.reset();
}

VXNginxServer* tst_exchange_nginx::serverWith(const VXTestCertificates::Identity& theIdentity)
{
    myServer = std::make_unique<VXNginxServer>(theIdentity);
    myServer->addDocument(u"a.json"_s, "{\"a\":\"" + QByteArray(1000, 'a') + "\"}");
    myServer->linkDocument(u"large"_s, myFolder.filePath(u"large"_s));
    if (myServer->start())
        return myServer.get();
    QTest::qFail(qPrintable(myServer->errorString()), __FILE__, __LINE__);
    return nullptr;
}

void tst_exchange_nginx::theBundleMakesAServerTrusted_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("leaf of the bundle", false);
}

void tst_exchange_nginx::theBundleMakesAServerTrusted()
{
    const auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    const Outcome outcome = matrix.run([&] { return get(server->tlsUrl(u"/a.json"_s)); });
    QVERIFY2(outcome.code == 0, qPrintable(outcome.details));
    QCOMPARE(outcome.status, 200);
    QVERIFY(matrix.wasAskedAsExpected());
}

void tst_exchange_nginx::anAcceptedHostIsAskedOnce_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("two connections", true);
}

void tst_exchange_nginx::anAcceptedHostIsAskedOnce()
{
    const auto* const server = serverWith(myStrangeAuthority.leaf());
    QVERIFY(server);
    const QUrl url = server->tlsUrl(u"/a.json"_s);
    VXExchangeMatrix matrix;
    matrix.setAcceptsCertificates(true);
    const VXLogCapture log;
    QList<int> codes;
    matrix.inThread([&] {
        codes << get(url).code;
        VXNetworkAccessManager::releaseThreadInstance(); // the next one makes a connection anew
        codes << get(url).code;
    });
    QCOMPARE(codes, (QList<int>{0, 0}));
    QVERIFY(matrix.wasAskedAsExpected(VXScriptedUser::Kind::Certificate));
    QCOMPARE(matrix.questions().constFirst().host, hostKey(url));
    QCOMPARE(log.textsWith(u"-- Errors to "_s),
             QStringList{u"-- Errors to %1 already ignored"_s.arg(hostKey(url))});
}

void tst_exchange_nginx::aRefusedHostFailsAndIsAskedAgain_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("twice", true);
}

void tst_exchange_nginx::aRefusedHostFailsAndIsAskedAgain()
{
    const auto* const server = serverWith(myStrangeAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    QList<int> codes;
    matrix.inThread([&] {
        for (int i = 0; i < 2; ++i)
            codes << get(server->tlsUrl(u"/a.json"_s)).code;
    });
    QCOMPARE(codes, (QList<int>{3506, 3506}));
    QCOMPARE(matrix.questions().size(), 2);
    QVERIFY(matrix.questions().constLast().wasAskedInGuiThread);
    QCOMPARE(server->records().size(), 0);
}

void tst_exchange_nginx::theQuestionNamesTheProblem_data()
{
    VXExchangeMatrix::addColumns();
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("errors");

    VXExchangeMatrix::addThreadRows("another host", true, 0,
                                    QStringList{u"The host name did not match any of the valid "
                                                "hosts for this certificate"_s});
    VXExchangeMatrix::addThreadRows("expired", true, 1,
                                    QStringList{u"The certificate has expired"_s});
    VXExchangeMatrix::addThreadRows(
        "self-signed", true, 2, QStringList{u"The certificate is self-signed, and untrusted"_s});
}

void tst_exchange_nginx::theQuestionNamesTheProblem()
{
    QFETCH(int, kind);
    QFETCH(QStringList, errors);
    VXTestCertificates::Order foreign;
    foreign.alternativeNames = {u"DNS:other.test"_s};
    const auto identity = kind == 0   ? myKnownAuthority.issue(foreign)
                          : kind == 1 ? myKnownAuthority.expired()
                                      : myKnownAuthority.selfSigned();
    const auto* const server = serverWith(identity);
    QVERIFY(server);
    VXExchangeMatrix matrix;
    matrix.setAcceptsCertificates(true);
    const Outcome outcome = matrix.run([&] { return get(server->tlsUrl(u"/a.json"_s)); });
    QVERIFY2(outcome.code == 0, qPrintable(outcome.details));
    QVERIFY(matrix.wasAskedAsExpected(VXScriptedUser::Kind::Certificate));
    QCOMPARE(matrix.questions().constFirst().errors, errors);
}

void tst_exchange_nginx::withoutValidationNothingIsAsked_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("unknown authority", false);
}

void tst_exchange_nginx::withoutValidationNothingIsAsked()
{
    const auto* const server = serverWith(myStrangeAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    VXNetworkAccessManager::setValidateSslCertificate(false);
    const Outcome outcome = matrix.run([&] { return get(server->tlsUrl(u"/a.json"_s)); });
    VXNetworkAccessManager::setValidateSslCertificate(true);
    QVERIFY2(outcome.code == 0, qPrintable(outcome.details));
    QVERIFY(matrix.wasAskedAsExpected());
}

void tst_exchange_nginx::http2NeedsThePlatformsConsent_data()
{
    VXExchangeMatrix::addColumns();
    QTest::addColumn<bool>("isAllowed");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("connectionHeader");

    VXExchangeMatrix::addThreadRows("default", false, false, u"HTTP/1.1"_s,
                                    u"disable-keep-alive"_s);
    VXExchangeMatrix::addThreadRows("allowed", false, true, u"HTTP/2.0"_s, QString());
}

void tst_exchange_nginx::http2NeedsThePlatformsConsent()
{
    QFETCH(bool, isAllowed);
    QFETCH(QString, protocol);
    QFETCH(QString, connectionHeader);
    auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    if (isAllowed)
        VXDeploymentConfig::instance()->setValue(u"Platform/allowHttp2"_s, u"true"_s);
    const Outcome outcome = matrix.run([&] {
        VXHttpOperation exchange(QNetworkAccessManager::PutOperation,
                                 server->tlsUrl(u"/upload/b"_s), "Inhalt",
                                 VXHttpContentType(ContentOctetStream));
        return VXExchangeMatrix::exec(exchange);
    });
    VXDeploymentConfig::instance()->setValue(u"Platform/allowHttp2"_s, u"false"_s);
    QVERIFY2(outcome.code == 0, qPrintable(outcome.details));
    QTRY_COMPARE(server->records().size(), 1);
    const QJsonObject record = server->records().constFirst();
    QCOMPARE(record[u"protocol"].toString(), protocol);
    QCOMPARE(record[u"connectionHeader"].toString(), connectionHeader);
    QCOMPARE(QFileInfo(server->documentPath(u"upload/b"_s)).size(), 6);
}

void tst_exchange_nginx::aConnectionServesSeveralExchanges_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("three by TLS", false);
}

void tst_exchange_nginx::aConnectionServesSeveralExchanges()
{
    const auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    matrix.inThread([&] {
        for (int i = 0; i < 3; ++i)
            get(server->tlsUrl(u"/a.json"_s));
    });
    QTRY_COMPARE(server->records().size(), 3);
    const QList<QJsonObject> records = server->records();
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(records.at(i)[u"connection"], records.at(0)[u"connection"]);
        QCOMPARE(records.at(i)[u"request"].toInt(), i + 1);
        QCOMPARE(records.at(i)[u"connectionHeader"].toString(), u"disable-keep-alive"_s);
    }
}

void tst_exchange_nginx::aCompressedAnswerIsInflated_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRows("gzip");
}

void tst_exchange_nginx::aCompressedAnswerIsInflated()
{
    const auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    QJsonObject json;
    matrix.inThread([&] {
        const QUrl url =
            matrix.asks() ? server->askingUrl(u"/a.json"_s) : server->tlsUrl(u"/a.json"_s);
        json =
            VXHttpOperation::create(url, QNetworkAccessManager::GetOperation).receiveJsonObject();
    });
    QCOMPARE(json[u"a"].toString().size(), 1000);
    QVERIFY(matrix.wasAskedAsExpected());
    QTRY_VERIFY(!server->records().isEmpty()); // nginx writes its line after the answer
    QTRY_COMPARE(server->records().constLast()[u"encoding"].toString(), u"gzip"_s);
}

void tst_exchange_nginx::aLargeDownloadFillsAFile_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRows("200 MiB by TLS");
}

void tst_exchange_nginx::aLargeDownloadFillsAFile()
{
    VXExchangeMatrix matrix;
    const auto* const server =
        serverWith(matrix.asks() ? myStrangeAuthority.leaf() : myKnownAuthority.leaf());
    QVERIFY(server);
    matrix.setAcceptsCertificates(true);
    VXProgressRecorder progress; // in the GUI thread
    const QString path = myFolder.filePath(u"received"_s);
    bool isWritten = false;
    matrix.inThread([&] {
        auto exchange = VXHttpOperation::create(server->tlsUrl(u"/large"_s),
                                                QNetworkAccessManager::GetOperation);
        exchange.setProgressReceiver(&progress, SLOT(note(qint64, qint64)));
        isWritten = exchange.downloadToFile(QFileInfo(path));
    });
    QVERIFY(isWritten);
    QCOMPARE(hashOfFile(path), myLargeHash);
    QVERIFY(matrix.wasAskedAsExpected(VXScriptedUser::Kind::Certificate));

    const std::pair<qint64, qint64> last(downloadSize, downloadSize);
    QTRY_VERIFY(!progress.notices().isEmpty() && progress.notices().constLast() == last);
    QVERIFY(progress.notices().size() > 2);
    QVERIFY(isRising(progress.notices()));
    QVERIFY(progress.wasCalledInOwnThread());
}

void tst_exchange_nginx::aLargeUploadArrives_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRows("100 MiB");
}

void tst_exchange_nginx::aLargeUploadArrives()
{
    const auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    const QByteArray content = noise(uploadSize);
    VXExchangeMatrix matrix;
    VXProgressRecorder progress;
    const Outcome outcome = matrix.run([&] {
        const QUrl url =
            matrix.asks() ? server->askingUrl(u"/upload/b"_s) : server->tlsUrl(u"/upload/b"_s);
        VXHttpOperation exchange(QNetworkAccessManager::PutOperation, url, content,
                                 VXHttpContentType(ContentOctetStream));
        exchange.setProgressReceiver(&progress, SLOT(note(qint64, qint64)));
        return VXExchangeMatrix::exec(exchange);
    });
    QVERIFY2(outcome.code == 0, qPrintable(outcome.details));
    QCOMPARE(outcome.status, 201);
    QCOMPARE(hashOfFile(server->documentPath(u"upload/b"_s)),
             QCryptographicHash::hash(content, QCryptographicHash::Sha256));
    QVERIFY(matrix.wasAskedAsExpected());
    QTRY_VERIFY(progress.notices().contains(std::pair(uploadSize, uploadSize)));
    QVERIFY(progress.notices().size() > 2);
    QVERIFY(progress.wasCalledInOwnThread());
}

void tst_exchange_nginx::aBodyBeyondTheLimitIsRefused_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRows("100 kB, 1 kB allowed");
}

void tst_exchange_nginx::aBodyBeyondTheLimitIsRefused()
{
    const auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    const Outcome outcome = matrix.run([&] {
        const QUrl url =
            matrix.asks() ? server->askingUrl(u"/small/b"_s) : server->tlsUrl(u"/small/b"_s);
        VXHttpOperation exchange(QNetworkAccessManager::PutOperation, url, QByteArray(100000, 'a'),
                                 VXHttpContentType(ContentOctetStream));
        return VXExchangeMatrix::exec(exchange);
    });
    QCOMPARE(outcome.status, 413);
    QCOMPARE(outcome.code, 3799);
    QVERIFY(!QFile::exists(server->documentPath(u"small/b"_s)));
    QVERIFY(matrix.wasAskedAsExpected());
}

void tst_exchange_nginx::aServerThatDiesWithinTheBodyIsAFailure_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRows("killed");
}

void tst_exchange_nginx::aServerThatDiesWithinTheBodyIsAFailure()
{
    auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    VXExchangeMatrix matrix;
    VXProgressRecorder progress;
    connect(&progress, &VXProgressRecorder::progressed, &progress, [server] { server->stop(); });
    const Outcome outcome = matrix.run([&] {
        const QUrl url =
            matrix.asks() ? server->askingUrl(u"/slow/large"_s) : server->tlsUrl(u"/slow/large"_s);
        auto exchange = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
        exchange.setProgressReceiver(&progress, SLOT(note(qint64, qint64)));
        return VXExchangeMatrix::exec(exchange);
    });
    QCOMPARE(outcome.code, 3502);
    QCOMPARE(outcome.status, 200);
    QVERIFY(!outcome.body.isEmpty());
    QVERIFY(outcome.body.size() < downloadSize);
    QVERIFY(matrix.wasAskedAsExpected());
}

void tst_exchange_nginx::aStoppedServerRefuses_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addThreadRows("stopped", false);
}

void tst_exchange_nginx::aStoppedServerRefuses()
{
    auto* const server = serverWith(myKnownAuthority.leaf());
    QVERIFY(server);
    const QUrl url = server->tlsUrl(u"/a.json"_s);
    server->stop();
    VXExchangeMatrix matrix;
    const Outcome outcome = matrix.run([&] { return get(url); });
    QCOMPARE(outcome.code, 3501);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.body, QByteArray());
}

VX_TEST_MAIN(QCoreApplication, tst_exchange_nginx)

#include "tst_exchange_nginx.moc"
