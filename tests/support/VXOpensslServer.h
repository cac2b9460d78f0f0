#pragma once

#include "VXForeignServer.h"
#include "VXTestCertificates.h"

#include <QtCore/QUrl>

/// "openssl s_server" on 127.0.0.1: every GET is answered with a page about the connection.
class VXOpensslServer : public VXForeignServer
{
public:
    /// theOptions are those of s_server beside port, certificate and key.
    VXOpensslServer(const VXTestCertificates::Identity& theIdentity, const QStringList& theOptions);

    /// A file that the option "-HTTP" gives as the whole answer, head included, before it closes.
    void addAnswer(const QString& theName, const QByteArray& theBytes) const;

    [[nodiscard]] QUrl url() const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;

private:
    const VXTestCertificates::Identity myIdentity;
    const QStringList myOptions;
};
