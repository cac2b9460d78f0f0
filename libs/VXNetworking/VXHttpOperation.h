#pragma once

#include "VXHttpContentType.h"
#include "VXHttpParameter.h"
#include "VXNetworkingError.h"
#include "VXNetworkingExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtNetwork/QHttpMultiPart>
#include <QtNetwork/QNetworkAccessManager>

#include <memory>

class QDomDocument;
class QFileInfo;
class QJsonDocument;
class QJsonObject;
class QTemporaryFile;
class QUrlQuery;
class VXUploadFile;

/// One HTTP exchange: configured, executed in the calling thread, which blocks meanwhile, and then
/// read. Executing it again sends again and overwrites the outcome.
///
/// The outcome is errorStatus() and httpResponseCode(). Each exchange is logged; a time-out ends
/// as code 3505, a body shorter than its Content-Length as 3502. (A chunked body that breaks off
/// can count as complete: Qt 6.4 does not tell.) Use it in one thread; only the signal abort() may
/// be emitted from any other.
class VXNETWORKING_EXPORT VXHttpOperation : public QObject
{
    Q_OBJECT

public:
    /// Sends nothing yet. The time of logged durations begins here.
    VXHttpOperation(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                    const QByteArray& thePayload, const VXHttpContentType& theContentType);
    /// Everything but a multipart body that was not sent yet: that stays with the original.
    VXHttpOperation(const VXHttpOperation& theOther);
    VXHttpOperation& operator=(const VXHttpOperation&) = delete;
    ~VXHttpOperation() override;

    /// The payload goes out as it is.
    static VXHttpOperation create(const QUrl& theUrl, const QByteArray& thePayload,
                                  const VXHttpContentType& theContentType,
                                  QNetworkAccessManager::Operation theOperation);
    /// The payload is indented JSON text.
    static VXHttpOperation create(const QUrl& theUrl, const QJsonDocument& theDocument,
                                  QNetworkAccessManager::Operation theOperation,
                                  const VXHttpContentType& theContentType);

    /// The same with an object.
    static VXHttpOperation create(const QUrl& theUrl, const QJsonObject& theObject,
                                  QNetworkAccessManager::Operation theOperation,
                                  const VXHttpContentType& theContentType);
    /// The payload is the fully encoded query, as a form.
    static VXHttpOperation create(const QUrl& theUrl, const QUrlQuery& theQuery,
                                  QNetworkAccessManager::Operation theOperation);

    /// Without payload and content type.
    static VXHttpOperation create(const QUrl& theUrl,
                                  QNetworkAccessManager::Operation theOperation);

    /// Adds a header or replaces that of this very name. With CR, LF or NUL in it it is not sent.
    void setHeader(const QString& theName, const QString& theValue);
    /// Replaces every header that was set before.
    void setHeader(const VXHttpParameter& theHeaders);
    /// The complete value of "Authorization", for example a scheme and a token (RFC 9110, 11.6.2).
    void setAuthorization(const QString& theValue);
    /// Seconds for the whole exchange, 120 by default; 0 aborts at once, negative = no limit.
    void setTimeout(int theSeconds);
    /// theSlot is a SLOT() with (qint64,qint64). It is called, queued, with the upload progress of
    /// PUT and POST and with the download progress of the others.
    void setProgressReceiver(QObject* theReceiver, const char* theSlot);

    /// Whether the debug output may show a header of that name (any case).
    [[nodiscard]] bool isKnownHeader(const QString& theName) const;

    /// Sends and waits. Returns the body, also that of a failed exchange; but what comes after the
    /// first MiB may be missing when a GET over plain http ends as 401.
    QByteArray exec();
    /// exec(); true when no error occurred.
    bool send();
    /// The sending half of exec(), which leaves errorStatus() alone: blocks until the reply has
    /// finished. The caller owns it; null when the operation cannot be sent that way.
    QNetworkReply* sendPayload();

    /// The same for a multipart body, which the reply takes over; null without one.
    QNetworkReply* sendMultiPart();

    /// Of the last execution; no error before the first.
    [[nodiscard]] VXNetworkingError errorStatus() const { return myError; }

    /// Judged by severity, see VXNetworkingError::errorOccurred().
    [[nodiscard]] bool errorOccurred() const { return myError.errorOccurred(); }
    /// The status of the last answer; 0 when there was none.
    [[nodiscard]] int httpResponseCode() const { return myHttpResponseCode; }
    /// Message and details, one below the other; empty when no error occurred.
    [[nodiscard]] QString describeError() const;

    /// The same as exec(). The operations below execute, too, and convert the body; what cannot be
    /// converted becomes an error.
    QByteArray receiveData();

    /// The body read as UTF-8, also that of a failed exchange.
    QString receiveString();
    /// Empty when an error occurred.
    QJsonDocument receiveJsonDocument();
    /// Also the body of a failed exchange.
    QJsonDocument receiveJsonDocumentWithErrorBody();

    /// Empty when an error occurred or the document is no object, which is no error.
    QJsonObject receiveJsonObject();

    /// The same, also from the body of a failed exchange.
    QJsonObject receiveJsonObjectWithErrorBody();
    /// Null when an error occurred.
    QDomDocument receiveXml();
    /// Replaces the file as a whole or leaves it alone; true when a body that is not empty arrived
    /// there. A failure to write is reported as VXNetworkingError::checkFileError() finds it.
    bool downloadToFile(const QFileInfo& theFile);
    /// A file that holds the body, closed, the caller's; it vanishes with the object. Null when an
    /// error occurred.
    QTemporaryFile* downloadToTemporaryFile();
    /// GET with a time-out of one hour.
    static QTemporaryFile* downloadToTemporaryFile(const QUrl& theUrl);

    /// Form-data with one part per field, in the order of the names. The caller owns it.
    QHttpMultiPart* createMultiPartBasic(const VXHttpParameter& theFields);
    /// From now on the body is the fields and then theData as a file part. Always true.
    bool createMultiPart(const QByteArray& theData, const QString& theName,
                         const QString& theFileName, const QString& theMimeType,
                         const VXHttpParameter& theFields);
    /// With a file, read while it is sent. False when it cannot be: exec() sends the payload then.
    bool createMultiPart(const VXUploadFile& theFile, const VXHttpParameter& theFields);

Q_SIGNALS:
    /// Emit it, from any thread, to abort the running request, which ends as code 3505.
    void abort();

private:
    QNetworkReply* startPayload();
    QNetworkReply* startMultiPart();
    void noteMissingReply();
    void noteFailure(const QNetworkReply& theReply, const QByteArray& theBody,
                     QNetworkReply::NetworkError theError, const QString& theErrorText);
    void noteSuccess(const QNetworkReply& theReply, qsizetype theBodySize, const QString& theUrl);
    void logError(const QString& theErrorText) const;
    void logRequest(const QByteArray& theServerDate, qsizetype theBodySize,
                    const QString& theUrl) const;
    void debugRequestHeaders() const;
    void debugReplyHeaders(const QNetworkReply& theReply) const;
    void noteWriteFailure(const QFileInfo& theFile, const QString& theReason);

    QNetworkAccessManager::Operation myOperation;
    QUrl myUrl;
    QByteArray myPayload;
    VXHttpContentType myContentType;
    int myTimeout = 120; // seconds
    QPointer<QObject> myProgressReceiver;
    const char* myProgressSlot = nullptr;
    VXHttpParameter myHeaders;
    VXNetworkingError myError;
    int myHttpResponseCode = 0;
    std::unique_ptr<QHttpMultiPart> myMultiPart;           // goes to the reply when it is sent
    QDateTime myCreated = QDateTime::currentDateTimeUtc(); // local time would ask for the zone
};

Q_DECLARE_METATYPE(VXHttpOperation)
