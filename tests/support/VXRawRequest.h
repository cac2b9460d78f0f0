#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <utility>

/// One HTTP request as it came over the wire.
struct VXRawRequest
{
    using Header = std::pair<QByteArray, QByteArray>;

    QByteArray head; // request line and header lines, without the empty line at the end
    QByteArray body;
    int connection = 0; // number of the connection it came on, from 0

    [[nodiscard]] QByteArray method() const;
    [[nodiscard]] QByteArray target() const;
    /// Every header line, in order, spelled as sent.
    [[nodiscard]] QList<Header> headers() const;
    /// The names of headers(), in order.
    [[nodiscard]] QList<QByteArray> headerNames() const;
    /// The value of the first header of that name (case-insensitive); null when there is none.
    [[nodiscard]] QByteArray header(const QByteArray& theName) const;
    /// How many headers have that name (case-insensitive).
    [[nodiscard]] int headerCount(const QByteArray& theName) const;
};
