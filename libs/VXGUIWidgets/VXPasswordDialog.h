#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QDialog>

class QLineEdit;
struct VXDialogAnswer;
struct VXDialogQuestion;

/// Asks for user name and password. Accepted only with OK; both fields may stay empty. The
/// password is wiped from the field when the dialog closes unaccepted or is destroyed, and is never
/// logged. GUI thread only.
class VXGUIWIDGETS_EXPORT VXPasswordDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXPasswordDialog)

public:
    /// theText may be rich text; when it names files, it is shown as plain text and none of them is
    /// opened. Without a parent the dialog belongs to the active window.
    explicit VXPasswordDialog(const QString& theText, QWidget* theParent = nullptr);
    ~VXPasswordDialog() override;

    /// What a driver sees of such a dialog. Needs no widgets.
    [[nodiscard]] static VXDialogQuestion question(const QString& theText);

    /// As typed, blanks included.
    [[nodiscard]] QString userName() const;

    /// Plain text, as typed; empty once the dialog was closed without OK.
    [[nodiscard]] QString password() const;

    /// Fills the user name in and moves the focus on to the password.
    void setUserName(const QString& theUserName);

    /// Shows the dialog until it is answered; the dialog driver in use answers first.
    int exec() override;

    /// Wipes the password unless the dialog was accepted.
    void done(int theResult) override;

private:
    void createFields(const QString& theText);
    [[nodiscard]] int answerByDriver(const VXDialogAnswer& theAnswer);

    QString myText;
    QLineEdit* myUserName = nullptr; // children of this
    QLineEdit* myPassword = nullptr;
};
