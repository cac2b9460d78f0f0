#pragma once

#include "VXSimulatorBudget.h"
#include "VXSimulatorLimits.h"
#include "VXSimulatorResponse.h"

#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QTcpServer>

class QSslSocket;

/// One HTTP or HTTPS port. Answers come from a handler function.
class VXSimulatorListener : public QTcpServer
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorListener)

public:
    using Handler = std::function<VXSimulatorResponse(const VXSimulatorRequest&)>;

    /// A plain port; the name stands in the records. The budget, which is for unfinished request
    /// bodies, must outlive this object.
    VXSimulatorListener(const QString& theName, Handler theHandler,
                        const VXSimulatorLimits& theLimits, VXSimulatorBudget& theBudget,
                        QObject* theParent);
    /// Makes it a TLS port. Then each connection carries one request, so that each request has a
    /// handshake of its own, and no handshake is shortened by an earlier one.
    void setTls(const QSslConfiguration& theConfiguration);

    [[nodiscard]] QString name() const { return objectName(); }
    [[nodiscard]] VXSimulatorResponse answer(const VXSimulatorRequest& theRequest) const;
    [[nodiscard]] bool isClosingAlways() const { return myTls.has_value(); }
    [[nodiscard]] const VXSimulatorLimits& limits() const { return myLimits; }
    [[nodiscard]] VXSimulatorBudget& budget() const { return myBudget; }
    [[nodiscard]] int completedHandshakes() const { return myCompletedHandshakes; }
    [[nodiscard]] int failedHandshakes() const { return myFailedHandshakes; }

protected:
    void incomingConnection(qintptr theDescriptor) override;

private:
    void startTls(QSslSocket* theSocket);

    Handler myHandler;
    VXSimulatorLimits myLimits;
    VXSimulatorBudget& myBudget;
    std::optional<QSslConfiguration> myTls;
    int myConnections = 0;
    int myCompletedHandshakes = 0;
    int myFailedHandshakes = 0;
};
