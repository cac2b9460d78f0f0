#pragma once

#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <optional>

/// How a dialog was answered. A plain value.
struct VXDialogAnswer
{
    /// The button pressed. Ok and Cancel stand for accepted and cancelled where a dialog has no
    /// message box's buttons; NoButton when the dialog vanished unanswered.
    QMessageBox::StandardButton button = QMessageBox::NoButton;

    /// The chosen value of a dialog of kind VXDialogKind::Choice; none when it was cancelled.
    std::optional<int> choice;

    /// Of a password dialog that was accepted.
    QString userName;

    /// Belongs to the user name; plain text.
    QString password;
};
