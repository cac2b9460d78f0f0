#include "VXTourVisitor.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <utility>

using namespace Qt::StringLiterals;

VXTourVisitor::VXTourVisitor(Visitor theVisitor)
    : myVisitor(std::move(theVisitor))
{
    qApp->installEventFilter(this);
}

VXTourVisitor::~VXTourVisitor() = default;

bool VXTourVisitor::eventFilter(QObject* theObject, QEvent* theEvent)
{
    if (theEvent->type() != QEvent::Show)
        return false;
    if (auto* dialog = qobject_cast<QDialog*>(theObject)) {
        myTitles << dialog->windowTitle();
        QTimer::singleShot(0, this, [this, shown = QPointer<QDialog>(dialog)] {
            if (shown)
                myVisitor(shown);
        });
    }
    return false;
}

void VXTourVisitor::leave(QDialog* theDialog)
{
    const auto* box = qobject_cast<QMessageBox*>(theDialog);
    if (box && box->defaultButton())
        box->defaultButton()->click();
    else if (box && !box->buttons().isEmpty())
        box->buttons().constFirst()->click();
    else
        theDialog->reject();
}

bool VXTourVisitor::photograph(QWidget* theWidget, const QString& thePath)
{
    QApplication::sendPostedEvents();
    return theWidget->grab().save(thePath, "PNG");
}
