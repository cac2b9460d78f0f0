#pragma once

#include "VXBenchGoal.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

/// One line of the report: a figure of one workload, round by round, ours beside the yardstick's.
/// A plain value; reentrant.
struct VXBenchRow
{
    QString id;        // of the benchmark, "B1"
    QString workload;  // "GET 1 KiB, TLS"
    QString metric;    // "wall time of a call"
    QString unit;      // "us"
    QString yardstick; // what the second list comes from; empty = none
    QList<double> ours;
    QList<double> theirs;
    VXBenchGoal goal;
    QString note;

    [[nodiscard]] QList<double> ratios() const;

    /// The figure that the goal judges.
    [[nodiscard]] double judged() const;
    [[nodiscard]] bool isReached(double theSlack = 1) const;

    [[nodiscard]] QJsonObject json() const;
    /// A row of the table of VXBenchReport::markdown().
    [[nodiscard]] QString markdown() const;
};
