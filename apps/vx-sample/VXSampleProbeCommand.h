#pragma once

#include "VXSampleCommand.h"

/// "probe URL": whether a server answers.
class VXSampleProbeCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
