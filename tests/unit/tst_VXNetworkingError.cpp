#include <VXNetworking/VXNetworkingError.h>

#include "VXFileContent.h"
#include "VXMarkingTranslator.h"
#include "VXTestMain.h"

#include <VXCore/VXErrorEvent.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <array>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace {

struct NamedCode
{
    const char* name;
    VXNetworkingErrorCode code;
    int number;
    int severity;
    bool isCouponError;
};

constexpr std::array namedCodes{
    NamedCode{"NoError", NoError, 0, 0, false},
    NamedCode{"ClientVersionTooOld", ClientVersionTooOld, 1, 1, false},
    NamedCode{"InvalidLogin", InvalidLogin, 2, 3, false},
    NamedCode{"InvalidSessionId", InvalidSessionId, 4, 2, false},
    NamedCode{"InvalidEmailAddress", InvalidEmailAddress, 5, 3, false},
    NamedCode{"ServerCode6", ServerCode6, 6, 3, false},
    NamedCode{"ServerCode7", ServerCode7, 7, 0, false},
    NamedCode{"SecurityQuestionInvalid", SecurityQuestionInvalid, 8, 3, false},
    NamedCode{"SecurityAnswerInvalid", SecurityAnswerInvalid, 9, 3, false},
    NamedCode{"SimilarOrderRecentlyReceived", SimilarOrderRecentlyReceived, 10, 3, false},
    NamedCode{"StreetValidationFailed", StreetValidationFailed, 12, 3, false},
    NamedCode{"StreetValidationFailed2", StreetValidationFailed2, 13, 3, false},
    NamedCode{"ZipCodeValidationFailed", ZipCodeValidationFailed, 14, 3, false},
    NamedCode{"CityValidationFailed", CityValidationFailed, 15, 3, false},
    NamedCode{"CountrySettingMismatch", CountrySettingMismatch, 16, 3, false},
    NamedCode{"AccountHasOpenOrders", AccountHasOpenOrders, 20, 2, false},
    NamedCode{"ServerCode26", ServerCode26, 26, 6, false},
    NamedCode{"UploadAborted", UploadAborted, 27, 1, false},
    NamedCode{"ServerCode32", ServerCode32, 32, 6, false},
    NamedCode{"ServerCode33", ServerCode33, 33, 6, false},
    NamedCode{"OrderWithoutPhotos", OrderWithoutPhotos, 34, 2, false},
    NamedCode{"ServerCode49", ServerCode49, 49, 0, false},
    NamedCode{"InvalidLogin2", InvalidLogin2, 50, 2, false},
    NamedCode{"ServerCode52", ServerCode52, 52, 6, false},
    NamedCode{"ServerCode57", ServerCode57, 57, 6, false},
    NamedCode{"PhotoFileFormatRejected", PhotoFileFormatRejected, 60, 2, false},
    NamedCode{"InvalidPartnerCode", InvalidPartnerCode, 62, 3, false},
    NamedCode{"CouponsNotCombinable", CouponsNotCombinable, 63, 3, true},
    NamedCode{"CouponAlreadyUsed", CouponAlreadyUsed, 64, 3, true},
    NamedCode{"TooManyDiscountCoupons", TooManyDiscountCoupons, 65, 3, true},
    NamedCode{"CouponOnlyForCardHolders", CouponOnlyForCardHolders, 66, 3, true},
    NamedCode{"CouponNotForThisSoftware", CouponNotForThisSoftware, 67, 3, true},
    NamedCode{"AlreadyRegistered", AlreadyRegistered, 68, 2, false},
    NamedCode{"InvalidCouponCode", InvalidCouponCode, 70, 3, true},
    NamedCode{"CouponMinimumQuantity", CouponMinimumQuantity, 71, 3, true},
    NamedCode{"CouponCampaignExpired", CouponCampaignExpired, 72, 3, true},
    NamedCode{"CouponMinimumOrderValue", CouponMinimumOrderValue, 73, 3, true},
    NamedCode{"CouponServerCode74", CouponServerCode74, 74, 3, true},
    NamedCode{"CouponOnlyForNewCustomers", CouponOnlyForNewCustomers, 75, 3, true},
    NamedCode{"CouponNotForDeliveryMethod", CouponNotForDeliveryMethod, 77, 3, true},
    NamedCode{"CouponOnlyForExistingCustomers", CouponOnlyForExistingCustomers, 78, 3, true},
    NamedCode{"CouponAlreadyRedeemed", CouponAlreadyRedeemed, 79, 3, true},
    NamedCode{"SecurityAnswerWrong", SecurityAnswerWrong, 80, 3, false},
    NamedCode{"UnknownUser", UnknownUser, 81, 2, false},
    NamedCode{"SoftwareUpToDate", SoftwareUpToDate, 85, 0, false},
    NamedCode{"InvalidCustomerCardNumber", InvalidCustomerCardNumber, 87, 3, false},
    NamedCode{"InvalidPaybackNumber", InvalidPaybackNumber, 89, 3, false},
    NamedCode{"RequiredFieldMissing", RequiredFieldMissing, 93, 3, false},
    NamedCode{"SoftwareVersionNotSupported", SoftwareVersionNotSupported, 94, 2, false},
    NamedCode{"InvalidAddress", InvalidAddress, 95, 3, false},
    NamedCode{"ShippingNotPossibleWithPayment", ShippingNotPossibleWithPayment, 96, 3, false},
    NamedCode{"InvalidPickupLocation", InvalidPickupLocation, 97, 3, false},
    NamedCode{"InvalidBillingAddress", InvalidBillingAddress, 98, 3, false},
    NamedCode{"ZipCodeNotServedByCarrier", ZipCodeNotServedByCarrier, 99, 2, false},
    NamedCode{"InvalidPostNumber", InvalidPostNumber, 121, 3, false},
    NamedCode{"PasswordTooWeak", PasswordTooWeak, 130, 3, false},
    NamedCode{"GeneralUnknownError", GeneralUnknownError, 500, 2, false},
    NamedCode{"StoreClosedOrMissing", StoreClosedOrMissing, 501, 7, false},
    NamedCode{"ServerCode502", ServerCode502, 502, 7, false},
    NamedCode{"ShoppingCartProgramError", ShoppingCartProgramError, 503, 2, false},
    NamedCode{"ZeroQuantityOrdered", ZeroQuantityOrdered, 504, 7, false},
    NamedCode{"PriceModelChanged", PriceModelChanged, 508, 7, false},
    NamedCode{"InconsistentDiscountData", InconsistentDiscountData, 510, 7, false},
    NamedCode{"TooManyPhotosInOrder", TooManyPhotosInOrder, 511, 1, false},
    NamedCode{"ServerCode513", ServerCode513, 513, 7, false},
    NamedCode{"ShoppingCartProgramError2", ShoppingCartProgramError2, 516, 2, false},
    NamedCode{"ProductGroupPaymentNotSupported", ProductGroupPaymentNotSupported, 518, 7, false},
    NamedCode{"PaymentBlockedOpenInvoice", PaymentBlockedOpenInvoice, 531, 7, false},
    NamedCode{"ServerCode533", ServerCode533, 533, 0, false},
    NamedCode{"ServerCode537", ServerCode537, 537, 0, false},
    NamedCode{"PaymentWrongZipCode", PaymentWrongZipCode, 565, 9, false},
    NamedCode{"CreditCardTypeNotSupported", CreditCardTypeNotSupported, 601, 2, false},
    NamedCode{"KlarnaInvoiceNotPossible", KlarnaInvoiceNotPossible, 653, 9, false},
    NamedCode{"KlarnaAddressNotConfirmed", KlarnaAddressNotConfirmed, 654, 9, false},
    NamedCode{"PurchaseNotCompleted", PurchaseNotCompleted, 655, 9, false},
    NamedCode{"PurchaseNameMismatch", PurchaseNameMismatch, 657, 9, false},
    NamedCode{"ServerCode750", ServerCode750, 750, 0, false},
    NamedCode{"InvalidServerDataNoMailOrder", InvalidServerDataNoMailOrder, 804, 1, false},
    NamedCode{"TooManyStoresForPartner", TooManyStoresForPartner, 806, 2, false},
    NamedCode{"ServerCode807", ServerCode807, 807, 0, false},
    NamedCode{"ServerCode920", ServerCode920, 920, 0, false},
    NamedCode{"WeeklyMaintenance", WeeklyMaintenance, 999, 1, false},
    NamedCode{"ServerCannotAnswer", ServerCannotAnswer, 1000, 4, false},
    NamedCode{"ServerCode1001", ServerCode1001, 1001, 4, false},
    NamedCode{"OrderFormatRejected", OrderFormatRejected, 1002, 4, false},
    NamedCode{"ServerCode1003", ServerCode1003, 1003, 4, false},
    NamedCode{"ServerDatabaseError", ServerDatabaseError, 1004, 4, false},
    NamedCode{"ServicesFullyLoaded", ServicesFullyLoaded, 1005, 8, false},
    NamedCode{"PartnerLoginError", PartnerLoginError, 1008, 2, false},
    NamedCode{"UnsupportedRequest", UnsupportedRequest, 1009, 2, false},
    NamedCode{"RemoteServerNotResponding", RemoteServerNotResponding, 1011, 2, false},
    NamedCode{"PartnerMisconfigured", PartnerMisconfigured, 1012, 2, false},
    NamedCode{"NoAddressDataForUser", NoAddressDataForUser, 1013, 2, false},
    NamedCode{"DataConversionError", DataConversionError, 1014, 2, false},
    NamedCode{"NetworkExceptionError", NetworkExceptionError, 1015, 2, false},
    NamedCode{"TargetDirectoryMissing", TargetDirectoryMissing, 2000, 2, false},
    NamedCode{"FileEmpty", FileEmpty, 2001, 1, false},
    NamedCode{"FileNotWritable", FileNotWritable, 2002, 2, false},
    NamedCode{"FileNotReadable", FileNotReadable, 2003, 2, false},
    NamedCode{"NetConnectionRefused", NetConnectionRefused, 3501, 6, false},
    NamedCode{"NetRemoteHostClosed", NetRemoteHostClosed, 3502, 6, false},
    NamedCode{"NetHostNotFound", NetHostNotFound, 3503, 6, false},
    NamedCode{"NetTimeout", NetTimeout, 3504, 6, false},
    NamedCode{"NetOperationCanceled", NetOperationCanceled, 3505, 1, false},
    NamedCode{"NetSslHandshakeFailed", NetSslHandshakeFailed, 3506, 1, false},
    NamedCode{"NetUnknownNetworkError", NetUnknownNetworkError, 3599, 6, false},
    NamedCode{"NetProxyConnectionRefused", NetProxyConnectionRefused, 3601, 6, false},
    NamedCode{"NetProxyConnectionClosed", NetProxyConnectionClosed, 3602, 6, false},
    NamedCode{"NetProxyNotFound", NetProxyNotFound, 3603, 6, false},
    NamedCode{"NetProxyTimeout", NetProxyTimeout, 3604, 6, false},
    NamedCode{"NetProxyAuthenticationRequired", NetProxyAuthenticationRequired, 3605, 6, false},
    NamedCode{"NetUnknownProxyError", NetUnknownProxyError, 3699, 6, false},
    NamedCode{"NetContentAccessDenied", NetContentAccessDenied, 3701, 1, false},
    NamedCode{"NetContentOperationNotPermitted", NetContentOperationNotPermitted, 3702, 1, false},
    NamedCode{"NetContentNotFound", NetContentNotFound, 3703, 1, false},
    NamedCode{"NetAuthenticationRequired", NetAuthenticationRequired, 3704, 6, false},
    NamedCode{"NetUnknownContentError", NetUnknownContentError, 3799, 1, false},
    NamedCode{"NetProtocolUnknown", NetProtocolUnknown, 3801, 1, false},
    NamedCode{"NetProtocolInvalidOperation", NetProtocolInvalidOperation, 3802, 1, false},
    NamedCode{"NetProtocolFailure", NetProtocolFailure, 3899, 1, false},
    NamedCode{"ServicesBusyRetryLater", ServicesBusyRetryLater, 5002, 8, false},
    NamedCode{"NoAnswerOnOrderCompletion", NoAnswerOnOrderCompletion, 5003, 4, false},
    NamedCode{"LoginServerUnreachable", LoginServerUnreachable, 5004, 6, false},
    NamedCode{"NoNetworkConnection", NoNetworkConnection, 5005, 5, false},
    NamedCode{"InvalidXmlResponse", InvalidXmlResponse, 5006, 4, false},
    NamedCode{"LoginServerUnreachableContactSupport", LoginServerUnreachableContactSupport, 5009, 1,
              false},
    NamedCode{"JsonParseError", JsonParseError, 5010, 1, false},
    NamedCode{"XmlParseError", XmlParseError, 5011, 1, false},
    NamedCode{"NotExecuted", NotExecuted, 7777, 2, false},
    NamedCode{"NetUnknownServerError", NetUnknownServerError, 10499, 2, false},
    NamedCode{"HttpInternalServerError", HttpInternalServerError, 10500, 2, false},
    NamedCode{"MultiPartSendFailed", MultiPartSendFailed, 1000000, 2, false},
};

// Numbers beside the named ones, and one of each family.
constexpr std::array unnamedCodes{-2147483647 - 1,
                                  -1,
                                  3,
                                  11,
                                  17,
                                  19,
                                  21,
                                  25,
                                  28,
                                  31,
                                  35,
                                  48,
                                  51,
                                  53,
                                  56,
                                  58,
                                  59,
                                  61,
                                  69,
                                  76,
                                  82,
                                  84,
                                  86,
                                  88,
                                  90,
                                  92,
                                  100,
                                  120,
                                  122,
                                  129,
                                  131,
                                  499,
                                  505,
                                  507,
                                  509,
                                  512,
                                  514,
                                  515,
                                  517,
                                  519,
                                  530,
                                  532,
                                  534,
                                  536,
                                  538,
                                  564,
                                  566,
                                  600,
                                  602,
                                  652,
                                  656,
                                  658,
                                  749,
                                  751,
                                  803,
                                  805,
                                  808,
                                  919,
                                  921,
                                  998,
                                  1006,
                                  1007,
                                  1010,
                                  1016,
                                  1999,
                                  2004,
                                  3500,
                                  3507,
                                  3510,
                                  3598,
                                  3600,
                                  3606,
                                  3698,
                                  3700,
                                  3705,
                                  3706,
                                  3707,
                                  3798,
                                  3800,
                                  3803,
                                  3898,
                                  3900,
                                  3901,
                                  3903,
                                  3999,
                                  5001,
                                  5007,
                                  5008,
                                  5012,
                                  7776,
                                  7778,
                                  10404,
                                  10498,
                                  10501,
                                  20000,
                                  20001,
                                  29999,
                                  999999,
                                  1000001,
                                  2147483647};

QDomDocument documentFrom(const QString& theXml)
{
    QDomDocument document;
    if (!document.setContent(theXml))
        qWarning("the test's XML is broken: %s", qPrintable(theXml));
    return document;
}

QDomDocument answerWithCode(const QString& theCodeText)
{
    return documentFrom(u"<answer><head><errorcode>%1</errorcode></head></answer>"_s //
                            .arg(theCodeText));
}

} // namespace

class tst_VXNetworkingError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshValueIsNoError();
    void aCodeAloneLeavesTheRestEmpty();
    void namedCodesHaveTheirNumbersAndSeverities_data();
    void namedCodesHaveTheirNumbersAndSeverities();
    void unnamedCodesAreProgramErrors();
    void severitiesHaveTheirNumbers();
    void theOffsetsOfTheFamilies();
    void qtErrorsAreMapped_data();
    void qtErrorsAreMapped();
    void raiseSetsFourFieldsAndEmptiesTheOriginator();
    void raiseHasDefaults();
    void raiseQtErrorEmptiesTheRest();
    void httpStatus500HasATextOfItsOwn();
    void otherHttpStatusesFallBackToTheSeverityText();
    void tessarimCodesAreOffset();
    void jsonResultCodeIsNotRangeChecked();
    void aNumberOfAnySizeCanBeRaised_data();
    void aNumberOfAnySizeCanBeRaised();
    void anOrderCodeOfAnySizeHasAResultCode();
    void informationalCodesAreNoErrors_data();
    void informationalCodesAreNoErrors();
    void clearKeepsCouponCodeAndWaitTime();
    void equalityIgnoresCouponCodeAndWaitTime();
    void equalityLooksAtCodeTextAndOriginator();
    void xtciTakesAllFields();
    void xtciCodesAreDecimalInts_data();
    void xtciCodesAreDecimalInts();
    void xtciCodeThatIsNoNumberKeepsTheText();
    void xtciReadsTheLastChildNode();
    void xtciWithoutHeadIsNoError();
    void xtciReplacesAnEarlierError();
    void xtciWaitTimeThatIsNoNumberIsZero();
    void jsonErrorTellsTheOffset();
    void jsonSuccessChangesNothing();
    void textsWithPlaceholdersStayAsTheyAre();
    void domErrorTellsLineAndColumn();
    void domSuccessChangesNothing();
    void missingFolderIsRaisedWithTheAbsolutePath();
    void missingFileIsRaisedWithTheAbsolutePath();
    void emptyFileIsRaisedWithTheAbsolutePath();
    void fileWithContentChangesNothing();
    void staleFileInformationIsRefreshed();
    void messageOfACodeWithAText();
    void messageOfACodeWithoutATextIsThatOfItsSeverity();
    void detailsShowOnlyWhatThereIs_data();
    void detailsShowOnlyWhatThereIs();
    void textsAreTranslatedInTheClassContext();
    void networkEventsAreTakenOver();
    void otherEventsAreNoErrors();
    void anErrorBecomesANetworkEvent();
    void theValueIsPolymorphicAndCopyable();
};

void tst_VXNetworkingError::aFreshValueIsNoError()
{
    const VXNetworkingError error;
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
    QVERIFY(!error.errorOccurred());
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::aCodeAloneLeavesTheRestEmpty()
{
    const VXNetworkingError error(InvalidLogin);
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QVERIFY(error.errorOccurred());
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::namedCodesHaveTheirNumbersAndSeverities_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("severity");
    QTest::addColumn<bool>("isCouponError");

    for (const NamedCode& named : namedCodes)
        QTest::newRow(named.name) << static_cast<int>(named.code) << named.number << named.severity
                                  << named.isCouponError;
}

void tst_VXNetworkingError::namedCodesHaveTheirNumbersAndSeverities()
{
    QFETCH(int, code);
    QFETCH(int, number);
    QFETCH(int, severity);
    QFETCH(bool, isCouponError);

    QCOMPARE(code, number);
    const VXNetworkingError error(static_cast<VXNetworkingErrorCode>(number));
    QCOMPARE(static_cast<int>(error.severity()), severity);
    QCOMPARE(static_cast<int>(VXNetworkingError::severity(error.errorCode())), severity);
    QCOMPARE(error.errorOccurred(), severity != 0);
    QCOMPARE(error.isCouponError(), isCouponError);
    QCOMPARE(error.isHttpError(), number == 10500);
}

void tst_VXNetworkingError::unnamedCodesAreProgramErrors()
{
    for (const int code : unnamedCodes) {
        const VXNetworkingError error(static_cast<VXNetworkingErrorCode>(code));
        QVERIFY2(static_cast<int>(error.severity()) == 2, qPrintable(QString::number(code)));
        QVERIFY2(!error.isCouponError(), qPrintable(QString::number(code)));
        QVERIFY2(!error.isHttpError(), qPrintable(QString::number(code)));
    }
}

void tst_VXNetworkingError::severitiesHaveTheirNumbers()
{
    static_assert(std::is_same_v<std::underlying_type_t<VXNetworkingErrorSeverity>, int>);
    static_assert(std::is_same_v<std::underlying_type_t<VXNetworkingErrorCode>, int>);
    QCOMPARE(static_cast<int>(SeverityNoError), 0);
    QCOMPARE(static_cast<int>(SeverityUnrecoverable), 1);
    QCOMPARE(static_cast<int>(SeverityProgramError), 2);
    QCOMPARE(static_cast<int>(SeverityUserInput), 3);
    QCOMPARE(static_cast<int>(SeverityRemoteSystem), 4);
    QCOMPARE(static_cast<int>(SeverityNoNetwork), 5);
    QCOMPARE(static_cast<int>(SeverityTemporary), 6);
    QCOMPARE(static_cast<int>(SeverityOrderDeclaration), 7);
    QCOMPARE(static_cast<int>(SeverityAutoRecover), 8);
    QCOMPARE(static_cast<int>(SeverityPayment), 9);
}

void tst_VXNetworkingError::theOffsetsOfTheFamilies()
{
    QCOMPARE(NetErrorBase, 3500);
    QCOMPARE(HttpErrorBase, 10000);
    QCOMPARE(TessarimErrorBase, 20000);
}

void tst_VXNetworkingError::qtErrorsAreMapped_data()
{
    QTest::addColumn<QNetworkReply::NetworkError>("qtError");
    QTest::addColumn<int>("code");

    QTest::newRow("none") << QNetworkReply::NoError << 0;
    QTest::newRow("refused") << QNetworkReply::ConnectionRefusedError << 3501;
    QTest::newRow("closed") << QNetworkReply::RemoteHostClosedError << 3502;
    QTest::newRow("host") << QNetworkReply::HostNotFoundError << 3503;
    QTest::newRow("time-out") << QNetworkReply::TimeoutError << 3504;
    QTest::newRow("canceled") << QNetworkReply::OperationCanceledError << 3505;
    QTest::newRow("handshake") << QNetworkReply::SslHandshakeFailedError << 3506;
    QTest::newRow("temporary") << QNetworkReply::TemporaryNetworkFailureError << 3507;
    QTest::newRow("session") << QNetworkReply::NetworkSessionFailedError << 3508;
    QTest::newRow("background") << QNetworkReply::BackgroundRequestNotAllowedError << 3509;
    QTest::newRow("redirects") << QNetworkReply::TooManyRedirectsError << 3510;
    QTest::newRow("insecure redirect") << QNetworkReply::InsecureRedirectError << 3511;
    QTest::newRow("unknown network") << QNetworkReply::UnknownNetworkError << 3599;
    QTest::newRow("proxy refused") << QNetworkReply::ProxyConnectionRefusedError << 3601;
    QTest::newRow("proxy closed") << QNetworkReply::ProxyConnectionClosedError << 3602;
    QTest::newRow("proxy host") << QNetworkReply::ProxyNotFoundError << 3603;
    QTest::newRow("proxy time-out") << QNetworkReply::ProxyTimeoutError << 3604;
    QTest::newRow("proxy login") << QNetworkReply::ProxyAuthenticationRequiredError << 3605;
    QTest::newRow("unknown proxy") << QNetworkReply::UnknownProxyError << 3699;
    QTest::newRow("denied") << QNetworkReply::ContentAccessDenied << 3701;
    QTest::newRow("not permitted") << QNetworkReply::ContentOperationNotPermittedError << 3702;
    QTest::newRow("not found") << QNetworkReply::ContentNotFoundError << 3703;
    QTest::newRow("login") << QNetworkReply::AuthenticationRequiredError << 3704;
    QTest::newRow("resend") << QNetworkReply::ContentReSendError << 3705;
    QTest::newRow("conflict") << QNetworkReply::ContentConflictError << 3706;
    QTest::newRow("gone") << QNetworkReply::ContentGoneError << 3707;
    QTest::newRow("unknown content") << QNetworkReply::UnknownContentError << 3799;
    QTest::newRow("unknown protocol") << QNetworkReply::ProtocolUnknownError << 3801;
    QTest::newRow("invalid operation") << QNetworkReply::ProtocolInvalidOperationError << 3802;
    QTest::newRow("protocol") << QNetworkReply::ProtocolFailure << 3899;
    QTest::newRow("500") << QNetworkReply::InternalServerError << 3901;
    QTest::newRow("501") << QNetworkReply::OperationNotImplementedError << 3902;
    QTest::newRow("503") << QNetworkReply::ServiceUnavailableError << 3903;
    QTest::newRow("unknown server") << QNetworkReply::UnknownServerError << 10499;
}

void tst_VXNetworkingError::qtErrorsAreMapped()
{
    QFETCH(QNetworkReply::NetworkError, qtError);
    QFETCH(int, code);

    QCOMPARE(static_cast<int>(VXNetworkingError::qtNetworkErrorToNetworkingErrorCode(qtError)),
             code);
    QCOMPARE(static_cast<int>(VXNetworkingError(qtError).errorCode()), code);
    VXNetworkingError raised;
    raised.raiseQtError(qtError);
    QCOMPARE(static_cast<int>(raised.errorCode()), code);
}

void tst_VXNetworkingError::raiseSetsFourFieldsAndEmptiesTheOriginator()
{
    VXNetworkingError error;
    error.setOriginator(u"http://127.0.0.1/"_s);
    error.raise(CouponAlreadyUsed, u"used"_s, u"ABC"_s, 5);
    QCOMPARE(static_cast<int>(error.errorCode()), 64);
    QCOMPARE(error.errorText(), u"used"_s);
    QCOMPARE(error.defectiveCouponCode(), u"ABC"_s);
    QCOMPARE(error.waitTime(), 5);
    QVERIFY(error.originator().isEmpty());
}

void tst_VXNetworkingError::raiseHasDefaults()
{
    VXNetworkingError error;
    error.raise(CouponAlreadyUsed, u"used"_s, u"ABC"_s, 5);
    error.raise(JsonParseError);
    QCOMPARE(static_cast<int>(error.errorCode()), 5010);
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::raiseQtErrorEmptiesTheRest()
{
    VXNetworkingError error;
    error.raise(CouponAlreadyUsed, u"used"_s, u"ABC"_s, 5);
    error.setOriginator(u"somewhere"_s);
    error.raiseQtError(QNetworkReply::TimeoutError);
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::httpStatus500HasATextOfItsOwn()
{
    VXNetworkingError error;
    error.raiseHttpError(500);
    QCOMPARE(static_cast<int>(error.errorCode()), 10500);
    QVERIFY(error.isHttpError());
    QCOMPARE(error.errorMessage(),
             QString::fromUtf8("HTTP-Fehler 500 bei der Übertragung. Bitte überprüfen Sie die "
                               "Netzwerkeinstellungen Ihres Systems und die Proxyeinstellungen im "
                               "Menü Extras/Optionen/Netzwerk. Bitte beachten Sie, dass in der "
                               "Firewall die Ports 80 und 443 freigeschaltet sein müssen.<br>"));
}

void tst_VXNetworkingError::otherHttpStatusesFallBackToTheSeverityText()
{
    VXNetworkingError error;
    error.raiseHttpError(404);
    QCOMPARE(static_cast<int>(error.errorCode()), 10404);
    QVERIFY(!error.isHttpError());
    QCOMPARE(static_cast<int>(error.severity()), 2);
    QCOMPARE(error.errorMessage(),
             u"Programmfehler! Bitte wenden Sie sich an den Kundendienst!<br>"_s);
}

void tst_VXNetworkingError::tessarimCodesAreOffset()
{
    VXNetworkingError error;
    error.raiseTessarimError(17);
    QCOMPARE(static_cast<int>(error.errorCode()), 20017);
    QCOMPARE(error.jsonResultCode(), 17);
    QCOMPARE(static_cast<int>(error.severity()), 2);
}

void tst_VXNetworkingError::jsonResultCodeIsNotRangeChecked()
{
    QCOMPARE(VXNetworkingError(InvalidLogin).jsonResultCode(), -19998);
    QCOMPARE(VXNetworkingError(MultiPartSendFailed).jsonResultCode(), 980000);
}

void tst_VXNetworkingError::aNumberOfAnySizeCanBeRaised_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("cloudCode");
    QTest::addColumn<int>("httpCode");

    QTest::newRow("largest") << 2147483647 << -2147463649 << -2147473649;
    QTest::newRow("smallest") << -2147483647 - 1 << -2147463648 << -2147473648;
}

void tst_VXNetworkingError::aNumberOfAnySizeCanBeRaised()
{
    QFETCH(int, number);

    VXNetworkingError error;
    error.raiseTessarimError(number);
    QTEST(static_cast<int>(error.errorCode()), "cloudCode");
    QCOMPARE(error.jsonResultCode(), number);
    error.raiseHttpError(number);
    QTEST(static_cast<int>(error.errorCode()), "httpCode");
}

void tst_VXNetworkingError::anOrderCodeOfAnySizeHasAResultCode()
{
    QDomDocument answer;
    QVERIFY(answer.setContent(u"<r><head><errorcode>-2147483648</errorcode></head></r>"_s));
    VXNetworkingError error;
    error.raiseXTCIError(answer);
    QCOMPARE(error.jsonResultCode(), 2147463648);
}

void tst_VXNetworkingError::informationalCodesAreNoErrors_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {0, 7, 49, 85, 533, 537, 750, 807, 920})
        QTest::addRow("%d", code) << code;
}

void tst_VXNetworkingError::informationalCodesAreNoErrors()
{
    QFETCH(int, code);
    VXNetworkingError error;
    error.raise(static_cast<VXNetworkingErrorCode>(code));
    QVERIFY(!error.errorOccurred());
    QCOMPARE(static_cast<int>(error.errorCode()), code);
}

void tst_VXNetworkingError::clearKeepsCouponCodeAndWaitTime()
{
    VXNetworkingError error;
    error.raise(InvalidCouponCode, u"invalid"_s, u"ABC"_s, 5);
    error.setOriginator(u"somewhere"_s);
    error.clear();
    QVERIFY(!error.errorOccurred());
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.errorText().isEmpty());
    QCOMPARE(error.defectiveCouponCode(), u"ABC"_s);
    QCOMPARE(error.waitTime(), 5);
}

void tst_VXNetworkingError::equalityIgnoresCouponCodeAndWaitTime()
{
    VXNetworkingError left;
    left.raise(InvalidCouponCode, u"invalid"_s, u"ABC"_s, 5);
    VXNetworkingError right;
    right.raise(InvalidCouponCode, u"invalid"_s, u"XYZ"_s, 6);
    QVERIFY(left == right);
    QVERIFY(!(left != right));
}

void tst_VXNetworkingError::equalityLooksAtCodeTextAndOriginator()
{
    VXNetworkingError error;
    error.raise(InvalidCouponCode, u"invalid"_s);
    error.setOriginator(u"here"_s);

    VXNetworkingError otherCode = error;
    otherCode.raise(CouponAlreadyUsed, u"invalid"_s);
    otherCode.setOriginator(u"here"_s);
    VXNetworkingError otherText = error;
    otherText.setErrorText(u"Invalid"_s);
    VXNetworkingError otherOriginator = error;
    otherOriginator.setOriginator(u"there"_s);

    QVERIFY(error != otherCode);
    QVERIFY(error != otherText);
    QVERIFY(error != otherOriginator);
}

void tst_VXNetworkingError::xtciTakesAllFields()
{
    VXNetworkingError error;
    error.setOriginator(u"somewhere"_s);
    error.raiseXTCIError(
        documentFrom(uR"(<answer><head><errorcode coupon_code="X1" wait_time="12">70</errorcode>)"
                     uR"(<errortext>Gutschein ungültig</errortext></head><content/></answer>)"_s));
    QCOMPARE(static_cast<int>(error.errorCode()), 70);
    QCOMPARE(error.errorText(), u"Gutschein ungültig"_s);
    QCOMPARE(error.defectiveCouponCode(), u"X1"_s);
    QCOMPARE(error.waitTime(), 12);
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.isCouponError());
}

void tst_VXNetworkingError::xtciCodesAreDecimalInts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");

    QTest::newRow("plain") << u"70"_s << 70;
    QTest::newRow("blanks") << u" 70 "_s << 70;
    QTest::newRow("line feed") << u"\n70\n"_s << 70;
    QTest::newRow("plus") << u"+70"_s << 70;
    QTest::newRow("leading zero") << u"070"_s << 70;
    QTest::newRow("negative") << u"-1"_s << -1;
    QTest::newRow("CDATA") << u"<![CDATA[70]]>"_s << 70;
    QTest::newRow("comment within") << u"7<!-- x -->0"_s << 70;
    QTest::newRow("element within") << u"7<b>0</b>"_s << 70;
    QTest::newRow("largest int") << u"2147483647"_s << 2147483647;
    QTest::newRow("beyond int") << u"2147483648"_s << 0;
    QTest::newRow("far beyond int") << u"99999999999999999999"_s << 0;
    QTest::newRow("hexadecimal") << u"0x46"_s << 0;
    QTest::newRow("fraction") << u"70.0"_s << 0;
    QTest::newRow("exponent") << u"1e2"_s << 0;
    QTest::newRow("two numbers") << u"7 0"_s << 0;
    QTest::newRow("Arabic digits") << u"\u0667\u0660"_s << 0;
    QTest::newRow("full-width digits") << u"\uFF17\uFF10"_s << 0;
    QTest::newRow("empty") << u""_s << 0;
    QTest::newRow("word") << u"abc"_s << 0;
}

void tst_VXNetworkingError::xtciCodesAreDecimalInts()
{
    QFETCH(QString, text);
    QFETCH(int, code);
    VXNetworkingError error;
    error.raiseXTCIError(answerWithCode(text));
    QCOMPARE(static_cast<int>(error.errorCode()), code);
}

void tst_VXNetworkingError::xtciCodeThatIsNoNumberKeepsTheText()
{
    VXNetworkingError error;
    error.raiseXTCIError(documentFrom(
        u"<answer><head><errorcode>abc</errorcode><errortext>why</errortext></head></answer>"_s));
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
    QCOMPARE(error.errorText(), u"why"_s);
    QVERIFY(!error.errorOccurred());
}

void tst_VXNetworkingError::xtciReadsTheLastChildNode()
{
    const QString answer = u"<answer><head><errorcode>70</errorcode></head></answer>"_s;
    VXNetworkingError error;
    error.raiseXTCIError(documentFrom(u"<!-- before -->"_s + answer));
    QCOMPARE(static_cast<int>(error.errorCode()), 70);
    error.raiseXTCIError(documentFrom(answer + u"<!-- after -->"_s));
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
}

void tst_VXNetworkingError::xtciWithoutHeadIsNoError()
{
    for (const QString& xml : {u"<answer/>"_s, u"<answer><head/></answer>"_s,
                               u"<answer><errorcode>70</errorcode></answer>"_s,
                               u"<answer><Head><errorcode>70</errorcode></Head></answer>"_s}) {
        VXNetworkingError error(InvalidLogin);
        error.raiseXTCIError(documentFrom(xml));
        QVERIFY2(error.errorCode() == 0, qPrintable(xml));
        QVERIFY2(error.errorText().isEmpty(), qPrintable(xml));
    }
    VXNetworkingError error(InvalidLogin);
    error.raiseXTCIError(QDomDocument());
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
}

void tst_VXNetworkingError::xtciReplacesAnEarlierError()
{
    VXNetworkingError error;
    error.raise(InvalidCouponCode, u"invalid"_s, u"ABC"_s, 5);
    error.raiseXTCIError(answerWithCode(u"2"_s));
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::xtciWaitTimeThatIsNoNumberIsZero()
{
    for (const QString& waitTime : {u"soon"_s, u""_s, u"1.5"_s, u"99999999999"_s}) {
        VXNetworkingError error;
        error.raiseXTCIError(documentFrom(
            uR"(<answer><head><errorcode wait_time="%1">1005</errorcode></head></answer>)"_s.arg(
                waitTime)));
        QVERIFY2(error.waitTime() == 0, qPrintable(waitTime));
        QCOMPARE(static_cast<int>(error.errorCode()), 1005);
    }
}

void tst_VXNetworkingError::jsonErrorTellsTheOffset()
{
    QJsonParseError parseError;
    QJsonDocument::fromJson("{\"a\":1} x", &parseError);
    VXNetworkingError error;
    error.checkJsonError(u"token"_s, parseError);
    QCOMPARE(static_cast<int>(error.errorCode()), 5010);
    QCOMPARE(error.originator(), u"token"_s);
    QCOMPARE(error.errorText(), u"garbage at the end of the document at offset 8"_s);
}

void tst_VXNetworkingError::jsonSuccessChangesNothing()
{
    QJsonParseError parseError;
    QJsonDocument::fromJson("{}", &parseError);
    VXNetworkingError error(InvalidLogin);
    error.setOriginator(u"before"_s);
    error.checkJsonError(u"token"_s, parseError);
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QCOMPARE(error.originator(), u"before"_s);
}

void tst_VXNetworkingError::textsWithPlaceholdersStayAsTheyAre()
{
    VXNetworkingError error;
    error.checkDomError(u"from %1"_s, u"bad %2 and %3"_s, 4, 5);
    QCOMPARE(error.errorText(), u"bad %2 and %3 at line 4, column 5"_s);
    QCOMPARE(error.errorDetails(),
             u"Fehlercode: 5011\nQuelle: from %1\nDetail: bad %2 and %3 at line 4, column 5"_s);
}

void tst_VXNetworkingError::domErrorTellsLineAndColumn()
{
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    QVERIFY(!document.setContent(u"<a><b></a>"_s, &message, &line, &column));
    VXNetworkingError error;
    error.checkDomError(u"order.xml"_s, message, line, column);
    QCOMPARE(static_cast<int>(error.errorCode()), 5011);
    QCOMPARE(error.originator(), u"order.xml"_s);
    QCOMPARE(error.errorText(), u"Opening and ending tag mismatch. at line 1, column 10"_s);
}

void tst_VXNetworkingError::domSuccessChangesNothing()
{
    VXNetworkingError error(InvalidLogin);
    error.checkDomError(u"order.xml"_s, QString(), 3, 4);
    error.checkDomError(u"order.xml"_s, u""_s, 3, 4);
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.errorText().isEmpty());
}

void tst_VXNetworkingError::missingFolderIsRaisedWithTheAbsolutePath()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"missing/order.xml"_s);
    VXNetworkingError error;
    error.checkFileError(QFileInfo(path));
    QCOMPARE(static_cast<int>(error.errorCode()), 2000);
    QCOMPARE(error.originator(), path);
}

void tst_VXNetworkingError::missingFileIsRaisedWithTheAbsolutePath()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXNetworkingError error;
    error.checkFileError(QFileInfo(QDir::current().relativeFilePath(path)));
    QCOMPARE(static_cast<int>(error.errorCode()), 2002);
    QCOMPARE(QDir::cleanPath(error.originator()), path);
    QVERIFY(QDir::isAbsolutePath(error.originator()));
}

void tst_VXNetworkingError::emptyFileIsRaisedWithTheAbsolutePath()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, {});
    VXNetworkingError error;
    error.checkFileError(QFileInfo(path));
    QCOMPARE(static_cast<int>(error.errorCode()), 2001);
    QCOMPARE(error.originator(), path);
}

void tst_VXNetworkingError::fileWithContentChangesNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, "x");
    VXNetworkingError error(InvalidLogin);
    error.checkFileError(QFileInfo(path));
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QVERIFY(error.originator().isEmpty());
}

void tst_VXNetworkingError::staleFileInformationIsRefreshed()
{
    const QTemporaryDir folder;
    const QFileInfo file(folder.filePath(u"order.xml"_s));
    VXFileContent::write(file.filePath(), "x");
    QCOMPARE(file.size(), 1); // remembered by the value
    VXFileContent::write(file.filePath(), {});
    QCOMPARE(file.size(), 1);
    VXNetworkingError error;
    error.checkFileError(file);
    QCOMPARE(static_cast<int>(error.errorCode()), 2001);
}

void tst_VXNetworkingError::messageOfACodeWithAText()
{
    QCOMPARE(VXNetworkingError(NoError).errorMessage(), u"Kein Fehler.<br>"_s);
    QCOMPARE(VXNetworkingError(FileEmpty).errorMessage(), u"Die Datei ist leer.<br>"_s);
    QCOMPARE(VXNetworkingError(ServicesFullyLoaded).errorMessage(),
             u"Unsere Services sind im Moment voll ausgelastet.<br>Das Programm wird in %2 Minuten "
             u"die Verbindung erneut aufbauen.<br>"_s);
}

void tst_VXNetworkingError::messageOfACodeWithoutATextIsThatOfItsSeverity()
{
    QCOMPARE(VXNetworkingError(ServerCode7).errorMessage(), u"Kein Fehler<br>"_s);
    QCOMPARE(VXNetworkingError(ServerCode6).errorMessage(),
             u"Fehlerhafte Daten! Bitte überpüfen Sie Ihre Eingaben<br>"_s);
    QCOMPARE(VXNetworkingError(ServerCode26).errorMessage(),
             u"Bitte versuchen Sie es erneut!<br>"_s);
    QCOMPARE(VXNetworkingError(NotExecuted).errorMessage(),
             u"Programmfehler! Bitte wenden Sie sich an den Kundendienst!<br>"_s);
}

void tst_VXNetworkingError::detailsShowOnlyWhatThereIs_data()
{
    QTest::addColumn<QString>("originator");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("details");

    QTest::newRow("bare") << QString() << QString() << u"Fehlercode: 5005"_s;
    QTest::newRow("originator") << u"http://h/"_s << QString()
                                << u"Fehlercode: 5005\nQuelle: http://h/"_s;
    QTest::newRow("text") << QString() << u"why"_s << u"Fehlercode: 5005\nDetail: why"_s;
    QTest::newRow("both") << u"http://h/"_s << u"why"_s
                          << u"Fehlercode: 5005\nQuelle: http://h/\nDetail: why"_s;
}

void tst_VXNetworkingError::detailsShowOnlyWhatThereIs()
{
    QFETCH(QString, originator);
    QFETCH(QString, text);
    QFETCH(QString, details);

    VXNetworkingError error(NoNetworkConnection);
    error.setOriginator(originator);
    error.setErrorText(text);
    QCOMPARE(error.errorDetails(), details);
}

void tst_VXNetworkingError::textsAreTranslatedInTheClassContext()
{
    VXMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    VXNetworkingError error;
    error.raiseHttpError(500);
    error.setOriginator(u"o"_s);
    error.setErrorText(u"t"_s);
    const QString message = error.errorMessage();
    const QString details = error.errorDetails();
    QVERIFY(QCoreApplication::removeTranslator(&translator));

    QCOMPARE(details, u"[VXNetworkingError]Fehlercode: 10500\n[VXNetworkingError]Quelle: o\n"
                      u"[VXNetworkingError]Detail: t"_s);
    QVERIFY2(message.startsWith(u"[VXNetworkingError]HTTP-Fehler 500 bei der Übertragung. "
                                u"[VXNetworkingError]Bitte überprüfen Sie"_s),
             qPrintable(message));
}

void tst_VXNetworkingError::networkEventsAreTakenOver()
{
    const VXNetworkingError error(VXErrorEvent(0x40000, u"why"_s, 3503));
    QCOMPARE(static_cast<int>(error.errorCode()), 3503);
    QCOMPARE(error.errorText(), u"why"_s);
    QVERIFY(error.originator().isEmpty());
    QVERIFY(error.defectiveCouponCode().isEmpty());
    QCOMPARE(error.waitTime(), 0);
}

void tst_VXNetworkingError::otherEventsAreNoErrors()
{
    for (const int type : {0, 1, 0x40001, 0x4000, -1}) {
        const VXNetworkingError error(VXErrorEvent(type, u"why"_s, 3503));
        QVERIFY2(error == VXNetworkingError(), qPrintable(QString::number(type)));
    }
}

void tst_VXNetworkingError::anErrorBecomesANetworkEvent()
{
    VXNetworkingError error;
    error.raise(FileEmpty, u"why"_s);
    error.setOriginator(u"/tmp/x"_s);
    const VXErrorEvent event = error.toErrorEvent();
    QCOMPARE(event.type(), 0x40000);
    QCOMPARE(event.internalErrorCode(), 2001);
    QCOMPARE(event.message(), u"Fehlercode: 2001\nQuelle: /tmp/x\nDetail: why"_s);
}

void tst_VXNetworkingError::theValueIsPolymorphicAndCopyable()
{
    static_assert(std::has_virtual_destructor_v<VXNetworkingError>);
    static_assert(std::is_nothrow_move_constructible_v<VXNetworkingError>);
    VXNetworkingError original;
    original.raise(InvalidCouponCode, u"invalid"_s, u"ABC"_s, 5);
    VXNetworkingError copy = original;
    copy.raise(FileEmpty);
    QCOMPARE(original.defectiveCouponCode(), u"ABC"_s);
    QCOMPARE(static_cast<int>(original.errorCode()), 70);
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetworkingError)

#include "tst_VXNetworkingError.moc"
