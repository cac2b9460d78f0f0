#pragma once

#include "VXHeadlineConfig.h"

#include <QtGui/QIcon>
#include <QtWidgets/QDialogButtonBox>

/// What a dialog is made of beside its content. A plain value.
struct VXDialogConfig
{
    VXHeadlineConfig headline;

    /// The application's own number for kinds of dialogs; readable afterwards as the dynamic
    /// property "dialogKind".
    int kind = 0;

    QDialogButtonBox::StandardButtons standardButtons = QDialogButtonBox::NoButton;
    QDialogButtonBox::StandardButton defaultButton = QDialogButtonBox::NoButton;

    /// The window's icon; null = the application's.
    QIcon icon;
};
