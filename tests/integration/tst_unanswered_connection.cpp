// Servers that never answer the wish to connect: nothing but our own time-out ends the wait. Takes
// 50 seconds a row, so it is a program of its own; it sleeps meanwhile.

#include "VXFaultServer.h"
#include "VXLan.h"
#include "VXTestMain.h"
#include "VXWorker.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int timeout = 50; // seconds

struct Outcome
{
    int code = 0;
    qint64 milliseconds = 0;
};

/// In this thread.
Outcome wait(const QUrl& theUrl)
{
    auto exchange = VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    exchange.setTimeout(timeout);
    QElapsedTimer clock;
    clock.start();
    exchange.exec();
    VXNetworkAccessManager::releaseThreadInstance();
    return {static_cast<int>(exchange.errorStatus().errorCode()), clock.elapsed()};
}

} // namespace

class tst_unanswered_connection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void onlyTheTimeoutEndsTheWait_data();
    void onlyTheTimeoutEndsTheWait();

private:
    VXFaultServer myServer;
};

void tst_unanswered_connection::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    // A phone whose cable is out: its hardware address is still known, so nobody reports it lost.
    QCOMPARE(VXLan::ip(u"neighbour replace 10.77.0.11 lladdr 02:00:00:00:00:11 dev lan0 "
                       "nud permanent"_s),
             QString());
    QCOMPARE(VXLan::ip(u"-n phone1 link set eth0 down"_s), QString());
}

void tst_unanswered_connection::onlyTheTimeoutEndsTheWait_data()
{
    QTest::addColumn<QUrl>("url");

    QTest::newRow("full queue") << myServer.url(u"silent"_s, u"/"_s);
    QTest::newRow("unplugged") << QUrl(u"http://10.77.0.11/"_s);
}

void tst_unanswered_connection::onlyTheTimeoutEndsTheWait()
{
    QFETCH(QUrl, url);
    // All three kinds of thread at once.
    Outcome inThread;
    Outcome inQtThread;
    std::thread worker([&] { inThread = wait(url); });
    const std::unique_ptr<QThread> qtThread(QThread::create([&] { inQtThread = wait(url); }));
    qtThread->start();
    const Outcome inGuiThread = wait(url);
    qtThread->wait();
    worker.join();

    for (const Outcome& outcome : {inGuiThread, inThread, inQtThread}) {
        QCOMPARE(outcome.code, 3505);
        QVERIFY2(outcome.milliseconds >= timeout * 1000 && outcome.milliseconds < 80'000,
                 QByteArray::number(outcome.milliseconds));
    }
}

VX_TEST_MAIN(QCoreApplication, tst_unanswered_connection)

#include "tst_unanswered_connection.moc"
