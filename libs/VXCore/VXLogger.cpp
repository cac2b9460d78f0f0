#include "VXLogger.h"

#include "VXDeploymentConfig.h"
#include "VXLogFile.h"

#include <QtCore/QDateTime>
#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>

#include <array>
#include <atomic>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype keptOffSetTimes = 1000;
constexpr qint64 defaultMaximumSize = 4 * 1024 * 1024; // bytes
constexpr auto applicationChannel = "application"_L1;
constexpr auto uploadChannel = "qrupload"_L1;

// Messages of this category stand in the file already when the message handler gets them.
constexpr char recordCategory[] = "vx.record";
Q_LOGGING_CATEGORY(records, recordCategory, QtInfoMsg)

std::atomic<QtMessageHandler> previousHandler = nullptr;

QLatin1StringView levelName(QtMsgType theType)
{
    switch (theType) {
    case QtDebugMsg:
        return "debug"_L1;
    case QtInfoMsg:
        return "info"_L1;
    case QtWarningMsg:
        return "warning"_L1;
    case QtCriticalMsg:
        return "critical"_L1;
    case QtFatalMsg:
        return "fatal"_L1;
    }
    return "unknown"_L1;
}

// Qt::ISODateWithMs in local time. Qt's own way to write it takes longer than all the rest of a
// line.
QString timeStamp()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d", date.year(),
                  date.month(), date.day(), time.hour(), time.minute(), time.second(), time.msec());
    return QString::fromLatin1(text.data());
}

// Further lines of a text are indented, so that none of them looks like a record of its own.
QString asOneRecord(const QString& theText)
{
    if (!theText.contains(u'\n'))
        return VXLogFile::escaped(theText);
    QStringList lines = theText.split(u'\n');
    for (QString& line : lines)
        line = VXLogFile::escaped(line);
    return lines.join("\n\t"_L1);
}

// "2026-11-21T08:15:30.123 7f2a3c info: text"
QString stamped(QLatin1StringView theLevel, const QString& theText)
{
    const auto thread = reinterpret_cast<quintptr>(QThread::currentThreadId());
    return timeStamp() + u' ' + QString::number(thread, 16) + u' ' + theLevel + ": "_L1 +
           asOneRecord(theText);
}

} // namespace

struct VXLogger::Files
{
    Files(const QString& theFolder, qint64 theMaximumSize)
        : folder(theFolder)
        , maximumSize(theMaximumSize)
        , application(theFolder + "/application.log"_L1, theMaximumSize)
        , upload(theFolder + "/qrupload.log"_L1, theMaximumSize)
    {
    }

    QString folder;
    qint64 maximumSize;
    VXLogFile application;
    VXLogFile upload;
};

// The folder is read here and not with each record: a message of the deployment configuration
// itself may be what has to be written.
VXLogger::VXLogger()
    : myFiles(std::make_unique<Files>(VXDeploymentConfig::instance()->text(u"Paths/logFolder"_s),
                                      defaultMaximumSize))
{
}

VXLogger::~VXLogger() = default;

void VXLogger::legacyLog(const QString& theText, bool theIsFlushed)
{
    write(
        applicationChannel, theText, [&] { return stamped("record"_L1, theText); }, theIsFlushed);
    qCInfo(records).noquote() << theText;
}

void VXLogger::logQRUpload(const QString& theLine)
{
    write(
        uploadChannel, theLine, [&] { return timeStamp() + u' ' + VXLogFile::escaped(theLine); },
        true);
}

void VXLogger::addToOffSetTimes(int theMilliseconds)
{
    const QMutexLocker locker(&myMutex);
    if (myOffSetTimes.size() >= keptOffSetTimes)
        myOffSetTimes.removeFirst();
    myOffSetTimes.append(theMilliseconds);
}

QList<int> VXLogger::offSetTimes() const
{
    const QMutexLocker locker(&myMutex);
    return myOffSetTimes;
}

void VXLogger::setSink(const Sink& theSink)
{
    const QMutexLocker locker(&myMutex);
    mySink = theSink;
}

void VXLogger::setFolder(const QString& theFolder)
{
    const QMutexLocker locker(&myMutex);
    myFiles = std::make_unique<Files>(theFolder, myFiles->maximumSize);
}

void VXLogger::setMaximumSize(qint64 theBytes)
{
    const QMutexLocker locker(&myMutex);
    myFiles = std::make_unique<Files>(myFiles->folder, theBytes);
}

template <typename MakeLine>
void VXLogger::write(const QString& theChannel, const QString& theText, MakeLine theMakeLine,
                     bool theIsFlushed)
{
    if (const Sink sink = currentSink())
        sink(theChannel, theText);
    else
        append(theChannel, theMakeLine(), theIsFlushed); // a sink has no use for the stamped line
    Q_EMIT recordWritten(theChannel, theText);
}

VXLogger::Sink VXLogger::currentSink() const
{
    const QMutexLocker locker(&myMutex);
    return mySink;
}

void VXLogger::append(const QString& theChannel, const QString& theLine, bool theIsFlushed)
{
    const QMutexLocker locker(&myMutex);
    VXLogFile& file = theChannel == uploadChannel ? myFiles->upload : myFiles->application;
    file.append(theLine, theIsFlushed);
}

void VXLogger::installMessageHandler()
{
    (void)instance(); // made before the first message asks for it
    const QtMessageHandler previous = qInstallMessageHandler(handleMessage);
    if (previous != handleMessage)
        previousHandler = previous;
}

void VXLogger::handleMessage(QtMsgType theType, const QMessageLogContext& theContext,
                             const QString& theMessage)
{
    // A sink or slot that logs would come back here for ever.
    thread_local bool isInside = false;
    const bool isRecord = qstrcmp(theContext.category, recordCategory) == 0;
    if (!isInside && !isRecord) {
        isInside = true;
        // Warnings and worse may be the last words of the process.
        instance()->write(
            applicationChannel, theMessage, [&] { return stamped(levelName(theType), theMessage); },
            theType != QtDebugMsg && theType != QtInfoMsg);
        isInside = false;
    }
    if (const QtMessageHandler previous = previousHandler)
        previous(theType, theContext, theMessage);
}
