#pragma once

#include "VXUploadLoadRun.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

/// Compares the runs of the service with those of the bare route.
class VXUploadLoadReport
{
public:
    VXUploadLoadReport(const VXUploadLoad& theLoad, const QList<VXUploadLoadResult>& theService,
                       const QList<VXUploadLoadResult>& theBare);

    /// Both servers with their medians, and each target with what was reached.
    [[nodiscard]] QString table() const;

    /// The same with every single run.
    [[nodiscard]] QJsonObject json() const;

    [[nodiscard]] bool isEachTargetMet() const;

private:
    [[nodiscard]] double throughputRatio() const;
    [[nodiscard]] double memoryRatio() const;
    [[nodiscard]] double blockBeyondMs() const;

    VXUploadLoad myLoad;
    QList<VXUploadLoadResult> myService;
    QList<VXUploadLoadResult> myBare;
    VXUploadLoadResult myServiceMedian;
    VXUploadLoadResult myBareMedian;
};
