#pragma once

#include <QtCore/QString>

/// Checks the header lines of requests and of the parts of a multipart body. Not exported. Static
/// operations only; reentrant.
class VXHeaderField
{
public:
    VXHeaderField() = delete;

    /// Whether the line can go out: CR, LF or NUL would end it early (RFC 9110, 5.5). A warning
    /// tells which one cannot, by its name only: the value may be a secret.
    [[nodiscard]] static bool isSound(const QString& theName, const QString& theValue);
};
