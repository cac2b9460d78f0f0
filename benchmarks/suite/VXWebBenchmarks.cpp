#include "VXBenchSession.h"
#include "VXBenchmarks.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QList<double> numbers(const QJsonValue& theArray)
{
    QList<double> result;
    for (const QJsonValue& value : theArray.toArray())
        result.append(value.toDouble());
    return result;
}

/// All goals of these benchmarks are limits of the ratio: "ratio <= 1.05".
VXBenchGoal goal(const QString& theText)
{
    return theText.isEmpty() ? VXBenchGoal()
                             : VXBenchGoal::noMoreThan(theText.section(u' ', -1).toDouble());
}

VXBenchRow row(const QJsonObject& theObject)
{
    return {.id = theObject.value("id"_L1).toString(),
            .workload = theObject.value("workload"_L1).toString(),
            .metric = theObject.value("metric"_L1).toString(),
            .unit = theObject.value("unit"_L1).toString(),
            .yardstick = theObject.value("yardstick"_L1).toString(),
            .ours = numbers(theObject.value("values"_L1)),
            .theirs = numbers(theObject.value("yardstickValues"_L1)),
            .goal = goal(theObject.value("goal"_L1).toString()),
            .note = theObject.value("note"_L1).toString()};
}

/// Measures in a process of its own, on all processors, and takes its report over.
void runWeb(VXBenchSession& theSession, const QString& theId)
{
    const QByteArray output = theSession.run(theId, QCoreApplication::applicationFilePath(),
                                             {u"web"_s, theId, QString::number(theSession.rounds()),
                                              theSession.isShort() ? u"short"_s : u"full"_s},
                                             false);
    const QJsonObject report = QJsonDocument::fromJson(output).object();
    const QJsonArray rows = report.value("rows"_L1).toArray();
    const QJsonArray failures = report.value("failures"_L1).toArray();
    for (const QJsonValue& object : rows)
        theSession.report().add(row(object.toObject()));
    for (const QJsonValue& failure : failures)
        theSession.report().addFailure(theId, failure.toString().section(u": "_s, 1));
    if (!output.isEmpty() && rows.isEmpty() && failures.isEmpty())
        theSession.report().addFailure(theId, u"nothing was measured"_s);
}

/// Milliseconds, wall and processor, of a fresh process until it has loaded thePage.
std::pair<double, double> startTimes(VXBenchSession& theSession, const QString& theSide,
                                     const QString& thePage)
{
    const QByteArray output = theSession.run(u"B15"_s, QCoreApplication::applicationFilePath(),
                                             {u"first-load"_s, theSide, thePage}, false);
    const QList<QByteArray> words = output.trimmed().split(' ');
    return {words.value(0).toDouble() / 1e6, words.value(1).toDouble() / 1e6};
}

void runStarts(VXBenchSession& theSession)
{
    const QString page = theSession.filePath(u"first.html"_s);
    QFile file(page);
    if (!file.open(QFile::WriteOnly) || file.write("<!DOCTYPE html><title>Hallo</title>") < 0) {
        theSession.report().addFailure(u"B15"_s, file.errorString());
        return;
    }
    file.close();
    QList<double> wall[2];
    QList<double> cpu[2];
    for (int i = -1; i < theSession.rounds(); ++i) {
        for (const int side : {0, 1}) {
            const auto [wallTime, cpuTime] =
                startTimes(theSession, side == 0 ? u"ours"_s : u"bare"_s, page);
            if (wallTime <= 0) // the reason is in the report
                return;
            if (i < 0)
                continue;
            wall[side].append(wallTime);
            cpu[side].append(cpuTime);
        }
    }
    const auto add = [&](const QString& theMetric, const QList<double>* theTimes,
                         const VXBenchGoal& theGoal) {
        theSession.report().add({.id = u"B15"_s,
                                 .workload = u"a fresh process to its first load"_s,
                                 .metric = theMetric,
                                 .unit = u"ms"_s,
                                 .yardstick = u"bare view"_s,
                                 .ours = theTimes[0],
                                 .theirs = theTimes[1],
                                 .goal = theGoal,
                                 .note = {}});
    };
    add(u"wall time"_s, wall, VXBenchGoal::noMoreThan(1.05));
    add(u"CPU time"_s, cpu, {});
}

} // namespace

void benchWebView(VXBenchSession& theSession)
{
    runStarts(theSession);
    runWeb(theSession, u"B15"_s);
}

void benchExecutor(VXBenchSession& theSession)
{
    runWeb(theSession, u"B16"_s);
}

void benchScheme(VXBenchSession& theSession)
{
    runWeb(theSession, u"B17"_s);
}

void benchChannel(VXBenchSession& theSession)
{
    runWeb(theSession, u"B18"_s);
}
