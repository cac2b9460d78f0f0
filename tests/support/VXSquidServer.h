#pragma once

#include "VXForeignServer.h"

/// squid, a proxy for HTTP and CONNECT on 127.0.0.1 that asks for a password by Digest (RFC 7616).
/// Caches nothing. accessLog() tells each request.
class VXSquidServer : public VXForeignServer
{
public:
    static constexpr auto user = "karin";
    static constexpr auto password = "geheim";

    VXSquidServer();

    [[nodiscard]] QByteArray accessLog() const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;
};
