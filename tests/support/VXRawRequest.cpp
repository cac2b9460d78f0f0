#include "VXRawRequest.h"

QByteArray VXRawRequest::method() const
{
    return head.left(head.indexOf(' '));
}

QByteArray VXRawRequest::target() const
{
    return head.left(head.indexOf("\r\n")).split(' ').value(1);
}

QList<VXRawRequest::Header> VXRawRequest::headers() const
{
    QList<Header> result;
    const QList<QByteArray> lines = QByteArray(head).replace("\r\n", "\n").split('\n');
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        result.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    return result;
}

QList<QByteArray> VXRawRequest::headerNames() const
{
    QList<QByteArray> result;
    for (const Header& header : headers())
        result.append(header.first);
    return result;
}

QByteArray VXRawRequest::header(const QByteArray& theName) const
{
    for (const Header& header : headers()) {
        if (header.first.compare(theName, Qt::CaseInsensitive) == 0)
            return header.second;
    }
    return {};
}

int VXRawRequest::headerCount(const QByteArray& theName) const
{
    int count = 0;
    for (const Header& header : headers())
        count += header.first.compare(theName, Qt::CaseInsensitive) == 0 ? 1 : 0;
    return count;
}
