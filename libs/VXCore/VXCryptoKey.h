#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// The file that keeps the key of VXCrypto. Not exported. Thread-safe, also between processes.
class VXCryptoKey
{
public:
    VXCryptoKey() = delete;

    /// Length of a key in bytes.
    static constexpr qsizetype size = 32;

    /// The key in the file, which is made when there is none. When that fails, with one warning, a
    /// random key that is the same until the process ends.
    [[nodiscard]] static QByteArray fetch(const QString& theFile);
};
