#pragma once

#include <QtCore/QObject>

#include <functional>

class QDialog;

/// Plays the user: each dialog that appears while this object lives is handed to the visitor, from
/// the dialog's own event loop. The visitor looks, clicks, and so ends the dialog.
///
/// GUI thread only.
class VXDialogVisitor : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXDialogVisitor)

public:
    explicit VXDialogVisitor(std::function<void(QDialog*)> theVisitor);
    ~VXDialogVisitor() override;

    /// How many dialogs have appeared.
    [[nodiscard]] int count() const noexcept { return myCount; }

    bool eventFilter(QObject* theObject, QEvent* theEvent) override;

private:
    std::function<void(QDialog*)> myVisitor;
    int myCount = 0;
};
