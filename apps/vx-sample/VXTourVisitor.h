#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>

class QDialog;
class QWidget;

/// Plays the user before the tour's camera: each dialog that appears while this object lives is
/// handed to the visitor once it is painted, from the dialog's own event loop. GUI thread.
class VXTourVisitor : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXTourVisitor)

public:
    using Visitor = std::function<void(QDialog*)>;

    explicit VXTourVisitor(Visitor theVisitor);
    ~VXTourVisitor() override;

    /// Titles of the dialogs so far, in their order.
    [[nodiscard]] QStringList titles() const { return myTitles; }

    bool eventFilter(QObject* theObject, QEvent* theEvent) override;

    /// What a user does who changes nothing: takes a box's default button, cancels anything else.
    /// So no certificate and no password is remembered for the steps that follow.
    static void leave(QDialog* theDialog);

    /// Lets the widget be laid out and painted, and takes its picture. False when that could not
    /// be written.
    static bool photograph(QWidget* theWidget, const QString& thePath);

private:
    Visitor myVisitor;
    QStringList myTitles;
};
