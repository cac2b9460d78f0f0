#include "VXSimulatorFarewell.h"

#include <QtCore/QTimer>
#include <QtNetwork/QSslSocket>

#include <sys/socket.h>

using namespace std::chrono_literals;

namespace {

constexpr auto longest = 2s;

} // namespace

VXSimulatorFarewell::VXSimulatorFarewell(QTcpSocket* theSocket)
    : QObject(theSocket)
    , mySocket(theSocket)
{
    if (qobject_cast<QSslSocket*>(mySocket)) { // it has a farewell of its own to send
        mySocket->disconnectFromHost();
        return;
    }
    connect(mySocket, &QTcpSocket::readyRead, this, &VXSimulatorFarewell::swallow);
    connect(mySocket, &QTcpSocket::bytesWritten, this, &VXSimulatorFarewell::endWriting);
    QTimer::singleShot(longest, mySocket, &QTcpSocket::abort);
    swallow();
    endWriting();
}

void VXSimulatorFarewell::swallow()
{
    mySocket->skip(mySocket->bytesAvailable());
}

void VXSimulatorFarewell::endWriting()
{
    if (mySocket->bytesToWrite() == 0)
        ::shutdown(static_cast<int>(mySocket->socketDescriptor()), SHUT_WR);
}
