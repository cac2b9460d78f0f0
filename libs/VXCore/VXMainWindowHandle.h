#pragma once

#include "VXCoreExport.h"

class QWidget;

/// The application's main window, for dialogs that need a parent. GUI thread.
class VXCORE_EXPORT VXMainWindowHandle
{
public:
    VXMainWindowHandle() = delete;

    /// The window; null when none was set or it is gone.
    [[nodiscard]] static QWidget* mainWindow();

    /// The caller keeps the window.
    static void setMainWindow(QWidget* theWindow);
};
