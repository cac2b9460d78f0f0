#pragma once

#include "VXSampleCommand.h"

/// "upload-dialog": shows the dialog of the photo transfer until it is closed.
class VXSampleUploadDialogCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;
};
