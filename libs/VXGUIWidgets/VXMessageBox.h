#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QMessageBox>

struct VXDialogQuestion;

/// A message box whose buttons speak the application's language, whatever catalogue Qt found, and
/// whose text opens no links and can be selected. A rich text that names files, pictures say, is
/// shown as plain text, and none of them is opened. The shortcut for copying takes title, text and
/// details. Application-modal. GUI thread only.
class VXGUIWIDGETS_EXPORT VXMessageBox : public QMessageBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXMessageBox)

public:
    /// Shows nothing yet. Of the question it takes all but kind, seconds and choices.
    explicit VXMessageBox(const VXDialogQuestion& theQuestion);
    ~VXMessageBox() override;

    /// The application's label of a standard button; empty for those it does not use.
    [[nodiscard]] static QString buttonText(StandardButton theButton);

    /// The window that a dialog without a parent belongs to: the active modal widget, else the
    /// active window; null when there is neither.
    [[nodiscard]] static QWidget* activeParent();

protected:
    /// Catches the shortcut for copying: title, text and details go to the clipboard as plain text.
    void keyPressEvent(QKeyEvent* theEvent) override;

private:
    void showText(const QString& theText);
    void labelButtons();
    void addDetails(const QString& theDetails);
    void labelDetailsButton(QAbstractButton* theButton);
};
