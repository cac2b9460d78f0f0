#include "VXWidgetFactory.h"

QLineEdit* VXWidgetFactory::createLineEdit(QWidget* theParent, QLineEdit::EchoMode theMode)
{
    auto* edit = new QLineEdit(theParent);
    if (theMode == QLineEdit::Normal)
        return edit;
    edit->setEchoMode(theMode); // sets the input method's hints, and Qt copies no hidden text
    edit->setContextMenuPolicy(Qt::NoContextMenu);
    edit->setDragEnabled(false);
    return edit;
}
