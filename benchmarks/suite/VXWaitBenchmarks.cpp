#include "VXBenchAsker.h"
#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXRawClient.h"
#include "VXRawPeer.h"
#include "VXStalledServer.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtNetwork/QAuthenticator>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Figure = VXBenchGoal::Figure;

double milliseconds(const QElapsedTimer& theTimer)
{
    return static_cast<double>(theTimer.nsecsElapsed()) / 1e6;
}

VXHttpOperation getOperation(const QUrl& theUrl)
{
    return VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
}

/// Milliseconds after the time-out at which exec() came back.
double libraryLateness(const QUrl& theUrl, int theSeconds)
{
    VXHttpOperation operation = getOperation(theUrl);
    operation.setTimeout(theSeconds);
    QElapsedTimer timer;
    timer.start();
    operation.exec();
    const double late = milliseconds(timer) - theSeconds * 1000.0;
    VXNetworkAccessManager::releaseThreadInstance();
    return late;
}

/// The same with a bare timer that is as precise.
double timerLateness(int theSeconds)
{
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.callOnTimeout(&loop, &QEventLoop::quit);
    QElapsedTimer clock;
    clock.start();
    timer.start(theSeconds * 1000);
    loop.exec();
    return milliseconds(clock) - theSeconds * 1000.0;
}

/// All rounds wait at the same time, a little apart from each other; A and B take turns.
void addLateness(VXBenchSession& theSession, const QUrl& theUrl, int theSeconds)
{
    constexpr unsigned long apart = 25; // milliseconds
    QList<double> ours(theSession.rounds());
    QList<double> theirs(theSession.rounds());
    std::vector<std::unique_ptr<QThread>> threads;
    const auto start = [&threads](double& thePlace, const auto& theWait) {
        threads.emplace_back(QThread::create([&thePlace, theWait] { thePlace = theWait(); }));
        threads.back()->start();
        QThread::msleep(apart);
    };
    for (int i = 0; i < theSession.rounds(); ++i) {
        start(ours[i], [&theUrl, theSeconds] { return libraryLateness(theUrl, theSeconds); });
        start(theirs[i], [theSeconds] { return timerLateness(theSeconds); });
    }
    for (const auto& thread : threads)
        thread->wait();

    const auto add = [&](const VXBenchGoal& theGoal) {
        theSession.report().add({.id = u"B8"_s,
                                 .workload = u"stalled server, time-out %1 s"_s.arg(theSeconds),
                                 .metric = u"lateness"_s,
                                 .unit = u"ms"_s,
                                 .yardstick = u"bare precise timer"_s,
                                 .ours = ours,
                                 .theirs = theirs,
                                 .goal = theGoal,
                                 .note = {}});
    };
    add(VXBenchGoal::noLessThan(0, Figure::Smallest));
    add(VXBenchGoal::noMoreThan(20, Figure::Largest));
}

/// Milliseconds from the signal in this thread until exec() of the other has returned.
double abortDelay(const QUrl& theUrl)
{
    VXHttpOperation operation = getOperation(theUrl);
    qint64 returned = 0;
    QElapsedTimer clock;
    clock.start();
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        operation.exec();
        returned = clock.nsecsElapsed();
        VXNetworkAccessManager::releaseThreadInstance();
    }));
    operation.moveToThread(thread.get());
    thread->start();
    QThread::msleep(50); // until the request is on its way and nothing happens any more
    const qint64 emitted = clock.nsecsElapsed();
    Q_EMIT operation.abort();
    thread->wait();
    return static_cast<double>(returned - emitted) / 1e6;
}

/// Lets theTask run in theContext's thread while this thread runs its event loop.
bool inWorker(QObject& theContext, const VXBenchComparison::Task& theTask)
{
    QEventLoop loop;
    bool isSound = false;
    QMetaObject::invokeMethod(
        &theContext,
        [&] {
            isSound = theTask();
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
    loop.exec();
    return isSound;
}

void fillIn(QAuthenticator* theAuthenticator)
{
    theAuthenticator->setUser(u"karin"_s);
}

template <typename Asker>
bool askForLogin(Asker& theAsker, int theCount)
{
    const QUrl url(u"http://127.0.0.1/"_s);
    for (int i = 0; i < theCount; ++i) {
        QAuthenticator authenticator;
        Q_EMIT theAsker.authenticationRequired(url, &authenticator);
        if (authenticator.user() != "karin"_L1)
            return false;
    }
    return true;
}

template <typename Asker>
bool askForTrust(Asker& theAsker, int theCount)
{
    const QList<QString> errors{u"The certificate is self-signed"_s, u"Host names differ"_s};
    for (int i = 0; i < theCount; ++i) {
        bool isAccepted = false;
        Q_EMIT theAsker.askIgnoreSSLErrors(u"127.0.0.1:8443"_s, errors, &isAccepted);
        if (!isAccepted)
            return false;
    }
    return true;
}

/// Both chains end in a lambda of the same object in this thread.
void compareQuestions(VXBenchSession& theSession, QObject& theWorker, VXBenchAsker& theBare)
{
    constexpr int questions = 200;
    const auto compare = [&](const QString& theWorkload, const auto& theAsk) {
        theSession.compare(
            {.id = u"B10"_s,
             .workload = theWorkload,
             .yardstick = u"bare blocking queued signal"_s,
             .ours =
                 [&] {
                     return inWorker(theWorker, [&] {
                         return theAsk(*VXNetworkAccessManager::threadInstance(), questions);
                     });
                 },
             .theirs =
                 [&] { return inWorker(theWorker, [&] { return theAsk(theBare, questions); }); },
             .check = {},
             .calls = questions,
             .timeGoal = VXBenchGoal::noMoreThan(1.3),
             .cpuGoal = {},
             .memoryGoal = {}});
    };
    compare(u"login question of a worker"_s,
            [](auto& theAsker, int theCount) { return askForLogin(theAsker, theCount); });
    compare(u"TLS question of a worker"_s,
            [](auto& theAsker, int theCount) { return askForTrust(theAsker, theCount); });
}

/// The longest time between two ticks of a 10 ms timer in this thread while theTask runs.
double longestGap(const VXBenchComparison::Task& theTask, bool& theIsSound)
{
    double longest = 0;
    QElapsedTimer sinceTick;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.callOnTimeout(&ticker, [&] {
        longest = std::max(longest, milliseconds(sinceTick));
        sinceTick.start();
    });
    sinceTick.start();
    ticker.start(10);
    theIsSound = theTask() && theIsSound;
    return std::max(longest, milliseconds(sinceTick));
}

/// 20 MiB in a second, in pieces of 10 ms.
VXRawAnswer pacedAnswer(const QByteArray& theBody)
{
    constexpr int pieces = 100;
    const qsizetype size = theBody.size() / pieces;
    VXRawAnswer answer;
    answer.send("HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
                QByteArray::number(size * pieces) + "\r\n\r\n");
    for (int i = 0; i < pieces; ++i)
        answer.send(theBody.mid(i * size, size)).pause(10ms);
    return answer;
}

} // namespace

void benchTimeout(VXBenchSession& theSession)
{
    const VXStalledServer server;
    std::ignore = VXNetworkAccessManager::threadInstance(); // the CA list belongs to no time-out
    for (const int seconds : {1, 5})
        addLateness(theSession, server.url(), seconds);
}

void benchAbort(VXBenchSession& theSession)
{
    const VXStalledServer server;
    std::ignore = VXNetworkAccessManager::threadInstance();
    QList<double> delays;
    for (int i = -2; i < theSession.rounds(); ++i) {
        const double delay = abortDelay(server.url());
        if (i >= 0)
            delays.append(delay);
    }
    theSession.report().add({.id = u"B9"_s,
                             .workload = u"abort() from another thread"_s,
                             .metric = u"from the signal to the return of exec()"_s,
                             .unit = u"ms"_s,
                             .yardstick = {},
                             .ours = delays,
                             .theirs = {},
                             .goal = VXBenchGoal::noMoreThan(10, Figure::Percentile95),
                             .note = {}});
}

void benchQuestions(VXBenchSession& theSession)
{
    QThread thread;
    QObject worker; // stands for the thread
    VXBenchAsker bare;
    worker.moveToThread(&thread);
    bare.moveToThread(&thread);

    QObject receiver;
    auto* const relay = VXNetworkAccessManagerSignalDispatcher::instance();
    const auto answerLogin = [](const QUrl&, QAuthenticator* theAuthenticator) {
        fillIn(theAuthenticator);
    };
    const auto answerTrust = [](const QString&, const QList<QString>&, bool* theResult) {
        *theResult = true;
    };
    using Relay = VXNetworkAccessManagerSignalDispatcher;
    QObject::connect(relay, &Relay::authenticationRequired, &receiver, answerLogin);
    QObject::connect(relay, &Relay::askIgnoreSSLErrors, &receiver, answerTrust);
    QObject::connect(&bare, &VXBenchAsker::authenticationRequired, &receiver, answerLogin,
                     Qt::BlockingQueuedConnection);
    QObject::connect(&bare, &VXBenchAsker::askIgnoreSSLErrors, &receiver, answerTrust,
                     Qt::BlockingQueuedConnection);

    thread.start();
    compareQuestions(theSession, worker, bare);
    inWorker(worker, [] {
        VXNetworkAccessManager::releaseThreadInstance();
        return true;
    });
    thread.quit();
    thread.wait();
}

void benchTicker(VXBenchSession& theSession)
{
    const QByteArray body = VXBenchSession::randomBytes(20 * 1024 * 1024 / 100 * 100);
    VXBenchSession::pin(1); // the threads of the peer inherit it
    VXRawPeer peer;
    VXBenchSession::pin(0);
    peer.setAnswer(pacedAnswer(body));

    VXRawClient raw;
    bool isSound = true;
    QList<double> ours;
    QList<double> theirs;
    for (int i = -1; i < theSession.rounds(); ++i) {
        const double our =
            longestGap([&] { return getOperation(peer.url()).exec() == body; }, isSound);
        const double their = longestGap([&] { return raw.get(peer.url()) == body; }, isSound);
        if (i >= 0) {
            ours.append(our);
            theirs.append(their);
        }
    }
    if (!isSound) {
        theSession.report().addFailure(u"B11"_s, u"the answers differ"_s);
        return;
    }
    theSession.report().add({.id = u"B11"_s,
                             .workload = u"exec() in the GUI thread, 20 MiB at 20 MiB/s"_s,
                             .metric = u"longest gap of a 10 ms ticker"_s,
                             .unit = u"ms"_s,
                             .yardstick = u"raw Qt"_s,
                             .ours = ours,
                             .theirs = theirs,
                             .goal = VXBenchGoal::noMoreThan(30, Figure::Percentile95),
                             .note = {}});
}
