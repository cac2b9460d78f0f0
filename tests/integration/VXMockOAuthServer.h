#pragma once

#include "VXForeignServer.h"

#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

/// oauth2-mock-server on 127.0.0.1: grants everything, checks PKCE, and redirects from its login
/// page at once.
class VXMockOAuthServer : public VXForeignServer
{
public:
    VXMockOAuthServer();

    [[nodiscard]] QUrl url(const QString& thePath) const;

    /// The token and revocation requests so far, with "endpoint" and the decoded "form".
    [[nodiscard]] QList<QJsonObject> requests() const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;
};
