#include "VXTlsPeer.h"

#include <QtCore/QEventLoop>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslSocket>

#include <sys/socket.h>

namespace {

constexpr int patienceMs = 5000;

class TlsChannel final : public VXPeerChannel
{
    Q_DISABLE_COPY_MOVE(TlsChannel)

public:
    TlsChannel(int theDescriptor, const QSslConfiguration& theConfiguration)
        : myDescriptor(theDescriptor)
    {
        mySocket.setSslConfiguration(theConfiguration);
    }
    ~TlsChannel() override = default;

    bool open() override
    {
        if (!mySocket.setSocketDescriptor(myDescriptor))
            return false;
        mySocket.startServerEncryption();
        return mySocket.waitForEncrypted(patienceMs);
    }

    Outcome read(QByteArray& theBuffer, std::chrono::milliseconds theTime) override
    {
        if (mySocket.bytesAvailable() == 0)
            mySocket.waitForReadyRead(static_cast<int>(theTime.count()));
        const QByteArray part = mySocket.readAll();
        theBuffer += part;
        if (!part.isEmpty())
            return Outcome::Data;
        const bool isOpen = mySocket.state() == QAbstractSocket::ConnectedState;
        return isOpen ? Outcome::TimedOut : Outcome::Ended;
    }

    bool write(const QByteArray& theBytes) override
    {
        mySocket.write(theBytes);
        while (mySocket.bytesToWrite() > 0 || mySocket.encryptedBytesToWrite() > 0) {
            if (!mySocket.waitForBytesWritten(patienceMs))
                return false;
        }
        return true;
    }

    void close() override
    {
        mySocket.disconnectFromHost();
        if (mySocket.state() != QAbstractSocket::UnconnectedState)
            mySocket.waitForDisconnected(patienceMs);
    }

    void reset() override
    {
        const linger abortively{1, 0};
        ::setsockopt(myDescriptor, SOL_SOCKET, SO_LINGER, &abortively, sizeof abortively);
        mySocket.abort();
    }

private:
    QEventLoop myDispatcher; // gives this thread the event dispatcher that sockets need
    QSslSocket mySocket;
    int myDescriptor;
};

QSslConfiguration serverConfiguration(const VXTestCertificates::Identity& theIdentity,
                                      const QList<QByteArray>& theProtocols)
{
    QSslConfiguration configuration;
    configuration.setLocalCertificate(theIdentity.certificate);
    configuration.setPrivateKey(theIdentity.key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setAllowedNextProtocols(theProtocols);
    return configuration;
}

} // namespace

VXTlsPeer::VXTlsPeer(const VXTestCertificates::Identity& theIdentity,
                     const QList<QByteArray>& theProtocols)
    : VXRawPeer([configuration = serverConfiguration(theIdentity, theProtocols)](
                    int theDescriptor) -> std::unique_ptr<VXPeerChannel> {
        return std::make_unique<TlsChannel>(theDescriptor, configuration);
    })
{
}

VXTlsPeer::~VXTlsPeer()
{
    stop();
}

QUrl VXTlsPeer::url(const QString& thePath) const
{
    return QUrl(QStringLiteral("https://127.0.0.1:%1").arg(port()) + thePath);
}
