#include "VXExchangeMatrix.h"
#include "VXHoldings.h"
#include "VXNginxServer.h"
#include "VXProbe.h"
#include "VXReliabilityDocument.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;
constexpr qint64 size = 200 * mebibyte;

/// Holds what a probe printed against the row of the document: code, bytes of the body, and MiB
/// that the process grew by.
void compare(const QString& theName, const QStringList& theLines)
{
    const QStringList cells = VXReliabilityDocument::rows(u"Memory"_s).value(theName);
    QVERIFY2(cells.size() == 3 && theLines.size() == 3, qPrintable(theLines.join(u'\n')));
    QCOMPARE(theLines.at(0), cells.at(0));
    QCOMPARE(theLines.at(1), cells.at(1));
    const QString growth = QString::number(theLines.at(2).toLongLong() / mebibyte);
    qInfo("%s MiB at the peak", qPrintable(growth));
    QVERIFY(!VXHoldings::isMemoryMeasurable || VXReliabilityDocument::allows(cells.at(2), growth));
}

} // namespace

/// How much memory large bodies take, each in a process of its own.
class tst_exchange_memory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void aDownloadIntoMemoryHoldsOneCopy_data();
    void aDownloadIntoMemoryHoldsOneCopy();
    void aFileIsStreamedToTheServer_data();
    void aFileIsStreamedToTheServer();

private:
    VXTestCertificates myCertificates;
    std::unique_ptr<VXNginxServer> myServer;
};

namespace {

constexpr auto urlVariable = "VX_PROBE_URL";
constexpr auto fileVariable = "VX_PROBE_FILE";
constexpr auto bundleVariable = "VX_PROBE_BUNDLE";
constexpr auto workerVariable = "VX_PROBE_IS_WORKER";

/// A field of /proc/self/status, in bytes.
qint64 ownStatus(const QByteArray& theName)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.constFirst() == theName + ':')
            return fields.value(1).toLongLong() * 1024;
    }
    return -1;
}

/// Prints code, bytes and the growth of the process at its peak while the function ran. What it
/// returns still exists at the end, as it does for a caller.
int measure(const std::function<VXExchangeMatrix::Outcome()>& theExchange)
{
    VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s,
                                             qEnvironmentVariable(bundleVariable));
    const VXWhere where =
        qEnvironmentVariableIsSet(workerVariable) ? VXWhere::Worker : VXWhere::ApplicationThread;
    VXExchangeMatrix::Outcome outcome;
    qint64 before = 0;
    VXExchangeMatrix::inThread(where, [&] {
        before = ownStatus("VmRSS");
        outcome = theExchange();
    });
    VXProbe::print(QString::number(outcome.code));
    VXProbe::print(QString::number(outcome.body.size()));
    VXProbe::print(QString::number(ownStatus("VmHWM") - before));
    return 0;
}

int download()
{
    return measure([] {
        auto exchange = VXHttpOperation::create(QUrl(qEnvironmentVariable(urlVariable)),
                                                QNetworkAccessManager::GetOperation);
        return VXExchangeMatrix::exec(exchange);
    });
}

int upload()
{
    return measure([] {
        auto exchange = VXHttpOperation::create(QUrl(qEnvironmentVariable(urlVariable)),
                                                QNetworkAccessManager::PutOperation);
        const VXUploadFile file(u"foto"_s, qEnvironmentVariable(fileVariable), u"image/png"_s);
        return exchange.createMultiPart(file, {}) ? VXExchangeMatrix::exec(exchange)
                                                  : VXExchangeMatrix::Outcome{};
    });
}

void addRows()
{
    QTest::addColumn<bool>("worker");
    QTest::addColumn<bool>("isTls");

    QTest::newRow("GUI thread, plain") << false << false;
    QTest::newRow("GUI thread, TLS") << false << true;
    QTest::newRow("worker, plain") << true << false;
    QTest::newRow("worker, TLS") << true << true;
}

} // namespace

void tst_exchange_memory::initTestCase()
{
    myServer = std::make_unique<VXNginxServer>(myCertificates.leaf());
    QFile large(myServer->documentPath(u"large"_s));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(size));
    QVERIFY2(myServer->start(), qPrintable(myServer->errorString()));
    qputenv(fileVariable, large.fileName().toLocal8Bit());
    qputenv(bundleVariable, myCertificates.authority().certificateFile.toLocal8Bit());
}

void tst_exchange_memory::cleanup()
{
    myServer->showOutputOnFailure();
}

void tst_exchange_memory::aDownloadIntoMemoryHoldsOneCopy_data()
{
    addRows();
}

void tst_exchange_memory::aDownloadIntoMemoryHoldsOneCopy()
{
    QFETCH(bool, worker);
    QFETCH(bool, isTls);
    worker ? qputenv(workerVariable, "1") : qunsetenv(workerVariable);
    const QUrl url = isTls ? myServer->tlsUrl(u"/large"_s) : myServer->url(u"/large"_s);
    qputenv(urlVariable, url.toEncoded());

    const QStringList lines = VXProbe::run(u"download"_s, std::chrono::minutes(3));
    compare(u"200 MiB into memory"_s, lines);
    QVERIFY(lines.value(2).toLongLong() >= size); // else the measuring is wrong
}

void tst_exchange_memory::aFileIsStreamedToTheServer_data()
{
    addRows();
}

void tst_exchange_memory::aFileIsStreamedToTheServer()
{
    QFETCH(bool, worker);
    QFETCH(bool, isTls);
    worker ? qputenv(workerVariable, "1") : qunsetenv(workerVariable);
    const QString path = u"/upload/b"_s;
    qputenv(urlVariable, (isTls ? myServer->tlsUrl(path) : myServer->url(path)).toEncoded());

    const QStringList lines = VXProbe::run(u"upload"_s, std::chrono::minutes(3));
    compare(u"file of 200 MiB to the server"_s, lines);
    QVERIFY(QFileInfo(myServer->documentPath(u"upload/b"_s)).size() > size);
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_exchange_memory, {u"download"_s, download},
                   {u"upload"_s, upload})

#include "tst_exchange_memory.moc"
