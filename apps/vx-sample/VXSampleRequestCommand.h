#pragma once

#include "VXSampleCommand.h"

#include <VXNetworking/VXHttpContentType.h>
#include <VXNetworking/VXHttpParameter.h>

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>

/// "request METHOD URL": one HTTP exchange, in the main thread or in several worker threads.
class VXSampleRequestCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    struct Outcome;

    QString read(const QCommandLineParser& theArguments);
    QString readHeaders(const QStringList& theLines);
    [[nodiscard]] Outcome exchange() const;
    [[nodiscard]] QList<Outcome> exchanges() const;

    QNetworkAccessManager::Operation myOperation = QNetworkAccessManager::GetOperation;
    QUrl myUrl;
    QByteArray myBody;
    VXHttpContentTypeEnum myContentType = ContentNone;
    VXHttpParameter myHeaders;
    int myTimeout = 0; // seconds
    int myThreads = 0; // 0: the main thread
};
