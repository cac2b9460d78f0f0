#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslKey>

/// A certificate authority of its own, made at run time by the openssl program in a temporary
/// folder, and what it issues. Nothing of it outlives this object but the values given out.
class VXTestCertificates
{
    Q_DISABLE_COPY_MOVE(VXTestCertificates)

public:
    /// A certificate with its private key.
    struct Identity
    {
        QSslCertificate certificate;
        QSslKey key;
        QString certificateFile; // PEM
        QString keyFile;         // PEM
    };
    struct Order
    {
        /// Distinguished name as openssl writes it; an attribute may occur more than once.
        QString subject = QStringLiteral("/CN=localhost");
        QStringList alternativeNames = {QStringLiteral("DNS:localhost"),
                                        QStringLiteral("IP:127.0.0.1")};
        QDateTime from = QDateTime::currentDateTimeUtc().addDays(-1);
        QDateTime to = QDateTime::currentDateTimeUtc().addDays(30);
        /// Hexadecimal; empty = the next of this authority.
        QString serial;
        bool isSelfSigned = false;
        bool isAuthority = false;
    };

    VXTestCertificates();

    [[nodiscard]] const Identity& authority() const { return myAuthority; }
    Identity issue(const Order& theOrder);

    /// For localhost and 127.0.0.1, valid today.
    Identity leaf() { return issue({}); }
    Identity selfSigned();
    Identity expired();
    Identity notYetValid();
    /// One of those that Qt refuses by serial number and name.
    Identity blacklisted();

private:
    Identity sign(const Order& theOrder, bool theIsSelfSigned);
    void writeConfiguration(const QString& thePath, const Order& theOrder) const;
    void run(const QStringList& theArguments) const;

    QTemporaryDir myFolder;
    int myCount = 0;
    Identity myAuthority;
};
