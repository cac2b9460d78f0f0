#include "VXSampleUploadDialogCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"
#include "VXSampleSignals.h"
#include "VXSampleUploadEvents.h"

#include <VXCore/VXMainWindowHandle.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXLocalUploadServiceView.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtWidgets/QDialog>

using namespace Qt::StringLiterals;

void VXSampleUploadDialogCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption(
        {u"target"_s, u"Folder for the photos; it is made when needed."_s, u"DIR"_s});
}

VXSampleExitCode VXSampleUploadDialogCommand::run(const QCommandLineParser& theArguments,
                                                  VXSampleContext& theContext)
{
    const VXSampleSignals signals;
    QWidget window; // the dialog's parent; it need not be seen
    VXMainWindowHandle::setMainWindow(&window);
    VXLocalUploadServiceView view(nullptr);
    auto* const service = view.findChild<VXLocalUploadService*>();
    const VXSampleUploadEvents events(*service, theContext.output);
    if (theArguments.isSet(u"target"_s))
        service->setTargetFolder(QDir::current().absoluteFilePath(theArguments.value(u"target"_s)));

    view.show();
    QEventLoop loop;
    QObject::connect(window.findChild<QDialog*>(), &QDialog::finished, &loop, &QEventLoop::quit);
    loop.exec(); // until the dialog is closed, a signal or --exit-after
    VXMainWindowHandle::setMainWindow(nullptr);
    theContext.output.result(events.summary());
    return VXSampleExitCode::Success;
}
