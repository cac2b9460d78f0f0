#pragma once

#include <QtCore/QString>

/// A disk of its own (tmpfs) that can be full or write-protected, mounted on a folder while this
/// object lives. For tests in the mount namespace of script/in-namespace; anywhere else it ends the
/// program, so that nothing is ever mounted on the machine itself.
class VXSmallDisk
{
    Q_DISABLE_COPY_MOVE(VXSmallDisk)

public:
    static constexpr qint64 size = 1024 * 1024; // bytes
    static constexpr qint64 page = 4096;        // the smallest piece that can be free

    /// The folder exists.
    explicit VXSmallDisk(const QString& theFolder);
    ~VXSmallDisk();

    /// Leaves that many bytes, a multiple of the page, free.
    void fill(qint64 theFree = 0) const;
    /// Nobody can write any more, not even root.
    void protect() const;

private:
    const QString myFolder;
};
