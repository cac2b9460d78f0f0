#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtGui/QPixmap>

class QString;

/// The pictures of the widgets. Static operations only; GUI thread only.
class VXGUIWIDGETS_EXPORT VXGUIWidgetsConfig
{
public:
    VXGUIWidgetsConfig() = delete;

    /// The picture "<theId>.png" of the icon folders, "Assets/icons" of the deployment the last of
    /// them; on a screen of the double scale "<theId>@2x.png" where that exists. Null when there is
    /// none: a service without a logo is no error. An identifier never leads out of the folders.
    /// theFlags is the caller's style of loading, opaque here; 97 is the usual one.
    [[nodiscard]] static QPixmap loadPixmapById(const QString& theId, int theFlags = 97);

    /// Adds a folder of icons, asked before those that are known.
    static void addIconPath(const QString& theFolder);
};
