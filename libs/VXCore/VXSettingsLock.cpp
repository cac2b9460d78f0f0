#include "VXSettingsLock.h"

#include "VXSettingsStore.h"

VXSettingsLock::VXSettingsLock()
{
    VXSettingsStore::instance().lock();
}

VXSettingsLock::~VXSettingsLock()
{
    VXSettingsStore::instance().unlock();
}
