#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtNetwork/QSslConfiguration>

/// Certificates of the TLS ports, made at run time by the program openssl in a folder:
/// ca.pem with ca.key, a second authority that nobody trusts, and NAME.pem with NAME.key for each
/// TLS port. Keys are readable by their owner only.
class VXSimulatorCertificates
{
public:
    /// Names of the TLS ports in the order of the ready object.
    [[nodiscard]] static QStringList names();

    explicit VXSimulatorCertificates(const QString& theFolder);
    /// Makes the folder and all certificates anew. The trusted ones are good for the loopback and
    /// for "service.test", "*.service.test" and the hosts given. Gives an error text, or an empty
    /// one. Blocks for about half a second.
    [[nodiscard]] QString make(const QStringList& theHosts) const;
    /// Whether all files are there.
    [[nodiscard]] bool isComplete() const;
    /// The authority that signed all but the unknownCa certificate, as PEM file.
    [[nodiscard]] QString caFile() const;
    /// TLS settings of a port; a configuration without certificate when a file is broken.
    [[nodiscard]] QSslConfiguration configuration(const QString& theName) const;

private:
    [[nodiscard]] QString path(const QString& theName) const;

    QString myFolder;
};
