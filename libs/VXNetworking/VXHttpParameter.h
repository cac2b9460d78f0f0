#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>

class QUrlQuery;

/// Header or form parameters: one value per name, sorted by name in case-sensitive
/// UTF-16 order. An implicitly shared value; reentrant.
class VXNETWORKING_EXPORT VXHttpParameter
{
public:
    VXHttpParameter() = default;

    ///@{
    /// Cheap: copies share the map until one of them changes.
    VXHttpParameter(const VXHttpParameter&) = default;
    VXHttpParameter(VXHttpParameter&&) noexcept = default;
    VXHttpParameter& operator=(const VXHttpParameter&) = default;
    VXHttpParameter& operator=(VXHttpParameter&&) noexcept = default;
    ///@}

    virtual ~VXHttpParameter();

    /// The value under exactly this name, else theDefault.
    [[nodiscard]] QString value(const QString& theName, const QString& theDefault = {}) const;

    /// Sets or replaces the value under theName.
    void insert(const QString& theName, const QString& theValue);

    /// All names in map order.
    [[nodiscard]] QList<QString> keys() const;

    /// Takes every item of theQuery, pretty-decoded; of a repeated name the last value stays.
    [[nodiscard]] static VXHttpParameter createFromUrlQuery(const QUrlQuery& theQuery);

private:
    QMap<QString, QString> myValues;
};
