#pragma once

#include "VXDialogQuestion.h"
#include "VXGUIWidgetsExport.h"

#include <QtCore/QList>
#include <QtWidgets/QDialog>

#include <optional>

class QLabel;
class QVBoxLayout;

/// Asks for one of several choices, each a command link with title and description. A click on a
/// link closes the dialog. GUI thread only.
class VXGUIWIDGETS_EXPORT VXExclusiveChoiceDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXExclusiveChoiceDialog)

public:
    /// theText may be rich text; when it names files, it is shown as plain text and none of them is
    /// opened. Without a parent the dialog belongs to the active window.
    VXExclusiveChoiceDialog(const QString& theTitle, const QString& theText,
                            QWidget* theParent = nullptr);
    ~VXExclusiveChoiceDialog() override;

    /// What a driver sees of such a dialog, but for its choices. Needs no widgets.
    [[nodiscard]] static VXDialogQuestion question(const QString& theTitle, const QString& theText);

    /// Adds a choice below the others. An ampersand in the title is shown as a letter.
    void addChoice(int theValue, const QString& theTitle, const QString& theDescription);

    /// Shows the dialog until it is answered; QDialog::Accepted when a choice was made. The dialog
    /// driver in use answers first.
    int exec() override;

    /// The chosen value; none when the dialog was cancelled. So 0 is a value like any other.
    [[nodiscard]] std::optional<int> chosenValue() const noexcept { return myChosenValue; }

protected:
    /// Makes the dialog as high as its wrapped texts need; only now their width is known.
    void showEvent(QShowEvent* theEvent) override;

private:
    void choose(int theValue);

    VXDialogQuestion myQuestion;
    QVBoxLayout* myLinks = nullptr; // part of this dialog's layout
    std::optional<int> myChosenValue;
};
