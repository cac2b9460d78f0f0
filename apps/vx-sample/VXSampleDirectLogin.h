#pragma once

#include "VXSampleLogin.h"

#include <VXNetworking/VXCloudLoginOauth.h>

/// The direct login with a password: what an application derives from the library's. A public
/// client, so there is no client secret.
class VXSampleDirectLogin : public VXCloudLoginOauth
{
public:
    explicit VXSampleDirectLogin(const VXSampleLogin& theLogin);
    ~VXSampleDirectLogin() override;

    [[nodiscard]] QByteArray loginRequestData(const VXCredentials& theCredentials) const override;

private:
    QString myScope;
};
