#pragma once

#include "VXForeignServer.h"

#include <QtCore/QUrl>

/// httpbin, a server that answers what its path says (/status/404, /gzip, /delay/2 ...) and tells
/// in JSON what it was asked. Plain HTTP/1.1 on 127.0.0.1, one connection per request.
class VXHttpbinServer : public VXForeignServer
{
public:
    VXHttpbinServer();

    [[nodiscard]] QUrl url(const QString& thePath) const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;
};
