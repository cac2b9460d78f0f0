#include "VXSimulatorPatience.h"

#include <QtNetwork/QTcpSocket>

VXSimulatorPatience::VXSimulatorPatience(QTcpSocket* theSocket, std::chrono::milliseconds theIdle)
    : QObject(theSocket)
{
    myTimer.setSingleShot(true);
    myTimer.setInterval(theIdle);
    connect(&myTimer, &QTimer::timeout, theSocket, &QTcpSocket::abort);
    connect(theSocket, &QTcpSocket::readyRead, this, &VXSimulatorPatience::restart);
    connect(theSocket, &QTcpSocket::bytesWritten, this, &VXSimulatorPatience::restart);
    myTimer.start();
}

void VXSimulatorPatience::pause()
{
    myIsPaused = true;
    myTimer.stop();
}

void VXSimulatorPatience::resume()
{
    myIsPaused = false;
    myTimer.start();
}

void VXSimulatorPatience::restart()
{
    if (!myIsPaused)
        myTimer.start();
}
