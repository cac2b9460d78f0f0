#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// The version of the program. Thread-safe.
class VXCORE_EXPORT VXVersionConfig
{
public:
    VXVersionConfig() = delete;

    /// The version as its user reads it ("Program/version" of the deployment); that of the
    /// libraries unless told otherwise.
    [[nodiscard]] static QString versionString();
};
