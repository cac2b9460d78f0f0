#include "VXSimulatorTunnel.h"

#include <QtNetwork/QTcpSocket>

namespace {

constexpr qint64 readAtOnce = 1024 * 1024;
constexpr qint64 writeAhead = 256 * 1024;
constexpr qint64 pieceSize = 64 * 1024;

void carry(QTcpSocket* theFrom, QTcpSocket* theTo)
{
    while (theFrom->bytesAvailable() > 0 && theTo->bytesToWrite() < writeAhead)
        theTo->write(theFrom->read(pieceSize));
}

} // namespace

VXSimulatorTunnel::VXSimulatorTunnel(QTcpSocket* theClient, QTcpSocket* theServer,
                                     QObject* theParent)
    : QObject(theParent)
{
    join(theClient, theServer);
    join(theServer, theClient);
    carry(theClient, theServer);
    carry(theServer, theClient);
}

void VXSimulatorTunnel::join(QTcpSocket* theFrom, QTcpSocket* theTo)
{
    theFrom->setReadBufferSize(readAtOnce);
    connect(theFrom, &QTcpSocket::readyRead, this, [theFrom, theTo] { carry(theFrom, theTo); });
    connect(theTo, &QTcpSocket::bytesWritten, this, [theFrom, theTo] { carry(theFrom, theTo); });
    connect(theFrom, &QTcpSocket::disconnected, this,
            [this, theFrom, theTo] { end(theFrom, theTo); });
}

void VXSimulatorTunnel::end(QTcpSocket* theFrom, QTcpSocket* theTo)
{
    if (theTo->state() == QAbstractSocket::UnconnectedState) {
        Q_EMIT finished();
        return;
    }
    if (theFrom->bytesAvailable() > 0)
        theTo->write(theFrom->readAll());
    theTo->disconnectFromHost();
}
