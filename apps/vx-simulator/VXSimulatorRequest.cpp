#include "VXSimulatorRequest.h"

#include <QtCore/QUrl>

using namespace Qt::StringLiterals;

namespace {

/// Path and query of a target, whether in origin or in absolute form (RFC 9112, 3.2).
QByteArray originForm(const QByteArray& theTarget)
{
    const qsizetype scheme = theTarget.indexOf("://");
    const qsizetype slash = theTarget.indexOf('/');
    if (scheme < 0 || slash < scheme)
        return theTarget;
    const qsizetype path = theTarget.indexOf('/', scheme + 3);
    return path < 0 ? QByteArray("/") : theTarget.sliced(path);
}

} // namespace

QByteArray VXSimulatorRequest::header(QByteArrayView theName) const
{
    for (const auto& [name, value] : headers)
        if (name.compare(theName, Qt::CaseInsensitive) == 0)
            return value;
    return {};
}

QByteArray VXSimulatorRequest::rawPath() const
{
    const QByteArray origin = originForm(target);
    const qsizetype question = origin.indexOf('?');
    return question < 0 ? origin : origin.first(question);
}

QByteArray VXSimulatorRequest::rawQuery() const
{
    const QByteArray origin = originForm(target);
    const qsizetype question = origin.indexOf('?');
    return question < 0 ? QByteArray() : origin.sliced(question + 1);
}

QString VXSimulatorRequest::path() const
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(rawPath()));
}

QUrlQuery VXSimulatorRequest::query() const
{
    return QUrlQuery(QString::fromUtf8(rawQuery()));
}

QString VXSimulatorRequest::queryValue(const QString& theName, const QString& theDefault) const
{
    const QUrlQuery items = query();
    if (!items.hasQueryItem(theName))
        return theDefault;
    return items.queryItemValue(theName, QUrl::FullyDecoded);
}

QUrlQuery VXSimulatorRequest::form() const
{
    if (body.size() > maximumReadableBytes)
        return {};
    QByteArray text = body;
    text.replace('+', "%20");
    return QUrlQuery(QString::fromUtf8(text));
}

bool VXSimulatorRequest::keepsConnection() const
{
    bool keeps = version != "HTTP/1.0";
    for (const auto& [name, value] : headers) {
        if (name.compare("Connection", Qt::CaseInsensitive) != 0)
            continue;
        for (const QByteArray& token : value.split(',')) {
            if (token.trimmed().compare("close", Qt::CaseInsensitive) == 0)
                return false;
            if (token.trimmed().compare("keep-alive", Qt::CaseInsensitive) == 0)
                keeps = true;
        }
    }
    return keeps;
}

QJsonArray VXSimulatorRequest::headersToJson() const
{
    QJsonArray list;
    for (const auto& [name, value] : headers)
        list.append(QJsonArray{QString::fromLatin1(name), QString::fromLatin1(value)});
    return list;
}
