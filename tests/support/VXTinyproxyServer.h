#pragma once

#include "VXForeignServer.h"

/// tinyproxy, a proxy for HTTP and CONNECT on 127.0.0.1. Its output() tells each request.
class VXTinyproxyServer : public VXForeignServer
{
public:
    VXTinyproxyServer();

    /// Asks for this password from the next start() on. Letters and digits.
    void setCredentials(const QString& theUser, const QString& thePassword);

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;

private:
    QString myUser;
    QString myPassword;
};
