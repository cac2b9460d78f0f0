#include "VXSimulatorListener.h"

#include "VXSimulatorConnection.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QSslSocket>
#include <QtNetwork/QTcpSocket>

#include <utility>

VXSimulatorListener::VXSimulatorListener(const QString& theName, Handler theHandler,
                                         const VXSimulatorLimits& theLimits,
                                         VXSimulatorBudget& theBudget, QObject* theParent)
    : QTcpServer(theParent)
    , myHandler(std::move(theHandler))
    , myLimits(theLimits)
    , myBudget(theBudget)
{
    setObjectName(theName);
    setProxy(QNetworkProxy::NoProxy); // a proxy chosen in the same process must not listen for us
}

void VXSimulatorListener::setTls(const QSslConfiguration& theConfiguration)
{
    myTls = theConfiguration;
}

VXSimulatorResponse VXSimulatorListener::answer(const VXSimulatorRequest& theRequest) const
{
    return myHandler(theRequest);
}

void VXSimulatorListener::incomingConnection(qintptr theDescriptor)
{
    QTcpSocket* socket = myTls ? new QSslSocket(this) : new QTcpSocket(this);
    if (!socket->setSocketDescriptor(theDescriptor) || myConnections >= myLimits.clients) {
        socket->abort();
        delete socket;
        return;
    }
    auto* connection = new VXSimulatorConnection(socket, this); // deletes itself
    ++myConnections;
    connect(connection, &QObject::destroyed, this, [this] { --myConnections; });
    if (myTls)
        startTls(qobject_cast<QSslSocket*>(socket));
}

void VXSimulatorListener::startTls(QSslSocket* theSocket)
{
    const auto failed =
        connect(theSocket, &QSslSocket::disconnected, this, [this] { ++myFailedHandshakes; });
    connect(theSocket, &QSslSocket::encrypted, this, [this, failed] {
        disconnect(failed);
        ++myCompletedHandshakes;
    });
    theSocket->setSslConfiguration(*myTls);
    theSocket->startServerEncryption();
}
