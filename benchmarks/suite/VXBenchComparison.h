#pragma once

#include "VXBenchGoal.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

/// A workload on two sides, and what is said about it. A plain value.
struct VXBenchComparison
{
    enum class Metric
    {
        TimePerCall,
        MebibytesPerSecond, // of bytes
        CallsPerSecond
    };
    /// Does the workload once; false when the answer is not the expected one.
    using Task = std::function<bool()>;

    QString id;
    QString workload;
    QString yardstick;
    Task ours;
    Task theirs;
    /// Looks at the result outside the measured time; may be empty.
    Task check;
    int calls = 1;    // that the task makes
    qint64 bytes = 0; // that the task moves
    Metric metric = Metric::TimePerCall;
    VXBenchGoal timeGoal;
    VXBenchGoal cpuGoal;
    VXBenchGoal memoryGoal; // MiB of our peak above what was in use before
};

/// What the rounds of a comparison took, in seconds of wall time.
struct VXBenchTimes
{
    QList<double> ours;
    QList<double> theirs;
};
