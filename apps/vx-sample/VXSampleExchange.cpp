#include "VXSampleExchange.h"

#include "VXSampleErrorJson.h"

#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QStringDecoder>

using namespace Qt::StringLiterals;

QJsonObject VXSampleExchange::toJson(const VXHttpOperation& theOperation, const QByteArray& theBody)
{
    QJsonObject object = VXSampleErrorJson::fromError(theOperation.errorStatus());
    object.insert(u"http"_s, theOperation.httpResponseCode());
    object.insert(u"bytes"_s, theBody.size());
    return object;
}

void VXSampleExchange::addBody(QJsonObject& theObject, const QByteArray& theBody)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(theBody);
    if (decoder.hasError())
        theObject.insert(u"bodyBase64"_s, QString::fromLatin1(theBody.toBase64()));
    else
        theObject.insert(u"body"_s, text);
}

VXSampleExitCode VXSampleExchange::exitCode(const VXNetworkingError& theError)
{
    if (!theError.errorOccurred())
        return VXSampleExitCode::Success;
    return theError.errorCode() == NetOperationCanceled ? VXSampleExitCode::TimedOut
                                                        : VXSampleExitCode::LibraryError;
}

QString VXSampleExchange::sha256(const QByteArray& theBytes)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(theBytes, QCryptographicHash::Sha256).toHex());
}
