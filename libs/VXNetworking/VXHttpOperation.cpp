#include "VXHttpOperation.h"

#include "VXHeaderField.h"
#include "VXNetworkAccessManager.h"
#include "VXUploadFile.h"
#include "VXWholeFile.h"

#include <VXCore/VXLogger.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXCore/VXStringHelper.h>
#include <VXXML/VXDomReader.h>

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringBuilder>
#include <QtCore/QTemporaryFile>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QHttpPart>
#include <QtNetwork/QNetworkReply>
#include <QtXml/QDomDocument>

#include <array>
#include <atomic>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

constexpr int downloadTimeout = 3600; // seconds

// Bytes.
constexpr qint64 readBufferSize = 512 * 1024;
constexpr qint64 firstReadBufferSize = 4 * readBufferSize; // the body of a 401 is cut by it
constexpr qint64 pieceSize = 256 * 1024;
constexpr qint64 largestReserve = 256 * 1024 * 1024;

/// -1 unless theDigits is a number.
int number(QByteArrayView theDigits)
{
    int value = -1;
    const auto [end, error] = std::from_chars(theDigits.begin(), theDigits.end(), value);
    return error == std::errc() && end == theDigits.end() ? value : -1;
}

/// The date that servers write, "Sun, 06 Nov 1994 08:49:37 GMT" (RFC 9110, 5.6.7), taken apart by
/// its columns: Qt's parser takes longer than the rest of a request's record. Invalid when it is
/// written otherwise.
QDateTime fixedDate(QByteArrayView theHeader)
{
    static constexpr QByteArrayView months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    static constexpr QByteArrayView days = "MonTueWedThuFriSatSun";
    if (theHeader.size() != 29 || !theHeader.endsWith(" GMT"))
        return {};
    const auto month = static_cast<int>(months.indexOf(theHeader.sliced(8, 3)) / 3 + 1);
    const QDate date(number(theHeader.sliced(12, 4)), month, number(theHeader.sliced(5, 2)));
    const QTime time(number(theHeader.sliced(17, 2)), number(theHeader.sliced(20, 2)),
                     number(theHeader.sliced(23, 2)));
    const bool isDay =
        date.isValid() && days.sliced(3 * (date.dayOfWeek() - 1), 3) == theHeader.first(3);
    return isDay && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

/// Any other date that a mail could bear; Qt's parser wants a numeric zone.
QDateTime mailDate(const QByteArray& theHeader)
{
    static constexpr std::array zones{"GMT"_L1, "UTC"_L1, "UT"_L1, "Z"_L1};
    QString text = QString::fromLatin1(theHeader).trimmed();
    for (const QLatin1StringView zone : zones) {
        if (text.endsWith(zone)) {
            text = text.chopped(zone.size()).trimmed() + " +0000"_L1;
            break;
        }
    }
    return QDateTime::fromString(text, Qt::RFC2822Date);
}

QDateTime serverDate(const QByteArray& theHeader)
{
    QDateTime date = fixedDate(theHeader);
    return date.isValid() ? date : mailDate(theHeader);
}

/// A number in a text that is put together, without a string of its own.
class Decimal
{
public:
    explicit Decimal(qint64 theNumber)
    {
        const auto result = std::to_chars(myDigits.begin(), myDigits.end(), theNumber);
        mySize = result.ptr - myDigits.begin();
    }
    /// Lives as long as this object.
    [[nodiscard]] QLatin1StringView text() const { return {myDigits.data(), mySize}; }

private:
    std::array<char, 20> myDigits{}; // "-9223372036854775808"
    qsizetype mySize = 0;
};

/// theReply's URL as messages show it, without a password. Mostly that is theText, all of theUrl.
QString shownUrl(const QNetworkReply& theReply, const QUrl& theUrl, const QString& theText)
{
    const QUrl url = theReply.url();
    return url == theUrl && url.userInfo().isEmpty() ? theText : url.toString(QUrl::RemovePassword);
}

/// Takes the body out of a reply while it arrives. Left to itself Qt holds a large body three times
/// until the end when it comes over TLS.
///
/// Qt's HTTP thread may not run ahead of this one as it likes: what it receives without a limit
/// counts as room beyond it until the end, tens of MiB when this thread waits for a processor. Over
/// TLS, which is slower, the limit comes with the body all the same: a limit makes Qt 6.4 read from
/// the connection, and it crashes when that is not encrypted yet.
///
/// The reply calls it, so the two end together.
class BodyCollector
{
    Q_DISABLE_COPY_MOVE(BodyCollector)

public:
    explicit BodyCollector(QNetworkReply& theReply)
        : myReply(theReply)
    {
        QObject::connect(&myReply, &QIODevice::readyRead, &myReply, [this] { take(); });
        if (myReply.url().scheme() == "http"_L1 &&
            myReply.operation() == QNetworkAccessManager::GetOperation)
            limitFromTheStart();
    }

    /// The whole body of a reply that has finished. An aborted one is closed: it has none.
    [[nodiscard]] QByteArray body()
    {
        if (!myReply.isOpen())
            return {};
        if (myReply.bytesAvailable() > 0)
            take();
        return std::move(myBody);
    }

private:
    /// Nobody reads the body of a redirect, so there would never be room for all of it; and where
    /// it leads to may be TLS.
    void limitFromTheStart()
    {
        QObject::connect(&myReply, &QNetworkReply::metaDataChanged, &myReply, [this] {
            if (myReply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() / 100 == 3)
                myReply.setReadBufferSize(0);
        });
        myReply.setReadBufferSize(firstReadBufferSize);
    }

    void take()
    {
        const bool isLarge = myBody.isNull() && prepare();
        while (myReply.bytesAvailable() > pieceSize) // what has been copied is given back soon
            myBody += myReply.read(pieceSize);
        if (myReply.bytesAvailable() > 0)
            myBody += myReply.readAll();
        if (isLarge)
            myReply.setReadBufferSize(readBufferSize);
    }

    /// Whether the body may be large. For such a one memory is taken in one go: a buffer that grows
    /// is copied. What of it is not used takes none, so a server that announces too much does no
    /// harm. A small one never fills the buffer, so Qt's HTTP thread need not hear that it is read:
    /// the limit is lifted on this side only. Beside chunks a length means nothing.
    bool prepare()
    {
        const qint64 announced = myReply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
        const bool isSmall = announced > 0 && announced <= readBufferSize &&
                             !myReply.hasRawHeader("Transfer-Encoding"_ba);
        if (isSmall)
            myReply.QNetworkReply::setReadBufferSize(0);
        else
            myBody.reserve(qBound(qint64(0), announced, largestReserve));
        return !isSmall;
    }

    QNetworkReply& myReply;
    QByteArray myBody;
};

/// Remembers an abort() that comes while a request starts. The server may have the request before
/// the reply is connected with that signal, so it would be lost.
class AbortWatch
{
    Q_DISABLE_COPY_MOVE(AbortWatch)

public:
    explicit AbortWatch(const VXHttpOperation& theOperation)
        : myConnection(QObject::connect(
              &theOperation, &VXHttpOperation::abort, &theOperation,
              [isAborted = myIsAborted] { *isAborted = true; }, Qt::DirectConnection))
    {
    }
    ~AbortWatch() { QObject::disconnect(myConnection); }

    /// Queued: the reply must not finish before somebody waits for it.
    void handOn(QNetworkReply* theReply) const
    {
        if (theReply && *myIsAborted)
            QMetaObject::invokeMethod(theReply, &QNetworkReply::abort, Qt::QueuedConnection);
    }

private:
    // Shared with the thread that may be emitting the signal right now.
    const std::shared_ptr<std::atomic<bool>> myIsAborted =
        std::make_shared<std::atomic<bool>>(false);
    const QMetaObject::Connection myConnection;
};

/// Qt takes a connection that ends within the body for the end of the body, more often than not.
/// Beside chunks a length means nothing (RFC 9112, 6.3).
bool isCutOff(const QNetworkReply& theReply, int theStatus, qsizetype theBodySize)
{
    if (theReply.rawHeader("Content-Length"_ba).toLongLong() <= theBodySize)
        return false;
    const bool hasBody = theReply.operation() != QNetworkAccessManager::HeadOperation &&
                         theStatus >= 200 && theStatus != 204 && theStatus != 304 &&
                         !theReply.hasRawHeader("Transfer-Encoding"_ba);
    return hasBody && theReply.error() == QNetworkReply::NoError;
}

/// What follows the backslash for theByte in Qt's debug stream; 0 when the byte needs none.
constexpr char escapeOf(char theByte)
{
    switch (theByte) {
    case '"':
    case '\\':
        return theByte;
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

/// theBytes as Qt's debug stream shows them. It appends them one by one, which takes longer than
/// everything else about a failed exchange; text that is printable is put down here.
QString quoted(const QByteArray& theBytes)
{
    QString text(2 * theBytes.size() + 2, Qt::Uninitialized);
    QChar* end = text.data();
    *end++ = u'"';
    for (const char byte : theBytes) {
        const char escape = escapeOf(byte);
        if (escape == 0 && (byte < ' ' || byte > '~'))
            return QDebug::toString(theBytes);
        if (escape != 0)
            *end++ = u'\\';
        *end++ = QLatin1Char(escape != 0 ? escape : byte);
    }
    *end++ = u'"';
    text.truncate(end - text.constData());
    return text;
}

/// Qt calls a folder that has vanished "", which would be the root of the disk.
QString temporaryFolder()
{
    const QString folder = QDir::tempPath();
    return folder.isEmpty() ? qEnvironmentVariable("TMPDIR") : folder;
}

/// A part that says which field it is. A value that would begin a new header line is left out.
QHttpPart formPart(const QString& theDisposition)
{
    QHttpPart part;
    if (VXHeaderField::isSound(u"Content-Disposition"_s, theDisposition))
        part.setHeader(QNetworkRequest::ContentDispositionHeader, theDisposition);
    return part;
}

QHttpPart filePart(const QString& theName, const QString& theFileName, const QString& theMimeType)
{
    QHttpPart part =
        formPart(u"form-data; name=\"%1\"; filename=\"%2\""_s.arg(theName, theFileName));
    // Qt complains about an empty one, and sends none.
    if (!theMimeType.isEmpty() && VXHeaderField::isSound(u"Content-Type"_s, theMimeType))
        part.setHeader(QNetworkRequest::ContentTypeHeader, theMimeType);
    return part;
}

} // namespace

VXHttpOperation::VXHttpOperation(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                                 const QByteArray& thePayload,
                                 const VXHttpContentType& theContentType)
    : myOperation(theOperation)
    , myUrl(theUrl)
    , myPayload(thePayload)
    , myContentType(theContentType)
{
    qRegisterMetaType<VXHttpOperation>();
}

VXHttpOperation::VXHttpOperation(const VXHttpOperation& theOther)
    : QObject() // NOLINT(readability-redundant-member-init): the compiler wants it said
    , myOperation(theOther.myOperation)
    , myUrl(theOther.myUrl)
    , myPayload(theOther.myPayload)
    , myContentType(theOther.myContentType)
    , myTimeout(theOther.myTimeout)
    , myProgressReceiver(theOther.myProgressReceiver)
    , myProgressSlot(theOther.myProgressSlot)
    , myHeaders(theOther.myHeaders)
    , myError(theOther.myError)
    , myHttpResponseCode(theOther.myHttpResponseCode)
    , myCreated(theOther.myCreated)
{
}

VXHttpOperation::~VXHttpOperation() = default;

VXHttpOperation VXHttpOperation::create(const QUrl& theUrl, const QByteArray& thePayload,
                                        const VXHttpContentType& theContentType,
                                        QNetworkAccessManager::Operation theOperation)
{
    return VXHttpOperation(theOperation, theUrl, thePayload, theContentType);
}

VXHttpOperation VXHttpOperation::create(const QUrl& theUrl, const QJsonDocument& theDocument,
                                        QNetworkAccessManager::Operation theOperation,
                                        const VXHttpContentType& theContentType)
{
    return VXHttpOperation(theOperation, theUrl, theDocument.toJson(), theContentType);
}

VXHttpOperation VXHttpOperation::create(const QUrl& theUrl, const QJsonObject& theObject,
                                        QNetworkAccessManager::Operation theOperation,
                                        const VXHttpContentType& theContentType)
{
    return create(theUrl, QJsonDocument(theObject), theOperation, theContentType);
}

VXHttpOperation VXHttpOperation::create(const QUrl& theUrl, const QUrlQuery& theQuery,
                                        QNetworkAccessManager::Operation theOperation)
{
    return VXHttpOperation(theOperation, theUrl, theQuery.toString(QUrl::FullyEncoded).toUtf8(),
                           ContentFormUrlEncoded);
}

VXHttpOperation VXHttpOperation::create(const QUrl& theUrl,
                                        QNetworkAccessManager::Operation theOperation)
{
    return VXHttpOperation(theOperation, theUrl, {}, ContentNone);
}

void VXHttpOperation::setHeader(const QString& theName, const QString& theValue)
{
    myHeaders.insert(theName, theValue);
}

void VXHttpOperation::setHeader(const VXHttpParameter& theHeaders)
{
    myHeaders = theHeaders;
}

void VXHttpOperation::setAuthorization(const QString& theValue)
{
    setHeader(u"Authorization"_s, theValue);
}

void VXHttpOperation::setTimeout(int theSeconds)
{
    myTimeout = theSeconds;
}

void VXHttpOperation::setProgressReceiver(QObject* theReceiver, const char* theSlot)
{
    myProgressReceiver = theReceiver;
    myProgressSlot = theSlot;
}

bool VXHttpOperation::isKnownHeader(const QString& theName) const
{
    return theName.toLower() == "zel-request-id"_L1;
}

QByteArray VXHttpOperation::exec()
{
    const std::unique_ptr<QNetworkReply> reply(myMultiPart ? startMultiPart() : startPayload());
    if (!reply) {
        noteMissingReply();
        return {};
    }
    const QString url = myUrl.toString();
    BodyCollector collector(*reply);
    VXNetworkAccessManager::threadInstance()->waitForRequest(reply.get(), myTimeout,
                                                             shownUrl(*reply, myUrl, url));
    myHttpResponseCode = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    QByteArray body = collector.body();
    if (isCutOff(*reply, myHttpResponseCode, body.size()))
        noteFailure(*reply, body, QNetworkReply::RemoteHostClosedError, u"Connection closed"_s);
    else if (reply->error() != QNetworkReply::NoError)
        noteFailure(*reply, body, reply->error(), reply->errorString());
    else
        noteSuccess(*reply, body.size(), url);
    return body;
}

bool VXHttpOperation::send()
{
    exec();
    return !errorOccurred();
}

QNetworkReply* VXHttpOperation::sendPayload()
{
    QNetworkReply* const reply = startPayload();
    VXNetworkAccessManager::threadInstance()->waitForRequest(reply, myTimeout);
    return reply;
}

QNetworkReply* VXHttpOperation::sendMultiPart()
{
    QNetworkReply* const reply = startMultiPart();
    VXNetworkAccessManager::threadInstance()->waitForRequest(reply, myTimeout);
    return reply;
}

QNetworkReply* VXHttpOperation::startPayload()
{
    const AbortWatch watch(*this);
    QNetworkReply* const reply = VXNetworkAccessManager::threadInstance()->startHttp(
        myOperation, myUrl, myPayload, myContentType.encode(), myProgressReceiver, myProgressSlot,
        this, myHeaders);
    watch.handOn(reply);
    return reply;
}

QNetworkReply* VXHttpOperation::startMultiPart()
{
    const AbortWatch watch(*this);
    QNetworkReply* const reply = VXNetworkAccessManager::threadInstance()->startHttp(
        myOperation, myUrl, myMultiPart.get(), myProgressReceiver, myProgressSlot, this, myHeaders);
    watch.handOn(reply);
    if (reply && myMultiPart)
        myMultiPart.release()->setParent(reply);
    myMultiPart.reset();
    return reply;
}

void VXHttpOperation::noteMissingReply()
{
    myError.raise(MultiPartSendFailed);
    logError(u"NoReply"_s);
}

void VXHttpOperation::noteFailure(const QNetworkReply& theReply, const QByteArray& theBody,
                                  QNetworkReply::NetworkError theError, const QString& theErrorText)
{
    myError = VXNetworkingError(theError);

    qInfo() << " method:" << VXNetworkAccessManager::threadInstance()->describe(myOperation);
    debugRequestHeaders();
    debugReplyHeaders(theReply);
    qInfo() << " url: " << myUrl;
    qInfo() << " body:" << VXStringHelper::hidePasswords(QString::fromUtf8(myPayload));
    qInfo() << " http:" << myHttpResponseCode;
    qInfo().noquote() << " answer:" << quoted(theBody);
    qInfo() << " got: " << theErrorText;
    logError(theErrorText);
}

void VXHttpOperation::noteSuccess(const QNetworkReply& theReply, qsizetype theBodySize,
                                  const QString& theUrl)
{
    myError = VXNetworkingError();
    if (theReply.hasRawHeader("Date"_ba))
        logRequest(theReply.rawHeader("Date"_ba), theBodySize, theUrl);
}

void VXHttpOperation::logError(const QString& theErrorText) const
{
    VXLogger::instance()->legacyLog(
        u"TOV NETREQUEST ERROR:%1 URL:%2"_s.arg(theErrorText, myUrl.toString()), true);
}

void VXHttpOperation::logRequest(const QByteArray& theServerDate, qsizetype theBodySize,
                                 const QString& theUrl) const
{
    const QDateTime now = QDateTime::currentDateTimeUtc(); // differences only: cheaper
    // Positive when the local clock is ahead; a date that cannot be read counts as 0.
    const int offByMs = static_cast<int>(serverDate(theServerDate).msecsTo(now));
    // The epoch is that of the local clock, whatever its name says: log readers rely on it.
    VXLogger::instance()->legacyLog(u"TOV NETREQUEST OFFBYMS:" % Decimal(offByMs).text() %
                                        u" BYTES:" % Decimal(theBodySize).text() %
                                        u"  DURATIONMS:" % Decimal(myCreated.msecsTo(now)).text() %
                                        u" URL:" % theUrl % u" SERVEREPOCH:" %
                                        Decimal(now.toSecsSinceEpoch()).text(),
                                    true);
    VXLogger::instance()->addToOffSetTimes(offByMs);
}

void VXHttpOperation::debugRequestHeaders() const
{
    const QList<QString> names = myHeaders.keys();
    qDebug() << " Header # elements:" << names.size();
    for (const QString& name : names) {
        if (isKnownHeader(name))
            qDebug() << " Header" << name << myHeaders.value(name);
    }
}

void VXHttpOperation::debugReplyHeaders(const QNetworkReply& theReply) const
{
    qDebug() << "Response Raw Header:";
    for (const auto& [name, value] : theReply.rawHeaderPairs()) {
        if (isKnownHeader(QString::fromLatin1(name)))
            qDebug() << name << value;
    }
}

QString VXHttpOperation::describeError() const
{
    if (!errorOccurred())
        return {};
    return myError.errorMessage() + u'\n' + myError.errorDetails();
}

QByteArray VXHttpOperation::receiveData()
{
    return exec();
}

QString VXHttpOperation::receiveString()
{
    return QString::fromUtf8(exec());
}

QJsonDocument VXHttpOperation::receiveJsonDocumentWithErrorBody()
{
    const QByteArray body = exec();
    QJsonParseError parseError;
    QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    if (!errorOccurred() && parseError.error != QJsonParseError::NoError)
        myError.checkJsonError(QString::fromUtf8(body), parseError);
    return document;
}

QJsonDocument VXHttpOperation::receiveJsonDocument()
{
    QJsonDocument document = receiveJsonDocumentWithErrorBody();
    return errorOccurred() ? QJsonDocument() : document;
}

QJsonObject VXHttpOperation::receiveJsonObject()
{
    return receiveJsonDocument().object();
}

QJsonObject VXHttpOperation::receiveJsonObjectWithErrorBody()
{
    return receiveJsonDocumentWithErrorBody().object();
}

QDomDocument VXHttpOperation::receiveXml()
{
    const QByteArray body = exec();
    if (errorOccurred())
        return {};
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!VXDomReader::setContent(document, body, message, line, column))
        myError.checkDomError(QString::fromUtf8(body), message, line, column);
    // After a failure the document still holds what was read before it.
    return errorOccurred() ? QDomDocument() : document;
}

bool VXHttpOperation::downloadToFile(const QFileInfo& theFile)
{
    const QByteArray body = exec();
    if (errorOccurred())
        return false;
    QString reason = u"empty answer"_s;
    const bool isWritten = VXWholeFile::write(theFile.absoluteFilePath(), body, reason);
    if (isWritten && !body.isEmpty())
        return true;
    noteWriteFailure(theFile, reason);
    return false;
}

void VXHttpOperation::noteWriteFailure(const QFileInfo& theFile, const QString& theReason)
{
    qWarning().noquote() << u"Writing the file \"%1\" failed: %2"_s.arg(theFile.absoluteFilePath(),
                                                                        theReason);
    myError.checkFileError(theFile);
    QFileInfo target(theFile);
    target.refresh(); // it may remember what was there before
    VXPlatformIndependent::instance()->fileWriteFailed(target);
}

QTemporaryFile* VXHttpOperation::downloadToTemporaryFile()
{
    const QByteArray body = exec();
    if (errorOccurred())
        return nullptr;
    const QString path = temporaryFolder() + u"/TOV_TEMPORARY_DOWNLOAD"_s;
    auto file = std::make_unique<QTemporaryFile>(path);
    if (!file->open() || !VXWholeFile::writeAll(*file, body)) {
        // The cut-off file vanishes, so the check finds what is true then: nothing stands there.
        const QString reason = file->errorString();
        file.reset();
        noteWriteFailure(QFileInfo(path + u".XXXXXX"_s), reason);
        return nullptr;
    }
    file->close();
    return file.release();
}

QTemporaryFile* VXHttpOperation::downloadToTemporaryFile(const QUrl& theUrl)
{
    VXHttpOperation operation = create(theUrl, QNetworkAccessManager::GetOperation);
    operation.setTimeout(downloadTimeout);
    QTemporaryFile* const file = operation.downloadToTemporaryFile();
    if (!file)
        qWarning().noquote() << u" file \"%1\" failed"_s.arg(theUrl.toString());
    return file;
}

QHttpMultiPart* VXHttpOperation::createMultiPartBasic(const VXHttpParameter& theFields)
{
    auto multiPart = std::make_unique<QHttpMultiPart>(QHttpMultiPart::FormDataType);
    for (const QString& name : theFields.keys()) {
        QHttpPart part = formPart(u"form-data; name=\"%1\""_s.arg(name));
        part.setBody(theFields.value(name).toUtf8());
        multiPart->append(part);
    }
    return multiPart.release();
}

bool VXHttpOperation::createMultiPart(const QByteArray& theData, const QString& theName,
                                      const QString& theFileName, const QString& theMimeType,
                                      const VXHttpParameter& theFields)
{
    myMultiPart.reset(createMultiPartBasic(theFields));
    QHttpPart part = filePart(theName, theFileName, theMimeType);
    part.setBody(theData);
    myMultiPart->append(part);
    return true;
}

bool VXHttpOperation::createMultiPart(const VXUploadFile& theFile, const VXHttpParameter& theFields)
{
    myMultiPart.reset();
    auto device = std::make_unique<QFile>(theFile.file());
    if (!device->open(QIODevice::ReadOnly))
        return false;
    myMultiPart.reset(createMultiPartBasic(theFields));
    QHttpPart part =
        filePart(theFile.type(), QFileInfo(theFile.file()).fileName(), theFile.mimeType());
    part.setBodyDevice(device.get());
    device.release()->setParent(myMultiPart.get()); // closed and freed with it
    myMultiPart->append(part);
    return true;
}
