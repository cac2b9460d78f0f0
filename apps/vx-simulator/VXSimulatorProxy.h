#pragma once

#include "VXSimulatorBudget.h"
#include "VXSimulatorRequestParser.h"

#include <QtCore/QObject>

class QTcpSocket;
class VXSimulatorGate;

/// One client of the HTTP proxy: forwards requests in absolute form and opens CONNECT tunnels,
/// with Basic authentication when a password is set (RFC 9110, 9.3.6 and 11.7).
///
/// A forwarded request keeps its headers; "Via" and "Connection: close" are added at the end, and
/// the connection to the client ends with the answer.
class VXSimulatorProxy : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorProxy)

public:
    /// Takes over the socket. The gate owns the client, which deletes itself.
    VXSimulatorProxy(QTcpSocket* theSocket, VXSimulatorGate* theGate);

private:
    void readMore();
    void handle(const VXSimulatorRequest& theRequest);
    [[nodiscard]] bool isAdmitted(const VXSimulatorRequest& theRequest) const;
    void refuse(const VXSimulatorRequest& theRequest, int theStatus);
    void connectTo(const VXSimulatorRequest& theRequest, const QString& theHost, int thePort);
    void start(const VXSimulatorRequest& theRequest);
    [[nodiscard]] static QByteArray forwarded(const VXSimulatorRequest& theRequest);

    VXSimulatorGate* myGate = nullptr; // parent
    QTcpSocket* myClient = nullptr;    // child of this
    QTcpSocket* myServer = nullptr;    // child of this, once there is a target
    VXSimulatorBudget::Share myShare;  // of the memory for bodies, until the client ends
    VXSimulatorRequestParser myParser;
    QByteArray myInput;
    bool myHasContinued = false;
    bool myIsClosing = false;
};
