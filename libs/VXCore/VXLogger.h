#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <memory>

/// The application's log: files in the log folder ("Paths/logFolder" of the deployment), each at
/// most 4 MiB long, the three before it kept as ".1" to ".3".
///
/// Channels: "application" (application.log) for records and, after installMessageHandler(), all
/// messages of Qt; "qrupload" (qrupload.log) for the actions of the photo transfer. A file that
/// cannot be written is reported on standard error once and never stops the caller.
///
/// Thread-safe. Sink and signal are called in the thread that logs, without any lock held.
class VXCORE_EXPORT VXLogger
    : public QObject
    , public VXSingleton<VXLogger>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXLogger)

public:
    /// Gets every record in place of the files.
    using Sink = std::function<void(const QString& theChannel, const QString& theText)>;

    VXLogger();
    ~VXLogger() override;

    /// Writes one record to the application log and passes it to Qt's message handler, as it is.
    /// With theIsFlushed it is in the file on return.
    void legacyLog(const QString& theText, bool theIsFlushed);

    /// Writes one action line of the photo transfer, as it is; in the file control characters are
    /// escaped, so that a line stays one line.
    void logQRUpload(const QString& theLine);

    /// Remembers a difference between a server's clock and ours, in milliseconds; the last 1000
    /// are kept.
    void addToOffSetTimes(int theMilliseconds);

    /// The differences, oldest first.
    [[nodiscard]] QList<int> offSetTimes() const;

    /// Replaces the files by a function; an empty one brings the files back.
    void setSink(const Sink& theSink);

    /// Writes into another folder from now on.
    void setFolder(const QString& theFolder);

    /// The size in bytes from which a file is put aside and a new one begun.
    void setMaximumSize(qint64 theBytes);

    /// Sends all messages of Qt to the application log too, with time and thread. Messages go on
    /// to the handler before. Call it once, at start.
    static void installMessageHandler();

Q_SIGNALS:
    /// A record was written. theText is without time and thread.
    void recordWritten(const QString& theChannel, const QString& theText);

private:
    template <typename MakeLine>
    void write(const QString& theChannel, const QString& theText, MakeLine theMakeLine,
               bool theIsFlushed);
    [[nodiscard]] Sink currentSink() const;
    void append(const QString& theChannel, const QString& theLine, bool theIsFlushed);
    static void handleMessage(QtMsgType theType, const QMessageLogContext& theContext,
                              const QString& theMessage);

    struct Files;

    mutable QMutex myMutex;
    Sink mySink;                    // guarded by myMutex
    QList<int> myOffSetTimes;       // guarded by myMutex
    std::unique_ptr<Files> myFiles; // guarded by myMutex
};
