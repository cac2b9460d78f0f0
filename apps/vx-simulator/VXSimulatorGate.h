#pragma once

#include "VXSimulatorBudget.h"
#include "VXSimulatorLimits.h"
#include "VXSimulatorRequest.h"
#include "VXSimulatorTargets.h"

#include <QtNetwork/QTcpServer>

#include <functional>

class QTcpSocket;
class VXSimulatorState;

/// What the two proxy ports share: rules, targets, records and the number of clients.
class VXSimulatorGate : public QTcpServer
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorGate)

public:
    /// Told about each request to a proxy: the request and the status of the answer.
    using Recorder = std::function<void(const VXSimulatorRequest&, int)>;
    /// Makes the object that serves a client; it is a child of the gate and deletes itself.
    using Factory = std::function<QObject*(QTcpSocket*, VXSimulatorGate*)>;

    /// State, targets and budget, which is for request bodies, must outlive this object.
    VXSimulatorGate(const QString& theName, Factory theFactory, const VXSimulatorState& theState,
                    const VXSimulatorTargets& theTargets, Recorder theRecorder,
                    const VXSimulatorLimits& theLimits, VXSimulatorBudget& theBudget,
                    QObject* theParent);

    [[nodiscard]] const VXSimulatorState& state() const { return myState; }
    [[nodiscard]] const VXSimulatorTargets& targets() const { return myTargets; }
    [[nodiscard]] const VXSimulatorLimits& limits() const { return myLimits; }
    [[nodiscard]] VXSimulatorBudget& budget() const { return myBudget; }
    /// Records a request under this port's name.
    void record(VXSimulatorRequest theRequest, const QTcpSocket* theClient, int theStatus) const;

protected:
    void incomingConnection(qintptr theDescriptor) override;

private:
    Factory myFactory;
    const VXSimulatorState& myState;
    const VXSimulatorTargets& myTargets;
    Recorder myRecorder;
    VXSimulatorLimits myLimits;
    VXSimulatorBudget& myBudget;
    int myClients = 0;
};
