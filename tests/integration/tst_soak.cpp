#include "VXHoldings.h"
#include "VXLan.h"
#include "VXNginxServer.h"
#include "VXPhoneSocket.h"
#include "VXTestMain.h"
#include "VXWorker.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThreadPool>
#include <QtTest/QSignalSpy>
#include <QtWebSockets/QWebSocket>

#include <memory>
#include <thread>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

// Of its own: the library's info messages are switched off here.
Q_LOGGING_CATEGORY(soakLog, "soak")

constexpr int requestCount = 20000;
constexpr int threadCount = 1000;
constexpr int uploadCount = 10000;
constexpr int connectionCount = 1000;

constexpr rlim_t descriptorLimit = 256;
constexpr qint64 mostGrowth = 2 * 1024 * 1024; // bytes

} // namespace

/// What many repetitions leave behind: nothing. Each function warms up with a tenth of its work,
/// and what the process holds afterwards may not grow. Runs with 256 descriptors, so what is not
/// given back soon ends it.
class tst_soak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void requestsLeaveNothing();
    void shortLivedThreadsLeaveNothing();
    void uploadsLeaveNothing();
    void channelConnectionsLeaveNothing();

private:
    template <typename Work>
    void soak(int theCount, Work theWork);
};

void tst_soak::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QLoggingCategory::setFilterRules(u"*.debug=false\n*.info=false\nsoak.info=true"_s);
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {});
    const rlimit limit{descriptorLimit, descriptorLimit};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

template <typename Work>
void tst_soak::soak(int theCount, Work theWork)
{
    for (int turn = 0; turn < theCount / 10; ++turn)
        QVERIFY(theWork());
    // Threads that look up names or write files end when they have had nothing to do for a while.
    QThreadPool::globalInstance()->waitForDone();
    const VXHoldings before = VXHoldings::now();

    QElapsedTimer timer;
    timer.start();
    for (int turn = 0; turn < theCount; ++turn)
        QVERIFY(theWork());
    const qint64 milliseconds = timer.elapsed();

    VXHoldings growth;
    const auto isSettled = [&] {
        growth = VXHoldings::now().since(before);
        return growth.descriptors <= 0 && growth.threads <= 0;
    };
    const bool isSettledInTime = QTest::qWaitFor(isSettled, 60000);
    qCInfo(soakLog, "%d in %.1f s: memory %+lld KiB, descriptors %+lld, threads %+lld", theCount,
           static_cast<double>(milliseconds) / 1000, growth.memory / 1024, growth.descriptors,
           growth.threads);
    QVERIFY(isSettledInTime);
    QVERIFY(!VXHoldings::isMemoryMeasurable || growth.memory <= mostGrowth);
}

void tst_soak::requestsLeaveNothing()
{
    VXTestCertificates certificates;
    VXNginxServer server(certificates.leaf());
    server.addDocument(u"answer"_s, "0123456789");
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    const QUrl good = server.url(u"/answer"_s);
    const QUrl missing = server.url(u"/missing"_s);

    int turn = 0;
    soak(requestCount, [&] {
        const bool isMissing = ++turn % 4 == 0; // failures have ways of their own
        auto operation = VXHttpOperation::create(isMissing ? missing : good,
                                                 QNetworkAccessManager::GetOperation);
        const QByteArray body = operation.exec();
        return isMissing ? operation.httpResponseCode() == 404 : body == "0123456789";
    });
}

void tst_soak::shortLivedThreadsLeaveNothing()
{
    VXTestCertificates certificates;
    VXNginxServer server(certificates.leaf());
    server.addDocument(u"answer"_s, "0123456789");
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    const QUrl url = server.url(u"/answer"_s);

    soak(threadCount, [&url] {
        bool isAnswered = false;
        std::thread worker([&] {
            auto operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
            isAnswered = operation.exec() == "0123456789";
            VXNetworkAccessManager::releaseThreadInstance();
        });
        worker.join();
        return isAnswered;
    });
}

void tst_soak::uploadsLeaveNothing()
{
    const QTemporaryDir folder;
    VXLocalUploadService service(nullptr);
    service.setTargetFolder(folder.path());
    service.start();
    const QByteArray token = service.nextToken().toLatin1();
    const QByteArray host = service.url().host().toLatin1();
    const auto port = static_cast<quint16>(service.url().port());

    // The phone sends from a thread of its own, a hundred photos in a visit.
    constexpr int visit = 100;
    const QByteArray photo = "0123456789abcdef"_ba.repeated(1024);
    soak(uploadCount / visit, [&] {
        return visit == vxRun(VXWhere::Worker, [&] {
                   VXPhoneSocket phone(host, port);
                   int stored = 0;
                   phone.ask("/translations.json?" + token);
                   for (int turn = 0; turn < visit; ++turn) {
                       const QByteArray name = "IMG_" + QByteArray::number(turn % 20) + ".JPG";
                       stored += VXPhoneSocket::status(phone.ask("/upload?file=" + name,
                                                                 "Cookie: sid=" + token + "\r\n",
                                                                 photo)) == 200;
                   }
                   return stored;
               });
    });
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 20);
}

void tst_soak::channelConnectionsLeaveNothing()
{
    VXWebSocketCommunication channel(u"soak"_s);
    QObject published;
    channel.registerObject(u"published"_s, &published);
    const QString token = channel.securityToken();

    int turn = 0;
    soak(connectionCount, [&] {
        // Every fourth page does not know the token, and some vanish without a word.
        const bool isAdmitted = ++turn % 4 != 0;
        QWebSocket page;
        QSignalSpy answers(&page, &QWebSocket::textMessageReceived);
        QSignalSpy connected(&page, &QWebSocket::connected);
        page.open(channel.serverUrl());
        if (!connected.wait(10000))
            return false;
        page.sendTextMessage(isAdmitted ? u"VXSecToken:"_s + token : u"VXSecToken:{}"_s);
        page.sendTextMessage(uR"({"type":3,"id":1})"_s);
        const bool isAsExpected = !isAdmitted || answers.count() > 0 || answers.wait(10000);
        if (turn % 3 == 0) {
            page.abort();
            return isAsExpected;
        }
        QSignalSpy closed(&page, &QWebSocket::disconnected);
        page.close();
        return (closed.count() > 0 || closed.wait(10000)) && isAsExpected;
    });
}

VX_TEST_MAIN(QCoreApplication, tst_soak)

#include "tst_soak.moc"
