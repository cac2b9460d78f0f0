#pragma once

#include "VXSampleCommand.h"

/// "message CODE...": what the user reads for the codes. "messages": the whole table.
class VXSampleMessageCommand : public VXSampleCommand
{
public:
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
