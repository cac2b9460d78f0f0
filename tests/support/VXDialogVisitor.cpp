#include "VXDialogVisitor.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

#include <utility>

VXDialogVisitor::VXDialogVisitor(std::function<void(QDialog*)> theVisitor)
    : myVisitor(std::move(theVisitor))
{
    qApp->installEventFilter(this);
}

VXDialogVisitor::~VXDialogVisitor() = default;

bool VXDialogVisitor::eventFilter(QObject* theObject, QEvent* theEvent)
{
    if (theEvent->type() != QEvent::Show)
        return false;
    if (auto* dialog = qobject_cast<QDialog*>(theObject)) {
        ++myCount;
        // Later, when the dialog's event loop runs: a click must be able to end it.
        QTimer::singleShot(0, this, [this, shown = QPointer<QDialog>(dialog)] {
            if (shown)
                myVisitor(shown);
        });
    }
    return false;
}
