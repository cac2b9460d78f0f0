#include "VXSampleDirectLogin.h"

#include "VXSampleForm.h"

#include <VXNetworking/VXCredentials.h>

using namespace Qt::StringLiterals;

VXSampleDirectLogin::VXSampleDirectLogin(const VXSampleLogin& theLogin)
    : VXCloudLoginOauth(theLogin.clientId, QString(), theLogin.tokenUrl)
    , myScope(theLogin.scope)
{
}

VXSampleDirectLogin::~VXSampleDirectLogin() = default;

QByteArray VXSampleDirectLogin::loginRequestData(const VXCredentials& theCredentials) const
{
    return VXSampleForm::encode({{"client_id", clientId()},
                                 {"scope", myScope},
                                 {"grant_type", u"password"_s},
                                 {"username", theCredentials.username()},
                                 {"password", theCredentials.password()}});
}
