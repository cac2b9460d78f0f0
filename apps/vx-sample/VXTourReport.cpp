#include "VXTourReport.h"

#include "VXTourLog.h"
#include "VXTourPicture.h"
#include "VXTourRow.h"

#include <VXCore/VXStringHelper.h>

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QImage>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int whatWidth = 44;
constexpr int answerWidth = 68;

/// Exactly so many characters wide; what is longer ends with an ellipsis.
QString column(const QString& theText, int theWidth)
{
    const QString shown = theText.size() > theWidth ? theText.first(theWidth - 1) + u'…' : theText;
    return shown.leftJustified(theWidth);
}

QString writeFile(const QString& thePath, const QByteArray& theBytes)
{
    QFile file(thePath);
    if (file.open(QIODevice::WriteOnly) && file.write(theBytes) == theBytes.size() && file.flush())
        return {};
    return u"cannot write %1: %2"_s.arg(thePath, file.errorString());
}

QString htmlRow(const VXTourRow& theRow, qsizetype theNumber)
{
    QString answer = theRow.answer.toHtmlEscaped();
    for (const QString& picture : theRow.pictures)
        answer += u"<br><a href=\"%1\"><img src=\"%1\" alt=\"%1\" loading=\"lazy\"></a>"_s.arg(
            picture.toHtmlEscaped());
    for (const QString& complaint : theRow.complaints)
        answer += u"<br><b>%1</b>"_s.arg(complaint.toHtmlEscaped());
    return u"<tr class=\"%1\"><td>%2</td><td>%3</td><td>%4</td><td>%5</td><td>%6</td></tr>\n"_s.arg(
        theRow.isGood() ? u"good"_s : u"bad"_s, QString::number(theNumber),
        theRow.what.toHtmlEscaped(), answer, QString::number(theRow.recorded.size()),
        theRow.isGood() ? u"yes"_s : u"no"_s);
}

} // namespace

VXTourReport::VXTourReport(const QList<VXTourRow>& theRows)
    : myRows(theRows)
{
}

QString VXTourReport::table() const
{
    const QString rule = QString(whatWidth + answerWidth + 15, u'-');
    QStringList lines{u" no  %1  %2  checked"_s.arg(column(u"what was done"_s, whatWidth),
                                                    column(u"what came back"_s, answerWidth)),
                      rule};
    qsizetype number = 0;
    for (const VXTourRow& row : myRows) {
        lines << u"%1  %2  %3  %4"_s.arg(
            QString::number(++number).rightJustified(3), column(row.what, whatWidth),
            column(row.answer, answerWidth), row.isGood() ? u"yes"_s : u"NO"_s);
        for (const QString& complaint : row.complaints)
            lines << u"     ! %1"_s.arg(complaint);
    }
    return lines.join(u'\n') + u'\n' + rule;
}

QString VXTourReport::write(const QDir& theFolder, const VXTourLog& theLog) const
{
    QString log = theLog.linesFrom(0).join(u'\n') + u'\n';
    log = VXStringHelper::hidePasswords(log);

    QStringList complaints{
        writeFile(theFolder.filePath(u"tour.json"_s), json()),
        writeFile(theFolder.filePath(u"tour.log"_s), log.toUtf8()),
        writeFile(theFolder.filePath(u"index.html"_s), html()),
    };
    const QString picture = theFolder.filePath(u"01-tour.png"_s);
    if (!VXTourPicture(myRows).render().save(picture, "PNG"))
        complaints << u"cannot write %1"_s.arg(picture);
    complaints.removeAll(QString());
    return complaints.join(u'\n');
}

QByteArray VXTourReport::json() const
{
    QJsonArray rows;
    for (const VXTourRow& row : myRows)
        rows.append(row.toJson());
    const auto failed =
        std::ranges::count_if(myRows, [](const VXTourRow& theRow) { return !theRow.isGood(); });
    return QJsonDocument(QJsonObject{{u"steps"_s, myRows.size()},
                                     {u"failed"_s, static_cast<qint64>(failed)},
                                     {u"rows"_s, rows}})
        .toJson();
}

QByteArray VXTourReport::html() const
{
    QString rows;
    qsizetype number = 0;
    for (const VXTourRow& row : myRows)
        rows += htmlRow(row, ++number);
    const QString page = u"<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
                         "<title>VXNetworking tour</title><style>\n"
                         "body{font:15px/1.4 sans-serif;margin:2em auto;max-width:75em;"
                         "padding:0 1em;color:#222}\n"
                         "table{border-collapse:collapse;width:100%}\n"
                         "th,td{text-align:left;vertical-align:top;padding:.35em .6em;"
                         "border-bottom:1px solid #ddd}\n"
                         ".good td:last-child{color:#17692b}\n"
                         ".bad td{background:#fde8e8}.bad td:last-child{color:#a11}\n"
                         "img{max-width:100%;max-height:24em;border:1px solid #ddd;margin:.4em 0}\n"
                         "</style></head><body>\n<h1>VXNetworking tour</h1>\n"
                         "<p>%1. Each row is compared with what the simulator recorded: method, "
                         "address, headers, SHA-256 of the body. <a href=\"tour.json\">tour.json"
                         "</a> has the requests, <a href=\"tour.log\">tour.log</a> the library's "
                         "log, <a href=\"01-tour.png\">01-tour.png</a> this table.</p>\n"
                         "<table><thead><tr><th></th><th>what was done</th>"
                         "<th>what came back</th><th>requests</th><th>checked</th></tr></thead>"
                         "<tbody>\n%2</tbody></table></body></html>\n"_s.arg(
                             QDateTime::currentDateTime().toString(Qt::ISODate), rows);
    return page.toUtf8();
}
