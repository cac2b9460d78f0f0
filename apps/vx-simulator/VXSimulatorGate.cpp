#include "VXSimulatorGate.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

#include <utility>

VXSimulatorGate::VXSimulatorGate(const QString& theName, Factory theFactory,
                                 const VXSimulatorState& theState,
                                 const VXSimulatorTargets& theTargets, Recorder theRecorder,
                                 const VXSimulatorLimits& theLimits, VXSimulatorBudget& theBudget,
                                 QObject* theParent)
    : QTcpServer(theParent)
    , myFactory(std::move(theFactory))
    , myState(theState)
    , myTargets(theTargets)
    , myRecorder(std::move(theRecorder))
    , myLimits(theLimits)
    , myBudget(theBudget)
{
    setObjectName(theName);
    setProxy(QNetworkProxy::NoProxy); // a proxy chosen in the same process must not listen for us
}

void VXSimulatorGate::record(VXSimulatorRequest theRequest, const QTcpSocket* theClient,
                             int theStatus) const
{
    theRequest.listener = objectName();
    theRequest.peer =
        theClient->peerAddress().toString() + u':' + QString::number(theClient->peerPort());
    myRecorder(theRequest, theStatus);
}

void VXSimulatorGate::incomingConnection(qintptr theDescriptor)
{
    auto* socket = new QTcpSocket(this);
    if (!socket->setSocketDescriptor(theDescriptor) || myClients >= myLimits.clients) {
        socket->abort();
        delete socket;
        return;
    }
    ++myClients;
    connect(myFactory(socket, this), &QObject::destroyed, this, [this] { --myClients; });
}
