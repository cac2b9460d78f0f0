#pragma once

#include "VXNetworkingExport.h"
#include "VXUrlQueryItem.h"

#include <QtCore/QList>

class QUrlQuery;

/// The items of a URL's query in the order of their insertion; duplicates are allowed.
/// An implicitly shared value; reentrant.
class VXNETWORKING_EXPORT VXUrlQueryItemList
{
public:
    VXUrlQueryItemList() = default;

    /// Takes every item of theQuery. A value that is still percent-encoded in the query's pretty
    /// form is decoded once more.
    VXUrlQueryItemList(const QUrlQuery& theQuery);

    ///@{
    /// Cheap: copies share the items until one of them changes.
    VXUrlQueryItemList(const VXUrlQueryItemList&) = default;
    VXUrlQueryItemList(VXUrlQueryItemList&&) noexcept = default;
    VXUrlQueryItemList& operator=(const VXUrlQueryItemList&) = default;
    VXUrlQueryItemList& operator=(VXUrlQueryItemList&&) noexcept = default;
    ///@}

    virtual ~VXUrlQueryItemList();

    /// At the end, also when an equal item is there.
    void append(const VXUrlQueryItem& theItem) { myItems.append(theItem); }

    /// Duplicates count.
    [[nodiscard]] qsizetype size() const noexcept { return myItems.size(); }

    /// Whether there is no item at all.
    [[nodiscard]] bool isEmpty() const noexcept { return myItems.isEmpty(); }

    /// theIndex counts from 0 and must be below size().
    [[nodiscard]] const VXUrlQueryItem& at(qsizetype theIndex) const
    {
        return myItems.at(theIndex);
    }

    /// All items in their order; a copy that shares the data.
    [[nodiscard]] QList<VXUrlQueryItem> items() const { return myItems; }

    /// Adds each item in list order; see VXUrlQueryItem::addToUrlQuery().
    void addToUrlQuery(QUrlQuery& theQuery) const;

private:
    QList<VXUrlQueryItem> myItems;
};
