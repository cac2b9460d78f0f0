#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>

/// Measures the process it lives in: peak memory, and how long the event loop of the thread that
/// made it was kept from running.
class VXProcessMeter
{
    Q_DISABLE_COPY_MOVE(VXProcessMeter)

public:
    VXProcessMeter();
    ~VXProcessMeter();

    /// Forgets what was measured before. The peak of the memory starts again from what is in use.
    void begin();

    /// "memoryBytes": peak resident memory above that of begin(); "blockMs": the longest time
    /// between two ticks of a timer of 1 ms; "cpuSeconds": processor time of all threads.
    [[nodiscard]] QJsonObject end();

private:
    void tick();

    QTimer myTimer;
    QElapsedTimer myLastTick;
    qint64 myLongestGap = 0; // nanoseconds
    qint64 myStartBytes = 0;
    double myStartSeconds = 0; // of processor time
};
