#pragma once

#include "VXForeignServer.h"

#include <QtCore/QUrl>

/// oidc-provider on 127.0.0.1, a strict OAuth2 server: refresh tokens are good for one use, no
/// parameter may come twice. Its public client is "vx-test".
class VXStrictOAuthServer : public VXForeignServer
{
public:
    static constexpr auto user = "max@example.test";
    /// Holds what forms and addresses give a meaning to.
    static constexpr auto password = "a+b 50% %41 ä&=#\"<>\xF0\x9F\x93\xB7";

    VXStrictOAuthServer();

    [[nodiscard]] QUrl url(const QString& thePath) const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;
};
