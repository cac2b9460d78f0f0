#pragma once

#include "VXCloudLoginAbstract.h"

/// A login request that knows a client id and a client secret, for the body that the application
/// builds.
class VXNETWORKING_EXPORT VXCloudLoginOauth : public VXCloudLoginAbstract
{
public:
    /// Only keeps id and secret; what becomes of them is up to loginRequestData().
    VXCloudLoginOauth(const QString& theClientId, const QString& theClientSecret,
                      const QUrl& theConnectTarget);
    ~VXCloudLoginOauth() override;

    /// The public name of the program at the service (RFC 6749, 2.2).
    [[nodiscard]] virtual QString clientId() const;

    /// Plain text (RFC 6749, 2.3.1).
    [[nodiscard]] virtual QString clientSecret() const;

private:
    QString myClientId;
    QString myClientSecret;
};
