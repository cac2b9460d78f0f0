#pragma once

#include <QtCore/QByteArray>

/// The proof that who exchanges a code is who asked for it (RFC 7636), method S256. A new secret
/// for each object.
class VXSamplePkce
{
public:
    VXSamplePkce();

    /// 43 characters of the unreserved set; goes into the exchange only.
    [[nodiscard]] QByteArray verifier() const { return myVerifier; }

    /// The hash of the verifier; goes into the address that the browser opens.
    [[nodiscard]] QByteArray challenge() const;

    /// So many random bytes in the alphabet of addresses, without padding.
    [[nodiscard]] static QByteArray randomText(int theBytes);

private:
    QByteArray myVerifier;
};
