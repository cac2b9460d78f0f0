#include "VXSampleUploadServiceCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"
#include "VXSampleQRCode.h"
#include "VXSampleSignals.h"
#include "VXSampleUploadEvents.h"

#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Once per turn of the event loop: the start of the service publishes two addresses at once.
void showAddress(const VXLocalUploadService& theService, VXSampleOutput& theOutput)
{
    if (theService.selectedConnection() < 0) {
        theOutput.message(u"There is no network interface for phones."_s);
        return;
    }
    const QUrl url = theService.url();
    theOutput.message(u"Scan this, or open it on the phone: %1"_s.arg(url.toString()));
    if (VXSampleQRCode::isWanted())
        theOutput.message(VXSampleQRCode::blocks(url.toEncoded()));
}

} // namespace

void VXSampleUploadServiceCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption(
        {u"target"_s, u"Folder for the photos; it is made when needed."_s, u"DIR"_s});
}

VXSampleExitCode VXSampleUploadServiceCommand::run(const QCommandLineParser& theArguments,
                                                   VXSampleContext& theContext)
{
    const VXSampleSignals signals;
    VXLocalUploadService service(nullptr);
    const VXSampleUploadEvents events(service, theContext.output);

    QTimer show;
    show.setSingleShot(true);
    QObject::connect(&service, &VXLocalUploadService::urlChanged, &show,
                     [&show] { show.start(0); });
    QObject::connect(&show, &QTimer::timeout, &service,
                     [&] { showAddress(service, theContext.output); });
    QTimer watch; // as the dialog does: the computer may change its network
    QObject::connect(&watch, &QTimer::timeout, &service, &VXLocalUploadService::updateConnections);
    watch.start(std::chrono::seconds(5));

    if (theArguments.isSet(u"target"_s))
        service.setTargetFolder(QDir::current().absoluteFilePath(theArguments.value(u"target"_s)));
    service.start();
    QEventLoop().exec(); // until a signal or --exit-after
    theContext.output.result(events.summary());
    return VXSampleExitCode::Success;
}
