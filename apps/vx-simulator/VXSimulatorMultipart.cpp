#include "VXSimulatorMultipart.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonObject>

using namespace Qt::StringLiterals;

namespace {

/// Value of a header parameter such as name="..." or boundary=..., without quotation marks.
QByteArray parameter(const QByteArray& theHeader, const QByteArray& theName)
{
    const QByteArray lower = theHeader.toLower();
    qsizetype at = lower.indexOf(theName + '=');
    // "filename=" ends in "name=": the letter before must not belong to a word
    while (at > 0 && lower.at(at - 1) != ' ' && lower.at(at - 1) != ';')
        at = lower.indexOf(theName + '=', at + 1);
    if (at < 0)
        return {};
    const QByteArray value = theHeader.sliced(at + theName.size() + 1);
    if (value.startsWith('"')) {
        const qsizetype end = value.indexOf('"', 1);
        return end < 0 ? QByteArray() : value.sliced(1, end - 1);
    }
    const qsizetype end = value.indexOf(';');
    return (end < 0 ? value : value.first(end)).trimmed();
}

QByteArray headerLine(const QByteArray& theHead, const QByteArray& theName)
{
    for (const QByteArray& line : theHead.split('\n'))
        if (line.toLower().startsWith(theName + ':'))
            return line.sliced(theName.size() + 1).trimmed();
    return {};
}

QJsonObject describe(const QByteArray& theHead, const QByteArray& theContent)
{
    const QByteArray disposition = headerLine(theHead, "content-disposition");
    const QByteArray hash = QCryptographicHash::hash(theContent, QCryptographicHash::Sha256);
    return {
        {u"name"_s, QString::fromUtf8(parameter(disposition, "name"))},
        {u"fileName"_s, QString::fromUtf8(parameter(disposition, "filename"))},
        {u"type"_s, QString::fromUtf8(headerLine(theHead, "content-type"))},
        {u"size"_s, theContent.size()},
        {u"sha256"_s, QString::fromLatin1(hash.toHex())},
    };
}

} // namespace

std::optional<QJsonArray> VXSimulatorMultipart::parts(const QByteArray& theContentType,
                                                      const QByteArray& theBody)
{
    const QByteArray boundary = parameter(theContentType, "boundary");
    if (!theContentType.toLower().startsWith("multipart/") || boundary.isEmpty())
        return std::nullopt;

    const QByteArray delimiter = "--" + boundary;
    qsizetype at = theBody.startsWith(delimiter) ? 0 : theBody.indexOf("\r\n" + delimiter) + 2;
    if (at == 1) // nowhere
        return std::nullopt;
    QJsonArray list;
    while (list.size() < maximumParts) {
        at += delimiter.size();
        if (QByteArrayView(theBody).sliced(at).startsWith("--"))
            return list;
        const qsizetype head = theBody.indexOf("\r\n", at);
        const qsizetype content = theBody.indexOf("\r\n\r\n", at);
        const qsizetype end = theBody.indexOf("\r\n" + delimiter, content + 2);
        if (head < 0 || content < 0 || end < 0 || content - head > maximumPartHeadBytes)
            return std::nullopt;
        list.append(
            describe(theBody.sliced(head, content - head),
                     theBody.sliced(content + 4, std::max<qsizetype>(0, end - content - 4))));
        at = end + 2;
    }
    return std::nullopt;
}
