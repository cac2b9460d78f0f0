#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QLineEdit>

/// Makes widgets that look and behave alike everywhere. Static operations only; GUI thread only.
class VXGUIWIDGETS_EXPORT VXWidgetFactory
{
public:
    VXWidgetFactory() = delete;

    /// A line edit owned by theParent. One that hides its text gives nothing out: no context menu,
    /// no copy, no drag, and a hint to input methods that the text is sensitive.
    [[nodiscard]] static QLineEdit* createLineEdit(QWidget* theParent,
                                                   QLineEdit::EchoMode theMode = QLineEdit::Normal);
};
