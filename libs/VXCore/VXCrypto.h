#pragma once

#include "VXCoreExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Enciphers texts that lie in the settings store, such as passwords.
///
/// AES-256-SIV (RFC 5297), deterministic: the same text gives the same result, so enciphered texts
/// can be compared. The key is made on first use and kept in a file of its own that only its owner
/// may read ("Crypto/keyFile" of the deployment); when the file can be neither read nor made, a key
/// that lasts as long as the process takes its place. With the key beside the data this shields
/// copied settings files, not against somebody who reads all files of the user.
///
/// The names of the operations are older than the cipher. Thread-safe. No text is ever logged.
class VXCORE_EXPORT VXCrypto
{
public:
    /// With the key of the application.
    VXCrypto();

    /// The result holds only characters that any settings store keeps, "$" among them.
    [[nodiscard]] QString encryptDES(const QString& theText) const;

    /// The text of what encryptDES() returned, or of the form that older versions stored: base64
    /// of DES-CBC with the key "Crypto/legacyDesKey" of the deployment. Empty when it is empty, was
    /// changed, or was made with another key.
    [[nodiscard]] QString decryptDES(const QString& theCipher) const;

    /// Uses a key of its own: 32 random bytes. One of another length is refused with a warning.
    void setKey(const QByteArray& theKey);

private:
    QByteArray myKey; // empty: that of the application
};
