#pragma once

#include <QtCore/QList>

/// What a report says about the rounds of a benchmark. Stateless; any thread.
class VXBenchStatistics
{
public:
    /// The middle value; with an even count the mean of the two in the middle. NaN for no values.
    [[nodiscard]] static double median(const QList<double>& theValues);

    /// The value that thePercent (0 to 100) of the values do not exceed, interpolated between the
    /// two nearest ranks (rank = percent / 100 * (count - 1)). NaN for no values.
    [[nodiscard]] static double percentile(QList<double> theValues, double thePercent);

    [[nodiscard]] static double smallest(const QList<double>& theValues);
    [[nodiscard]] static double largest(const QList<double>& theValues);

    /// Round by round, so that what slows the machine for a while meets both sides. Values without
    /// a partner, and those whose partner is not above 0, are left out.
    [[nodiscard]] static QList<double> ratios(const QList<double>& theOurs,
                                              const QList<double>& theYardstick);
};
