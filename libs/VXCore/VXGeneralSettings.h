#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <atomic>

/// The user's preferences that no part of the application has for its own. Thread-safe.
class VXCORE_EXPORT VXGeneralSettings : public VXSingleton<VXGeneralSettings>
{
    Q_DISABLE_COPY_MOVE(VXGeneralSettings)

public:
    /// Reads the preferences from the settings store, group "General".
    VXGeneralSettings();
    ~VXGeneralSettings() override;

    /// Whether requests ask not to be tracked; false until the user says otherwise.
    [[nodiscard]] bool doNotTrack() const noexcept { return myDoNotTrack; }

    /// Changes it and stores it at once.
    void setDoNotTrack(bool theValue);

private:
    std::atomic<bool> myDoNotTrack = false;
};
