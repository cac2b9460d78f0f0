#pragma once

#include "VXForeignServer.h"
#include "VXTestCertificates.h"

#include <QtCore/QUrl>

/// nginx as the server of the measurements: one process, no access log, connections that are never
/// closed. Plain HTTP/1.1 and TLS; serves the files that addDocument() makes, answers any request
/// for /json with json(), a missing path with status 404 and missing(), and stores a PUT to
/// /upload/NAME.
class VXBenchNginx : public VXForeignServer
{
public:
    explicit VXBenchNginx(const VXTestCertificates::Identity& theIdentity);

    /// For another address than 127.0.0.1. Before start().
    void setAddress(const QString& theAddress) { myAddress = theAddress; }

    [[nodiscard]] QUrl url(const QString& thePath) const;
    [[nodiscard]] QUrl tlsUrl(const QString& thePath) const;
    [[nodiscard]] QString documentPath(const QString& thePath) const;
    void addDocument(const QString& thePath, const QByteArray& theContent) const;

    /// 500 bytes of JSON.
    [[nodiscard]] static QByteArray json();
    /// The body of status 404, 10 KiB.
    [[nodiscard]] static QByteArray missing();

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;

private:
    const VXTestCertificates::Identity myIdentity;
    QString myAddress = QStringLiteral("127.0.0.1");
};
