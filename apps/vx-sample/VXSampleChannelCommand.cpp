#include "VXSampleChannelCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOrderWindow.h"
#include "VXSampleOutput.h"
#include "VXSampleSignals.h"
#include "VXSampleWizardScreen.h"

#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QEventLoop>

#include <memory>

using namespace Qt::StringLiterals;

void VXSampleChannelCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption({u"page"_s,
                         u"Show this page: ordersummary. Without it only the channel runs."_s,
                         u"NAME"_s});
}

VXSampleExitCode VXSampleChannelCommand::run(const QCommandLineParser& theArguments,
                                             VXSampleContext& theContext)
{
    const QString page = theArguments.value(u"page"_s);
    if (theArguments.isSet(u"page"_s) && page != u"ordersummary"_s)
        return refuse(theContext, u"channel: there is no page \"%1\""_s.arg(page));

    const VXSampleSignals signals;
    VXSampleWizardScreen screen(theContext.output); // outlives the channel
    VXWebSocketCommunication communication(u"vx-sample"_s);
    if (communication.serverUrl().isEmpty())
        return VXSampleExitCode::EnvironmentError;
    communication.registerObject(u"wizardScreen"_s, &screen);
    theContext.output.result({{u"baseUrl"_s, communication.serverUrl().toString()},
                              {u"token"_s, communication.securityToken()}});

    QEventLoop loop;
    std::unique_ptr<VXSampleOrderWindow> window;
    if (!page.isEmpty()) {
        window = std::make_unique<VXSampleOrderWindow>(screen, communication);
        QObject::connect(window.get(), &VXSampleOrderWindow::closed, &loop, &QEventLoop::quit);
        window->show();
    }
    loop.exec(); // until the window is closed, a signal or --exit-after
    return VXSampleExitCode::Success;
}
