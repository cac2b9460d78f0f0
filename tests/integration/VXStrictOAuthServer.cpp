#include "VXStrictOAuthServer.h"

using namespace Qt::StringLiterals;

namespace {

const QString folder = u"" VX_SOURCE_DIR "/tests/integration/oauth/"_s;

} // namespace

VXStrictOAuthServer::VXStrictOAuthServer()
    : VXForeignServer(u"oidc-provider (npm)"_s)
{
}

QUrl VXStrictOAuthServer::url(const QString& thePath) const
{
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(port()).arg(thePath));
}

QStringList VXStrictOAuthServer::neededFiles() const
{
    return {u"/usr/bin/node"_s, folder + u"node_modules/oidc-provider/package.json"_s};
}

VXForeignServer::Launch VXStrictOAuthServer::prepare()
{
    return {u"/usr/bin/node"_s,
            {folder + u"strict-server.mjs"_s, QString::number(port())},
            {{u"VX_PASSWORD"_s, QString::fromUtf8(password)}}};
}
