#pragma once

#include "VXGUIWidgetsExport.h"

#include <VXCore/VXSingleton.h>

#include <QtGui/QPalette>

#include <optional>

/// The look of the application: a light and a dark skin. A skin is a palette and the style sheet
/// "Assets/skin" of the deployment, which takes every colour from the palette and finds widgets by
/// their dynamic property "cssstyle".
///
/// The host calls applyConfiguredMode() once, when its application object exists; without that the
/// desktop's own look stays. GUI thread only.
class VXGUIWIDGETS_EXPORT VXCSSSkinManager : public VXSingleton<VXCSSSkinManager>
{
    Q_DISABLE_COPY_MOVE(VXCSSSkinManager)

public:
    /// Which skin is in force; Unset is the look of the desktop.
    enum Mode
    {
        Unset = 0,
        Light = 1,
        Dark = 2,
    };

    /// Use instance().
    VXCSSSkinManager();
    ~VXCSSSkinManager() override;

    /// A value of Mode.
    [[nodiscard]] int currentMode() const noexcept { return myMode; }

    /// Changes the look at once; Unset gives the desktop's look back. Any other value than those of
    /// Mode changes nothing.
    void setMode(int theMode);

    /// Takes the mode from "Gui/skinMode" of the deployment; "auto" follows the desktop's palette.
    void applyConfiguredMode();

private:
    [[nodiscard]] static QString styleSheet();

    int myMode = Unset;
    std::optional<QPalette> myDesktopPalette; // from before the first skin
};
