#include "VXWholeFile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

namespace {

constexpr qsizetype longestName = 255 - 7; // bytes; a temporary name gets a dot and six letters

bool mustBeWrittenInPlace(const QString& thePath)
{
    const QFileInfo info(thePath);
    return (info.exists() && !info.isFile()) || info.fileName().toLocal8Bit().size() > longestName;
}

bool writeInPlace(const QString& thePath, const QByteArray& theBytes, QString& theError)
{
    QFile file(thePath);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
        VXWholeFile::writeAll(file, theBytes))
        return true;
    theError = file.errorString();
    return false;
}

} // namespace

bool VXWholeFile::write(const QString& thePath, const QByteArray& theBytes, QString& theError)
{
    if (mustBeWrittenInPlace(thePath))
        return writeInPlace(thePath, theBytes, theError);

    QSaveFile file(thePath);
    file.setDirectWriteFallback(true);
    // A commit does not notice that the bytes before it found no room, hence writeAll().
    if (file.open(QIODevice::WriteOnly) && writeAll(file, theBytes) && file.commit())
        return true;
    theError = file.errorString();
    file.cancelWriting();
    return false;
}

bool VXWholeFile::writeAll(QFileDevice& theFile, const QByteArray& theBytes)
{
    return theFile.write(theBytes) == theBytes.size() && theFile.flush();
}
