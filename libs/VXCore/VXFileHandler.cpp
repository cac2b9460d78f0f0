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

// A link in the middle leads elsewhere like one at the end; who planted it would choose what goes.
bool leadsElsewhere(const QFileInfo& theFolder)
{
    return theFolder.canonicalFilePath() != QDir::cleanPath(theFolder.absoluteFilePath());
}

} // namespace

bool VXFileHandler::recursiveRemove(const QString& theFolder)
{
    const QFileInfo folder(theFolder);
    const bool isLink = folder.isSymLink();
    if (!theFolder.isEmpty() && !isLink && !folder.exists())
        return true;
    if (theFolder.isEmpty() || isLink || !folder.isDir() || holdsHome(folder) ||
        leadsElsewhere(folder)) {
        qWarning().noquote() << theFolder + ": not deleted, no folder to delete as a whole"_L1;
        return false;
    }
    return QDir(theFolder).removeRecursively();
}
