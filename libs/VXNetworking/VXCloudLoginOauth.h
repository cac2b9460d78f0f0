#pragma once

#include "VXCloudLoginAbstract.h"

/// A login request that knows a client id and a client secret, for the body that the application
/// builds.
class VXNETWORKING_EXPORT VXCloudLoginOauth : public VXCloudLoginAbstract
{
public:
    VXCloudLoginOauth(const QString& theClientId, const QString& theClientSecret,
                      const QUrl& theConnectTarget);
    ~VXCloudLoginOauth() override;

    [[nodiscard]] virtual QString clientId() const;
    [[nodiscard]] virtual QString clientSecret() const;

private:
    QString myClientId;
    QString myClientSecret;
};
