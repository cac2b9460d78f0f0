#include "VXGUIWidgetsConfig.h"

#include <VXCore/VXDirectoryConfig.h>

#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QImageReader>

using namespace Qt::StringLiterals;

namespace {

// The latest first.
QStringList& addedFolders()
{
    static QStringList ourFolders;
    return ourFolders;
}

// An identifier is made of names that others chose, such as a service's.
bool isFileName(const QString& theId)
{
    return !theId.isEmpty() && !theId.contains(u'/') && !theId.contains(QChar::Null);
}

QString iconFile(const QString& theId)
{
    const QString lastFolder = VXDirectoryConfig::instance()->root(VXDirectoryConfig::Root::Icons);
    for (const QString& folder : addedFolders() + QStringList(lastFolder)) {
        QString file = folder + u'/' + theId + ".png"_L1;
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

} // namespace

QPixmap VXGUIWidgetsConfig::loadPixmapById(const QString& theId, int theFlags)
{
    Q_UNUSED(theFlags)
    const QString file = isFileName(theId) ? iconFile(theId) : QString();
    if (file.isEmpty())
        return {};
    // The size of the plain file; the icon finds the one for dense screens by its name.
    return QIcon(file).pixmap(QImageReader(file).size(), qGuiApp->devicePixelRatio());
}

void VXGUIWidgetsConfig::addIconPath(const QString& theFolder)
{
    addedFolders().prepend(theFolder);
}
