#include "VXSampleDownloadCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"
#include "VXSampleProgress.h"

#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

void VXSampleDownloadCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption({u"to"_s, u"Write FILE; without it a temporary file."_s, u"FILE"_s});
    VXSampleArguments::addTimeout(theParser, 3600);
}

VXSampleExitCode VXSampleDownloadCommand::run(const QCommandLineParser& theArguments,
                                              VXSampleContext& theContext)
{
    QString complaint;
    const auto timeout = VXSampleArguments::number(theArguments, u"timeout"_s, -1,
                                                   std::numeric_limits<int>::max(), &complaint);
    if (!timeout)
        return refuse(theContext, u"download: %1"_s.arg(complaint));
    QUrl url;
    if (!theContext.resolve(theArguments.positionalArguments().constFirst(), &url))
        return VXSampleExitCode::EnvironmentError;

    VXSampleProgress progress(&theContext.output);
    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    operation.setTimeout(*timeout);
    operation.setProgressReceiver(&progress, VXSampleProgress::slot());
    const QString path = download(operation, theArguments.value(u"to"_s));
    progress.takeOutstanding();

    QJsonObject result = VXSampleExchange::toJson(operation, {});
    result.remove(u"bytes"_s);
    QFile file(path);
    if (!path.isEmpty() && file.open(QIODevice::ReadOnly)) {
        result.insert(u"path"_s, path);
        result.insert(u"size"_s, file.size());
        result.insert(u"sha256"_s, VXSampleExchange::sha256(file.readAll()));
    }
    theContext.output.result(result);
    return VXSampleExchange::exitCode(operation.errorStatus());
}

/// Returns the path of what was written, empty when the download failed.
QString VXSampleDownloadCommand::download(VXHttpOperation& theOperation, const QString& theTarget)
{
    if (!theTarget.isEmpty()) {
        const QFileInfo target(theTarget);
        return theOperation.downloadToFile(target) ? target.absoluteFilePath() : QString();
    }
    const std::unique_ptr<QTemporaryFile> file(theOperation.downloadToTemporaryFile());
    if (!file)
        return {};
    file->setAutoRemove(false); // it is what the user asked for
    return file->fileName();
}
