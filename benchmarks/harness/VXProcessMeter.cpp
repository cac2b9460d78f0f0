#include "VXProcessMeter.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A line of /proc/self/status that counts kB, in bytes; see proc(5).
qint64 statusBytes(const QByteArray& theName)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(theName + ':'))
            return line.mid(theName.size() + 1).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

/// Lets VmHWM start again from the memory in use, see clear_refs in proc(5).
void resetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

} // namespace

VXProcessMeter::VXProcessMeter()
{
    myTimer.setTimerType(Qt::PreciseTimer);
    myTimer.setInterval(1);
    myTimer.callOnTimeout([this] { tick(); });
}

VXProcessMeter::~VXProcessMeter() = default;

void VXProcessMeter::begin()
{
    resetPeak();
    myStartBytes = statusBytes("VmRSS");
    myLongestGap = 0;
    myLastTick.start();
    myTimer.start();
}

QJsonObject VXProcessMeter::end()
{
    tick();
    myTimer.stop();
    return {{u"memoryBytes"_s, statusBytes("VmHWM") - myStartBytes},
            {u"blockMs"_s, static_cast<double>(myLongestGap) / 1e6}};
}

void VXProcessMeter::tick()
{
    myLongestGap = std::max(myLongestGap, myLastTick.nsecsElapsed());
    myLastTick.start();
}
