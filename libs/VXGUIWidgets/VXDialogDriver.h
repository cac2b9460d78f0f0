#pragma once

#include "VXDialogAnswer.h"
#include "VXDialogQuestion.h"
#include "VXGUIWidgetsExport.h"

#include <optional>

/// Sees every standard dialog before it appears, and may answer it instead of the user.
///
/// An application without a screen, a script or a test installs one; nothing needs it otherwise.
/// GUI thread only.
class VXGUIWIDGETS_EXPORT VXDialogDriver
{
    Q_DISABLE_COPY_MOVE(VXDialogDriver)

public:
    virtual ~VXDialogDriver();

    /// Answers theQuestion; std::nullopt lets the real dialog appear.
    virtual std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) = 0;

    /// The driver in use; null, as at the start, when only the user answers.
    [[nodiscard]] static VXDialogDriver* current() noexcept { return ourCurrent; }

    /// Installs theDriver (null: none) and returns the one before. The caller keeps the ownership;
    /// a driver that is destroyed while installed removes itself.
    static VXDialogDriver* setCurrent(VXDialogDriver* theDriver) noexcept;

    /// The answer of the driver in use to theQuestion; std::nullopt without one.
    [[nodiscard]] static std::optional<VXDialogAnswer>
    askCurrent(const VXDialogQuestion& theQuestion);

protected:
    VXDialogDriver() = default;

private:
    static VXDialogDriver* ourCurrent;
};
