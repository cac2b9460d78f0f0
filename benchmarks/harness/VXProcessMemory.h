#pragma once

#include <QtCore/QtGlobal>

/// Resident memory of the calling process in bytes, as the kernel counts it; see proc(5).
class VXProcessMemory
{
public:
    [[nodiscard]] static qint64 resident();
    /// The largest resident() since the start or the last resetPeak().
    [[nodiscard]] static qint64 peak();
    static void resetPeak();
};
