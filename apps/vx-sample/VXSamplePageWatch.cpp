#include "VXSamplePageWatch.h"

#include <QtCore/QEventLoop>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

namespace {

constexpr std::chrono::seconds longestWait{3};
constexpr std::chrono::seconds quietTime{1};

} // namespace

VXSamplePageWatch::VXSamplePageWatch(QObject& theServers)
    : myServers(theServers)
    , myDeadline(longestWait)
{
    myQuiet.setSingleShot(true);
    myQuiet.start(quietTime);
    for (const QTcpServer* const server : myServers.findChildren<QTcpServer*>())
        connect(server, &QTcpServer::newConnection, this, &VXSamplePageWatch::watchSockets);
    watchSockets();
}

void VXSamplePageWatch::watchSockets()
{
    for (const QTcpSocket* const socket : myServers.findChildren<QTcpSocket*>()) {
        disconnect(socket, &QTcpSocket::bytesWritten, this, nullptr);
        connect(socket, &QTcpSocket::bytesWritten, this, [this] { myQuiet.start(); });
    }
}

void VXSamplePageWatch::wait()
{
    QEventLoop loop;
    connect(&myQuiet, &QTimer::timeout, &loop, &QEventLoop::quit);
    QTimer::singleShot(static_cast<int>(myDeadline.remainingTime()), &loop, &QEventLoop::quit);
    if (myQuiet.isActive())
        loop.exec();
}
