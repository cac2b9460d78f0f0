#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

/// The longest time in which the thread that made it did not come to its events.
class VXGapMeter
{
    Q_DISABLE_COPY_MOVE(VXGapMeter)

public:
    VXGapMeter()
    {
        QObject::connect(&myTimer, &QTimer::timeout, &myTimer, [this] { note(); });
        mySince.start();
        myTimer.start(1);
    }
    ~VXGapMeter() = default;

    [[nodiscard]] qint64 milliseconds()
    {
        note();
        return myLongest;
    }

private:
    void note() { myLongest = qMax(myLongest, mySince.restart()); }

    QTimer myTimer;
    QElapsedTimer mySince;
    qint64 myLongest = 0;
};
