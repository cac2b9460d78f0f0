#pragma once

#include "VXSampleCommand.h"

/// "upload-service": receives photos from phones until it is stopped.
class VXSampleUploadServiceCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
