#pragma once

#include "VXSampleCommand.h"

/// "problem NAME...": network problems from real errors, one after the other, as the menu of the
/// main window brings them about.
class VXSampleProblemCommand : public VXSampleCommand
{
public:
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
