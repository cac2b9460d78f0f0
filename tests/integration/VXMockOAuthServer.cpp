#include "VXMockOAuthServer.h"

#include <QtCore/QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

const QString folder = u"" VX_SOURCE_DIR "/tests/integration/oauth/"_s;

} // namespace

VXMockOAuthServer::VXMockOAuthServer()
    : VXForeignServer(u"oauth2-mock-server (npm)"_s)
{
}

QUrl VXMockOAuthServer::url(const QString& thePath) const
{
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(port()).arg(thePath));
}

QList<QJsonObject> VXMockOAuthServer::requests() const
{
    QList<QJsonObject> requests;
    for (const QByteArray& line : output().split('\n')) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (document.isObject())
            requests << document.object();
    }
    return requests;
}

QStringList VXMockOAuthServer::neededFiles() const
{
    return {u"/usr/bin/node"_s, folder + u"node_modules/oauth2-mock-server/package.json"_s};
}

VXForeignServer::Launch VXMockOAuthServer::prepare()
{
    return {u"/usr/bin/node"_s, {folder + u"mock-server.js"_s, QString::number(port())}};
}
