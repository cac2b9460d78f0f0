#pragma once

#include "VXCoreExport.h"
#include "VXResourceFileTypeEnum.h"

#include <QtCore/QFileInfo>

/// Where a shipped file lies ("Resources/caBundle" of the deployment). A plain value; reentrant.
class VXCORE_EXPORT VXResourceFile
{
public:
    /// Touches no disk; fileInfo() looks the path up each time.
    explicit VXResourceFile(VXResourceFileTypeEnum theType);

    /// The file; it may be missing. A default QFileInfo for a kind that is not known.
    [[nodiscard]] QFileInfo fileInfo() const;

private:
    VXResourceFileTypeEnum myType = ResourceFileCaBundle;
};
