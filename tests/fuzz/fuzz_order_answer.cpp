#include "VXFuzzTarget.h"

#include <VXNetworking/VXNetworkingResult.h>

#include <VXCore/VXErrorEvent.h>
#include <VXXML/VXDomReader.h>

/// An answer of the order protocol, as receiveXml() and VXNetworkingResult read it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QByteArray body = VXFuzzTarget::input(theData, theSize);
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    VXNetworkingError parsed;
    if (!VXDomReader::setContent(document, body, message, line, column))
        parsed.checkDomError(QString::fromUtf8(body), message, line, column);
    VXFuzzTarget::saw("message", static_cast<qint64>(qHash(message, 0) % 32));
    if (parsed.errorOccurred()) {
        VXFuzzTarget::check(parsed.errorCode() == XmlParseError, "a broken answer is 5011");
        return 0;
    }

    const VXNetworkingResult result(document);
    const VXNetworkingError error = result.error();
    VXFuzzTarget::check(result.isSuccess() == !error.errorOccurred(), "success by severity");
    VXFuzzTarget::check(error.errorMessage().endsWith(u"<br>"), "every code has a text");
    VXFuzzTarget::check(error.toErrorEvent().internalErrorCode() == error.errorCode(),
                        "an event keeps the code");
    VXFuzzTarget::check(error.severity() >= 0 && error.severity() <= 9, "one of ten severities");
    std::ignore = error.jsonResultCode();
    std::ignore = result.contentNode();
    std::ignore = result.serverTimeStamp();
    std::ignore = result.documentToString();
    VXFuzzTarget::saw("code", error.errorCode());
    VXFuzzTarget::saw("wait", error.waitTime());
    VXFuzzTarget::saw("coupon", error.defectiveCouponCode().size());
    VXFuzzTarget::saw("text", error.errorText().size());
    VXFuzzTarget::saw("content", result.contentNode().childNodes().size());
    VXFuzzTarget::planted(error.errorCode() > 7 && error.errorCode() < 70);
    return 0;
}
