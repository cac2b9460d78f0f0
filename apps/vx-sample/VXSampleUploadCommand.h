#pragma once

#include "VXSampleCommand.h"

#include <VXNetworking/VXHttpParameter.h>
#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

/// "upload URL FILE...": one multipart POST for each file, with progress.
class VXSampleUploadCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    QString read(const QCommandLineParser& theArguments);
    VXNetworkingError upload(const QString& theFile, VXSampleContext& theContext,
                             QJsonObject* theResult) const;

    QUrl myUrl;
    VXHttpParameter myFields;
    QString myPart;
    int myTimeout = 0; // seconds
};
