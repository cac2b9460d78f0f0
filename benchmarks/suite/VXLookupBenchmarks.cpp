#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXRawClient.h"

#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtHttpServer/QHttpServer>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

using Figure = VXBenchGoal::Figure;

/// Nanoseconds, repetition by repetition.
struct Times
{
    QList<double> wall; // of all threads' calls together: the time between two ends of a call
    QList<double> cpu;
};

/// Runs the benchmarks whose names match, in random order, and returns them by their names.
QHash<QString, Times> runMicro(VXBenchSession& theSession, const QString& theId,
                               const QString& theFilter, bool theIsPinned = false)
{
    const QByteArray output = theSession.run(
        theId, QCoreApplication::applicationDirPath() + u"/vx-bench-micro"_s,
        {u"--benchmark_format=json"_s, u"--benchmark_filter="_s + theFilter,
         u"--benchmark_repetitions=%1"_s.arg(theSession.rounds()), u"--benchmark_min_time=0.01"_s,
         u"--benchmark_enable_random_interleaving=true"_s},
        theIsPinned);
    QHash<QString, Times> result;
    const QJsonArray runs =
        QJsonDocument::fromJson(output).object().value(u"benchmarks"_s).toArray();
    for (const QJsonValue& run : runs) {
        if (run[u"run_type"_s].toString() != "iteration"_L1)
            continue;
        // Google Benchmark adds up what the threads count.
        const double threads = run[u"threads"_s].toDouble(1);
        const double calls = run[u"calls"_s].toDouble(threads) / threads;
        QString name = run[u"name"_s].toString();
        name.remove(u"/process_time"_s); // the same for all
        Times& times = result[name];
        times.wall.append(run[u"real_time"_s].toDouble() / calls);
        times.cpu.append(run[u"cpu_time"_s].toDouble() / calls);
    }
    return result;
}

struct Line
{
    QString workload;
    QString name;
    QString yardstick; // its name, empty = none
    VXBenchGoal goal;
};

void addLine(VXBenchSession& theSession, const QString& theId, const Line& theLine,
             const QHash<QString, Times>& theTimes)
{
    const auto add = [&](const QString& theMetric, QList<double> Times::*theField) {
        theSession.report().add({.id = theId,
                                 .workload = theLine.workload,
                                 .metric = theMetric,
                                 .unit = u"ns"_s,
                                 .yardstick = theLine.yardstick.isEmpty() ? QString() : u"Qt"_s,
                                 .ours = theTimes.value(theLine.name).*theField,
                                 .theirs = theTimes.value(theLine.yardstick).*theField,
                                 .goal = theLine.goal,
                                 .note = {}});
    };
    add(u"wall time of a call"_s, &Times::wall);
    add(u"CPU time of a call"_s, &Times::cpu);
}

/// Ten times the input must not take more than ten times the time; 1.1 for what the caches do.
void addGrowth(VXBenchSession& theSession, const QString& theWorkload,
               const QList<double>& theSmall, const QList<double>& theLarge)
{
    QList<double> tenfold;
    for (const double time : theSmall)
        tenfold.append(10 * time);
    theSession.report().add({.id = u"B21"_s,
                             .workload = theWorkload,
                             .metric = u"growth: 1000 beside 10 x 100"_s,
                             .unit = u"ns"_s,
                             .yardstick = u"linear"_s,
                             .ours = theLarge,
                             .theirs = tenfold,
                             .goal = VXBenchGoal::noMoreThan(1.1),
                             .note = {}});
}

qint64 cpuNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<qint64>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

/// A service with many admitted phones, all at one address, and how long it takes to find the
/// last and the first of them.
class TokenBenchmark
{
    Q_DISABLE_COPY_MOVE(TokenBenchmark)

public:
    TokenBenchmark()
    {
        myServer.route(u"/"_s,
                       [this](const QHttpServerRequest& theRequest) { return answer(theRequest); });
        myUrl = QUrl(u"http://127.0.0.1:%1/"_s.arg(myServer.listen(QHostAddress::LocalHost)));
    }

    void admitUpTo(int theCount)
    {
        for (; myCount < theCount; ++myCount) {
            myUrl.setQuery(myService.url().query(QUrl::FullyEncoded));
            myMayRepeat = false;
            myClient.get(myUrl);
            if (myCount == 0)
                myFirst = myUrl;
        }
    }

    /// Nanoseconds of processor time of one look-up; below 0 when the token was not accepted.
    double measure()
    {
        myMayRepeat = true;
        return myClient.get(myFirst).toDouble();
    }

private:
    QString answer(const QHttpServerRequest& theRequest)
    {
        constexpr int calls = 1000;
        const int count = myMayRepeat ? calls : 1;
        bool isAccepted = true;
        const qint64 start = cpuNanoseconds();
        for (int i = 0; i < count; ++i)
            isAccepted = !myService.validToken(theRequest).isEmpty() && isAccepted;
        return QString::number(isAccepted ? static_cast<double>(cpuNanoseconds() - start) / count
                                          : -1.0);
    }

    QHttpServer myServer;
    VXLocalUploadService myService{nullptr};
    VXRawClient myClient;
    QUrl myUrl;
    QUrl myFirst;
    int myCount = 0;
    bool myMayRepeat = false;
};

void benchTokens(VXBenchSession& theSession)
{
    TokenBenchmark benchmark;
    QHash<int, QList<double>> times;
    for (const int sessions : {100, 1000}) {
        benchmark.admitUpTo(sessions);
        for (int i = 0; i < theSession.rounds(); ++i)
            times[sessions].append(benchmark.measure());
        if (times[sessions].contains(-1)) {
            theSession.report().addFailure(u"B21"_s, u"a token was not accepted"_s);
            return;
        }
        theSession.report().add({.id = u"B21"_s,
                                 .workload = u"validToken, %1 sessions"_s.arg(sessions),
                                 .metric = u"CPU time of a call"_s,
                                 .unit = u"ns"_s,
                                 .yardstick = {},
                                 .ours = times[sessions],
                                 .theirs = {},
                                 .goal = {},
                                 .note = {}});
    }
    addGrowth(theSession, u"validToken"_s, times[100], times[1000]);
}

} // namespace

void benchProxy(VXBenchSession& theSession)
{
    QHash<QString, Times> times = runMicro(theSession, u"B13"_s, u"^query(None|Own)/"_s);
    // Qt asks for the system's proxy in a thread of its own. Whether the kernel puts it beside the
    // asking one or on another processor decides by a factor of two.
    times.insert(runMicro(theSession, u"B13"_s, u"^query(System|Qt)/"_s, true));
    const VXBenchGoal microsecond = VXBenchGoal::noMoreThan(1000, Figure::Median);
    for (const QString& threads : {u"1"_s, u"8"_s}) {
        const QString tail = u"/real_time/threads:"_s + threads;
        for (const Line& line :
             {Line{u"queryProxy: none"_s, u"queryNone"_s + tail, {}, microsecond},
              Line{u"queryProxy: own"_s, u"queryOwn"_s + tail, {}, microsecond},
              Line{u"queryProxy: system"_s, u"querySystem"_s + tail, u"queryQt"_s + tail,
                   VXBenchGoal::noMoreThan(1.05)}}) {
            Line shown = line;
            shown.workload += u", %1 threads"_s.arg(threads);
            addLine(theSession, u"B13"_s, shown, times);
        }
    }
}

void benchMessages(VXBenchSession& theSession)
{
    const QHash<QString, Times> times = runMicro(theSession, u"B14"_s, u"^errorMessage/"_s);
    const VXBenchGoal microsecond = VXBenchGoal::noMoreThan(1000, Figure::Median);
    for (const QString& threads : {u"1"_s, u"8"_s})
        addLine(theSession, u"B14"_s,
                {u"errorMessage() of every code, %1 threads"_s.arg(threads),
                 u"errorMessage/real_time/threads:"_s + threads,
                 {},
                 microsecond},
                times);

    QList<double> fills;
    for (int i = -1; i < theSession.rounds(); ++i) {
        const QByteArray output = theSession.run(u"B14"_s, QCoreApplication::applicationFilePath(),
                                                 {u"child"_s, u"first-message"_s});
        if (i >= 0)
            fills.append(output.split(' ').value(0).toDouble() / 1e6);
    }
    theSession.report().add({.id = u"B14"_s,
                             .workload = u"first message of the process"_s,
                             .metric = u"wall time"_s,
                             .unit = u"ms"_s,
                             .yardstick = {},
                             .ours = fills,
                             .theirs = {},
                             .goal = VXBenchGoal::noMoreThan(1, Figure::Median),
                             .note = {}});
}

void benchTables(VXBenchSession& theSession)
{
    const QHash<QString, Times> times = runMicro(
        theSession, u"B21"_s, u"^(messageTable|enumEncode|enumDecode|rangeHeader|queryItem.*)/"_s);
    for (const Line& line : {Line{u"message table"_s, u"messageTable/real_time"_s, {}, {}},
                             Line{u"enumeration to text"_s, u"enumEncode/real_time"_s, {}, {}},
                             Line{u"text to enumeration"_s, u"enumDecode/real_time"_s, {}, {}},
                             Line{u"Range header"_s, u"rangeHeader/real_time"_s, {}, {}}})
        addLine(theSession, u"B21"_s, line, times);
    for (const auto& [workload, name] : {std::pair(u"one query item beside %1"_s, u"queryItem"_s),
                                         {u"%1 query items"_s, u"queryItemList"_s}}) {
        const QString pattern = name + u"/%1/real_time"_s;
        for (const QString& count : {u"10"_s, u"100"_s, u"1000"_s})
            addLine(theSession, u"B21"_s, {workload.arg(count), pattern.arg(count), {}, {}}, times);
        addGrowth(theSession, workload.arg(1000), times.value(pattern.arg(100)).cpu,
                  times.value(pattern.arg(1000)).cpu);
    }
    benchTokens(theSession);
}
