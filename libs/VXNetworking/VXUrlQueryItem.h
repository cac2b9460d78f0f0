#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>

class QUrlQuery;

/// One name and value of a URL's query; the value is held decoded. A value; reentrant.
class VXNETWORKING_EXPORT VXUrlQueryItem
{
public:
    VXUrlQueryItem() = default;

    /// theValue is decoded text; addToUrlQuery() encodes it.
    VXUrlQueryItem(const QString& theName, const QString& theValue);

    ///@{
    /// Cheap: copies share both texts.
    VXUrlQueryItem(const VXUrlQueryItem&) = default;
    VXUrlQueryItem(VXUrlQueryItem&&) noexcept = default;
    VXUrlQueryItem& operator=(const VXUrlQueryItem&) = default;
    VXUrlQueryItem& operator=(VXUrlQueryItem&&) noexcept = default;
    ///@}

    virtual ~VXUrlQueryItem();

    /// addToUrlQuery() takes it as it is, without encoding it.
    [[nodiscard]] QString name() const { return myName; }

    /// Decoded.
    [[nodiscard]] QString value() const { return myValue; }

    /// Both texts, case-sensitive.
    bool operator==(const VXUrlQueryItem& theOther) const;

    /// The same in every process: no seed.
    [[nodiscard]] size_t hash() const;

    /// Appends this item with its value percent-encoded (RFC 3986, 2.1; only the unreserved
    /// characters stay). Does nothing when name or value is empty, or when the query's first item
    /// of this name has this very value already.
    void addToUrlQuery(QUrlQuery& theQuery) const;

private:
    QString myName;
    QString myValue;
};
