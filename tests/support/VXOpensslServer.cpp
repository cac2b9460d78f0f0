#include "VXOpensslServer.h"

using namespace Qt::StringLiterals;

VXOpensslServer::VXOpensslServer(const VXTestCertificates::Identity& theIdentity,
                                 const QStringList& theOptions)
    : VXForeignServer(u"openssl"_s)
    , myIdentity(theIdentity)
    , myOptions(theOptions)
{
}

void VXOpensslServer::addAnswer(const QString& theName, const QByteArray& theBytes) const
{
    writeFile(theName, theBytes);
}

QUrl VXOpensslServer::url() const
{
    return QUrl(u"https://127.0.0.1:%1/"_s.arg(port()));
}

QStringList VXOpensslServer::neededFiles() const
{
    return {u"/usr/bin/openssl"_s};
}

VXForeignServer::Launch VXOpensslServer::prepare()
{
    const QStringList arguments{u"s_server"_s,
                                u"-accept"_s,
                                u"127.0.0.1:%1"_s.arg(port()),
                                u"-cert"_s,
                                myIdentity.certificateFile,
                                u"-key"_s,
                                myIdentity.keyFile,
                                u"-www"_s};
    return {u"/usr/bin/openssl"_s, arguments + myOptions};
}
