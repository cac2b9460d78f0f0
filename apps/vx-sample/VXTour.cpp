#include "VXTour.h"

#include "VXSampleOutput.h"
#include "VXTourDialogSteps.h"
#include "VXTourLog.h"
#include "VXTourLoginSteps.h"
#include "VXTourMethodSteps.h"
#include "VXTourOrderSteps.h"
#include "VXTourRun.h"
#include "VXTourSecuritySteps.h"
#include "VXTourTextSteps.h"
#include "VXTourTransferSteps.h"
#include "VXTourUploadSteps.h"
#include "VXTourWebSteps.h"
#include "VXTourWindowSteps.h"

#include <QtCore/QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

VXTour::VXTour(VXTourWorld& theWorld, VXSampleOutput& theOutput)
    : myWorld(theWorld)
    , myOutput(theOutput)
{
}

QList<VXTourStep> VXTour::allSteps()
{
    return VXTourOrderSteps::steps() + VXTourMethodSteps::steps() + VXTourTransferSteps::steps() +
           VXTourTextSteps::steps() + VXTourDialogSteps::steps() + VXTourSecuritySteps::steps() +
           VXTourWebSteps::steps() + VXTourLoginSteps::steps() + VXTourUploadSteps::steps() +
           VXTourWindowSteps::steps();
}

QStringList VXTour::groups()
{
    QStringList names;
    for (const VXTourStep& step : allSteps())
        if (!names.contains(step.group))
            names << step.group;
    return names;
}

void VXTour::run(const QStringList& theGroups)
{
    for (const VXTourStep& step : allSteps()) {
        if (!theGroups.isEmpty() && !theGroups.contains(step.group))
            continue;
        const VXTourRow row = runStep(step);
        QJsonObject event = row.toJson();
        event.remove(u"recorded"_s); // stands in tour.json
        myOutput.event(u"step"_s, event);
        myRows << row;
    }
}

VXTourRow VXTour::runStep(const VXTourStep& theStep)
{
    VXTourRow row{theStep.group, theStep.what, {}, {}, {}, {}};
    myWorld.log.note(u"== %1"_s.arg(theStep.what));
    QElapsedTimer timer;
    timer.start();
    {
        VXTourRun run(myWorld, row);
        theStep.run(run);
    }
    row.milliseconds = timer.elapsed();
    for (const QString& complaint : row.complaints)
        myWorld.log.note(u"!! %1"_s.arg(complaint));
    return row;
}

int VXTour::failed() const
{
    return static_cast<int>(
        std::ranges::count_if(myRows, [](const VXTourRow& theRow) { return !theRow.isGood(); }));
}
