#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXRawClient.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>
#include <QtNetwork/QHttpMultiPart>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Metric = VXBenchComparison::Metric;

constexpr qsizetype mebibyte = 1024 * 1024;
constexpr double memoryAllowance = 5; // MiB

qsizetype bodySize(const VXBenchSession& theSession)
{
    return (theSession.isShort() ? 20 : 100) * mebibyte;
}

QByteArray content(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

VXHttpOperation getOperation(const QUrl& theUrl)
{
    return VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
}

/// How a download is made, on both sides, and where its bytes are found afterwards.
struct Download
{
    QString name;
    VXBenchComparison::Task ours;
    VXBenchComparison::Task theirs;
    VXBenchComparison::Task check;
};

void compareDownload(VXBenchSession& theSession, const Download& theDownload, qsizetype theSize)
{
    const double megabytes = static_cast<double>(theSize / mebibyte);
    theSession.compare(
        {.id = u"B5"_s,
         .workload = u"GET %1 MiB, %2"_s.arg(theSize / mebibyte).arg(theDownload.name),
         .yardstick = u"raw Qt"_s,
         .ours = theDownload.ours,
         .theirs = theDownload.theirs,
         .check = theDownload.check,
         .bytes = theSize,
         .metric = Metric::MebibytesPerSecond,
         .timeGoal = VXBenchGoal::noLessThan(0.97),
         .cpuGoal = {},
         .memoryGoal = VXBenchGoal::noMoreThan(megabytes + memoryAllowance,
                                               VXBenchGoal::Figure::Percentile95)});
}

QHttpMultiPart* rawMultiPart(const QString& thePath)
{
    auto* const multiPart = new QHttpMultiPart(QHttpMultiPart::FormDataType); // the reply takes it
    auto* const device = new QFile(thePath, multiPart);
    device->open(QIODevice::ReadOnly);
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
                   u"form-data; name=\"photo\"; filename=\"photo.bin\""_s);
    part.setHeader(QNetworkRequest::ContentTypeHeader, u"application/octet-stream"_s);
    part.setBodyDevice(device);
    multiPart->append(part);
    return multiPart;
}

/// One part, as both sides send it.
bool holdsPart(const QString& thePath, const QByteArray& thePayload)
{
    QFile file(thePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.peek(4096);
    const qsizetype begin = head.indexOf("\r\n\r\n") + 4;
    file.seek(begin);
    const bool isSame = begin > 4 && file.read(thePayload.size()) == thePayload;
    file.close();
    return file.remove() && isSame;
}

} // namespace

void benchDownload(VXBenchSession& theSession)
{
    const qsizetype size = bodySize(theSession);
    const QByteArray expected = VXBenchSession::randomBytes(size);
    theSession.nginx().addDocument(u"large.bin"_s, expected);
    const QUrl url = theSession.nginx().url(u"/large.bin"_s);
    const QString path = theSession.filePath(u"download.bin"_s);
    VXRawClient raw;
    QByteArray body;
    std::unique_ptr<QTemporaryFile> file;

    const auto checkBody = [&] { return std::exchange(body, {}) == expected; };
    for (const QUrl& place : {url, theSession.nginx().tlsUrl(u"/large.bin"_s)}) {
        compareDownload(theSession,
                        {.name = u"receiveData, "_s + place.scheme(),
                         .ours =
                             [&] {
                                 body = getOperation(place).receiveData();
                                 return true;
                             },
                         .theirs =
                             [&] {
                                 body = raw.get(place);
                                 return true;
                             },
                         .check = checkBody},
                        size);
    }
    compareDownload(theSession,
                    {.name = u"downloadToFile"_s,
                     .ours = [&] { return getOperation(url).downloadToFile(QFileInfo(path)); },
                     .theirs =
                         [&] {
                             QFile target(path);
                             return target.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                                    target.write(raw.get(url)) == size;
                         },
                     .check =
                         [&] {
                             const bool isSame = content(path) == expected;
                             return QFile::remove(path) && isSame;
                         }},
                    size);
    compareDownload(theSession,
                    {.name = u"downloadToTemporaryFile"_s,
                     .ours =
                         [&] {
                             file.reset(getOperation(url).downloadToTemporaryFile());
                             return file != nullptr;
                         },
                     .theirs =
                         [&] {
                             file = std::make_unique<QTemporaryFile>(QDir::tempPath() + u"/raw"_s);
                             const bool isSound = file->open() && file->write(raw.get(url)) == size;
                             file->close();
                             return isSound;
                         },
                     .check =
                         [&] {
                             const bool isSame = content(file->fileName()) == expected;
                             file.reset();
                             return isSame;
                         }},
                    size);
}

void benchUpload(VXBenchSession& theSession)
{
    const QByteArray payload = VXBenchSession::randomBytes(bodySize(theSession));
    const QString source = theSession.filePath(u"photo.bin"_s);
    QFile file(source);
    if (!file.open(QIODevice::WriteOnly) || file.write(payload) != payload.size())
        qFatal("cannot write %s", qPrintable(source));
    file.close();

    const QUrl url = theSession.nginx().url(u"/upload/photo"_s);
    const QString stored = theSession.nginx().documentPath(u"upload/photo"_s);
    VXRawClient raw;
    theSession.compare(
        {.id = u"B6"_s,
         .workload = u"multipart PUT of %1 MiB"_s.arg(payload.size() / mebibyte),
         .yardstick = u"raw Qt"_s,
         .ours =
             [&] {
                 VXHttpOperation operation =
                     VXHttpOperation::create(url, QNetworkAccessManager::PutOperation);
                 return operation.createMultiPart(
                            VXUploadFile(u"photo"_s, source, u"application/octet-stream"_s), {}) &&
                        operation.send();
             },
         .theirs =
             [&] {
                 raw.put(url, rawMultiPart(source));
                 return raw.status() == 201 || raw.status() == 204;
             },
         .check = [&] { return holdsPart(stored, payload); },
         .bytes = payload.size(),
         .metric = Metric::MebibytesPerSecond,
         .timeGoal = VXBenchGoal::noLessThan(0.97),
         .cpuGoal = {},
         .memoryGoal =
             VXBenchGoal::noMoreThan(memoryAllowance, VXBenchGoal::Figure::Percentile95)});
}
