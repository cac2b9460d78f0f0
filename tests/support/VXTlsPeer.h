#pragma once

#include "VXRawPeer.h"
#include "VXTestCertificates.h"

/// VXRawPeer over TLS, with HTTP/1.1 only unless told otherwise.
class VXTlsPeer : public VXRawPeer
{
    Q_DISABLE_COPY_MOVE(VXTlsPeer)

public:
    /// Shows the identity's certificate; theProtocols are offered by ALPN.
    explicit VXTlsPeer(const VXTestCertificates::Identity& theIdentity,
                       const QList<QByteArray>& theProtocols = {"http/1.1"});
    ~VXTlsPeer() override;

    /// "https://127.0.0.1:port" + thePath.
    [[nodiscard]] QUrl url(const QString& thePath = QStringLiteral("/")) const override;
};
