#include "VXProcessMeter.h"

#include "VXProcessMemory.h"

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
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
    VXProcessMemory::resetPeak();
    myStartBytes = VXProcessMemory::resident();
    myStartSeconds = cpuSeconds();
    myLongestGap = 0;
    myLastTick.start();
    myTimer.start();
}

QJsonObject VXProcessMeter::end()
{
    tick();
    myTimer.stop();
    return {{u"cpuSeconds"_s, cpuSeconds() - myStartSeconds},
            {u"memoryBytes"_s, VXProcessMemory::peak() - myStartBytes},
            {u"blockMs"_s, static_cast<double>(myLongestGap) / 1e6}};
}

void VXProcessMeter::tick()
{
    myLongestGap = std::max(myLongestGap, myLastTick.nsecsElapsed());
    myLastTick.start();
}
