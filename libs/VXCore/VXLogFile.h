#pragma once

#include <QtCore/QFile>
#include <QtCore/QString>

/// One file of the log that is put aside when it has grown too long. Not exported and not
/// thread-safe: VXLogger guards it.
class VXLogFile
{
    Q_DISABLE_COPY_MOVE(VXLogFile)

public:
    /// The file is made, for its owner only, when the first line is written.
    VXLogFile(const QString& theFile, qint64 theMaximumSize);

    /// Appends a line. Failure is reported on standard error, the first time only.
    void append(const QString& theLine, bool theIsFlushed);

    /// The text with its control characters as "\xNN", so that it cannot forge other lines.
    [[nodiscard]] static QString escaped(const QString& theText);

private:
    [[nodiscard]] bool open();
    void rotate();
    void reportFailure();

    QFile myFile;
    qint64 myMaximumSize = 0; // bytes
    bool myHasFailed = false;
};
