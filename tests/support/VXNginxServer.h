#pragma once

#include "VXForeignServer.h"
#include "VXTestCertificates.h"

#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

/// nginx on 127.0.0.1 with three ports: plain HTTP/1.1; TLS, which also speaks HTTP/2; and one
/// that asks for a password (HTTP, Basic) and hands the request on to another server.
///
/// The first two serve the files of documentPath(), JSON and XML compressed when the client allows
/// it; below /slow/ they serve the same at 100 kB a second. A PUT to /upload/NAME stores a body of
/// any size there, a PUT to /small/NAME refuses more than 1024 bytes with 413.
class VXNginxServer : public VXForeignServer
{
public:
    static constexpr auto user = "karin";
    static constexpr auto password = "geheim";

    explicit VXNginxServer(const VXTestCertificates::Identity& theIdentity);

    /// The server behind the port that asks; its own plain port when never set. Before start().
    void setBackend(quint16 thePort) { myBackend = thePort; }

    [[nodiscard]] QUrl url(const QString& thePath) const;
    [[nodiscard]] QUrl tlsUrl(const QString& thePath) const;
    [[nodiscard]] QUrl askingUrl(const QString& thePath) const;

    /// Where the file of a path without its first slash lies or would lie.
    [[nodiscard]] QString documentPath(const QString& thePath) const;
    void addDocument(const QString& thePath, const QByteArray& theContent) const;
    /// Serves a file that lies elsewhere.
    void linkDocument(const QString& thePath, const QString& theFile) const;

    /// One record for each request that has ended since the start, in that order: port, connection
    /// (number), request (number within the connection), method, uri, status, protocol, host,
    /// agent, connectionHeader, encoding (of the answer), received and sent (bytes).
    [[nodiscard]] QList<QJsonObject> records() const;

protected:
    [[nodiscard]] QStringList neededFiles() const override;
    [[nodiscard]] Launch prepare() override;

private:
    [[nodiscard]] QByteArray configuration() const;

    const VXTestCertificates::Identity myIdentity;
    quint16 myBackend = 0;
};
