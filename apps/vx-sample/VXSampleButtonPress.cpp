#include "VXSampleButtonPress.h"

#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

VXSampleButtonPress::VXSampleButtonPress(const QString& theDialogName,
                                         QDialogButtonBox::StandardButton theButton)
    : myDialogName(theDialogName)
    , myButton(theButton)
{
    if (myButton != QDialogButtonBox::NoButton)
        qApp->installEventFilter(this);
}

bool VXSampleButtonPress::eventFilter(QObject* theObject, QEvent* theEvent)
{
    if (theEvent->type() != QEvent::Show || theObject->objectName() != myDialogName)
        return false;
    const auto* const box = theObject->findChild<QDialogButtonBox*>();
    if (QPushButton* const button = box == nullptr ? nullptr : box->button(myButton))
        QTimer::singleShot(0, button, &QPushButton::click); // when the dialog's own loop runs
    return false;
}
