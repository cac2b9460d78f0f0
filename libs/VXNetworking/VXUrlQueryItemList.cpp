#include "VXUrlQueryItemList.h"

#include <QtCore/QHash>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

#include <algorithm>
#include <optional>

namespace {

constexpr qsizetype fewItems = 20; // looking through them is quicker than any index

/// theName as a query holds it, fully encoded.
QString encodedName(const QString& theName)
{
    const auto isPlain = [](QChar theChar) {
        const char16_t code = theChar.unicode();
        return (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
               (code >= u'0' && code <= u'9') || code == u'-' || code == u'_' || code == u'.';
    };
    if (std::ranges::all_of(theName, isPlain))
        return theName;
    QUrlQuery query;
    query.addQueryItem(theName, {});
    return query.queryItems(QUrl::FullyEncoded).constFirst().first;
}

/// Does to one query what VXUrlQueryItem::addToUrlQuery() does, without looking through all of it
/// for each item.
class IndexedQuery
{
public:
    IndexedQuery(QUrlQuery& theQuery, qsizetype theMoreItems)
        : myQuery(theQuery)
    {
        const auto items = theQuery.queryItems(QUrl::FullyEncoded);
        myFirstValues.reserve(items.size() + theMoreItems);
        for (const auto& [name, value] : items)
            firstValue(name, value);
    }

    void add(const VXUrlQueryItem& theItem)
    {
        if (theItem.name().isEmpty() || theItem.value().isEmpty())
            return;
        const QString value = QString::fromLatin1(QUrl::toPercentEncoding(theItem.value()));
        const qsizetype namesBefore = myFirstValues.size();
        const QString& first = firstValue(encodedName(theItem.name()), value);
        if (myFirstValues.size() > namesBefore || first != value)
            myQuery.addQueryItem(theItem.name(), value);
    }

private:
    /// The first value of theName; theValue becomes it when there is none.
    const QString& firstValue(const QString& theName, const QString& theValue)
    {
        std::optional<QString>& value = myFirstValues[theName];
        if (!value)
            value = theValue;
        return *value;
    }

    QUrlQuery& myQuery;
    QHash<QString, std::optional<QString>> myFirstValues; // by name, both fully encoded
};

} // namespace

VXUrlQueryItemList::VXUrlQueryItemList(const QUrlQuery& theQuery)
{
    const auto items = theQuery.queryItems();
    for (const auto& [name, value] : items)
        append({name, QUrl::fromPercentEncoding(value.toUtf8())});
}

VXUrlQueryItemList::~VXUrlQueryItemList() = default;

void VXUrlQueryItemList::addToUrlQuery(QUrlQuery& theQuery) const
{
    if (myItems.size() <= fewItems) {
        for (const VXUrlQueryItem& item : myItems)
            item.addToUrlQuery(theQuery);
        return;
    }
    IndexedQuery query(theQuery, myItems.size());
    for (const VXUrlQueryItem& item : myItems)
        query.add(item);
}
