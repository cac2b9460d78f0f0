#pragma once

#include "VXCoreExport.h"

#include <QtCore/QVariant>
#include <QtNetwork/QNetworkProxy>

#include <optional>

/// How a value looks in the settings store: as one entry. This one is for types that QVariant
/// turns into a text and back; specialise it for others.
template <typename T>
struct VXConfigItemCodec
{
    /// The value as QVariant holds it.
    [[nodiscard]] static QVariant encode(const T& theValue)
    {
        return QVariant::fromValue(theValue);
    }

    /// The value; empty when there is none or it is no T.
    [[nodiscard]] static std::optional<T> decode(const QVariant& theStored)
    {
        QVariant stored = theStored;
        if (!stored.isValid() || !stored.convert(QMetaType::fromType<T>()))
            return std::nullopt;
        return stored.value<T>();
    }
};

/// A proxy is a compact JSON text with "type", "host", "port", "user" and "password", the password
/// enciphered by VXCrypto. Other properties of a proxy are not kept.
template <>
struct VXCORE_EXPORT VXConfigItemCodec<QNetworkProxy>
{
    /// Always a text, with the five members. An empty password stays empty.
    [[nodiscard]] static QVariant encode(const QNetworkProxy& theValue);

    /// Empty when the text is no such JSON, or type or port are out of range; other members may be
    /// missing.
    [[nodiscard]] static std::optional<QNetworkProxy> decode(const QVariant& theStored);
};
