#include "VXMainWindowHandle.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace {

QPointer<QWidget>& handle()
{
    static QPointer<QWidget> ourWindow;
    return ourWindow;
}

} // namespace

QWidget* VXMainWindowHandle::mainWindow()
{
    return handle();
}

void VXMainWindowHandle::setMainWindow(QWidget* theWindow)
{
    handle() = theWindow;
}
