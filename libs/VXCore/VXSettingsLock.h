#pragma once

#include "VXCoreExport.h"

#include <QtCore/QtGlobal>

/// Holds the settings store for the thread that made it, as long as it lives. Recursive.
///
/// When the outermost lock of a thread ends, what was written meanwhile goes to the file. Never
/// wait for another thread while holding it.
class VXCORE_EXPORT VXSettingsLock
{
    Q_DISABLE_COPY_MOVE(VXSettingsLock)

public:
    VXSettingsLock();
    ~VXSettingsLock();
};
