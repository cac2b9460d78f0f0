#pragma once

#include <QtCore/QString>

/// What a measured figure has to reach. A value; reentrant.
class VXBenchGoal
{
public:
    enum class Kind
    {
        Reported, // no goal: context only
        NoMoreThan,
        NoLessThan
    };
    /// Which figure of a row is judged: of the ratios to the yardstick, or of our own values.
    enum class Figure
    {
        RatioMedian,
        Median,
        Percentile95,
        Smallest,
        Largest
    };

    VXBenchGoal() = default;
    [[nodiscard]] static VXBenchGoal noMoreThan(double theLimit,
                                                Figure theFigure = Figure::RatioMedian)
    {
        return VXBenchGoal(Kind::NoMoreThan, theLimit, theFigure);
    }
    [[nodiscard]] static VXBenchGoal noLessThan(double theLimit,
                                                Figure theFigure = Figure::RatioMedian)
    {
        return VXBenchGoal(Kind::NoLessThan, theLimit, theFigure);
    }

    [[nodiscard]] Kind kind() const noexcept { return myKind; }
    [[nodiscard]] double limit() const noexcept { return myLimit; }
    [[nodiscard]] Figure figure() const noexcept { return myFigure; }

    /// Whether theValue reaches the goal, or misses it by a factor of at most theSlack (1 = none):
    /// with 1.15 a limit of "at most 1.0" lets 1.15 pass, "at least 0.9" lets 0.9 / 1.15 pass. What
    /// could not be measured (NaN) reaches no goal.
    [[nodiscard]] bool isReachedBy(double theValue, double theSlack = 1) const;

    /// "ratio <= 1.15", "p95 <= 10", empty without a goal.
    [[nodiscard]] QString text() const;

private:
    VXBenchGoal(Kind theKind, double theLimit, Figure theFigure)
        : myKind(theKind)
        , myLimit(theLimit)
        , myFigure(theFigure)
    {
    }

    Kind myKind = Kind::Reported;
    double myLimit = 0;
    Figure myFigure = Figure::RatioMedian;
};
