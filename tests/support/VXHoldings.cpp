#include "VXHoldings.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto filters = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;

qint64 residentMemory()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

qsizetype countSockets(const QDir& theFolder)
{
    qsizetype count = 0;
    for (const QString& name : theFolder.entryList(filters))
        count += QFile::symLinkTarget(theFolder.filePath(name)).contains("socket:"_L1) ? 1 : 0;
    return count;
}

} // namespace

VXHoldings VXHoldings::now()
{
    ::malloc_trim(0);
    const QDir descriptors(u"/proc/self/fd"_s);
    return {.memory = residentMemory(),
            .descriptors = descriptors.entryList(filters).size(),
            .sockets = countSockets(descriptors),
            .threads = QDir(u"/proc/self/task"_s).entryList(filters).size()};
}

VXHoldings VXHoldings::since(const VXHoldings& theBefore) const
{
    return {.memory = memory - theBefore.memory,
            .descriptors = descriptors - theBefore.descriptors,
            .sockets = sockets - theBefore.sockets,
            .threads = threads - theBefore.threads};
}
