#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtCore/QString>

class QAbstractButton;

/// Gives buttons their icons. Static operations only; GUI thread only.
class VXGUIWIDGETS_EXPORT VXIconRegistry
{
public:
    VXIconRegistry() = delete;

    /// Sets the icon of theId: the application's own (see VXGUIWidgetsConfig), else that of the
    /// desktop's icon theme. An unknown id takes the button's icon away.
    static void setIcon(QAbstractButton* theButton, const QString& theId);
};
