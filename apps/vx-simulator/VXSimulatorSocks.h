#pragma once

#include "VXSimulatorRequest.h"

#include <QtCore/QObject>

class QTcpSocket;
class VXSimulatorGate;

/// One client of the SOCKS5 proxy (RFC 1928), with user and password when they are set
/// (RFC 1929). Only CONNECT is admitted.
class VXSimulatorSocks : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorSocks)

public:
    /// Takes over the socket. The gate owns the client, which deletes itself.
    VXSimulatorSocks(QTcpSocket* theSocket, VXSimulatorGate* theGate);

private:
    enum class State
    {
        Greeting,
        Password,
        Request,
        Connecting,
        Closing
    };
    void readMore();
    bool step();
    bool readGreeting();
    bool readPassword();
    bool readRequest();
    void connectTo(const QString& theHost, quint16 thePort);
    void start();
    void reply(char theCode);
    void hangUp(const QByteArray& theAnswer);

    VXSimulatorGate* myGate = nullptr; // parent
    QTcpSocket* myClient = nullptr;    // child of this
    QTcpSocket* myServer = nullptr;    // child of this, once there is a target
    State myState = State::Greeting;
    VXSimulatorRequest myRequest; // for the record
    QByteArray myInput;
};
