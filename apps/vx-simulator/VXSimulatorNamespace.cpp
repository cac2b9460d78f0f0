#include "VXSimulatorNamespace.h"

#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

/// The rows of a table below /proc, split into words; empty when it cannot be read.
QList<QByteArrayList> rows(const QString& thePath, bool* theIsRead)
{
    QFile file(thePath);
    *theIsRead = file.open(QFile::ReadOnly);
    QList<QByteArrayList> list;
    for (const QByteArray& line : file.isOpen() ? file.readAll().split('\n') : QByteArrayList())
        list.append(line.simplified().split(' '));
    return list;
}

} // namespace

bool VXSimulatorNamespace::hasDefaultRoute()
{
    bool isRead = false;
    // Iface Destination Gateway Flags RefCnt Use Metric Mask ...
    for (const QByteArrayList& row : rows(u"/proc/self/net/route"_s, &isRead))
        if (row.size() > 7 && row[1] == "00000000" && row[7] == "00000000")
            return true;
    if (!isRead)
        return true;
    // Destination PrefixLength ... Iface; the rows of lo refuse. No file: no IPv6.
    for (const QByteArrayList& row : rows(u"/proc/self/net/ipv6_route"_s, &isRead))
        if (row.size() > 9 && row[1] == "00" && row[9] != "lo" && row[0] == QByteArray(32, '0'))
            return true;
    return false;
}
