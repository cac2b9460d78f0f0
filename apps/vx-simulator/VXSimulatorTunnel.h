#pragma once

#include <QtCore/QObject>

class QTcpSocket;

/// Carries bytes between two connected sockets until one of them ends; then the other one gets
/// the rest and ends, too. Of a fast sender no more is read than the receiver takes.
class VXSimulatorTunnel : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorTunnel)

public:
    /// The sockets must outlive the tunnel.
    VXSimulatorTunnel(QTcpSocket* theClient, QTcpSocket* theServer, QObject* theParent);

Q_SIGNALS:
    /// Both ends are closed.
    void finished();

private:
    void join(QTcpSocket* theFrom, QTcpSocket* theTo);
    void end(QTcpSocket* theFrom, QTcpSocket* theTo);
};
