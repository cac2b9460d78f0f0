#include "VXTinyproxyServer.h"

using namespace Qt::StringLiterals;

VXTinyproxyServer::VXTinyproxyServer()
    : VXForeignServer(u"tinyproxy-bin"_s)
{
}

void VXTinyproxyServer::setCredentials(const QString& theUser, const QString& thePassword)
{
    myUser = theUser;
    myPassword = thePassword;
}

QStringList VXTinyproxyServer::neededFiles() const
{
    return {u"/usr/bin/tinyproxy"_s};
}

VXForeignServer::Launch VXTinyproxyServer::prepare()
{
    QString configuration = u"Port %1\nListen 127.0.0.1\nTimeout 60\nMaxClients 50\n"
                            "LogLevel Info\nDisableViaHeader No\n"_s.arg(port());
    if (!myUser.isEmpty())
        configuration += u"BasicAuth %1 %2\n"_s.arg(myUser, myPassword);
    writeFile(u"tinyproxy.conf"_s, configuration.toUtf8());
    return {u"/usr/bin/tinyproxy"_s, {u"-d"_s, u"-c"_s, filePath(u"tinyproxy.conf"_s)}};
}
