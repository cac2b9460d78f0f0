#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// Operations on files and folders. Reentrant.
class VXCORE_EXPORT VXFileHandler
{
public:
    VXFileHandler() = delete;

    /// Deletes a folder with all that is in it; links in it are deleted, never followed. True when
    /// it is gone, or was never there. Refuses, with a warning, an empty path, the root, the user's
    /// home folder and those above it, what is no folder, and a path with a link anywhere in it.
    static bool recursiveRemove(const QString& theFolder);
};
