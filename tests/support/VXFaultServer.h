#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QUrl>

/// The program vx_fault_server, whose paths, ports and proxies misbehave; see VXFaults. It lives as
/// long as this object.
class VXFaultServer
{
    Q_DISABLE_COPY_MOVE(VXFaultServer)

public:
    /// Starts it and waits for its ports; ends the test program when that fails.
    VXFaultServer();
    ~VXFaultServer();

    /// "plain", "tls", "untrusted" (self-signed), "ipv6", "refused" or "silent" (never answers a
    /// connection).
    [[nodiscard]] quint16 port(const QString& theName) const;
    [[nodiscard]] quint16 proxyPort(const QString& theName) const;
    /// On 127.0.0.1 or, for "ipv6", on ::1; by TLS for "tls" and "untrusted".
    [[nodiscard]] QUrl url(const QString& thePort, const QString& thePath) const;
    /// PEM file of the authority behind "tls".
    [[nodiscard]] QString authorityFile() const;

private:
    QProcess myProcess;
    QJsonObject myPorts;
};
