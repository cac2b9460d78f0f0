#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QWidget>

/// What kind of dialog asks.
enum class VXDialogKind
{
    Message,   ///< a message with buttons; information, warning, critical
    Question,  ///< yes or no
    AutoClose, ///< a message that presses its default button when its time is over
    Choice,    ///< one of several command links
    Password,  ///< user name and password
};

/// One choice of a dialog of kind VXDialogKind::Choice. A plain value.
struct VXDialogChoice
{
    int value = 0;       ///< what the dialog answers with; its meaning is the caller's
    QString title;       ///< an ampersand is shown as a letter
    QString description; ///< plain text below the title
};

/// All that a dialog is about to show: what a VXDialogDriver sees of it. A plain value.
struct VXDialogQuestion
{
    /// Which of the fields below count.
    VXDialogKind kind = VXDialogKind::Message;

    /// The name of the dialog for style sheets and drivers.
    QString objectName;

    /// The sign of a message box.
    QMessageBox::Icon icon = QMessageBox::NoIcon;

    /// The title of the window.
    QString title;

    /// Plain or rich text, as Qt::mightBeRichText() finds.
    QString text;

    /// Plain text; empty = none.
    QString details;

    /// The buttons of a message box; a choice and a password dialog have their own.
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;

    /// What Return presses; NoButton lets a button that stands alone be it.
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;

    /// What Escape and closing press.
    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton;

    /// Until the default button is pressed; 0 or less = never.
    int seconds = 0;

    /// Those of kind Choice, in the order of their links.
    QList<VXDialogChoice> choices;

    /// The dialog's parent; null = the active window.
    QPointer<QWidget> parent;
};
