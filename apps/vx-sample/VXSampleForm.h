#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPair>

/// A body of the type application/x-www-form-urlencoded, whatever characters its values hold.
class VXSampleForm
{
public:
    /// The items in their order; those without a value are left out.
    [[nodiscard]] static QByteArray encode(const QList<QPair<QByteArray, QString>>& theItems);
};
