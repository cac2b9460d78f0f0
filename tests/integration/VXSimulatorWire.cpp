#include "VXSimulatorWire.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

namespace {

constexpr int longestMilliseconds = 20'000;

bool send(QTcpSocket& theSocket, int thePort, const QByteArray& theBytes)
{
    theSocket.setProxy(QNetworkProxy::NoProxy);
    theSocket.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(thePort));
    if (!theSocket.waitForConnected(longestMilliseconds))
        return false;
    theSocket.write(theBytes);
    return true;
}

} // namespace

QByteArray VXSimulatorWire::exchange(int thePort, const QByteArray& theBytes)
{
    QTcpSocket socket;
    if (!send(socket, thePort, theBytes) || (socket.state() != QAbstractSocket::UnconnectedState &&
                                             !socket.waitForDisconnected(longestMilliseconds)))
        return {};
    const QByteArray answer = socket.readAll();
    return answer.isNull() ? QByteArray("") : answer;
}

void VXSimulatorWire::leave(int thePort, const QByteArray& theBytes)
{
    QTcpSocket socket;
    if (!send(socket, thePort, theBytes))
        return;
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(longestMilliseconds)) {
    }
    socket.disconnectFromHost();
}

QByteArray VXSimulatorWire::get(const QByteArray& theTarget)
{
    return "GET " + theTarget + " HTTP/1.1\r\nHost: service.test\r\nConnection: close\r\n\r\n";
}
