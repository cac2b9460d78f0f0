#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXUploadLoadRun.h"

#include <QtCore/QDir>

using namespace Qt::StringLiterals;

namespace {

using Figure = VXBenchGoal::Figure;
using Results = QList<VXUploadLoadResult>;

QList<double> values(const Results& theResults, double VXUploadLoadResult::*theField)
{
    QList<double> list;
    for (const VXUploadLoadResult& result : theResults)
        list.append(result.*theField);
    return list;
}

/// False when the server could not be measured.
bool measure(VXBenchSession& theSession, const VXUploadLoad& theLoad, const QString& theServer,
             Results& theResults)
{
    VXUploadLoadRun run(theLoad);
    const std::optional<VXUploadLoadResult> result = run.measure(theServer);
    if (result)
        theResults.append(*result);
    else
        theSession.report().addFailure(u"B19"_s, theServer + u": "_s + run.error());
    return result.has_value();
}

void addRow(VXBenchSession& theSession, const VXBenchRow& theRow, const VXUploadLoad& theLoad)
{
    VXBenchRow row = theRow;
    row.id = u"B19"_s;
    row.workload = u"%1 phones, %2 photos of %3 MB"_s.arg(theLoad.phones)
                       .arg(theLoad.photos)
                       .arg(static_cast<double>(theLoad.bytes) / 1e6);
    theSession.report().add(row);
}

} // namespace

void benchPhones(VXBenchSession& theSession)
{
    if (qEnvironmentVariable("VX_NAMESPACE") != "1"_L1) {
        theSession.report().addFailure(u"B19"_s,
                                       u"needs the network namespace that script/bench makes"_s);
        return;
    }
    const VXUploadLoad load{.phones = 8,
                            .photos = theSession.isShort() ? 16 : 50,
                            .bytes = theSession.isShort() ? 1'000'000 : 5 * 1024 * 1024,
                            .folder = QDir::tempPath(),
                            .identity = theSession.authority()};
    Results service;
    Results bare;
    Results nginx;
    for (int i = 0; i < theSession.rounds(); ++i) {
        if (!measure(theSession, load, u"service"_s, service) ||
            !measure(theSession, load, u"bare"_s, bare) ||
            !measure(theSession, load, u"nginx"_s, nginx))
            return;
    }
    const auto row = [](const QString& theMetric, const QString& theUnit,
                        const QString& theYardstick, const QList<double>& theOurs,
                        const QList<double>& theTheirs, const VXBenchGoal& theGoal) {
        return VXBenchRow{.id = {},
                          .workload = {},
                          .metric = theMetric,
                          .unit = theUnit,
                          .yardstick = theYardstick,
                          .ours = theOurs,
                          .theirs = theTheirs,
                          .goal = theGoal,
                          .note = {}};
    };
    const QString bareRoute = u"bare QHttpServer and QSaveFile"_s;
    const auto speed = &VXUploadLoadResult::megabytesPerSecond;
    const auto cpu = &VXUploadLoadResult::cpuSeconds;
    const auto memory = &VXUploadLoadResult::memoryBytes;
    const auto block = &VXUploadLoadResult::blockMs;
    addRow(theSession,
           row(u"throughput"_s, u"MB/s"_s, bareRoute, values(service, speed), values(bare, speed),
               VXBenchGoal::noLessThan(0.95)),
           load);
    addRow(theSession,
           row(u"throughput"_s, u"MB/s"_s, u"nginx PUT"_s, values(service, speed),
               values(nginx, speed), {}),
           load);
    addRow(theSession,
           row(u"CPU time of the server"_s, u"s"_s, bareRoute, values(service, cpu),
               values(bare, cpu), {}),
           load);
    const auto bodies = static_cast<double>(load.phones * load.bytes);
    const auto shares = [&](const Results& theResults) {
        QList<double> list = values(theResults, memory);
        for (double& value : list)
            value /= bodies;
        return list;
    };
    addRow(theSession,
           row(u"growth of memory by bodies in flight"_s, u"x"_s, bareRoute, shares(service),
               shares(bare), VXBenchGoal::noMoreThan(2.2, Figure::Median)),
           load);
    QList<double> beyond;
    for (qsizetype i = 0; i < service.size(); ++i)
        beyond.append(service.at(i).blockMs - bare.at(i).blockMs);
    addRow(theSession,
           row(u"longest block of the event loop"_s, u"ms"_s, bareRoute, values(service, block),
               values(bare, block), {}),
           load);
    addRow(theSession,
           row(u"block beyond the bare route"_s, u"ms"_s, {}, beyond, {},
               VXBenchGoal::noMoreThan(50, Figure::Median)),
           load);
}
