#include "VXBenchRow.h"

#include "VXBenchStatistics.h"

#include <QtCore/QJsonArray>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QJsonArray toJson(const QList<double>& theValues)
{
    QJsonArray array;
    for (const double value : theValues)
        array.append(value);
    return array;
}

/// Three digits that count; "-" for what was not measured.
QString shown(double theValue)
{
    if (!std::isfinite(theValue))
        return u"-"_s;
    const double size = std::abs(theValue);
    return QString::number(theValue, 'f', size >= 100 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3);
}

QString shownWithUnit(const QList<double>& theValues, const QString& theUnit)
{
    return theValues.isEmpty() ? u"-"_s
                               : shown(VXBenchStatistics::median(theValues)) + u' ' + theUnit;
}

QString verdict(const VXBenchRow& theRow)
{
    if (theRow.goal.kind() == VXBenchGoal::Kind::Reported)
        return u"reported"_s;
    return theRow.isReached() ? u"met"_s : u"**missed: %1**"_s.arg(shown(theRow.judged()));
}

} // namespace

QList<double> VXBenchRow::ratios() const
{
    return VXBenchStatistics::ratios(ours, theirs);
}

double VXBenchRow::judged() const
{
    switch (goal.figure()) {
    case VXBenchGoal::Figure::RatioMedian:
        return VXBenchStatistics::median(ratios());
    case VXBenchGoal::Figure::Median:
        return VXBenchStatistics::median(ours);
    case VXBenchGoal::Figure::Percentile95:
        return VXBenchStatistics::percentile(ours, 95);
    case VXBenchGoal::Figure::Smallest:
        return VXBenchStatistics::smallest(ours);
    case VXBenchGoal::Figure::Largest:
        return VXBenchStatistics::largest(ours);
    }
    return std::nan("");
}

bool VXBenchRow::isReached(double theSlack) const
{
    return goal.kind() == VXBenchGoal::Kind::Reported || goal.isReachedBy(judged(), theSlack);
}

QJsonObject VXBenchRow::json() const
{
    const QList<double> quotients = ratios();
    QJsonObject object{
        {u"id"_s, id},
        {u"workload"_s, workload},
        {u"metric"_s, metric},
        {u"unit"_s, unit},
        {u"median"_s, VXBenchStatistics::median(ours)},
        {u"p95"_s, VXBenchStatistics::percentile(ours, 95)},
        {u"values"_s, toJson(ours)},
        {u"goal"_s, goal.text()},
        {u"isReached"_s, isReached()},
    };
    if (!quotients.isEmpty()) {
        object.insert(u"yardstick"_s, yardstick);
        object.insert(u"yardstickMedian"_s, VXBenchStatistics::median(theirs));
        object.insert(u"yardstickValues"_s, toJson(theirs));
        object.insert(u"ratioMedian"_s, VXBenchStatistics::median(quotients));
        object.insert(u"ratioP95"_s, VXBenchStatistics::percentile(quotients, 95));
    }
    if (!note.isEmpty())
        object.insert(u"note"_s, note);
    return object;
}

QString VXBenchRow::markdown() const
{
    const QList<double> quotients = ratios();
    const QStringList cells{
        id,
        workload,
        metric,
        shownWithUnit(ours, unit),
        theirs.isEmpty() ? u"-"_s : u"%1 (%2)"_s.arg(shownWithUnit(theirs, unit), yardstick),
        shown(VXBenchStatistics::median(quotients)),
        shown(VXBenchStatistics::percentile(quotients, 95)),
        goal.text(),
        verdict(*this) + (note.isEmpty() ? QString() : u"; "_s + note),
    };
    return u"| "_s + cells.join(u" | "_s) + u" |\n"_s;
}
