#pragma once

#include "VXSampleLogin.h"

#include <VXNetworking/VXCloudSessionOAuth2.h>

/// The sample's session with a provider: what an application derives from the library's.
class VXSampleCloudSession : public VXCloudSessionOAuth2
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleCloudSession)

public:
    explicit VXSampleCloudSession(const VXSampleLogin& theLogin);
    ~VXSampleCloudSession() override;

    /// Whether the timer renews the tokens, as it does at the start. Otherwise it lets the session
    /// expire and emits sessionExpired().
    void setRenews(bool theRenews) { myRenews = theRenews; }

    [[nodiscard]] QString clientId() const override { return myLogin.clientId; }
    [[nodiscard]] QString scope() const override { return myLogin.scope; }
    [[nodiscard]] QUrl logoutUrl() const override { return myLogin.revokeUrl; }
    [[nodiscard]] QUrl tokenUrl() const override { return myLogin.tokenUrl; }

public Q_SLOTS:
    void updateAccessToken() override;

private:
    const VXSampleLogin myLogin;
    bool myRenews = true;
};
