#include "VXFileHandler.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>

using namespace Qt::StringLiterals;

namespace {

bool holdsHome(const QFileInfo& theFolder)
{
    const QString path = theFolder.canonicalFilePath();
    const QString home = QDir::home().canonicalPath();
    return path == "/"_L1 || home == path || home.startsWith(path + u'/');
}

} // namespace

bool VXFileHandler::recursiveRemove(const QString& theFolder)
{
    const QFileInfo folder(theFolder);
    const bool isLink = folder.isSymLink();
    if (!theFolder.isEmpty() && !isLink && !folder.exists())
        return true;
    if (theFolder.isEmpty() || isLink || !folder.isDir() || holdsHome(folder)) {
        qWarning().noquote() << theFolder + ": not deleted, no folder to delete as a whole"_L1;
        return false;
    }
    return QDir(theFolder).removeRecursively();
}
