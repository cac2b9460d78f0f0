#pragma once

#include "VXTourRow.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

class VXSampleOutput;
struct VXTourStep;
struct VXTourWorld;

/// The library's main job, step by step, against the simulator. Main thread.
class VXTour
{
    Q_DISABLE_COPY_MOVE(VXTour)

public:
    /// `theWorld` and `theOutput` must outlive the tour.
    VXTour(VXTourWorld& theWorld, VXSampleOutput& theOutput);

    /// The names of all groups, in the order of the tour.
    static QStringList groups();

    /// Runs the steps of those groups; an empty list means all. Each row is an event too.
    void run(const QStringList& theGroups);

    [[nodiscard]] const QList<VXTourRow>& rows() const { return myRows; }
    [[nodiscard]] int failed() const;

private:
    static QList<VXTourStep> allSteps();
    VXTourRow runStep(const VXTourStep& theStep);

    VXTourWorld& myWorld;
    VXSampleOutput& myOutput;
    QList<VXTourRow> myRows;
};
