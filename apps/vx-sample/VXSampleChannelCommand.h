#pragma once

#include "VXSampleCommand.h"

/// "channel": opens the web channel with the order summary's native object, shows the page that
/// talks to it, and tells what the page does until it is stopped.
class VXSampleChannelCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
