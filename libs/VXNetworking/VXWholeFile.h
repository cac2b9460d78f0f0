#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QFileDevice;

/// Writes a file as a whole: its name shows the former content until the new one stands there
/// completely, whatever ends the process or fills the disk meanwhile. Not exported. Reentrant.
///
/// Written in place are: what is no regular file (a pipe, a device), a file in a folder that takes
/// no new ones, and a name too long to get the ending of a temporary one.
class VXWholeFile
{
public:
    VXWholeFile() = delete;

    /// True when every byte is there. Otherwise theError gets the reason.
    [[nodiscard]] static bool write(const QString& thePath, const QByteArray& theBytes,
                                    QString& theError);

    /// Writes into an open file, in place. True when every byte has left this process.
    [[nodiscard]] static bool writeAll(QFileDevice& theFile, const QByteArray& theBytes);
};
