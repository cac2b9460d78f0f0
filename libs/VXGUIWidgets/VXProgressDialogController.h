#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

class QProgressDialog;
class QWidget;

/// Shows that something takes its time, without blocking the caller. The dialog is modal to its
/// parent window and may be cancelled. Held by value by its user; GUI thread only.
class VXGUIWIDGETS_EXPORT VXProgressDialogController : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXProgressDialogController)

public:
    /// Shows nothing before openProgress().
    explicit VXProgressDialogController(QObject* theParent = nullptr);

    /// Closes the dialog.
    ~VXProgressDialogController() override;

    /// Shows the dialog; with 0 and 0 it says only that something happens. An open dialog gets the
    /// new text and range. It goes when theParent goes.
    void openProgress(const QString& theText, int theMinimum, int theMaximum, QWidget* theParent);

    /// Goes theStep further, never beyond the maximum. Without a dialog nothing happens.
    void increaseProgress(int theStep = 1);

    /// Shows theFinalValue and closes the dialog; closing a closed one is harmless.
    void closeProgress(int theFinalValue = 0);

    /// False again as soon as the user has cancelled or the parent of the dialog has gone.
    [[nodiscard]] bool isOpen() const;

Q_SIGNALS:
    /// The user closed the dialog, which is no longer open then.
    void processCanceled();

private:
    void createDialog(QWidget* theParent);
    void cancel();

    // Children of their parent widget, which may die first.
    QPointer<QProgressDialog> myDialog;
};
