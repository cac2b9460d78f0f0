#include "VXReliabilityDocument.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QStringList cellsOf(const QString& theLine)
{
    QStringList cells = theLine.split(u'|');
    cells = cells.mid(1, cells.size() - 2);
    for (QString& cell : cells)
        cell = cell.trimmed();
    return cells;
}

QStringList linesBelow(const QString& theHeading)
{
    QFile file(QStringLiteral(VX_SOURCE_DIR "/docs/reliability.md"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("docs/reliability.md cannot be read");
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const qsizetype begin = lines.indexOf(u"## "_s + theHeading) + 1;
    if (begin == 0)
        qFatal("docs/reliability.md has no heading %s", qPrintable(theHeading));
    qsizetype end = begin;
    while (end < lines.size() && !lines.at(end).startsWith(u"## "_s))
        ++end;
    return lines.sliced(begin, end - begin);
}

} // namespace

VXReliabilityDocument::Rows VXReliabilityDocument::rows(const QString& theHeading)
{
    QStringList table = linesBelow(theHeading).filter(QRegularExpression(u"^\\|"_s));
    Rows rows;
    for (const QString& line : table.mid(2)) { // the titles and the rule below them
        QStringList cells = cellsOf(line);
        const QString name = cells.takeFirst();
        if (rows.contains(name))
            qFatal("docs/reliability.md tells this twice: %s", qPrintable(name));
        rows.insert(name, cells);
    }
    return rows;
}

bool VXReliabilityDocument::allows(const QString& theCell, const QString& theMeasured)
{
    if (theCell.startsWith(u"at most "_s))
        return theMeasured.toLongLong() <= theCell.mid(8).toLongLong();
    return theCell.split(u" or "_s).contains(theMeasured);
}
