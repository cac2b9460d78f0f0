#include "VXHttpParameter.h"

#include <QtCore/QUrlQuery>

VXHttpParameter::~VXHttpParameter() = default;

QString VXHttpParameter::value(const QString& theName, const QString& theDefault) const
{
    return myValues.value(theName, theDefault);
}

void VXHttpParameter::insert(const QString& theName, const QString& theValue)
{
    myValues.insert(theName, theValue);
}

QList<QString> VXHttpParameter::keys() const
{
    return myValues.keys();
}

VXHttpParameter VXHttpParameter::createFromUrlQuery(const QUrlQuery& theQuery)
{
    VXHttpParameter parameters;
    const auto items = theQuery.queryItems();
    for (const auto& [name, value] : items)
        parameters.insert(name, value);
    return parameters;
}
