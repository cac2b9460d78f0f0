#pragma once

#include "VXSampleCommand.h"

/// "handle CODE": how the mediator talks to the user about an error.
class VXSampleHandleCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
