#include "VXFuzzTarget.h"

#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

/// A JSON answer of the cloud with its result code, as receiveJsonDocument() and hosts read it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QByteArray body = VXFuzzTarget::input(theData, theSize);
    QJsonParseError parseError;
    const QJsonObject answer = QJsonDocument::fromJson(body, &parseError).object();

    VXNetworkingError error;
    error.checkJsonError(QString::fromUtf8(body), parseError);
    const bool isBroken = parseError.error != QJsonParseError::NoError;
    VXFuzzTarget::check(isBroken == (error.errorCode() == JsonParseError), "broken JSON is 5010");
    VXFuzzTarget::check(error.errorDetails().startsWith(u"Fehlercode: "), "details name the code");

    const int number = answer.value(u"resultCode").toInt();
    error.raiseTessarimError(number);
    VXFuzzTarget::check(error.jsonResultCode() == number, "the result code comes back");
    VXFuzzTarget::check(error.errorMessage().endsWith(u"<br>"), "every code has a text");
    error.raiseHttpError(number);
    VXFuzzTarget::check(error.isHttpError() == (number == 500), "one status has a text of its own");
    VXFuzzTarget::saw("parsed", parseError.error);
    VXFuzzTarget::saw("keys", answer.size());
    VXFuzzTarget::saw("number", number);
    VXFuzzTarget::planted(number > 17 && number < 99);
    return 0;
}
