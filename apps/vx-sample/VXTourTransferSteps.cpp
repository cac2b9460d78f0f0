#include "VXTourTransferSteps.h"

#include "VXRecordedRequest.h"
#include "VXSampleExchange.h"
#include "VXSampleProgress.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorControl.h"
#include "VXTourRun.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkTester.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 photoSize = 1'500'000;
constexpr quint64 photoSeed = 7;

/// The bytes of the simulator's "/bytes/N?seed=S", computed here as well (SplitMix64, lowest
/// byte first), so that a wrong answer shows.
QByteArray photoBytes()
{
    QByteArray bytes;
    bytes.reserve(photoSize + 8);
    for (quint64 state = photoSeed; bytes.size() < photoSize;) {
        state += Q_UINT64_C(0x9E3779B97F4A7C15);
        quint64 z = state;
        z = (z ^ (z >> 30)) * Q_UINT64_C(0xBF58476D1CE4E5B9);
        z = (z ^ (z >> 27)) * Q_UINT64_C(0x94D049BB133111EB);
        z ^= z >> 31;
        for (int shift = 0; shift < 64; shift += 8)
            bytes.append(static_cast<char>(z >> shift));
    }
    return bytes.first(photoSize);
}

QByteArray content(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

VXHttpOperation get(VXTourRun& theRun, const QString& theTarget)
{
    return VXHttpOperation::create(theRun.world.simulator.http(theTarget),
                                   QNetworkAccessManager::GetOperation);
}

void expectPhoto(VXTourRun& theRun, const QString& thePath)
{
    const QByteArray bytes = content(thePath);
    theRun.expectEqual<QString>(u"SHA-256 of the file"_s, VXSampleExchange::sha256(bytes),
                                VXSampleExchange::sha256(photoBytes()));
    theRun.came(u"%1 bytes, SHA-256 %2…"_s.arg(QString::number(bytes.size()),
                                               VXSampleExchange::sha256(bytes).first(12)));
}

void downloadToFile(VXTourRun& theRun)
{
    const QString target = u"/bytes/%1?seed=%2&rate=6000000"_s.arg(photoSize).arg(photoSeed);
    const QString path = theRun.world.folder.filePath(u"16-download.bin"_s);
    VXSampleProgress progress(nullptr);
    VXHttpOperation operation = get(theRun, target);
    operation.setProgressReceiver(&progress, VXSampleProgress::slot());
    theRun.expect(operation.downloadToFile(QFileInfo(path)), u"the download failed"_s);
    progress.takeOutstanding();

    theRun.expectReceived({{u"GET"_s, target, {}, {}}});
    expectPhoto(theRun, path);
    theRun.expectEqual<qint64>(u"last progress"_s, progress.mostDone(), photoSize);
    theRun.came(u"%1 progress notices"_s.arg(progress.notices()));
}

void downloadToTemporaryFile(VXTourRun& theRun)
{
    const QString target = u"/bytes/%1?seed=%2"_s.arg(photoSize).arg(photoSeed);
    const std::unique_ptr<QTemporaryFile> file(
        VXHttpOperation::downloadToTemporaryFile(theRun.world.simulator.http(target)));
    theRun.expectReceived({{u"GET"_s, target, {}, {}}});
    theRun.expect(file != nullptr, u"there is no file"_s);
    if (file)
        expectPhoto(theRun, file->fileName());
}

void downloadIntoMissingFolder(VXTourRun& theRun)
{
    VXHttpOperation operation = get(theRun, u"/bytes/10"_s);
    const QFileInfo file(theRun.world.folder.filePath(u"missing/photo.bin"_s));
    theRun.expectEqual(u"download"_s, operation.downloadToFile(file), false);
    theRun.expectReceived({{u"GET"_s, u"/bytes/10"_s, {}, {}}});
    theRun.expectEqual<qint64>(u"code"_s, operation.errorStatus().errorCode(), 2000);
    theRun.came(operation, 0);
}

void uploadMultipart(VXTourRun& theRun)
{
    const QString path = theRun.world.folder.filePath(u"16-download.bin"_s);
    QFile file(path);
    theRun.expect(file.open(QIODevice::WriteOnly) && file.write(photoBytes()) == photoSize,
                  u"cannot write %1"_s.arg(path));
    file.close();

    VXSampleProgress progress(nullptr);
    VXHttpParameter fields;
    fields.insert(u"album"_s, u"Sommer in Köln"_s);
    VXHttpOperation operation = VXHttpOperation::create(
        theRun.world.simulator.http(u"/multipart"_s), QNetworkAccessManager::PostOperation);
    operation.setProgressReceiver(&progress, VXSampleProgress::slot());
    theRun.expect(
        operation.createMultiPart(VXUploadFile(u"photo"_s, path, u"image/jpeg"_s), fields),
        u"there is no multipart body"_s);
    const QJsonArray parts = operation.receiveJsonObject().value(u"parts"_s).toArray();
    progress.takeOutstanding();

    theRun.expectSuccess(operation);
    VXTourExpectation wanted{u"POST"_s, u"/multipart"_s, {}, {}};
    wanted.hasOwnBody = false;
    theRun.expectReceived({wanted});
    const QJsonObject part = parts.last().toObject();
    theRun.expectEqual<qint64>(u"number of parts"_s, parts.size(), 2);
    theRun.expectEqual<QString>(u"name of the field"_s,
                                parts.first().toObject().value(u"name"_s).toString(), u"album"_s);
    theRun.expectEqual<QString>(u"file name"_s, part.value(u"fileName"_s).toString(),
                                u"16-download.bin"_s);
    theRun.expectEqual<QString>(u"type"_s, part.value(u"type"_s).toString(), u"image/jpeg"_s);
    theRun.expectEqual<QString>(u"SHA-256 of the part"_s, part.value(u"sha256"_s).toString(),
                                VXSampleExchange::sha256(photoBytes()));
    theRun.came(u"%1 parts, file of %2 bytes, %3 progress notices"_s.arg(
        QString::number(parts.size()), QString::number(part.value(u"size"_s).toInteger()),
        QString::number(progress.notices())));
}

/// An exchange that must end with one of the codes; Qt may have sent the request again.
void failingExchange(VXTourRun& theRun, VXHttpOperation& theOperation, const QString& theTarget,
                     const QList<int>& theCodes)
{
    const QByteArray body = theOperation.exec();
    const int code = theOperation.errorStatus().errorCode();
    theRun.expectReceivedAtLeastOnce({u"GET"_s, theTarget, {}, {}});
    theRun.expect(theCodes.contains(code), u"code %1 was not expected"_s.arg(code));
    theRun.came(theOperation, body.size());
}

void timeOutEndsExchange(VXTourRun& theRun)
{
    QElapsedTimer timer;
    timer.start();
    VXHttpOperation operation = get(theRun, u"/never"_s);
    operation.setTimeout(1);
    failingExchange(theRun, operation, u"/never"_s, {3505});
    theRun.expect(timer.elapsed() >= 990 && timer.elapsed() < 15'000,
                  u"it took %1 ms"_s.arg(timer.elapsed()));
}

void abortEndsExchange(VXTourRun& theRun)
{
    VXHttpOperation operation = get(theRun, u"/never?abort"_s);
    VXSimulatorControl& control = theRun.world.control;
    const int before = control.lastNumber();
    QTimer user; // cancels once the request has arrived
    user.setSingleShot(true);
    user.setInterval(50);
    QObject::connect(&user, &QTimer::timeout, &operation, [&control, &user, &operation, before] {
        if (control.requestsSince(before).isEmpty())
            user.start();
        else
            Q_EMIT operation.abort();
    });
    user.start();
    failingExchange(theRun, operation, u"/never?abort"_s, {3505});
}

void resetIsNoted(VXTourRun& theRun)
{
    VXHttpOperation operation = get(theRun, u"/reset?after=100"_s);
    failingExchange(theRun, operation, u"/reset?after=100"_s, {3502, 3599});
}

void truncationIsNoted(VXTourRun& theRun)
{
    VXHttpOperation operation = get(theRun, u"/truncate/1000"_s);
    failingExchange(theRun, operation, u"/truncate/1000"_s, {3502});
}

void serverError(VXTourRun& theRun)
{
    VXHttpOperation operation = get(theRun, u"/status/500?body=kaputt"_s);
    failingExchange(theRun, operation, u"/status/500?body=kaputt"_s, {3901});
}

void serverIsReachable(VXTourRun& theRun)
{
    const QString address = theRun.world.simulator.http(u"/echo"_s).toString();
    const bool isReachable = VXNetworkTester::testServer(address, 5);
    theRun.expectReceived({{u"HEAD"_s, u"/echo"_s, {}, {}}});
    theRun.expectEqual(u"reachable"_s, isReachable, true);
    theRun.came(u"reachable"_s);
}

void serverIsNotReachable(VXTourRun& theRun)
{
    QTcpServer server; // the port of a server that has gone
    server.listen(QHostAddress::LocalHost);
    const QString address = u"http://127.0.0.1:%1/"_s.arg(server.serverPort());
    server.close();
    const bool isReachable = VXNetworkTester::testServer(address, 5);
    theRun.expectReceived({});
    theRun.expectEqual(u"reachable"_s, isReachable, false);
    theRun.came(u"not reachable"_s);
}

} // namespace

QList<VXTourStep> VXTourTransferSteps::steps()
{
    return {
        {u"transfer"_s, u"Download to a file, with progress"_s, downloadToFile},
        {u"transfer"_s, u"Download to a temporary file"_s, downloadToTemporaryFile},
        {u"transfer"_s, u"Download into a folder that is missing"_s, downloadIntoMissingFolder},
        {u"transfer"_s, u"Multipart upload, with progress"_s, uploadMultipart},
        {u"faults"_s, u"Server that never answers, 1 s time-out"_s, timeOutEndsExchange},
        {u"faults"_s, u"Exchange cancelled by the user"_s, abortEndsExchange},
        {u"faults"_s, u"Connection reset in the answer"_s, resetIsNoted},
        {u"faults"_s, u"Answer shorter than announced"_s, truncationIsNoted},
        {u"faults"_s, u"Status 500"_s, serverError},
        {u"probe"_s, u"Probe of a server that is there"_s, serverIsReachable},
        {u"probe"_s, u"Probe of a server that is not"_s, serverIsNotReachable},
    };
}
