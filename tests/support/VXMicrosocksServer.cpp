#include "VXMicrosocksServer.h"

using namespace Qt::StringLiterals;

VXMicrosocksServer::VXMicrosocksServer()
    : VXForeignServer(u"microsocks"_s)
{
}

void VXMicrosocksServer::setCredentials(const QString& theUser, const QString& thePassword)
{
    myUser = theUser;
    myPassword = thePassword;
}

QStringList VXMicrosocksServer::neededFiles() const
{
    return {u"/usr/bin/microsocks"_s};
}

VXForeignServer::Launch VXMicrosocksServer::prepare()
{
    QStringList arguments{u"-i"_s, u"127.0.0.1"_s, u"-p"_s, QString::number(port())};
    if (!myUser.isEmpty())
        arguments << u"-u"_s << myUser << u"-P"_s << myPassword;
    return {u"/usr/bin/microsocks"_s, arguments};
}
