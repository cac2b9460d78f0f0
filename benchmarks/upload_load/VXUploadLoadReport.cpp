#include "VXUploadLoadReport.h"

#include <QtCore/QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double LEAST_THROUGHPUT = 0.95;  // of the bare route
constexpr double MOST_MEMORY = 2.2;        // times the bodies in flight
constexpr double MOST_BLOCK_BEYOND = 50.0; // milliseconds more than the bare route

double median(const QList<VXUploadLoadResult>& theResults, double VXUploadLoadResult::*theField)
{
    QList<double> values;
    for (const VXUploadLoadResult& result : theResults)
        values.append(result.*theField);
    std::ranges::sort(values);
    const qsizetype middle = values.size() / 2;
    return values.size() % 2 == 1 ? values.at(middle)
                                  : (values.at(middle - 1) + values.at(middle)) / 2;
}

VXUploadLoadResult median(const QList<VXUploadLoadResult>& theResults)
{
    return {median(theResults, &VXUploadLoadResult::megabytesPerSecond),
            median(theResults, &VXUploadLoadResult::memoryBytes),
            median(theResults, &VXUploadLoadResult::blockMs)};
}

QJsonObject toJson(const VXUploadLoadResult& theResult)
{
    return {{u"megabytesPerSecond"_s, theResult.megabytesPerSecond},
            {u"memoryBytes"_s, theResult.memoryBytes},
            {u"blockMs"_s, theResult.blockMs}};
}

QJsonArray toJson(const QList<VXUploadLoadResult>& theResults)
{
    QJsonArray array;
    for (const VXUploadLoadResult& result : theResults)
        array.append(toJson(result));
    return array;
}

QString row(const QString& theName, const VXUploadLoadResult& theResult)
{
    return u"%1 %2 MB/s %3 MB %4 ms\n"_s.arg(theName, -22)
        .arg(theResult.megabytesPerSecond, 9, 'f', 1)
        .arg(theResult.memoryBytes / 1e6, 9, 'f', 1)
        .arg(theResult.blockMs, 9, 'f', 1);
}

QString target(const QString& theText, double theValue, bool theIsMet)
{
    return u"%1 %2  %3\n"_s.arg(theText, -52)
        .arg(theValue, 8, 'f', 2)
        .arg(theIsMet ? u"met"_s : u"MISSED"_s);
}

} // namespace

VXUploadLoadReport::VXUploadLoadReport(const VXUploadLoad& theLoad,
                                       const QList<VXUploadLoadResult>& theService,
                                       const QList<VXUploadLoadResult>& theBare)
    : myLoad(theLoad)
    , myService(theService)
    , myBare(theBare)
    , myServiceMedian(median(theService))
    , myBareMedian(median(theBare))
{
}

double VXUploadLoadReport::throughputRatio() const
{
    return myServiceMedian.megabytesPerSecond / myBareMedian.megabytesPerSecond;
}

double VXUploadLoadReport::memoryRatio() const
{
    return myServiceMedian.memoryBytes / static_cast<double>(myLoad.phones * myLoad.bytes);
}

double VXUploadLoadReport::blockBeyondMs() const
{
    return myServiceMedian.blockMs - myBareMedian.blockMs;
}

bool VXUploadLoadReport::isEachTargetMet() const
{
    return throughputRatio() >= LEAST_THROUGHPUT && memoryRatio() <= MOST_MEMORY &&
           blockBeyondMs() <= MOST_BLOCK_BEYOND;
}

QString VXUploadLoadReport::table() const
{
    return u"%1 phones at once, %2 photos of %3 bytes in all, medians of %4 runs each\n\n"_s
               .arg(myLoad.phones)
               .arg(myLoad.photos)
               .arg(myLoad.bytes)
               .arg(myService.size()) +
           u"%1 %2 %3 %4\n"_s.arg(QString(), -22)
               .arg(u"throughput"_s, 14)
               .arg(u"memory"_s, 12)
               .arg(u"block"_s, 12) +
           row(u"VXLocalUploadService"_s, myServiceMedian) +
           row(u"bare QHttpServer route"_s, myBareMedian) + u'\n' +
           target(u"throughput / bare route, at least 0.95"_s, throughputRatio(),
                  throughputRatio() >= LEAST_THROUGHPUT) +
           target(u"peak memory / bodies in flight, at most 2.2"_s, memoryRatio(),
                  memoryRatio() <= MOST_MEMORY) +
           target(u"longest block beyond the bare route, at most 50 ms"_s, blockBeyondMs(),
                  blockBeyondMs() <= MOST_BLOCK_BEYOND);
}

QJsonObject VXUploadLoadReport::json() const
{
    return {
        {u"phones"_s, myLoad.phones},
        {u"photos"_s, myLoad.photos},
        {u"bytes"_s, myLoad.bytes},
        {u"service"_s, toJson(myService)},
        {u"bare"_s, toJson(myBare)},
        {u"throughputRatio"_s, throughputRatio()},
        {u"memoryRatio"_s, memoryRatio()},
        {u"blockBeyondMs"_s, blockBeyondMs()},
        {u"isEachTargetMet"_s, isEachTargetMet()},
    };
}
