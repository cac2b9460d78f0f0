#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>

#include <optional>

/// Reads bodies of the type multipart/form-data (RFC 7578).
class VXSimulatorMultipart
{
public:
    /// Most parts of a body.
    static constexpr int maximumParts = 1000;
    /// Most bytes of the headers of a part.
    static constexpr qsizetype maximumPartHeadBytes = 16 * 1024;

    /// One object per part: "name", "fileName", "type", "size" and "sha256". Empty when the body
    /// does not have the form that its content type announces.
    [[nodiscard]] static std::optional<QJsonArray> parts(const QByteArray& theContentType,
                                                         const QByteArray& theBody);
};
