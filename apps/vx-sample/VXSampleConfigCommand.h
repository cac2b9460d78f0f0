#pragma once

#include "VXSampleCommand.h"

/// "config show": the deployment configuration in force, and where each value comes from.
class VXSampleConfigCommand : public VXSampleCommand
{
public:
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
