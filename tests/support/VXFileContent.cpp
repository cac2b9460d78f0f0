#include "VXFileContent.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

QByteArray VXFileContent::of(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void VXFileContent::write(const QString& thePath, const QByteArray& theContent)
{
    QDir().mkpath(QFileInfo(thePath).path());
    QFile file(thePath);
    if (!file.open(QFile::WriteOnly) || file.write(theContent) != theContent.size())
        qFatal("cannot write %s: %s", qPrintable(thePath), qPrintable(file.errorString()));
}
