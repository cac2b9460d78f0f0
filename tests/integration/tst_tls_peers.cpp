#include "VXExchangeMatrix.h"
#include "VXNginxServer.h"
#include "VXOpensslServer.h"
#include "VXReliabilityDocument.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>

#include <memory>

using namespace Qt::StringLiterals;
using Outcome = VXExchangeMatrix::Outcome;

/// The TLS of nginx and openssl with everything that can be wrong; outcomes stand in
/// docs/reliability.md. "Accepted" is the user's answer to the question.
class tst_tls_peers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void theUserDecides_data();
    void theUserDecides();
    void anAnswerAfterTheTimeoutIsTooLate_data();
    void anAnswerAfterTheTimeoutIsTooLate();
    void aCloseWithinTheBodyIsAFailure_data();
    void aCloseWithinTheBodyIsAFailure();
    void theDocumentHasExactlyTheseRows();

private:
    [[nodiscard]] VXTestCertificates::Identity identity(const QString& theKind);
    /// The server of a row, started; null with a failed test otherwise.
    [[nodiscard]] QUrl startServer(const QString& theKind, const QStringList& theOptions,
                                   const QByteArray& theAnswer = {});

    VXTestCertificates myKnownAuthority; // its certificate is in the bundle
    VXTestCertificates myStrangeAuthority;
    std::unique_ptr<VXNginxServer> myNginx;
    std::unique_ptr<VXOpensslServer> myOpenssl;
};

namespace {

struct Row
{
    QString name;
    QString certificate;
    QStringList options = {}; // of openssl; without any, nginx serves
    int texts = 0;            // in the one question; 0: nothing is asked
    QString refused = {};     // code
    QString accepted = {};
};

QList<Row> rows()
{
    // OpenSSL's default does not even offer the old protocols.
    const QStringList old{u"-tls1"_s, u"-cipher"_s, u"DEFAULT@SECLEVEL=0"_s};
    const auto demanding = [](const QString& version) {
        return QStringList{version, u"-Verify"_s, u"1"_s, u"-verify_return_error"_s};
    };
    return {
        {u"valid"_s, u"valid"_s, {}, 0, u"0"_s, u"0"_s},
        {u"wrong host"_s, u"wrong host"_s, {}, 1, u"3506"_s, u"0"_s},
        {u"expired"_s, u"expired"_s, {}, 1, u"3506"_s, u"0"_s},
        {u"not yet valid"_s, u"not yet valid"_s, {}, 1, u"3506"_s, u"0"_s},
        {u"self-signed"_s, u"self-signed"_s, {}, 1, u"3506"_s, u"0"_s},
        {u"unknown authority"_s, u"unknown authority"_s, {}, 2, u"3506"_s, u"0"_s},
        {u"wrong host and unknown authority"_s, u"both"_s, {}, 3, u"3506"_s, u"0"_s},
        {u"TLS 1.0 only"_s, u"valid"_s, old, 0, u"3506"_s, u"3506"_s},
        {u"client certificate wanted, TLS 1.2"_s, u"valid"_s, demanding(u"-tls1_2"_s), 0, u"3506"_s,
         u"3506"_s},
        {u"client certificate wanted, TLS 1.3"_s, u"valid"_s, demanding(u"-tls1_3"_s), 0, u"3599"_s,
         u"3599"_s},
    };
}

Outcome get(const QUrl& theUrl, int theTimeout = 30)
{
    auto exchange = VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    exchange.setTimeout(theTimeout);
    return VXExchangeMatrix::exec(exchange);
}

} // namespace

void tst_tls_peers::initTestCase()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s,
                                                     myKnownAuthority.authority().certificateFile));
}

void tst_tls_peers::cleanup()
{
    if (myNginx)
        myNginx->showOutputOnFailure();
    if (myOpenssl)
        myOpenssl->showOutputOnFailure();
    myNginx.reset();
    myOpenssl.reset();
}

VXTestCertificates::Identity tst_tls_peers::identity(const QString& theKind)
{
    VXTestCertificates::Order foreign;
    foreign.alternativeNames = {u"DNS:other.test"_s};
    if (theKind == u"wrong host"_s)
        return myKnownAuthority.issue(foreign);
    if (theKind == u"both"_s)
        return myStrangeAuthority.issue(foreign);
    if (theKind == u"expired"_s)
        return myKnownAuthority.expired();
    if (theKind == u"not yet valid"_s)
        return myKnownAuthority.notYetValid();
    if (theKind == u"self-signed"_s)
        return myKnownAuthority.selfSigned();
    return theKind == u"unknown authority"_s ? myStrangeAuthority.leaf() : myKnownAuthority.leaf();
}

QUrl tst_tls_peers::startServer(const QString& theKind, const QStringList& theOptions,
                                const QByteArray& theAnswer)
{
    VXForeignServer* server = nullptr;
    if (theOptions.isEmpty()) {
        myNginx = std::make_unique<VXNginxServer>(identity(theKind));
        myNginx->addDocument(u"a.bin"_s, "page");
        server = myNginx.get();
    } else {
        myOpenssl = std::make_unique<VXOpensslServer>(identity(theKind), theOptions);
        myOpenssl->addAnswer(u"answer"_s, theAnswer);
        server = myOpenssl.get();
    }
    if (!server->start()) {
        QTest::qFail(qPrintable(server->errorString()), __FILE__, __LINE__);
        return {};
    }
    return theOptions.isEmpty() ? myNginx->tlsUrl(u"/a.bin"_s) : myOpenssl->url();
}

void tst_tls_peers::theUserDecides_data()
{
    VXExchangeMatrix::addColumns();
    QTest::addColumn<QString>("certificate");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<int>("texts");
    QTest::addColumn<int>("code");

    for (const Row& row : rows()) {
        const auto add = [&row](const QString& answer, bool isAccepted, const QString& code) {
            VXExchangeMatrix::addRowsForAllThreads(qPrintable(row.name + u", "_s + answer),
                                                   row.texts > 0, row.certificate, row.options,
                                                   isAccepted, row.texts, code.toInt());
        };
        add(u"refused"_s, false, row.refused);
        add(u"accepted"_s, true, row.accepted);
    }
}

void tst_tls_peers::theUserDecides()
{
    QFETCH(QString, certificate);
    QFETCH(QStringList, options);
    QFETCH(bool, isAccepted);
    QFETCH(int, texts);
    QFETCH(int, code);
    const QUrl url = startServer(certificate, options);
    QVERIFY(url.isValid());
    VXExchangeMatrix matrix;
    matrix.setAcceptsCertificates(isAccepted);
    const Outcome outcome = matrix.run([&] { return get(url); });
    QCOMPARE(outcome.code, code);
    QCOMPARE(outcome.status, code == 0 ? 200 : 0);
    QCOMPARE(outcome.body.isEmpty(), code != 0);
    QVERIFY(matrix.wasAskedAsExpected(VXScriptedUser::Kind::Certificate));
    if (texts > 0)
        QCOMPARE(matrix.questions().constFirst().errors.size(), texts);
}

void tst_tls_peers::anAnswerAfterTheTimeoutIsTooLate_data()
{
    VXExchangeMatrix::addColumns();
    VXExchangeMatrix::addRowsForAllThreads("accepted late", true);
}

void tst_tls_peers::anAnswerAfterTheTimeoutIsTooLate()
{
    const QUrl url = startServer(u"self-signed"_s, {});
    QVERIFY(url.isValid());
    VXExchangeMatrix matrix;
    matrix.setAcceptsCertificates(true);
    // The user thinks longer than the time-out of three seconds, within which the question comes.
    connect(VXNetworkAccessManagerSignalDispatcher::instance(),
            &VXNetworkAccessManagerSignalDispatcher::askIgnoreSSLErrors, &matrix, [] {
                QElapsedTimer clock;
                clock.start();
                while (clock.elapsed() < 3200)
                    QThread::msleep(10);
            });
    const Outcome outcome = matrix.run([&] { return get(url, 3); });
    QCOMPARE(outcome.code, 3505);
    QCOMPARE(outcome.status, 0);
    QVERIFY(matrix.wasAskedAsExpected(VXScriptedUser::Kind::Certificate));
}

void tst_tls_peers::aCloseWithinTheBodyIsAFailure_data()
{
    VXExchangeMatrix::addColumns();
    QTest::addColumn<QString>("version");

    VXExchangeMatrix::addRowsForAllThreads("TLS 1.2", false, u"-tls1_2"_s);
    VXExchangeMatrix::addRowsForAllThreads("TLS 1.3", false, u"-tls1_3"_s);
}

void tst_tls_peers::aCloseWithinTheBodyIsAFailure()
{
    QFETCH(QString, version);
    const QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf";
    QUrl url = startServer(u"valid"_s, {u"-HTTP"_s, version}, answer);
    QVERIFY(url.isValid());
    url.setPath(u"/answer"_s);
    VXExchangeMatrix matrix;
    const Outcome outcome = matrix.run([&] { return get(url); });
    QCOMPARE(outcome.code, 3502);
    QCOMPARE(outcome.status, 200);
    QCOMPARE(outcome.body, "half"_ba);
}

void tst_tls_peers::theDocumentHasExactlyTheseRows()
{
    VXReliabilityDocument::Rows document =
        VXReliabilityDocument::rows(u"Certificates and protocols of real servers"_s);
    for (const Row& row : rows()) {
        QVERIFY2(document.contains(row.name), qPrintable(row.name));
        QCOMPARE(document.take(row.name),
                 (QStringList{QString::number(row.texts), row.refused, row.accepted}));
    }
    QCOMPARE(document.keys(), QStringList());
}

VX_TEST_MAIN(QCoreApplication, tst_tls_peers)

#include "tst_tls_peers.moc"
