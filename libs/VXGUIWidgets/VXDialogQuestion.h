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
    int value = 0;
    QString title;
    QString description;
};

/// All that a dialog is about to show: what a VXDialogDriver sees of it. A plain value.
struct VXDialogQuestion
{
    VXDialogKind kind = VXDialogKind::Message;
    QString objectName;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString title;
    QString text;    ///< plain or rich text, as Qt::mightBeRichText() finds
    QString details; ///< plain text; empty = none
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton;
    int seconds = 0; ///< until the default button is pressed; 0 or less = never
    QList<VXDialogChoice> choices;
    QPointer<QWidget> parent;
};
