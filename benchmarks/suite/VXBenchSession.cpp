#include "VXBenchSession.h"

#include "VXProcessMemory.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <ctime>

#include <malloc.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int warmUps = 2;
constexpr int patience = 300'000; // milliseconds for another program
constexpr double mebibyte = 1024 * 1024;

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    rusage children{}; // programs that have ended, curl for one
    getrusage(RUSAGE_CHILDREN, &children);
    const auto seconds = [](const timeval& theTime) {
        return static_cast<double>(theTime.tv_sec) + static_cast<double>(theTime.tv_usec) / 1e6;
    };
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 +
           seconds(children.ru_utime) + seconds(children.ru_stime);
}

template <typename Samples, typename Field>
QList<double> values(const Samples& theSamples, Field theField)
{
    QList<double> result;
    for (const auto& sample : theSamples)
        result.append(theField(sample));
    return result;
}

} // namespace

struct VXBenchSession::Sample
{
    bool isSound = false;
    double wall = 0; // seconds
    double cpu = 0;  // seconds of all threads of this process
    double peak = 0; // MiB above what was in use before
};

VXBenchSession::VXBenchSession(int theRounds, bool theIsShort)
    : myRounds(theRounds)
    , myIsShort(theIsShort)
{
    pin(0);
}

VXBenchSession::~VXBenchSession() = default;

VXBenchNginx& VXBenchSession::nginx()
{
    if (!myNginx) {
        myNginx = std::make_unique<VXBenchNginx>(myCertificates.leaf());
        if (!myNginx->start())
            qFatal("%s", qPrintable(myNginx->errorString()));
        pin(1, myNginx->processId());
    }
    return *myNginx;
}

const VXTestCertificates::Identity& VXBenchSession::authority() const
{
    return myCertificates.authority();
}

QString VXBenchSession::filePath(const QString& theName) const
{
    return myFolder.filePath(theName);
}

VXBenchSession::Sample VXBenchSession::measure(const VXBenchComparison& theComparison,
                                               const VXBenchComparison::Task& theTask)
{
    if (theComparison.bytes > 0)
        malloc_trim(0); // what the round before left in the heap would hide what this one needs
    VXProcessMemory::resetPeak();
    const qint64 before = VXProcessMemory::resident();
    Sample sample;
    const double cpuBefore = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    sample.isSound = theTask();
    sample.wall = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    sample.cpu = cpuSeconds() - cpuBefore;
    sample.peak = static_cast<double>(VXProcessMemory::peak() - before) / mebibyte;
    if (theComparison.check)
        sample.isSound = theComparison.check() && sample.isSound;
    return sample;
}

VXBenchTimes VXBenchSession::compare(const VXBenchComparison& theComparison)
{
    QList<Sample> ours;
    QList<Sample> theirs;
    for (int i = -warmUps; i < myRounds; ++i) {
        const Sample our = measure(theComparison, theComparison.ours);
        const Sample their = measure(theComparison, theComparison.theirs);
        if (!our.isSound || !their.isSound) {
            myReport.addFailure(theComparison.id,
                                u"%1: %2 did not get the expected answer"_s.arg(
                                    theComparison.workload,
                                    our.isSound ? theComparison.yardstick : u"the library"_s));
            return {};
        }
        if (i >= 0) {
            ours.append(our);
            theirs.append(their);
        }
    }
    addRows(theComparison, ours, theirs);
    const auto wall = [](const Sample& theSample) { return theSample.wall; };
    return {values(ours, wall), values(theirs, wall)};
}

void VXBenchSession::addRows(const VXBenchComparison& theComparison, const QList<Sample>& theOurs,
                             const QList<Sample>& theTheirs)
{
    const auto add = [&](const QString& theMetric, const QString& theUnit,
                         const VXBenchGoal& theGoal, const auto& theField) {
        myReport.add({.id = theComparison.id,
                      .workload = theComparison.workload,
                      .metric = theMetric,
                      .unit = theUnit,
                      .yardstick = theComparison.yardstick,
                      .ours = values(theOurs, theField),
                      .theirs = values(theTheirs, theField),
                      .goal = theGoal,
                      .note = {}});
    };
    const double calls = theComparison.calls;
    switch (theComparison.metric) {
    case VXBenchComparison::Metric::TimePerCall:
        add(u"wall time of a call"_s, u"us"_s, theComparison.timeGoal,
            [calls](const Sample& theSample) { return theSample.wall / calls * 1e6; });
        break;
    case VXBenchComparison::Metric::MebibytesPerSecond:
        add(u"throughput"_s, u"MiB/s"_s, theComparison.timeGoal,
            [bytes = static_cast<double>(theComparison.bytes)](const Sample& theSample) {
                return bytes / mebibyte / theSample.wall;
            });
        break;
    case VXBenchComparison::Metric::CallsPerSecond:
        add(u"requests"_s, u"1/s"_s, theComparison.timeGoal,
            [calls](const Sample& theSample) { return calls / theSample.wall; });
        break;
    }
    add(u"CPU time of a call"_s, u"us"_s, theComparison.cpuGoal,
        [calls](const Sample& theSample) { return theSample.cpu / calls * 1e6; });
    add(u"peak memory above idle"_s, u"MiB"_s, theComparison.memoryGoal,
        [](const Sample& theSample) { return theSample.peak; });
}

QByteArray VXBenchSession::run(const QString& theId, const QString& theProgram,
                               const QStringList& theArguments, bool theIsPinned)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    if (!theIsPinned)
        process.setChildProcessModifier([] { pin(-1); });
    process.start(theProgram, theArguments, QIODevice::ReadOnly);
    const bool hasEnded = process.waitForFinished(patience);
    if (hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return process.readAllStandardOutput();
    myReport.addFailure(
        theId, u"%1 %2 failed: %3"_s.arg(theProgram, theArguments.join(u' '),
                                         hasEnded ? u"exit status %1"_s.arg(process.exitCode())
                                                  : process.errorString()));
    return {};
}

void VXBenchSession::pin(int theProcessor, qint64 theProcess)
{
    const int count = static_cast<int>(sysconf(_SC_NPROCESSORS_CONF));
    if (count < 2)
        return;
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int i = 0; i < count; ++i) {
        if (theProcessor < 0 || i == theProcessor)
            CPU_SET(i, &set);
    }
    sched_setaffinity(static_cast<pid_t>(theProcess), sizeof set, &set);
}

QByteArray VXBenchSession::randomBytes(qsizetype theSize)
{
    QRandomGenerator generator(1);
    QByteArray bytes(theSize, Qt::Uninitialized);
    std::ranges::generate(bytes, [&generator] { return static_cast<char>(generator.generate()); });
    return bytes;
}
