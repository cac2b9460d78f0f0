#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXCurlClient.h"
#include "VXRawClient.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QThread>
#include <QtCore/QUrlQuery>

#include <atomic>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Metric = VXBenchComparison::Metric;
using Task = VXBenchComparison::Task;

constexpr int callsOfARound = 200;
constexpr qsizetype kibibyte = 1024;
const auto documentPath = u"/small.bin"_s;

Task repeated(int theCount, const Task& theTask)
{
    return [theCount, theTask] {
        for (int i = 0; i < theCount; ++i) {
            if (!theTask())
                return false;
        }
        return true;
    };
}

QByteArray smallDocument(VXBenchSession& theSession)
{
    QByteArray document = VXBenchSession::randomBytes(kibibyte);
    theSession.nginx().addDocument(documentPath.mid(1), document);
    return document;
}

QByteArray libraryGet(const QUrl& theUrl)
{
    return VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation).receiveData();
}

/// Ends as a worker of the application should: without leaving its manager behind.
bool inFreshThread(const Task& theTask)
{
    bool isSound = false;
    const std::unique_ptr<QThread> thread(
        QThread::create([&isSound, &theTask] { isSound = theTask(); }));
    thread->start();
    thread->wait();
    return isSound;
}

bool libraryGetInThread(const QUrl& theUrl, int theCount, const QByteArray& theExpected)
{
    bool isSound = true;
    for (int i = 0; i < theCount; ++i)
        isSound = libraryGet(theUrl) == theExpected && isSound;
    VXNetworkAccessManager::releaseThreadInstance();
    return isSound;
}

bool rawGetInThread(const QUrl& theUrl, int theCount, const QByteArray& theExpected)
{
    VXRawClient client;
    bool isSound = true;
    for (int i = 0; i < theCount; ++i)
        isSound = client.get(theUrl) == theExpected && isSound;
    return isSound;
}

bool inThreads(int theCount, const Task& theTask)
{
    std::atomic<int> sound = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < theCount; ++i) {
        threads.emplace_back(QThread::create([&sound, &theTask] { sound += theTask() ? 1 : 0; }));
        threads.back()->start();
    }
    for (const auto& thread : threads)
        thread->wait();
    return sound == theCount;
}

/// The widest is compared with the one of four threads, round by round.
void addFall(VXBenchSession& theSession, const VXBenchTimes& theFour, const VXBenchTimes& theMany,
             int theManyCount)
{
    QList<double> few;
    QList<double> many;
    for (const double seconds : theFour.ours)
        few.append(4 / seconds);
    for (const double seconds : theMany.ours)
        many.append(theManyCount / seconds);
    theSession.report().add({.id = u"B7"_s,
                             .workload = u"%1 threads, beside 4 threads"_s.arg(theManyCount),
                             .metric = u"share of the work done in a second"_s,
                             .unit = u"threads/s"_s,
                             .yardstick = u"the library with 4"_s,
                             .ours = many,
                             .theirs = few,
                             .goal = VXBenchGoal::noLessThan(0.9),
                             .note = {}});
}

void compareWithCurl(VXBenchSession& theSession, const QString& theWorkload, const QUrl& theUrl,
                     const QByteArray& theExpected, int theCalls)
{
    using Interface = VXCurlClient::Interface;
    const QString authority = theSession.authority().certificateFile;
    const Task ours =
        repeated(theCalls, [&theUrl, &theExpected] { return libraryGet(theUrl) == theExpected; });
    for (const auto& [name, interface] :
         {std::pair(u"libcurl easy"_s, Interface::Easy), {u"libcurl multi"_s, Interface::Multi}}) {
        VXCurlClient curl(interface, authority);
        theSession.compare(
            {.id = u"B22"_s,
             .workload = theWorkload,
             .yardstick = name,
             .ours = ours,
             .theirs =
                 repeated(theCalls, [&curl, &theUrl,
                                     &theExpected] { return curl.get(theUrl) == theExpected; }),
             .check = {},
             .calls = theCalls,
             .bytes = theExpected.size() * theCalls,
             .metric = theCalls > 1 ? Metric::TimePerCall : Metric::MebibytesPerSecond,
             .timeGoal = {},
             .cpuGoal = {},
             .memoryGoal = {}});
    }
}

/// The program starts anew for each round, and writes to a file.
void compareWithCurlProgram(VXBenchSession& theSession, const QString& theWorkload,
                            const QUrl& theUrl, const QByteArray& theExpected, int theCalls)
{
    QStringList arguments{u"--silent"_s, u"--fail"_s,   u"--noproxy"_s,
                          u"*"_s,        u"--cacert"_s, theSession.authority().certificateFile};
    for (int i = 0; i < theCalls; ++i)
        arguments << theUrl.toString();
    const qsizetype expectedSize = theExpected.size() * theCalls;
    theSession.compare(
        {.id = u"B22"_s,
         .workload = theWorkload,
         .yardstick = u"curl, start included"_s,
         .ours = repeated(theCalls, [&] { return libraryGet(theUrl) == theExpected; }),
         .theirs =
             [&] { return theSession.run(u"B22"_s, u"curl"_s, arguments).size() == expectedSize; },
         .check = {},
         .calls = theCalls,
         .bytes = expectedSize,
         .metric = theCalls > 1 ? Metric::TimePerCall : Metric::MebibytesPerSecond,
         .timeGoal = {},
         .cpuGoal = {},
         .memoryGoal = {}});
}

} // namespace

void benchGet(VXBenchSession& theSession)
{
    const QByteArray expected = smallDocument(theSession);
    for (const QUrl& url :
         {theSession.nginx().url(documentPath), theSession.nginx().tlsUrl(documentPath)}) {
        std::ignore = libraryGet(url); // the CA list, before the yardstick's manager is made
        VXRawClient raw;
        theSession.compare(
            {.id = u"B1"_s,
             .workload = url.scheme() == "https"_L1 ? u"GET 1 KiB, TLS"_s : u"GET 1 KiB"_s,
             .yardstick = u"raw Qt"_s,
             .ours = repeated(callsOfARound, [&] { return libraryGet(url) == expected; }),
             .theirs = repeated(callsOfARound, [&] { return raw.get(url) == expected; }),
             .check = {},
             .calls = callsOfARound,
             .timeGoal = VXBenchGoal::noMoreThan(1.15),
             .cpuGoal = VXBenchGoal::noMoreThan(1.15),
             .memoryGoal = {}});
    }
}

void benchPost(VXBenchSession& theSession)
{
    const QJsonObject expected = QJsonDocument::fromJson(VXBenchNginx::json()).object();
    QUrlQuery form;
    for (int i = 0; i < 10; ++i)
        form.addQueryItem(u"field%1"_s.arg(i),
                          QString(13, u'v')); // 200 bytes with the signs between
    const QByteArray encoded = form.toString(QUrl::FullyEncoded).toUtf8();
    const QUrl url = theSession.nginx().url(u"/json"_s);
    VXRawClient raw;
    theSession.compare(
        {.id = u"B2"_s,
         .workload = u"POST 200 bytes, JSON 500 bytes"_s,
         .yardstick = u"raw Qt"_s,
         .ours = repeated(callsOfARound,
                          [&] {
                              return VXHttpOperation::create(url, form,
                                                             QNetworkAccessManager::PostOperation)
                                         .receiveJsonObject() == expected;
                          }),
         .theirs = repeated(callsOfARound,
                            [&] {
                                const QByteArray body = raw.postForm(url, encoded);
                                return QJsonDocument::fromJson(body).object() == expected;
                            }),
         .check = {},
         .calls = callsOfARound,
         .timeGoal = VXBenchGoal::noMoreThan(1.18),
         .cpuGoal = VXBenchGoal::noMoreThan(1.18),
         .memoryGoal = {}});
}

void benchFreshThread(VXBenchSession& theSession)
{
    const QByteArray expected = smallDocument(theSession);
    for (const QUrl& url :
         {theSession.nginx().url(documentPath), theSession.nginx().tlsUrl(documentPath)}) {
        // Fewer vary by more than what is to be seen; a handshake takes six times as long.
        const int threads = url.scheme() == "https"_L1 ? 50 : 200;
        const Task ours = [&] { return libraryGetInThread(url, 1, expected); };
        const Task theirs = [&] { return rawGetInThread(url, 1, expected); };
        theSession.compare(
            {.id = u"B3"_s,
             .workload = u"first request of a thread, "_s + url.scheme(),
             .yardstick = u"new raw manager"_s,
             .ours = repeated(threads, [&ours] { return inFreshThread(ours); }),
             .theirs = repeated(threads, [&theirs] { return inFreshThread(theirs); }),
             .check = {},
             .calls = threads,
             .timeGoal = VXBenchGoal::noMoreThan(1.10),
             .cpuGoal = VXBenchGoal::noMoreThan(1.10),
             .memoryGoal = {}});
    }
}

void benchThreads(VXBenchSession& theSession)
{
    const int requests = theSession.isShort() ? 100 : 500;
    const QByteArray expected = smallDocument(theSession);
    const QUrl url = theSession.nginx().url(documentPath);
    VXBenchTimes four;
    for (const int threads : {1, 2, 4, 8, 32}) {
        const VXBenchTimes times = theSession.compare(
            {.id = u"B7"_s,
             .workload = u"%1 threads, %2 requests each"_s.arg(threads).arg(requests),
             .yardstick = u"raw Qt"_s,
             .ours =
                 [&] {
                     return inThreads(threads,
                                      [&] { return libraryGetInThread(url, requests, expected); });
                 },
             .theirs =
                 [&] {
                     return inThreads(threads,
                                      [&] { return rawGetInThread(url, requests, expected); });
                 },
             .check = {},
             .calls = threads * requests,
             .metric = Metric::CallsPerSecond,
             .timeGoal = VXBenchGoal::noLessThan(0.9),
             .cpuGoal = {},
             .memoryGoal = {}});
        if (threads == 4)
            four = times;
        else if (threads > 4)
            addFall(theSession, four, times, threads);
    }
}

void benchNotFound(VXBenchSession& theSession)
{
    const QByteArray expected = VXBenchNginx::missing();
    const QUrl url = theSession.nginx().url(u"/no-such-file"_s);
    VXRawClient raw;
    theSession.compare(
        {.id = u"B12"_s,
         .workload = u"404 with 10 KiB"_s,
         .yardstick = u"raw Qt"_s,
         .ours = repeated(callsOfARound, [&] { return libraryGet(url) == expected; }),
         .theirs = repeated(callsOfARound, [&] { return raw.get(url) == expected; }),
         .check = {},
         .calls = callsOfARound,
         .timeGoal = VXBenchGoal::noMoreThan(1.5),
         .cpuGoal = VXBenchGoal::noMoreThan(1.5),
         .memoryGoal = {}});
}

void benchCurl(VXBenchSession& theSession)
{
    const QByteArray small = smallDocument(theSession);
    const QUrl url = theSession.nginx().url(documentPath);
    compareWithCurl(theSession, u"GET 1 KiB"_s, url, small, callsOfARound);
    compareWithCurlProgram(theSession, u"GET 1 KiB"_s, url, small, callsOfARound);
    compareWithCurl(theSession, u"GET 1 KiB, TLS"_s, theSession.nginx().tlsUrl(documentPath), small,
                    callsOfARound);

    const QByteArray large = VXBenchSession::randomBytes(100 * kibibyte * kibibyte);
    theSession.nginx().addDocument(u"large.bin"_s, large);
    const QUrl largeUrl = theSession.nginx().url(u"/large.bin"_s);
    compareWithCurl(theSession, u"GET 100 MiB"_s, largeUrl, large, 1);
    compareWithCurlProgram(theSession, u"GET 100 MiB"_s, largeUrl, large, 1);
}
