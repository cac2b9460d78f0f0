#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QHash>
#include <QtCore/QString>

/// The texts of an enumeration's values, both ways. Filled once by VXEnumWrapper and only read
/// afterwards; reentrant.
template <typename E>
class VXNETWORKING_EXPORT VXEnumToStringTable
{
public:
    /// The text leads to the value whatever its case; a later insert of the same text wins.
    /// The first text of a value is the one that encodes it.
    void insert(const QString& theText, E theValue)
    {
        myValues.insert(theText.toLower(), theValue);
        if (!myTexts.contains(theValue))
            myTexts.insert(theValue, theText);
    }

    /// The first text that was inserted for theValue; null when it has none.
    [[nodiscard]] QString encode(E theValue) const { return myTexts.value(theValue); }

    /// The value of theText, whatever its case; the value 0 when the text is unknown.
    [[nodiscard]] E decode(const QString& theText) const
    {
        return myValues.value(theText.toLower(), static_cast<E>(0));
    }

private:
    QHash<QString, E> myValues; // keys in lower case
    QHash<E, QString> myTexts;
};
