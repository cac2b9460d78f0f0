#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QUrl>

/// The service that the commands may talk to: an embedded one, which is a child process found
/// beside this program, or one that runs already and wrote a ready file. Main thread.
class VXSampleSimulator
{
    Q_DISABLE_COPY_MOVE(VXSampleSimulator)

public:
    /// `theMode` is "auto", "none" or the path of a ready file. Nothing happens yet.
    explicit VXSampleSimulator(const QString& theMode);

    /// Ends the embedded service, if this object started one.
    ~VXSampleSimulator();

    /// Starts or finds the service; further calls return at once. False with errorText() when
    /// there is none. Call it before the library's first exchange: the library then trusts the
    /// service's certificate authority.
    bool open();

    [[nodiscard]] QString errorText() const { return myErrorText; }

    /// The object that the service wrote when it was ready.
    [[nodiscard]] QJsonObject ready() const { return myReady; }

    /// The port of "http", "proxy", "socks" or "control"; 0 when the service has none.
    [[nodiscard]] quint16 port(const QString& theName) const;

    /// An address on the plain port.
    [[nodiscard]] QUrl http(const QString& thePathAndQuery) const;

    /// An address on the TLS port whose certificate is "trusted", "unknownCa", "expired",
    /// "notYet" or "wrongHost".
    [[nodiscard]] QUrl https(const QString& theCertificate, const QString& thePathAndQuery) const;

    /// What the user typed as an address: a path means the service, anything else is taken as it
    /// is. An invalid address with errorText() when the service is needed and not there.
    [[nodiscard]] QUrl address(const QString& theText);

private:
    bool startProcess();
    bool readReadyFile();
    bool acceptReady(const QByteArray& theJson, const QString& theSource);
    bool fail(const QString& theText);
    void trustCertificateAuthority() const;

    QString myMode;
    QString myErrorText;
    QJsonObject myReady;
    QProcess myProcess;
};
