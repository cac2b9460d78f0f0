#pragma once

#include "VXHeadlineConfig.h"

#include <QtGui/QIcon>
#include <QtWidgets/QDialogButtonBox>

/// What a dialog is made of beside its content. A plain value.
struct VXDialogConfig
{
    /// Used by VXDialog; VXDialogBase has no headline.
    VXHeadlineConfig headline;

    /// The application's own number for kinds of dialogs; readable afterwards as the dynamic
    /// property "dialogKind".
    int kind = 0;

    /// Without any the row of buttons is hidden.
    QDialogButtonBox::StandardButtons standardButtons = QDialogButtonBox::NoButton;

    /// The only button that Return presses; NoButton = none.
    QDialogButtonBox::StandardButton defaultButton = QDialogButtonBox::NoButton;

    /// The window's icon; null = the application's.
    QIcon icon;
};
