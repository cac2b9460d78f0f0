#include "VXSampleGuiCommand.h"

#include "VXSampleContext.h"
#include "VXSampleMainWindow.h"
#include "VXSampleMediatorEvents.h"
#include "VXSampleOutput.h"
#include "VXSampleSignals.h"

#include <VXCore/VXMainWindowHandle.h>

#include <QtCore/QEventLoop>
#include <QtGui/QGuiApplication>

using namespace Qt::StringLiterals;

VXSampleExitCode VXSampleGuiCommand::run(const QCommandLineParser&, VXSampleContext& theContext)
{
    const VXSampleSignals signals;
    VXSampleMainWindow window(theContext);
    const VXSampleMediatorEvents events(theContext, &window);
    VXMainWindowHandle::setMainWindow(&window);
    window.show();
    theContext.output.event(u"shown"_s, {});

    QEventLoop loop;
    QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, &loop, &QEventLoop::quit);
    loop.exec(); // until the window is closed, a signal or --exit-after
    VXMainWindowHandle::setMainWindow(nullptr);
    return VXSampleExitCode::Success;
}
