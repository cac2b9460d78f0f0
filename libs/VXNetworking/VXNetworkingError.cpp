#include "VXNetworkingError.h"

#include "VXNetworkingErrorMessageMap.h"
#include "VXNetworkingErrorSeverityMessageMap.h"

#include <VXCore/VXErrorEvent.h>
#include <VXXML/VXXMLParser.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonParseError>
#include <QtCore/QStringList>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct SeverityRow
{
    VXNetworkingErrorCode code;
    VXNetworkingErrorSeverity severity;
};

constexpr std::array severities{
    SeverityRow{NoError, SeverityNoError},
    SeverityRow{ClientVersionTooOld, SeverityUnrecoverable},
    SeverityRow{InvalidLogin, SeverityUserInput},
    SeverityRow{InvalidSessionId, SeverityProgramError},
    SeverityRow{InvalidEmailAddress, SeverityUserInput},
    SeverityRow{ServerCode6, SeverityUserInput},
    SeverityRow{ServerCode7, SeverityNoError},
    SeverityRow{SecurityQuestionInvalid, SeverityUserInput},
    SeverityRow{SecurityAnswerInvalid, SeverityUserInput},
    SeverityRow{SimilarOrderRecentlyReceived, SeverityUserInput},
    SeverityRow{StreetValidationFailed, SeverityUserInput},
    SeverityRow{StreetValidationFailed2, SeverityUserInput},
    SeverityRow{ZipCodeValidationFailed, SeverityUserInput},
    SeverityRow{CityValidationFailed, SeverityUserInput},
    SeverityRow{CountrySettingMismatch, SeverityUserInput},
    SeverityRow{AccountHasOpenOrders, SeverityProgramError},
    SeverityRow{ServerCode26, SeverityTemporary},
    SeverityRow{UploadAborted, SeverityUnrecoverable},
    SeverityRow{ServerCode32, SeverityTemporary},
    SeverityRow{ServerCode33, SeverityTemporary},
    SeverityRow{OrderWithoutPhotos, SeverityProgramError},
    SeverityRow{ServerCode49, SeverityNoError},
    SeverityRow{InvalidLogin2, SeverityProgramError},
    SeverityRow{ServerCode52, SeverityTemporary},
    SeverityRow{ServerCode57, SeverityTemporary},
    SeverityRow{PhotoFileFormatRejected, SeverityProgramError},
    SeverityRow{InvalidPartnerCode, SeverityUserInput},
    SeverityRow{CouponsNotCombinable, SeverityUserInput},
    SeverityRow{CouponAlreadyUsed, SeverityUserInput},
    SeverityRow{TooManyDiscountCoupons, SeverityUserInput},
    SeverityRow{CouponOnlyForCardHolders, SeverityUserInput},
    SeverityRow{CouponNotForThisSoftware, SeverityUserInput},
    SeverityRow{AlreadyRegistered, SeverityProgramError},
    SeverityRow{InvalidCouponCode, SeverityUserInput},
    SeverityRow{CouponMinimumQuantity, SeverityUserInput},
    SeverityRow{CouponCampaignExpired, SeverityUserInput},
    SeverityRow{CouponMinimumOrderValue, SeverityUserInput},
    SeverityRow{CouponServerCode74, SeverityUserInput},
    SeverityRow{CouponOnlyForNewCustomers, SeverityUserInput},
    SeverityRow{CouponNotForDeliveryMethod, SeverityUserInput},
    SeverityRow{CouponOnlyForExistingCustomers, SeverityUserInput},
    SeverityRow{CouponAlreadyRedeemed, SeverityUserInput},
    SeverityRow{SecurityAnswerWrong, SeverityUserInput},
    SeverityRow{UnknownUser, SeverityProgramError},
    SeverityRow{SoftwareUpToDate, SeverityNoError},
    SeverityRow{InvalidCustomerCardNumber, SeverityUserInput},
    SeverityRow{InvalidPaybackNumber, SeverityUserInput},
    SeverityRow{RequiredFieldMissing, SeverityUserInput},
    SeverityRow{SoftwareVersionNotSupported, SeverityProgramError},
    SeverityRow{InvalidAddress, SeverityUserInput},
    SeverityRow{ShippingNotPossibleWithPayment, SeverityUserInput},
    SeverityRow{InvalidPickupLocation, SeverityUserInput},
    SeverityRow{InvalidBillingAddress, SeverityUserInput},
    SeverityRow{ZipCodeNotServedByCarrier, SeverityProgramError},
    SeverityRow{InvalidPostNumber, SeverityUserInput},
    SeverityRow{PasswordTooWeak, SeverityUserInput},
    SeverityRow{GeneralUnknownError, SeverityProgramError},
    SeverityRow{StoreClosedOrMissing, SeverityOrderDeclaration},
    SeverityRow{ServerCode502, SeverityOrderDeclaration},
    SeverityRow{ShoppingCartProgramError, SeverityProgramError},
    SeverityRow{ZeroQuantityOrdered, SeverityOrderDeclaration},
    SeverityRow{PriceModelChanged, SeverityOrderDeclaration},
    SeverityRow{InconsistentDiscountData, SeverityOrderDeclaration},
    SeverityRow{TooManyPhotosInOrder, SeverityUnrecoverable},
    SeverityRow{ServerCode513, SeverityOrderDeclaration},
    SeverityRow{ShoppingCartProgramError2, SeverityProgramError},
    SeverityRow{ProductGroupPaymentNotSupported, SeverityOrderDeclaration},
    SeverityRow{PaymentBlockedOpenInvoice, SeverityOrderDeclaration},
    SeverityRow{ServerCode533, SeverityNoError},
    SeverityRow{ServerCode537, SeverityNoError},
    SeverityRow{PaymentWrongZipCode, SeverityPayment},
    SeverityRow{CreditCardTypeNotSupported, SeverityProgramError},
    SeverityRow{KlarnaInvoiceNotPossible, SeverityPayment},
    SeverityRow{KlarnaAddressNotConfirmed, SeverityPayment},
    SeverityRow{PurchaseNotCompleted, SeverityPayment},
    SeverityRow{PurchaseNameMismatch, SeverityPayment},
    SeverityRow{ServerCode750, SeverityNoError},
    SeverityRow{InvalidServerDataNoMailOrder, SeverityUnrecoverable},
    SeverityRow{TooManyStoresForPartner, SeverityProgramError},
    SeverityRow{ServerCode807, SeverityNoError},
    SeverityRow{ServerCode920, SeverityNoError},
    SeverityRow{WeeklyMaintenance, SeverityUnrecoverable},
    SeverityRow{ServerCannotAnswer, SeverityRemoteSystem},
    SeverityRow{ServerCode1001, SeverityRemoteSystem},
    SeverityRow{OrderFormatRejected, SeverityRemoteSystem},
    SeverityRow{ServerCode1003, SeverityRemoteSystem},
    SeverityRow{ServerDatabaseError, SeverityRemoteSystem},
    SeverityRow{ServicesFullyLoaded, SeverityAutoRecover},
    SeverityRow{PartnerLoginError, SeverityProgramError},
    SeverityRow{UnsupportedRequest, SeverityProgramError},
    SeverityRow{RemoteServerNotResponding, SeverityProgramError},
    SeverityRow{PartnerMisconfigured, SeverityProgramError},
    SeverityRow{NoAddressDataForUser, SeverityProgramError},
    SeverityRow{DataConversionError, SeverityProgramError},
    SeverityRow{NetworkExceptionError, SeverityProgramError},
    SeverityRow{TargetDirectoryMissing, SeverityProgramError},
    SeverityRow{FileEmpty, SeverityUnrecoverable},
    SeverityRow{FileNotWritable, SeverityProgramError},
    SeverityRow{FileNotReadable, SeverityProgramError},
    SeverityRow{NetConnectionRefused, SeverityTemporary},
    SeverityRow{NetRemoteHostClosed, SeverityTemporary},
    SeverityRow{NetHostNotFound, SeverityTemporary},
    SeverityRow{NetTimeout, SeverityTemporary},
    SeverityRow{NetOperationCanceled, SeverityUnrecoverable},
    SeverityRow{NetSslHandshakeFailed, SeverityUnrecoverable},
    SeverityRow{NetUnknownNetworkError, SeverityTemporary},
    SeverityRow{NetProxyConnectionRefused, SeverityTemporary},
    SeverityRow{NetProxyConnectionClosed, SeverityTemporary},
    SeverityRow{NetProxyNotFound, SeverityTemporary},
    SeverityRow{NetProxyTimeout, SeverityTemporary},
    SeverityRow{NetProxyAuthenticationRequired, SeverityTemporary},
    SeverityRow{NetUnknownProxyError, SeverityTemporary},
    SeverityRow{NetContentAccessDenied, SeverityUnrecoverable},
    SeverityRow{NetContentOperationNotPermitted, SeverityUnrecoverable},
    SeverityRow{NetContentNotFound, SeverityUnrecoverable},
    SeverityRow{NetAuthenticationRequired, SeverityTemporary},
    SeverityRow{NetUnknownContentError, SeverityUnrecoverable},
    SeverityRow{NetProtocolUnknown, SeverityUnrecoverable},
    SeverityRow{NetProtocolInvalidOperation, SeverityUnrecoverable},
    SeverityRow{NetProtocolFailure, SeverityUnrecoverable},
    SeverityRow{ServicesBusyRetryLater, SeverityAutoRecover},
    SeverityRow{NoAnswerOnOrderCompletion, SeverityRemoteSystem},
    SeverityRow{LoginServerUnreachable, SeverityTemporary},
    SeverityRow{NoNetworkConnection, SeverityNoNetwork},
    SeverityRow{InvalidXmlResponse, SeverityRemoteSystem},
    SeverityRow{LoginServerUnreachableContactSupport, SeverityUnrecoverable},
    SeverityRow{JsonParseError, SeverityUnrecoverable},
    SeverityRow{XmlParseError, SeverityUnrecoverable},
    SeverityRow{NotExecuted, SeverityProgramError},
    SeverityRow{NetUnknownServerError, SeverityProgramError},
    SeverityRow{HttpInternalServerError, SeverityProgramError},
    SeverityRow{MultiPartSendFailed, SeverityProgramError},
};
static_assert(std::ranges::is_sorted(severities, {}, &SeverityRow::code));

constexpr std::array couponErrors{CouponsNotCombinable,           CouponAlreadyUsed,
                                  TooManyDiscountCoupons,         CouponOnlyForCardHolders,
                                  CouponNotForThisSoftware,       InvalidCouponCode,
                                  CouponMinimumQuantity,          CouponCampaignExpired,
                                  CouponMinimumOrderValue,        CouponServerCode74,
                                  CouponOnlyForNewCustomers,      CouponNotForDeliveryMethod,
                                  CouponOnlyForExistingCustomers, CouponAlreadyRedeemed};
static_assert(std::ranges::is_sorted(couponErrors));

/// Both numbers may come from a server, whatever their size: the sum wraps round.
constexpr VXNetworkingErrorCode shifted(int theBase, int theNumber)
{
    return static_cast<VXNetworkingErrorCode>(
        static_cast<int>(static_cast<unsigned>(theBase) + static_cast<unsigned>(theNumber)));
}

} // namespace

VXNetworkingErrorMessageMap VXNetworkingError::myErrorMessageMap;
VXNetworkingErrorSeverityMessageMap VXNetworkingError::myErrorSeverityMessageMap;

VXNetworkingError::VXNetworkingError(VXNetworkingErrorCode theCode)
    : myErrorCode(theCode)
{
}

VXNetworkingError::VXNetworkingError(QNetworkReply::NetworkError theError)
    : myErrorCode(qtNetworkErrorToNetworkingErrorCode(theError))
{
}

VXNetworkingError::VXNetworkingError(const VXErrorEvent& theEvent)
{
    if (theEvent.type() != VXErrorEvent::NetworkError)
        return;
    myErrorCode = static_cast<VXNetworkingErrorCode>(theEvent.internalErrorCode());
    myErrorText = theEvent.message();
}

VXNetworkingError::~VXNetworkingError() = default;

void VXNetworkingError::raise(VXNetworkingErrorCode theCode, const QString& theErrorText,
                              const QString& theDefectiveCouponCode, int theWaitTime)
{
    myErrorCode = theCode;
    myErrorText = theErrorText;
    myDefectiveCouponCode = theDefectiveCouponCode;
    myWaitTime = theWaitTime;
    myOriginator.clear();
}

void VXNetworkingError::raiseQtError(QNetworkReply::NetworkError theError)
{
    raise(qtNetworkErrorToNetworkingErrorCode(theError));
}

void VXNetworkingError::raiseHttpError(int theHttpStatus)
{
    raise(shifted(HttpErrorBase, theHttpStatus));
}

void VXNetworkingError::raiseTessarimError(int theResultCode)
{
    raise(shifted(TessarimErrorBase, theResultCode));
}

void VXNetworkingError::raiseXTCIError(const QDomDocument& theAnswer)
{
    // The last child, not the document element: that is how the order protocol is read everywhere.
    const QDomNode head = theAnswer.lastChild().namedItem(u"head"_s);
    const QDomElement codeElement = head.firstChildElement(u"errorcode"_s);
    const QDomElement textElement = head.firstChildElement(u"errortext"_s);
    raise(static_cast<VXNetworkingErrorCode>(codeElement.text().toInt()), textElement.text(),
          codeElement.attribute(u"coupon_code"_s),
          VXXMLParser::readIntAttribute(codeElement, u"wait_time"_s, 0));
}

void VXNetworkingError::checkJsonError(const QString& theOriginator,
                                       const QJsonParseError& theParseError)
{
    if (theParseError.error == QJsonParseError::NoError)
        return;
    raise(JsonParseError);
    setOriginator(theOriginator);
    setErrorText(u"%1 at offset %2"_s.arg(theParseError.errorString(),
                                          QString::number(theParseError.offset)));
}

void VXNetworkingError::checkDomError(const QString& theOriginator, const QString& theErrorMessage,
                                      int theLine, int theColumn)
{
    if (theErrorMessage.isEmpty())
        return;
    raise(XmlParseError);
    setOriginator(theOriginator);
    setErrorText(u"%1 at line %2, column %3"_s.arg(theErrorMessage, QString::number(theLine),
                                                   QString::number(theColumn)));
}

void VXNetworkingError::checkFileError(const QFileInfo& theFile)
{
    QFileInfo file(theFile);
    file.refresh();
    if (!file.dir().exists())
        raise(TargetDirectoryMissing);
    else if (!file.exists())
        raise(FileNotWritable);
    else if (file.size() == 0)
        raise(FileEmpty);
    else
        return;
    setOriginator(file.absoluteFilePath());
}

void VXNetworkingError::clear()
{
    myErrorCode = NoError;
    myOriginator.clear();
    myErrorText.clear();
}

VXNetworkingErrorSeverity VXNetworkingError::severity(VXNetworkingErrorCode theCode)
{
    const auto row = std::ranges::lower_bound(severities, theCode, {}, &SeverityRow::code);
    return row != severities.end() && row->code == theCode ? row->severity : SeverityProgramError;
}

bool VXNetworkingError::isHttpError() const noexcept
{
    return myErrorCode == HttpInternalServerError;
}

bool VXNetworkingError::isCouponError() const noexcept
{
    return std::ranges::binary_search(couponErrors, myErrorCode);
}

int VXNetworkingError::jsonResultCode() const noexcept
{
    return shifted(-TessarimErrorBase, myErrorCode);
}

VXNetworkingErrorCode VXNetworkingError::qtNetworkErrorToNetworkingErrorCode(
    QNetworkReply::NetworkError theError) noexcept
{
    if (theError == QNetworkReply::NoError)
        return NoError;
    if (theError == QNetworkReply::UnknownServerError)
        return NetUnknownServerError; // not 3999, on purpose
    return static_cast<VXNetworkingErrorCode>(NetErrorBase + theError);
}

QString VXNetworkingError::errorMessage() const
{
    QString text;
    if (isHttpError()) {
        text = tr("HTTP-Fehler %1 bei der Übertragung.").arg(myErrorCode - HttpErrorBase) + u' ' +
               tr("Bitte überprüfen Sie die Netzwerkeinstellungen Ihres Systems und die "
                  "Proxyeinstellungen im Menü Extras/Optionen/Netzwerk. Bitte beachten Sie, dass "
                  "in der Firewall die Ports 80 und 443 freigeschaltet sein müssen.");
    } else {
        text = myErrorMessageMap.message(myErrorCode);
        if (text.isEmpty())
            text = myErrorSeverityMessageMap.message(severity(), {});
    }
    return text + u"<br>"_s;
}

QString VXNetworkingError::errorDetails() const
{
    QStringList lines{tr("Fehlercode: %1").arg(static_cast<int>(myErrorCode))};
    if (!myOriginator.isEmpty())
        lines << tr("Quelle: %1").arg(myOriginator);
    if (!myErrorText.isEmpty())
        lines << tr("Detail: %1").arg(myErrorText);
    return lines.join(u'\n');
}

VXErrorEvent VXNetworkingError::toErrorEvent() const
{
    return {VXErrorEvent::NetworkError, errorDetails(), myErrorCode};
}
