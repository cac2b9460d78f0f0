#pragma once

#include "VXSampleCommand.h"

class QFile;
class VXHttpOperation;

/// "download URL": into a file or a temporary file, with progress.
class VXSampleDownloadCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static QString download(VXHttpOperation& theOperation, const QString& theTarget);
};
