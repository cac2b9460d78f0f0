#include "VXBenchStatistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

double VXBenchStatistics::median(const QList<double>& theValues)
{
    return percentile(theValues, 50);
}

double VXBenchStatistics::percentile(QList<double> theValues, double thePercent)
{
    if (theValues.isEmpty())
        return std::numeric_limits<double>::quiet_NaN();
    std::ranges::sort(theValues);
    const double last = static_cast<double>(theValues.size() - 1);
    const double rank = std::clamp(thePercent, 0.0, 100.0) / 100 * last;
    const auto below = static_cast<qsizetype>(std::floor(rank));
    const auto above = static_cast<qsizetype>(std::ceil(rank));
    const double share = rank - std::floor(rank);
    return theValues.at(below) + share * (theValues.at(above) - theValues.at(below));
}

double VXBenchStatistics::smallest(const QList<double>& theValues)
{
    return percentile(theValues, 0);
}

double VXBenchStatistics::largest(const QList<double>& theValues)
{
    return percentile(theValues, 100);
}

QList<double> VXBenchStatistics::ratios(const QList<double>& theOurs,
                                        const QList<double>& theYardstick)
{
    QList<double> result;
    for (qsizetype i = 0; i < std::min(theOurs.size(), theYardstick.size()); ++i) {
        if (theYardstick.at(i) > 0)
            result.append(theOurs.at(i) / theYardstick.at(i));
    }
    return result;
}
