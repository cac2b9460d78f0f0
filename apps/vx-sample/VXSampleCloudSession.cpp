#include "VXSampleCloudSession.h"

VXSampleCloudSession::VXSampleCloudSession(const VXSampleLogin& theLogin)
    : myLogin(theLogin)
{
}

VXSampleCloudSession::~VXSampleCloudSession() = default;

void VXSampleCloudSession::updateAccessToken()
{
    if (myRenews)
        VXCloudSessionOAuth2::updateAccessToken();
    else
        Q_EMIT sessionExpired();
}
