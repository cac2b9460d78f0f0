#include "VXBasisSettings.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>
#include <QtCore/QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

constexpr auto settingsKey = "Paths/temporaryDirectory"_L1;

// Nothing can be made there, by nobody.
constexpr auto impossibleFolder = "/dev/null/temporary"_L1;

// Whoever may rename what lies there could put another folder in the place of ours.
bool isOpenToAll(const QString& theFolder)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(theFolder).constData(), &status) != 0 ||
           ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0);
}

bool liesSafely(const QString& theFolder)
{
    QDir above(theFolder);
    do {
        if (isOpenToAll(above.path()))
            return false;
    } while (above.cdUp());
    return true;
}

// The same folder by a path without links but perhaps the last; its parents are made.
QString withoutLinks(const QString& theFolder)
{
    const QFileInfo folder(theFolder);
    QDir().mkpath(folder.absolutePath());
    return QDir(QFileInfo(folder.absolutePath()).canonicalFilePath()).filePath(folder.fileName());
}

// A link would let somebody else choose where our files go, a foreign folder who reads them, and
// what others could write may hold links already.
bool prepare(const QString& theFolder)
{
    QDir().mkdir(theFolder, ownerOnly);
    const QFileInfo folder(theFolder);
    return folder.isDir() && !folder.isSymLink() && folder.ownerId() == ::getuid() &&
           !folder.permission(QFile::WriteOther) && liesSafely(folder.path()) &&
           QFile::setPermissions(theFolder, ownerOnly);
}

// A folder of this process alone, which goes when it ends.
QString passingFolder()
{
    static const QTemporaryDir ourFolder(QDir::tempPath() + "/vx-XXXXXX"_L1);
    return ourFolder.isValid() ? ourFolder.path() : QString(impossibleFolder);
}

} // namespace

VXBasisSettings::VXBasisSettings() = default;
VXBasisSettings::~VXBasisSettings() = default;

QString VXBasisSettings::temporaryDirectory() const
{
    const QString wanted = VXDeploymentConfig::instance()->text(settingsKey);
    const QMutexLocker locker(&myMutex);
    if (!wanted.isEmpty()) {
        QString folder = withoutLinks(wanted);
        if (prepare(folder))
            return folder;
    }
    // Once: pages cause this call.
    if (myRefusedFolder != wanted || myPassingFolder.isEmpty())
        qWarning().noquote() << wanted + ": no folder of one's own for temporary files"_L1;
    myRefusedFolder = wanted;
    if (myPassingFolder.isEmpty())
        myPassingFolder = passingFolder();
    return myPassingFolder;
}

void VXBasisSettings::setTemporaryDirectory(const QString& theFolder)
{
    VXDeploymentConfig::instance()->setValue(settingsKey, theFolder);
}

bool VXBasisSettings::runsInMasterMode() const
{
    return VXDeploymentConfig::instance()->isEnabled(u"Program/masterMode"_s);
}

void VXBasisSettings::setMasterMode(bool theIsOn)
{
    VXDeploymentConfig::instance()->setValue(u"Program/masterMode"_s,
                                             theIsOn ? u"true"_s : u"false"_s);
}
