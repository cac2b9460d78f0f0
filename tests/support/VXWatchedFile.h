#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryFile>

#include <array>

#include <sys/inotify.h>
#include <unistd.h>

/// A file that notices when it is opened, by whomever.
class VXWatchedFile
{
    Q_DISABLE_COPY_MOVE(VXWatchedFile)

public:
    VXWatchedFile()
    {
        if (!myFile.open() || ::inotify_add_watch(myWatch, qPrintable(path()), IN_OPEN) < 0)
            qFatal("cannot watch a file");
    }
    ~VXWatchedFile() { ::close(myWatch); }

    [[nodiscard]] QString path() const { return myFile.fileName(); }

    /// Since this was asked for the last time.
    [[nodiscard]] bool wasOpened() const
    {
        std::array<char, 4096> events;
        return ::read(myWatch, events.data(), events.size()) > 0;
    }

    /// Opens it, so that a test sees that it would have noticed.
    [[nodiscard]] bool open() const { return QFile(path()).open(QFile::ReadOnly); }

private:
    QTemporaryFile myFile;
    const int myWatch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};
