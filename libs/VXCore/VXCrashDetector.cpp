#include "VXCrashDetector.h"

#include "VXSettings.h"

#include <QtCore/QString>

using namespace Qt::StringLiterals;

namespace {

constexpr auto groupName = "CrashDetector"_L1;

QString key(bool theGpuWasOn)
{
    return theGpuWasOn ? u"webEngineGpuOn"_s : u"webEngineGpuOff"_s;
}

void record(bool theGpuWasOn, bool theDidCrash)
{
    VXSettings settings;
    settings.beginGroup(groupName);
    settings.writeEntry(key(theGpuWasOn), theDidCrash);
}

} // namespace

VXCrashDetector::VXCrashDetector()
{
    VXSettings settings;
    settings.beginGroup(groupName);
    myDidCrashOn = settings.value(key(true), false).toBool();
    myDidCrashOff = settings.value(key(false), false).toBool();
}

VXCrashDetector::~VXCrashDetector() = default;

void VXCrashDetector::recordCrashedQtWebEngineProcess(bool theGpuWasOn)
{
    record(theGpuWasOn, true);
}

void VXCrashDetector::setDidCrash(bool theGpuWasOn, bool theDidCrash)
{
    record(theGpuWasOn, theDidCrash);
    (theGpuWasOn ? myDidCrashOn : myDidCrashOff) = theDidCrash;
}
