#include "VXSampleTourCommand.h"

#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSampleMessages.h"
#include "VXSampleOutput.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorControl.h"
#include "VXTour.h"
#include "VXTourLog.h"
#include "VXTourReport.h"
#include "VXTourRun.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>

using namespace Qt::StringLiterals;

void VXSampleTourCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption(
        {u"only"_s,
         u"Only these groups, separated by commas: %1."_s.arg(VXTour::groups().join(u", "_s)),
         u"LIST"_s});
    theParser.addOption({u"slow"_s, u"Wait a minute for the box about a silent provider, too."_s});
}

VXSampleExitCode VXSampleTourCommand::run(const QCommandLineParser& theArguments,
                                          VXSampleContext& theContext)
{
    const QStringList groups = theArguments.value(u"only"_s).split(u',', Qt::SkipEmptyParts);
    for (const QString& group : groups)
        if (!VXTour::groups().contains(group))
            return refuse(theContext, u"tour: there is no group \"%1\""_s.arg(group));

    const QString folder = theArguments.positionalArguments().constFirst();
    if (!QDir().mkpath(folder))
        return refuse(theContext, u"tour: cannot make the folder \"%1\""_s.arg(folder));
    if (!theContext.simulator.open()) {
        theContext.output.message(u"vx-sample: %1"_s.arg(theContext.simulator.errorText()));
        return VXSampleExitCode::EnvironmentError;
    }
    theContext.answers.setUserIsThere(false); // the steps bring their own answers
    return tour(folder, groups, theArguments.isSet(u"slow"_s), theContext);
}

VXSampleExitCode VXSampleTourCommand::tour(const QString& theFolder, const QStringList& theGroups,
                                           bool theIsSlow, VXSampleContext& theContext)
{
    VXTourLog log;
    VXSimulatorControl control(theContext.simulator.port(u"control"_s));
    VXTourWorld world{theContext, theContext.simulator, control,  theContext.answers,
                      log,        QDir(theFolder),      theIsSlow};
    VXTour tour(world, theContext.output);
    VXSampleMessages::setQuiet(true); // the provoked warnings are in tour.log
    tour.run(theGroups);
    VXSampleMessages::setQuiet(false);

    const VXTourReport report(tour.rows());
    theContext.output.message(report.table());
    const QString complaint = report.write(world.folder, log);
    theContext.output.result({{u"steps"_s, tour.rows().size()}, {u"failed"_s, tour.failed()}});
    if (!complaint.isEmpty()) {
        theContext.output.message(u"vx-sample: %1"_s.arg(complaint));
        return VXSampleExitCode::EnvironmentError;
    }
    return tour.failed() == 0 ? VXSampleExitCode::Success : VXSampleExitCode::TourCheckFailed;
}
