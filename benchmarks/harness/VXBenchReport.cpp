#include "VXBenchReport.h"

#include <QtCore/QJsonArray>

using namespace Qt::StringLiterals;

void VXBenchReport::setSetting(const QString& theName, const QString& theValue)
{
    mySettings.append({theName, theValue});
}

void VXBenchReport::addFailure(const QString& theId, const QString& theReason)
{
    myFailures.append(u"%1: %2"_s.arg(theId, theReason));
}

QStringList VXBenchReport::complaints(double theSlack) const
{
    QStringList lines = myFailures;
    for (const VXBenchRow& row : myRows) {
        if (!row.isReached(theSlack))
            lines.append(u"%1: %2, %3: %4, goal %5"_s.arg(
                row.id, row.workload, row.metric, QString::number(row.judged()), row.goal.text()));
    }
    if (myRows.isEmpty() && lines.isEmpty())
        lines.append(u"nothing was measured"_s);
    return lines;
}

QJsonObject VXBenchReport::json() const
{
    QJsonObject settings;
    for (const auto& [name, value] : mySettings)
        settings.insert(name, value);
    QJsonArray rows;
    for (const VXBenchRow& row : myRows)
        rows.append(row.json());
    return {{u"settings"_s, settings},
            {u"rows"_s, rows},
            {u"failures"_s, QJsonArray::fromStringList(myFailures)}};
}

QString VXBenchReport::markdown() const
{
    QString text = u"# Benchmark report\n\n"_s;
    for (const auto& [name, value] : mySettings)
        text += u"- %1: %2\n"_s.arg(name, value);
    text += u"\nOurs and yardstick are medians of the rounds; ratios are taken round by round.\n\n"
            u"| Id | Workload | Metric | Ours | Yardstick | Ratio, median | Ratio, p95 | Goal | "
            u"Verdict |\n|---|---|---|---|---|---|---|---|---|\n"_s;
    for (const VXBenchRow& row : myRows)
        text += row.markdown();
    for (const QString& failure : myFailures)
        text += u"\n**Not measured:** %1\n"_s.arg(failure);
    return text;
}
