#include "VXGeneralSettings.h"

#include "VXSettings.h"
#include "VXSettingsLock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto groupName = "General"_L1;
constexpr auto doNotTrackKey = "doNotTrack"_L1;

} // namespace

VXGeneralSettings::VXGeneralSettings()
{
    VXSettings settings;
    settings.beginGroup(groupName);
    myDoNotTrack = settings.value(doNotTrackKey, false).toBool();
}

VXGeneralSettings::~VXGeneralSettings() = default;

void VXGeneralSettings::setDoNotTrack(bool theValue)
{
    myDoNotTrack = theValue;
    VXSettings settings;
    settings.beginGroup(groupName);
    settings.writeEntry(doNotTrackKey, theValue);
}
