#include "VXBasisSettings.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

// A link would let somebody else choose where our files go, and a foreign folder who reads them.
bool prepare(const QString& theFolder)
{
    const QFileInfo parent(QFileInfo(theFolder).absolutePath());
    QDir().mkpath(parent.filePath());
    QDir().mkdir(theFolder, ownerOnly);
    const QFileInfo folder(theFolder);
    return folder.isDir() && !folder.isSymLink() && folder.ownerId() == ::getuid() &&
           QFile::setPermissions(theFolder, ownerOnly);
}

} // namespace

VXBasisSettings::VXBasisSettings() = default;
VXBasisSettings::~VXBasisSettings() = default;

QString VXBasisSettings::temporaryDirectory() const
{
    QString folder = VXDeploymentConfig::instance()->text(u"Paths/temporaryDirectory"_s);
    if (prepare(folder))
        return folder;
    qWarning().noquote() << folder + ": no folder of one's own for temporary files"_L1;
    return {};
}

void VXBasisSettings::setTemporaryDirectory(const QString& theFolder)
{
    VXDeploymentConfig::instance()->setValue(u"Paths/temporaryDirectory"_s, theFolder);
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
