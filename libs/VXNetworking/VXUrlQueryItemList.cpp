#include "VXUrlQueryItemList.h"

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

VXUrlQueryItemList::VXUrlQueryItemList(const QUrlQuery& theQuery)
{
    const auto items = theQuery.queryItems();
    for (const auto& [name, value] : items)
        append({name, QUrl::fromPercentEncoding(value.toUtf8())});
}

VXUrlQueryItemList::~VXUrlQueryItemList() = default;

void VXUrlQueryItemList::addToUrlQuery(QUrlQuery& theQuery) const
{
    for (const VXUrlQueryItem& item : myItems)
        item.addToUrlQuery(theQuery);
}
