#include "VXSampleOrderCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleOrder.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QUrlQuery>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QJsonObject toJson(const VXNetworkingResult& theResult)
{
    QJsonObject object = VXSampleErrorJson::fromError(theResult.error());
    object.insert(u"success"_s, theResult.isSuccess());
    object.insert(u"abort"_s, theResult.isAbortSituation());
    object.insert(u"coupon"_s, theResult.error().defectiveCouponCode());
    object.insert(u"waitTime"_s, theResult.error().waitTime());
    object.insert(u"serverTimeStamp"_s, theResult.serverTimeStamp());
    object.insert(u"content"_s, VXSampleOrder::contentText(theResult));
    return object;
}

} // namespace

void VXSampleOrderCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"errorcode"_s, u"Let the service answer the error N."_s, u"N"_s},
        {u"text"_s, u"... with this error text."_s, u"TEXT"_s},
        {u"coupon"_s, u"... that rejects this coupon."_s, u"CODE"_s},
        {u"wait"_s, u"... and asks to wait M minutes."_s, u"M"_s},
        {u"content"_s, u"none: an answer without content."_s, u"KIND"_s},
        {u"save"_s, u"Save the answer's content to FILE."_s, u"FILE"_s},
    });
    VXSampleArguments::addTimeout(theParser, 120);
}

VXSampleExitCode VXSampleOrderCommand::run(const QCommandLineParser& theArguments,
                                           VXSampleContext& theContext)
{
    QString complaint;
    const auto timeout = VXSampleArguments::number(theArguments, u"timeout"_s, -1,
                                                   std::numeric_limits<int>::max(), &complaint);
    if (theArguments.isSet(u"errorcode"_s))
        VXSampleArguments::number(theArguments, u"errorcode"_s, std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max(), &complaint);
    if (!complaint.isEmpty())
        return refuse(theContext, u"order: %1"_s.arg(complaint));
    QUrl url;
    if (!theContext.resolve(pathAndQuery(theArguments), &url))
        return VXSampleExitCode::EnvironmentError;

    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    operation.setTimeout(*timeout);
    VXNetworkingResult result = VXSampleOrder::exchange(operation);
    if (theArguments.isSet(u"save"_s))
        result.saveContentToFile(QFileInfo(theArguments.value(u"save"_s)));

    QJsonObject object = toJson(result);
    object.insert(u"http"_s, operation.httpResponseCode());
    theContext.output.result(object);
    return VXSampleExchange::exitCode(result.error());
}

QString VXSampleOrderCommand::pathAndQuery(const QCommandLineParser& theArguments)
{
    QUrlQuery query;
    for (const QString& name : {u"errorcode"_s, u"text"_s, u"coupon"_s, u"wait"_s, u"content"_s}) {
        if (theArguments.isSet(name))
            query.addQueryItem(
                name, QString::fromLatin1(QUrl::toPercentEncoding(theArguments.value(name))));
    }
    const QString name = theArguments.positionalArguments().constFirst();
    const QString path = u"/xtci/"_s + QString::fromLatin1(QUrl::toPercentEncoding(name));
    return query.isEmpty() ? path : path + u'?' + query.toString(QUrl::FullyEncoded);
}
