#include "VXTourOrderSteps.h"

#include "VXRecordedRequest.h"
#include "VXSampleSimulator.h"
#include "VXTourRun.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtXml/QDomDocument>

using namespace Qt::StringLiterals;

namespace {

/// Asks for an answer of the order protocol and expects that the simulator got that request.
VXNetworkingResult order(VXTourRun& theRun, const QString& theTarget)
{
    VXHttpOperation operation = VXHttpOperation::create(theRun.world.simulator.http(theTarget),
                                                        QNetworkAccessManager::GetOperation);
    const QDomDocument answer = operation.receiveXml();
    theRun.expectReceived({{u"GET"_s, theTarget, {}, {}}});
    if (operation.errorOccurred())
        return VXNetworkingResult(operation.errorStatus().errorCode());
    theRun.expectEqual<qint64>(u"status"_s, operation.httpResponseCode(), 200);
    return VXNetworkingResult(answer);
}

void orderIsSaved(VXTourRun& theRun)
{
    VXNetworkingResult result = order(theRun, u"/xtci/cart?text=ok"_s);
    const QString path = theRun.world.folder.filePath(u"02-order.xml"_s);
    result.saveContentToFile(QFileInfo(path));

    QFile file(path);
    theRun.expect(file.open(QIODevice::ReadOnly), u"%1 is not there"_s.arg(path));
    theRun.expectEqual<QString>(u"the saved file"_s, QString::fromUtf8(file.readAll()),
                                u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                " <content>\n"
                                "  <name>cart</name>\n"
                                "  <method>GET</method>\n"
                                "  <received>0</received>\n"
                                " </content>\n"_s);
    theRun.expectEqual(u"success"_s, result.isSuccess(), true);
    theRun.expect(!result.serverTimeStamp().isEmpty(), u"there is no time stamp"_s);
    theRun.came(u"success, time stamp %1, content saved"_s.arg(result.serverTimeStamp()));
}

void couponIsRejected(VXTourRun& theRun)
{
    const QString path = theRun.world.folder.filePath(u"coupon.xml"_s);
    VXNetworkingResult result =
        order(theRun, u"/xtci/cart?errorcode=70&coupon=SOMMER26&wait=5&text=abgelaufen"_s);
    result.saveContentToFile(QFileInfo(path));

    const VXNetworkingError error = result.error();
    theRun.expectEqual<qint64>(u"code"_s, error.errorCode(), 70);
    theRun.expectEqual(u"is a coupon error"_s, error.isCouponError(), true);
    theRun.expectEqual<QString>(u"coupon"_s, error.defectiveCouponCode(), u"SOMMER26"_s);
    theRun.expectEqual<qint64>(u"wait time"_s, error.waitTime(), 5);
    theRun.expectEqual<QString>(u"text"_s, error.errorText(), u"abgelaufen"_s);
    theRun.expect(!QFileInfo::exists(path), u"a rejected order was saved"_s);
    theRun.came(u"code %1, coupon %2, wait %3 min, nothing saved"_s.arg(
        QString::number(error.errorCode()), error.defectiveCouponCode(),
        QString::number(error.waitTime())));
}

void informationIsSuccess(VXTourRun& theRun)
{
    const VXNetworkingResult result = order(theRun, u"/xtci/update?errorcode=85"_s);
    theRun.expectEqual<qint64>(u"code"_s, result.errorCode(), 85);
    theRun.expectEqual(u"success"_s, result.isSuccess(), true);
    theRun.came(u"code %1, counts as success"_s.arg(result.errorCode()));
}

void brokenXmlIsNoted(VXTourRun& theRun)
{
    const VXNetworkingResult result = order(theRun, u"/xtci/broken"_s);
    theRun.expectEqual<qint64>(u"code"_s, result.errorCode(), 5011);
    theRun.came(u"code %1, no document"_s.arg(result.errorCode()));
}

VXHttpOperation jsonOperation(VXTourRun& theRun, const QString& theTarget)
{
    return VXHttpOperation::create(theRun.world.simulator.http(theTarget),
                                   QNetworkAccessManager::GetOperation);
}

void jsonIsRead(VXTourRun& theRun)
{
    VXHttpOperation operation = jsonOperation(theRun, u"/json/good"_s);
    const QJsonObject answer = operation.receiveJsonObject();
    theRun.expectSuccess(operation);
    theRun.expectReceived({{u"GET"_s, u"/json/good"_s, {}, {}}});
    theRun.expectEqual<QString>(u"the answer's text"_s, answer.value(u"message"_s).toString(),
                                u"Grüße"_s);
    theRun.expectEqual<qint64>(u"number of items"_s, answer.value(u"items"_s).toArray().size(), 3);
    theRun.came(u"object with message \"%1\""_s.arg(answer.value(u"message"_s).toString()));
}

void brokenJsonIsNoted(VXTourRun& theRun)
{
    VXHttpOperation operation = jsonOperation(theRun, u"/json/bad"_s);
    const QJsonDocument answer = operation.receiveJsonDocument();
    theRun.expectReceived({{u"GET"_s, u"/json/bad"_s, {}, {}}});
    theRun.expectEqual<qint64>(u"code"_s, operation.errorStatus().errorCode(), 5010);
    theRun.expectEqual(u"document is empty"_s, answer.isNull(), true);
    theRun.came(operation, 0);
    theRun.came(operation.errorStatus().errorText());
}

void jsonErrorBodyIsRead(VXTourRun& theRun)
{
    VXHttpOperation operation = jsonOperation(theRun, u"/json/error?code=17&http=404"_s);
    const QJsonObject answer = operation.receiveJsonObjectWithErrorBody();
    theRun.expectReceived({{u"GET"_s, u"/json/error?code=17&http=404"_s, {}, {}}});
    theRun.expectEqual<qint64>(u"code"_s, operation.errorStatus().errorCode(), 3703);
    theRun.expectEqual<qint64>(u"status"_s, operation.httpResponseCode(), 404);

    VXNetworkingError error;
    error.raiseTessarimError(answer.value(u"resultCode"_s).toInt());
    theRun.expectEqual<qint64>(u"cloud error"_s, error.errorCode(), 20017);
    theRun.came(u"status 404 with the body's result code %1"_s.arg(error.jsonResultCode()));
}

} // namespace

QList<VXTourStep> VXTourOrderSteps::steps()
{
    return {
        {u"order"_s, u"XML order, content saved to a file"_s, orderIsSaved},
        {u"order"_s, u"XML order with a rejected coupon"_s, couponIsRejected},
        {u"order"_s, u"XML answer with an informational code"_s, informationIsSuccess},
        {u"order"_s, u"XML answer that is not well-formed"_s, brokenXmlIsNoted},
        {u"json"_s, u"JSON object"_s, jsonIsRead},
        {u"json"_s, u"JSON that breaks off"_s, brokenJsonIsNoted},
        {u"json"_s, u"JSON error body of a 404"_s, jsonErrorBodyIsRead},
    };
}
