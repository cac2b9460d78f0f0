#pragma once

#include "VXSampleCommand.h"

/// "update": announces a newer version with its release notes, which come from a server, and asks
/// whether to update now.
class VXSampleUpdateCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
