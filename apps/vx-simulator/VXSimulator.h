#pragma once

#include "VXSimulatorBudget.h"
#include "VXSimulatorControl.h"
#include "VXSimulatorHttp.h"
#include "VXSimulatorLimits.h"
#include "VXSimulatorOAuth.h"
#include "VXSimulatorOrders.h"
#include "VXSimulatorRecorder.h"
#include "VXSimulatorState.h"
#include "VXSimulatorTargets.h"

#include <QtCore/QObject>
#include <QtCore/QTemporaryDir>

#include <memory>

class QTcpServer;
class VXSimulatorCertificates;
class VXSimulatorListener;

/// The whole service on its ports. Use it in the thread that made it, which needs an event loop;
/// a test may give it a thread of its own.
class VXSimulator : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulator)

public:
    /// Where to listen. Port 0: the system picks one.
    struct Setup
    {
        QHostAddress bind = QHostAddress(QHostAddress::LocalHost);
        quint16 http = 0;
        quint16 https = 0; ///< of the trusted certificate; the others are always picked
        quint16 proxy = 0;
        quint16 socks = 0;
        quint16 control = 0;
        QString certificates; ///< folder; empty: a temporary one
        VXSimulatorLimits limits;
    };

    explicit VXSimulator(QObject* theParent = nullptr);
    ~VXSimulator() override;

    /// Applies the scenario. Gives an error text, or an empty one.
    [[nodiscard]] QString applyScenario(const QJsonObject& theObject);
    /// Makes certificates where there are none and opens all ports. Gives an error text, or an
    /// empty one. Call it once.
    [[nodiscard]] QString start(const Setup& theSetup);
    /// The object with "event" "ready", all ports, "caFile" and "pid".
    [[nodiscard]] QJsonObject readyObject() const { return myReady; }

Q_SIGNALS:
    /// A request came in; the line is for people.
    void requestServed(const QString& theLine);
    /// The control port asks to end.
    void quitRequested();

private:
    void fillRoutes();
    [[nodiscard]] VXSimulatorResponse serve(const VXSimulatorRequest& theRequest);
    [[nodiscard]] VXSimulatorResponse routed(const VXSimulatorRequest& theRequest);
    void record(const VXSimulatorRequest& theRequest, int theStatus);
    [[nodiscard]] QString openTls(const Setup& theSetup,
                                  const VXSimulatorCertificates& theCertificates);
    [[nodiscard]] QString open(QTcpServer* theServer, quint16 thePort, QJsonObject& theReady);
    [[nodiscard]] QJsonObject handshakes() const;
    [[nodiscard]] QString openProxies(const Setup& theSetup);

    VXSimulatorState myState;
    VXSimulatorRecorder myRecorder;
    VXSimulatorHttp myHttp{myState};
    VXSimulatorOrders myOrders{myState};
    VXSimulatorOAuth myOAuth{myState};
    VXSimulatorControl myControl;
    VXSimulatorRouter myRouter;
    VXSimulatorRouter myControlRouter;
    std::unique_ptr<VXSimulatorTargets> myTargets;
    std::unique_ptr<VXSimulatorBudget> myBudget;
    QTemporaryDir myCertificates;
    QList<VXSimulatorListener*> myTlsListeners; // children of this
    QJsonObject myReady;
    QHostAddress myBind;
};
