#include "VXProcessMemory.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

/// A line of /proc/self/status that counts kB, in bytes.
qint64 statusBytes(const QByteArray& theName)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(theName + ':'))
            return line.mid(theName.size() + 1).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

} // namespace

qint64 VXProcessMemory::resident()
{
    return statusBytes("VmRSS");
}

qint64 VXProcessMemory::peak()
{
    return statusBytes("VmHWM");
}

void VXProcessMemory::resetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}
