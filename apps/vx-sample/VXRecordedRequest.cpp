#include "VXRecordedRequest.h"

#include <QtCore/QJsonArray>

using namespace Qt::StringLiterals;

VXRecordedRequest::VXRecordedRequest(const QJsonObject& theObject)
    : myObject(theObject)
{
}

QString VXRecordedRequest::header(const QString& theName) const
{
    for (const auto entry : myObject.value(u"headers").toArray()) {
        const QJsonArray header = entry.toArray();
        if (header.at(0).toString().compare(theName, Qt::CaseInsensitive) == 0)
            return header.at(1).toString();
    }
    return {};
}

QJsonObject VXRecordedRequest::toJson() const
{
    QJsonObject object = myObject;
    object.remove(u"body"_s);
    object.remove(u"text"_s);

    QJsonArray headers;
    for (const auto entry : myObject.value(u"headers").toArray()) {
        QJsonArray header = entry.toArray();
        if (header.at(0).toString().contains(u"authorization"_s, Qt::CaseInsensitive))
            header.replace(1, u"***"_s);
        headers.append(header);
    }
    object.insert(u"headers"_s, headers);
    return object;
}
