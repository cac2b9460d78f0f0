#pragma once

#include "VXSampleCommand.h"

/// "gui": the main window, until it is closed.
class VXSampleGuiCommand : public VXSampleCommand
{
public:
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
