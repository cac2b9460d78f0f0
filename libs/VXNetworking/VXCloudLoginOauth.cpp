#include "VXCloudLoginOauth.h"

VXCloudLoginOauth::VXCloudLoginOauth(const QString& theClientId, const QString& theClientSecret,
                                     const QUrl& theConnectTarget)
    : VXCloudLoginAbstract(theConnectTarget)
    , myClientId(theClientId)
    , myClientSecret(theClientSecret)
{
}

VXCloudLoginOauth::~VXCloudLoginOauth() = default;

QString VXCloudLoginOauth::clientId() const
{
    return myClientId;
}

QString VXCloudLoginOauth::clientSecret() const
{
    return myClientSecret;
}
