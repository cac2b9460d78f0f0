#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// What is in a file.
class VXFileContent
{
public:
    VXFileContent() = delete;

    /// Empty also when there is no such file.
    [[nodiscard]] static QByteArray of(const QString& thePath);

    /// Makes the file with its folder, or replaces what is in it. Ends the test program when that
    /// fails.
    static void write(const QString& thePath, const QByteArray& theContent);
};
