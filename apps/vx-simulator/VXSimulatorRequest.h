#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QUrlQuery>

/// Header lines in the order and spelling of the wire.
using VXSimulatorHeaders = QList<QPair<QByteArray, QByteArray>>;

/// One HTTP request as it was received. A plain value; reentrant.
struct VXSimulatorRequest
{
    QString listener;   ///< name of the port it came in by: "http", "https-trusted", "control", ...
    QString peer;       ///< "address:port" of the client
    QByteArray method;  ///< verbatim
    QByteArray target;  ///< verbatim: the second word of the request line
    QByteArray version; ///< "HTTP/1.0" or "HTTP/1.1"
    VXSimulatorHeaders headers;
    QByteArray body; ///< without chunk framing

    /// Value of the first header of that name (any case), or a null array.
    [[nodiscard]] QByteArray header(QByteArrayView theName) const;
    /// The target's path without scheme, host and query, still percent-encoded.
    [[nodiscard]] QByteArray rawPath() const;
    /// The target's query without the question mark, still percent-encoded.
    [[nodiscard]] QByteArray rawQuery() const;
    /// The path, percent-decoded.
    [[nodiscard]] QString path() const;
    /// The query. A plus sign stays one.
    [[nodiscard]] QUrlQuery query() const;
    /// The decoded value of a query item, or the default when it is missing.
    [[nodiscard]] QString queryValue(const QString& theName, const QString& theDefault = {}) const;
    /// Largest body read as a form or as JSON, in bytes.
    static constexpr qsizetype maximumReadableBytes = 1024 * 1024;
    /// The body read as application/x-www-form-urlencoded: a plus sign is a blank. Empty when it
    /// is too large.
    [[nodiscard]] QUrlQuery form() const;
    /// Whether the connection stays open after the answer (RFC 9112, 9.3).
    [[nodiscard]] bool keepsConnection() const;
    /// The headers as a JSON list of [name, value].
    [[nodiscard]] QJsonArray headersToJson() const;
};
