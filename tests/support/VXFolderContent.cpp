#include "VXFolderContent.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>

using namespace Qt::StringLiterals;

QMap<QString, QByteArray> VXFolderContent::of(const QString& theFolder)
{
    QMap<QString, QByteArray> files;
    QDirIterator entry(theFolder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        QFile file(entry.next());
        files.insert(file.fileName(),
                     file.open(QIODevice::ReadOnly) ? file.readAll() : "<folder>"_ba);
    }
    return files;
}
