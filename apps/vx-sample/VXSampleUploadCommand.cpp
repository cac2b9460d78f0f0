#include "VXSampleUploadCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"
#include "VXSampleProgress.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>

#include <limits>

using namespace Qt::StringLiterals;

void VXSampleUploadCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"field"_s, u"Send the form field NAME with VALUE; may be repeated."_s, u"NAME=VALUE"_s},
        {u"part"_s, u"Name of the file's part."_s, u"NAME"_s, u"file"_s},
    });
    VXSampleArguments::addTimeout(theParser, 3600);
}

VXSampleExitCode VXSampleUploadCommand::run(const QCommandLineParser& theArguments,
                                            VXSampleContext& theContext)
{
    const QString complaint = read(theArguments);
    if (!complaint.isEmpty())
        return refuse(theContext, u"upload: %1"_s.arg(complaint));
    if (!theContext.resolve(theArguments.positionalArguments().constFirst(), &myUrl))
        return VXSampleExitCode::EnvironmentError;

    QJsonArray uploads;
    VXNetworkingError firstError;
    for (const QString& file : theArguments.positionalArguments().sliced(1)) {
        QJsonObject result;
        const VXNetworkingError error = upload(file, theContext, &result);
        if (!firstError.errorOccurred())
            firstError = error;
        uploads.append(result);
    }
    QJsonObject result = VXSampleErrorJson::fromError(firstError);
    result.insert(u"uploads"_s, uploads);
    theContext.output.result(result);
    return VXSampleExchange::exitCode(firstError);
}

/// Returns what is wrong, empty when nothing is.
QString VXSampleUploadCommand::read(const QCommandLineParser& theArguments)
{
    for (const QString& field : theArguments.values(u"field"_s)) {
        const qsizetype sign = field.indexOf(u'=');
        if (sign <= 0)
            return u"--field: \"%1\" is no NAME=VALUE"_s.arg(field);
        myFields.insert(field.first(sign), field.sliced(sign + 1));
    }
    for (const QString& path : theArguments.positionalArguments().sliced(1)) {
        QFile file(path);
        if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly))
            return u"cannot read \"%1\""_s.arg(path);
    }
    myPart = theArguments.value(u"part"_s);
    QString complaint;
    myTimeout = VXSampleArguments::number(theArguments, u"timeout"_s, -1,
                                          std::numeric_limits<int>::max(), &complaint)
                    .value_or(0);
    return complaint;
}

VXNetworkingError VXSampleUploadCommand::upload(const QString& theFile, VXSampleContext& theContext,
                                                QJsonObject* theResult) const
{
    VXSampleProgress progress(&theContext.output);
    VXHttpOperation operation =
        VXHttpOperation::create(myUrl, QNetworkAccessManager::PostOperation);
    operation.setTimeout(myTimeout);
    operation.setProgressReceiver(&progress, VXSampleProgress::slot());

    VXNetworkingError error(FileNotReadable); // the file went away since read()
    QByteArray answer;
    if (operation.createMultiPart(VXUploadFile(myPart, theFile, QString()), myFields)) {
        answer = operation.exec();
        error = operation.errorStatus();
    }
    progress.takeOutstanding();

    QFile file(theFile);
    *theResult = VXSampleExchange::toJson(operation, answer);
    VXSampleExchange::addBody(*theResult, answer);
    theResult->insert(u"path"_s, QFileInfo(theFile).absoluteFilePath());
    if (file.open(QIODevice::ReadOnly)) {
        theResult->insert(u"size"_s, file.size());
        theResult->insert(u"sha256"_s, VXSampleExchange::sha256(file.readAll()));
    }
    return error;
}
