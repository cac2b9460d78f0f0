#include "VXUrlQueryItem.h"

#include <QtCore/QHashFunctions>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

VXUrlQueryItem::VXUrlQueryItem(const QString& theName, const QString& theValue)
    : myName(theName)
    , myValue(theValue)
{
}

VXUrlQueryItem::~VXUrlQueryItem() = default;

bool VXUrlQueryItem::operator==(const VXUrlQueryItem& theOther) const
{
    return myName == theOther.myName && myValue == theOther.myValue;
}

size_t VXUrlQueryItem::hash() const
{
    return qHash(myName, 0) + qHash(myValue, 0);
}

void VXUrlQueryItem::addToUrlQuery(QUrlQuery& theQuery) const
{
    if (myName.isEmpty() || myValue.isEmpty())
        return;

    // Compared fully encoded: the pretty form decodes blanks and the like again, and then an item
    // that is there already would not be found.
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(myValue));
    if (theQuery.queryItemValue(myName, QUrl::FullyEncoded) == encoded)
        return;

    theQuery.addQueryItem(myName, encoded);
}
