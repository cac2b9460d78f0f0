#pragma once

#include "VXForeignServer.h"

/// microsocks, a SOCKS 5 proxy on 127.0.0.1. Its output() tells each connection.
class VXMicrosocksServer : public VXForeignServer
{
public:
    VXMicrosocksServer();

    /// Asks for this password from the next start() on.
    void setCredentials(const QString& theUser, const QString& thePassword);

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;

private:
    QString myUser;
    QString myPassword;
};
