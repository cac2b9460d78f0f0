#pragma once

#include "VXSampleCommand.h"

#include <QtCore/QStringList>

/// "tour DIR": the library's main job on real input, checked against the simulator.
class VXSampleTourCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static VXSampleExitCode tour(const QString& theFolder, const QStringList& theGroups,
                                 bool theIsSlow, VXSampleContext& theContext);
};
