#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <atomic>

/// Remembers over the runs of the program whether the web engine's process crashed, with graphics
/// acceleration on and off (group "CrashDetector" of the settings store). Thread-safe.
class VXCORE_EXPORT VXCrashDetector : public VXSingleton<VXCrashDetector>
{
    Q_DISABLE_COPY_MOVE(VXCrashDetector)

public:
    /// Reads what earlier runs recorded.
    VXCrashDetector();
    ~VXCrashDetector() override;

    /// Whether an earlier run recorded a crash with acceleration on; a crash of this run does not
    /// change the answer.
    [[nodiscard]] bool qtWebEngineDidCrashWithGpuOn() const noexcept { return myDidCrashOn; }

    /// The same with acceleration off.
    [[nodiscard]] bool qtWebEngineDidCrashWithGpuOff() const noexcept { return myDidCrashOff; }

    /// Records a crash of this run, for later ones. It is in the file on return.
    void recordCrashedQtWebEngineProcess(bool theGpuWasOn);

    /// Sets the record and the answers of this run, for example to forget a crash.
    void setDidCrash(bool theGpuWasOn, bool theDidCrash);

private:
    std::atomic<bool> myDidCrashOn = false;
    std::atomic<bool> myDidCrashOff = false;
};
