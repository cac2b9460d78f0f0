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
    VXNetworkingError(VXNetworkingErrorCode theCode);
    VXNetworkingError(QNetworkReply::NetworkError theError);

    /// Takes code and text of a VXErrorEvent::NetworkError; any other event is no error.
    VXNetworkingError(const VXErrorEvent& theEvent);

    VXNetworkingError(const VXNetworkingError&) = default;
    VXNetworkingError(VXNetworkingError&&) noexcept = default;
    VXNetworkingError& operator=(const VXNetworkingError&) = default;
    VXNetworkingError& operator=(VXNetworkingError&&) noexcept = default;
    virtual ~VXNetworkingError();

    /// Sets the four fields and empties the originator: call setOriginator() afterwards.
    /// theWaitTime is in minutes.
    void raise(VXNetworkingErrorCode theCode, const QString& theErrorText = {},
               const QString& theDefectiveCouponCode = {}, int theWaitTime = 0);
    void raiseQtError(QNetworkReply::NetworkError theError);
    void raiseHttpError(int theHttpStatus);
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
    void setErrorText(const QString& theErrorText) { myErrorText = theErrorText; }

    /// Resets code, originator and text. Coupon code and wait time stay, on purpose.
    void clear();

    [[nodiscard]] VXNetworkingErrorCode errorCode() const noexcept { return myErrorCode; }
    [[nodiscard]] QString originator() const { return myOriginator; }
    [[nodiscard]] QString errorText() const { return myErrorText; }
    [[nodiscard]] QString defectiveCouponCode() const { return myDefectiveCouponCode; }

    /// Minutes that the server asks to wait before the next try.
    [[nodiscard]] int waitTime() const noexcept { return myWaitTime; }

    [[nodiscard]] static VXNetworkingErrorSeverity severity(VXNetworkingErrorCode theCode);
    [[nodiscard]] VXNetworkingErrorSeverity severity() const { return severity(myErrorCode); }

    /// False also for the server's informational numbers, whose severity is SeverityNoError.
    [[nodiscard]] bool errorOccurred() const { return severity() != SeverityNoError; }

    /// True for HTTP status 500 only, on purpose: that is the one status with a text of its own.
    [[nodiscard]] bool isHttpError() const noexcept;
    [[nodiscard]] bool isCouponError() const noexcept;

    /// The cloud's result code, if the code is of that family; not checked.
    [[nodiscard]] int jsonResultCode() const noexcept;

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
