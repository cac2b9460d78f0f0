#include "VXSmallDisk.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

#include <cstring>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

VXSmallDisk::VXSmallDisk(const QString& theFolder)
    : myFolder(theFolder)
{
    if (qEnvironmentVariableIntValue("VX_NAMESPACE") != 1)
        qFatal("a disk is mounted by tests in script/in-namespace only");
    const QByteArray options = "size=" + QByteArray::number(size);
    if (mount("tmpfs", qPrintable(myFolder), "tmpfs", 0, options.constData()) != 0)
        qFatal("mounting %s: %s", qPrintable(myFolder), std::strerror(errno));
}

VXSmallDisk::~VXSmallDisk()
{
    umount2(qPrintable(myFolder), MNT_DETACH);
}

void VXSmallDisk::fill(qint64 theFree) const
{
    QFile reserve(myFolder + u"/.reserve"_s);
    QFile filling(myFolder + u"/.filling"_s);
    if (!reserve.open(QFile::WriteOnly | QFile::Unbuffered) ||
        !filling.open(QFile::WriteOnly | QFile::Unbuffered) ||
        reserve.write(QByteArray(theFree, 'r')) != theFree)
        qFatal("filling %s: %s", qPrintable(myFolder), qPrintable(filling.errorString()));
    const QByteArray part(page, 'f');
    while (filling.write(part) == part.size()) {
    }
    reserve.remove();
}

void VXSmallDisk::protect() const
{
    if (mount("tmpfs", qPrintable(myFolder), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        qFatal("protecting %s: %s", qPrintable(myFolder), std::strerror(errno));
}
