#include "VXTourRow.h"

#include <QtCore/QJsonArray>

using namespace Qt::StringLiterals;

QJsonObject VXTourRow::toJson() const
{
    QJsonArray requests;
    for (const QJsonObject& request : recorded)
        requests.append(request);
    return {{u"group"_s, group},
            {u"what"_s, what},
            {u"answer"_s, answer},
            {u"checked"_s, isGood()},
            {u"complaints"_s, QJsonArray::fromStringList(complaints)},
            {u"milliseconds"_s, milliseconds},
            {u"pictures"_s, QJsonArray::fromStringList(pictures)},
            {u"recorded"_s, requests}};
}
