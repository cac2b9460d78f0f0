#include "VXSimulatorSocks.h"

#include "VXSimulatorFarewell.h"
#include "VXSimulatorGate.h"
#include "VXSimulatorPatience.h"
#include "VXSimulatorState.h"
#include "VXSimulatorTunnel.h"

#include <QtCore/QtEndian>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

constexpr char version = 5;
constexpr char passwordVersion = 1; // of the messages with user and password (RFC 1929)
constexpr char connectCommand = 1;
constexpr char noPassword = 0;
constexpr char userAndPassword = 2;
constexpr char noMethod = '\xff';

/// Reply codes (RFC 1928, 6).
enum Code : char
{
    Succeeded = 0,
    NotAllowed = 2,
    ConnectionRefused = 5,
    CommandNotSupported = 7,
    AddressNotSupported = 8
};

/// Kinds of addresses (RFC 1928, 5).
enum AddressKind : char
{
    IPv4 = 1,
    Name = 3,
    IPv6 = 4
};

QByteArray bytes(std::initializer_list<char> theBytes)
{
    return QByteArray(theBytes.begin(), qsizetype(theBytes.size()));
}

constexpr qsizetype largestInput = 1024; // more than any message before the tunnel

} // namespace

VXSimulatorSocks::VXSimulatorSocks(QTcpSocket* theSocket, VXSimulatorGate* theGate)
    : QObject(theGate)
    , myGate(theGate)
    , myClient(theSocket)
{
    myClient->setParent(this);
    myClient->setReadBufferSize(largestInput);                // the tunnel takes more
    new VXSimulatorPatience(myClient, myGate->limits().idle); // child of the socket
    myRequest.method = "CONNECT";
    myRequest.version = "SOCKS5";
    connect(myClient, &QTcpSocket::readyRead, this, &VXSimulatorSocks::readMore);
    connect(myClient, &QTcpSocket::disconnected, this, [this] {
        if (!myServer)
            deleteLater();
    });
}

void VXSimulatorSocks::readMore()
{
    if (myState == State::Connecting || myState == State::Closing)
        return;
    do
        myInput += myClient->read(largestInput - myInput.size());
    while (step());
    if (myState < State::Connecting && myInput.size() >= largestInput)
        hangUp({});
}

bool VXSimulatorSocks::step()
{
    switch (myState) {
    case State::Greeting:
        return readGreeting();
    case State::Password:
        return readPassword();
    case State::Request:
        return readRequest();
    default:
        return false;
    }
}

bool VXSimulatorSocks::readGreeting()
{
    if (!myInput.isEmpty() && myInput.at(0) != version) {
        hangUp({});
        return false;
    }
    if (myInput.size() < 2 || myInput.size() < 2 + quint8(myInput.at(1)))
        return false;
    const QByteArray methods = myInput.sliced(2, quint8(myInput.at(1)));
    myInput.remove(0, 2 + methods.size());
    const char wanted = myGate->state().socksCredentials() ? userAndPassword : noPassword;
    if (!methods.contains(wanted)) {
        myGate->record(myRequest, myClient, noMethod & 0xff);
        hangUp(bytes({version, noMethod}));
        return false;
    }
    myClient->write(bytes({version, wanted}));
    myState = wanted == userAndPassword ? State::Password : State::Request;
    return true;
}

bool VXSimulatorSocks::readPassword()
{
    if (!myInput.isEmpty() && myInput.at(0) != passwordVersion) {
        hangUp({});
        return false;
    }
    const auto lengthAt = [this](qsizetype theIndex) -> qsizetype {
        return theIndex < myInput.size() ? quint8(myInput.at(theIndex)) : largestInput;
    };
    const qsizetype userLength = lengthAt(1);
    const qsizetype passwordLength = lengthAt(2 + userLength);
    if (myInput.size() < 3 + userLength + passwordLength)
        return false;
    const QString user = QString::fromUtf8(myInput.sliced(2, userLength));
    const QString password = QString::fromUtf8(myInput.sliced(3 + userLength, passwordLength));
    myInput.remove(0, 3 + userLength + passwordLength);
    const auto wanted = myGate->state().socksCredentials();
    if (wanted && (user != wanted->user || password != wanted->password)) {
        myGate->record(myRequest, myClient, 1);
        hangUp(bytes({passwordVersion, 1}));
        return false;
    }
    myClient->write(bytes({passwordVersion, 0}));
    myState = State::Request;
    return true;
}

bool VXSimulatorSocks::readRequest()
{
    if (!myInput.isEmpty() && myInput.at(0) != version) {
        hangUp({});
        return false;
    }
    if (myInput.size() < 5)
        return false;
    const char kind = myInput.at(3);
    if (kind != IPv4 && kind != IPv6 && kind != Name) {
        reply(AddressNotSupported); // nor is it known how long the address is
        return false;
    }
    const qsizetype addressLength = kind == IPv4   ? 4
                                    : kind == IPv6 ? 16
                                                   : 1 + quint8(myInput.at(4));
    const qsizetype size = 4 + addressLength + 2;
    if (myInput.size() < size)
        return false;
    const QByteArray address = myInput.sliced(4, addressLength);
    const auto port = qFromBigEndian<quint16>(myInput.constData() + 4 + addressLength);
    QString host;
    if (kind == IPv4)
        host = QHostAddress(qFromBigEndian<quint32>(address.constData())).toString();
    else if (kind == IPv6)
        host = QHostAddress(reinterpret_cast<const quint8*>(address.constData())).toString();
    else
        host = QString::fromUtf8(address.sliced(1));
    const bool isConnect = myInput.at(1) == connectCommand;
    myInput.remove(0, size);
    myRequest.target = host.toUtf8() + ':' + QByteArray::number(port);
    if (!isConnect)
        reply(CommandNotSupported);
    else
        connectTo(host, port);
    return false;
}

void VXSimulatorSocks::connectTo(const QString& theHost, quint16 thePort)
{
    const auto target = myGate->targets().find(theHost, thePort);
    if (!target)
        return reply(NotAllowed);
    myState = State::Connecting;
    myServer = new QTcpSocket(this);
    myServer->setProxy(QNetworkProxy::NoProxy);
    new VXSimulatorPatience(myServer, myGate->limits().idle); // child of the socket
    const auto failed = connect(myServer, &QTcpSocket::errorOccurred, this, [this] {
        myServer->deleteLater();
        myServer = nullptr;
        reply(ConnectionRefused);
    });
    connect(myServer, &QTcpSocket::connected, this, [this, failed] {
        disconnect(failed);
        start();
    });
    myServer->connectToHost(target->address, target->port);
}

void VXSimulatorSocks::start()
{
    if (myClient->state() != QAbstractSocket::ConnectedState)
        return deleteLater();
    reply(Succeeded);
    myServer->write(myInput);
    auto* tunnel = new VXSimulatorTunnel(myClient, myServer, this);
    connect(tunnel, &VXSimulatorTunnel::finished, this, &QObject::deleteLater);
}

void VXSimulatorSocks::reply(char theCode)
{
    myGate->record(myRequest, myClient, theCode);
    const QByteArray answer = bytes({version, theCode, 0, IPv4}) + QByteArray(6, '\0');
    if (theCode == Succeeded)
        myClient->write(answer);
    else
        hangUp(answer);
}

void VXSimulatorSocks::hangUp(const QByteArray& theAnswer)
{
    myState = State::Closing;
    if (myClient->state() != QAbstractSocket::ConnectedState)
        return deleteLater(); // it left while its target was being called
    myClient->write(theAnswer);
    new VXSimulatorFarewell(myClient); // child of the socket
}
