#include "VXSettings.h"

#include "VXDeploymentConfig.h"
#include "VXSettingsLock.h"
#include "VXSettingsStore.h"

using namespace Qt::StringLiterals;

VXSettings::VXSettings() = default;
VXSettings::~VXSettings() = default;

QString VXSettings::fullKey(const QString& theKey) const
{
    QStringList sections = myGroups;
    sections.append(theKey);
    return sections.join(u'/');
}

void VXSettings::beginGroup(const QString& theName)
{
    const VXSettingsLock lock;
    myGroups.append(theName);
}

void VXSettings::endGroup()
{
    const VXSettingsLock lock;
    if (!myGroups.isEmpty())
        myGroups.removeLast();
}

QVariant VXSettings::value(const QString& theKey, const QVariant& theDefault,
                           bool theIsMachineWide) const
{
    if (theKey.isEmpty())
        return theDefault;
    const VXSettingsLock lock;
    return VXSettingsStore::instance().value(fullKey(theKey), theDefault, theIsMachineWide);
}

bool VXSettings::writeEntry(const QString& theKey, const QVariant& theValue, bool theIsMachineWide)
{
    if (theKey.isEmpty())
        return false;
    const VXSettingsLock lock;
    VXSettingsStore& store = VXSettingsStore::instance();
    if (!store.write(fullKey(theKey), theValue, theIsMachineWide))
        return false;
    return !store.isOutermost() || store.flush();
}

bool VXSettings::doesEntryExist(const QString& theKey) const
{
    if (theKey.isEmpty())
        return false;
    const VXSettingsLock lock;
    return VXSettingsStore::instance().contains(fullKey(theKey));
}

void VXSettings::deleteEntry(const QString& theKey)
{
    const VXSettingsLock lock;
    // Without an entry of that name the store would delete the group of that name.
    if (!doesEntryExist(theKey))
        return;
    VXSettingsStore::instance().remove(fullKey(theKey));
}

void VXSettings::loadSettings() {}

void VXSettings::saveSettings() {}

void VXSettings::applyStartupRuleInternal(int) {}

void VXSettings::setStoreFile(const QString& theFile)
{
    const VXSettingsLock lock;
    VXSettingsStore::instance().close();
    VXDeploymentConfig::instance()->setValue(u"Paths/settingsFile"_s, theFile);
}

QString VXSettings::storeFile()
{
    return VXSettingsStore::userFile();
}
