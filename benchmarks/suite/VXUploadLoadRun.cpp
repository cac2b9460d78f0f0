#include "VXUploadLoadRun.h"

#include "VXBenchSession.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 120'000; // milliseconds for one answer of another process

void end(QProcess& theProcess)
{
    theProcess.closeWriteChannel(); // their signal to go
    if (theProcess.state() != QProcess::NotRunning && !theProcess.waitForFinished(patience))
        theProcess.kill();
}

QByteArray readLine(QProcess& theProcess)
{
    while (!theProcess.canReadLine() && theProcess.waitForReadyRead(patience)) {
    }
    return theProcess.readLine().trimmed();
}

} // namespace

VXUploadLoadRun::VXUploadLoadRun(const VXUploadLoad& theLoad)
    : myLoad(theLoad)
{
    // The service logs; what it logs belongs to its cost, but not into our table.
    myServer.setStandardErrorFile(QProcess::nullDevice());
}

VXUploadLoadRun::~VXUploadLoadRun()
{
    for (const auto& phone : myPhones)
        end(*phone);
    end(myServer);
}

std::optional<VXUploadLoadResult> VXUploadLoadRun::measure(const QString& theServer)
{
    if (theServer == "nginx"_L1)
        return measureNginx();
    const QTemporaryDir folder(myLoad.folder + u"/upload_load-XXXXXX"_s);
    const QString photos = folder.filePath(u"photos"_s);
    if (!QDir().mkpath(photos)) {
        myError = u"no folder in "_s + myLoad.folder;
        return std::nullopt;
    }
    myServer.start(QCoreApplication::applicationFilePath(), {u"serve"_s, theServer, folder.path()});
    if (!startPhones() || ask(myServer, "begin") != "ok")
        return std::nullopt;
    const std::optional<double> duration = seconds();
    const QJsonObject measured = QJsonDocument::fromJson(ask(myServer, "end")).object();
    if (!duration || !hasEveryPhoto(photos))
        return std::nullopt;

    return VXUploadLoadResult{
        .megabytesPerSecond = megabytesPerSecond(*duration),
        .memoryBytes = measured.value(u"memoryBytes"_s).toDouble(),
        .blockMs = measured.value(u"blockMs"_s).toDouble(),
        .cpuSeconds = measured.value(u"cpuSeconds"_s).toDouble(),
    };
}

/// A fresh one, too, on the processor that the other servers use.
std::optional<VXUploadLoadResult> VXUploadLoadRun::measureNginx()
{
    VXBenchNginx nginx(myLoad.identity);
    nginx.setAddress(u"10.77.0.1"_s); // what script/in-namespace gives this computer
    nginx.addDocument(u"translations.json"_s, "{}");
    if (!nginx.start()) {
        myError = nginx.errorString();
        return std::nullopt;
    }
    VXBenchSession::pin(0, nginx.processId());
    if (!startPhones(nginx.url(u"/put?none"_s).toString()))
        return std::nullopt;
    const std::optional<double> duration = seconds();
    if (!duration || !hasEveryPhoto(nginx.documentPath(u"upload"_s)))
        return std::nullopt;
    VXUploadLoadResult result;
    result.megabytesPerSecond = megabytesPerSecond(*duration);
    return result;
}

double VXUploadLoadRun::megabytesPerSecond(double theSeconds) const
{
    return static_cast<double>(myLoad.photos) * static_cast<double>(myLoad.bytes) / 1e6 /
           theSeconds;
}

/// One after the other: each needs the token that is published when the one before is known.
bool VXUploadLoadRun::startPhones(const QString& theFixedUrl)
{
    for (int i = 0; i < myLoad.phones; ++i) {
        // What does not divide evenly goes to the first phones.
        const int count = myLoad.photos / myLoad.phones + (i < myLoad.photos % myLoad.phones);
        auto phone = std::make_unique<QProcess>();
        phone->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const QString url =
            theFixedUrl.isEmpty() ? QString::fromLatin1(ask(myServer, "url")) : theFixedUrl;
        phone->setChildProcessModifier([] { VXBenchSession::pin(1); });
        phone->start(u"nsenter"_s,
                     {u"--net=/run/netns/phone%1"_s.arg(i + 1),
                      QCoreApplication::applicationFilePath(), u"phone"_s, url, QString::number(i),
                      QString::number(count), QString::number(myLoad.bytes)});
        if (readLine(*phone) != "ready") {
            myError = u"phone %1 was not admitted at %2"_s.arg(i + 1).arg(url);
            return false;
        }
        myPhones.push_back(std::move(phone));
    }
    return true;
}

/// Lets all phones go and returns the time from the first start to the last end.
std::optional<double> VXUploadLoadRun::seconds()
{
    for (const auto& phone : myPhones)
        phone->write("go\n");
    for (const auto& phone : myPhones)
        phone->waitForBytesWritten();

    // Nanoseconds of the clock that all processes of a computer share.
    qint64 start = std::numeric_limits<qint64>::max();
    qint64 end = 0;
    for (const auto& phone : myPhones) {
        const QList<QByteArray> times = readLine(*phone).split(' ');
        if (times.size() != 2) {
            myError = u"a photo was refused"_s;
            return std::nullopt;
        }
        start = std::min(start, times.first().toLongLong());
        end = std::max(end, times.last().toLongLong());
    }
    return static_cast<double>(end - start) / 1e9;
}

bool VXUploadLoadRun::hasEveryPhoto(const QString& theFolder)
{
    const QFileInfoList files = QDir(theFolder).entryInfoList(QDir::Files | QDir::Hidden);
    const auto isWhole = [this](const QFileInfo& theFile) {
        return theFile.size() == myLoad.bytes;
    };
    if (files.size() == myLoad.photos && std::ranges::all_of(files, isWhole))
        return true;
    myError = u"%1 of %2 photos arrived whole"_s.arg(std::ranges::count_if(files, isWhole))
                  .arg(myLoad.photos);
    return false;
}

QByteArray VXUploadLoadRun::ask(QProcess& theProcess, const QByteArray& theLine)
{
    theProcess.write(theLine + '\n');
    QByteArray answer = readLine(theProcess);
    if (answer.isEmpty())
        myError = u"no answer to "_s + QString::fromLatin1(theLine);
    return answer;
}
