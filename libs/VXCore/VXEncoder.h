#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// The form in which early versions stored passwords; it hides them from a glance only. Read to
/// move such settings on; VXCrypto is what new ones are written with. Thread-safe.
///
/// Base64 of the UTF-8 text, each byte combined by exclusive or with a repeating key
/// ("Crypto/legacyEncoderKey" of the deployment; empty: the bytes as they are).
class VXCORE_EXPORT VXEncoder
{
public:
    VXEncoder() = delete;

    /// The old form of a text.
    [[nodiscard]] static QString encodeString(const QString& theText);

    /// The text of the old form; empty when it is none.
    [[nodiscard]] static QString decodeString(const QString& theText);
};
