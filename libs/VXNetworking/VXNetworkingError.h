#pragma once

#include "VXNetworkingErrorCode.h"
#include "VXNetworkingErrorSeverity.h"
#include "VXNetworkingExport.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtNetwork/QNetworkReply>

class QDomDocument;
class QFileInfo;
struct QJsonParseError;
class VXErrorEvent;
class VXNetworkingErrorMessageMap;
class VXNetworkingErrorSeverityMessageMap;

/// The one error value of the library: a code, from which the severity follows, and what the
/// server or the failing step added to it.
///
/// Success is judged by severity, so the server's informational numbers count as success. Nothing
/// fails here: what cannot be read becomes code 0 or an empty text. A value; reentrant, and free to
/// travel between threads.
class VXNETWORKING_EXPORT VXNetworkingError
{
    Q_DECLARE_TR_FUNCTIONS(VXNetworkingError)

public:
    /// No error.
    VXNetworkingError() = default;

    /// Implicit, so that a code serves wherever an error is wanted. Any number is taken.
    VXNetworkingError(VXNetworkingErrorCode theCode);

    /// The code that qtNetworkErrorToNetworkingErrorCode() gives, without a text.
    VXNetworkingError(QNetworkReply::NetworkError theError);

    /// Takes code and text of a VXErrorEvent::NetworkError; any other event is no error.
    VXNetworkingError(const VXErrorEvent& theEvent);

    ///@{
    /// Every field, coupon code and wait time too, which comparing leaves out.
    VXNetworkingError(const VXNetworkingError&) = default;
    VXNetworkingError(VXNetworkingError&&) noexcept = default;
    VXNetworkingError& operator=(const VXNetworkingError&) = default;
    VXNetworkingError& operator=(VXNetworkingError&&) noexcept = default;
    ///@}

    virtual ~VXNetworkingError();

    /// Sets the four fields and empties the originator: call setOriginator() afterwards.
    /// theWaitTime is in minutes.
    void raise(VXNetworkingErrorCode theCode, const QString& theErrorText = {},
               const QString& theDefectiveCouponCode = {}, int theWaitTime = 0);

    /// raise() with what qtNetworkErrorToNetworkingErrorCode() gives; NoError clears the error.
    void raiseQtError(QNetworkReply::NetworkError theError);

    /// theHttpStatus becomes the code 10000 + theHttpStatus, also a status of success.
    void raiseHttpError(int theHttpStatus);

    /// theResultCode of the cloud becomes the code 20000 + theResultCode.
    void raiseTessarimError(int theResultCode);

    /// Takes over what the "head" of an order server's answer says: the elements "errorcode" (with
    /// the attributes "coupon_code" and "wait_time") and "errortext". What is missing counts as 0
    /// and as empty; a code that is no decimal int counts as 0.
    void raiseXTCIError(const QDomDocument& theAnswer);

    /// Raises JsonParseError when theParseError tells of one; otherwise nothing changes.
    void checkJsonError(const QString& theOriginator, const QJsonParseError& theParseError);

    /// Raises XmlParseError when theErrorMessage is not empty; otherwise nothing changes.
    void checkDomError(const QString& theOriginator, const QString& theErrorMessage, int theLine,
                       int theColumn);

    /// Looks at the disk and raises TargetDirectoryMissing, FileNotWritable (the file is missing)
    /// or FileEmpty, with the absolute path as originator; otherwise nothing changes.
    void checkFileError(const QFileInfo& theFile);

    /// Where the error came from: a URL, an absolute file path, the name of a document.
    void setOriginator(const QString& theOriginator) { myOriginator = theOriginator; }

    /// What the server or the failing step said; shown in errorDetails() only.
    void setErrorText(const QString& theErrorText) { myErrorText = theErrorText; }

    /// Resets code, originator and text. Coupon code and wait time stay, on purpose.
    void clear();

    /// Also a number that the enumeration does not name, as servers may send.
    [[nodiscard]] VXNetworkingErrorCode errorCode() const noexcept { return myErrorCode; }

    /// Empty after raise(); see setOriginator().
    [[nodiscard]] QString originator() const { return myOriginator; }

    /// In the language of whoever wrote it; may be empty.
    [[nodiscard]] QString errorText() const { return myErrorText; }

    /// The coupon that the order server refused; empty with other errors.
    [[nodiscard]] QString defectiveCouponCode() const { return myDefectiveCouponCode; }

    /// Minutes that the server asks to wait before the next try.
    [[nodiscard]] int waitTime() const noexcept { return myWaitTime; }

    /// SeverityProgramError for codes that are not known.
    [[nodiscard]] static VXNetworkingErrorSeverity severity(VXNetworkingErrorCode theCode);

    /// That of errorCode().
    [[nodiscard]] VXNetworkingErrorSeverity severity() const { return severity(myErrorCode); }

    /// False also for the server's informational numbers, whose severity is SeverityNoError.
    [[nodiscard]] bool errorOccurred() const { return severity() != SeverityNoError; }

    /// True for HTTP status 500 only, on purpose: that is the one status with a text of its own.
    [[nodiscard]] bool isHttpError() const noexcept;

    /// Whether the order server refused a coupon: one of fourteen codes.
    [[nodiscard]] bool isCouponError() const noexcept;

    /// The cloud's result code, if the code is of that family; not checked.
    [[nodiscard]] int jsonResultCode() const noexcept;

    /// 3500 + Qt's number; NoError stays 0, and UnknownServerError becomes NetUnknownServerError.
    [[nodiscard]] static VXNetworkingErrorCode
    qtNetworkErrorToNetworkingErrorCode(QNetworkReply::NetworkError theError) noexcept;

    /// The text for the user: an HTML fragment that ends in "<br>".
    [[nodiscard]] QString errorMessage() const;

    /// The technical text: one to three lines without a line feed at the end.
    [[nodiscard]] QString errorDetails() const;

    /// An event of type VXErrorEvent::NetworkError with errorDetails() as its message.
    [[nodiscard]] VXErrorEvent toErrorEvent() const;

    /// Compares code, text and originator. Errors that differ only in coupon code or wait time are
    /// the same error.
    friend bool operator==(const VXNetworkingError& theLeft, const VXNetworkingError& theRight)
    {
        return theLeft.myErrorCode == theRight.myErrorCode &&
               theLeft.myErrorText == theRight.myErrorText &&
               theLeft.myOriginator == theRight.myOriginator;
    }

private:
    static VXNetworkingErrorMessageMap myErrorMessageMap;
    static VXNetworkingErrorSeverityMessageMap myErrorSeverityMessageMap;

    VXNetworkingErrorCode myErrorCode = NoError;
    QString myOriginator;
    QString myErrorText;
    QString myDefectiveCouponCode;
    int myWaitTime = 0;
};
