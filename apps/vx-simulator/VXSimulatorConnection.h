#pragma once

#include "VXSimulatorBudget.h"
#include "VXSimulatorRequestParser.h"
#include "VXSimulatorResponse.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class QTcpSocket;
class VXSimulatorListener;
class VXSimulatorPatience;

/// One client of a listener: reads requests one after the other, has each answered and writes
/// the answer with its speed and its faults. It deletes itself when the client has left.
class VXSimulatorConnection : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorConnection)

public:
    /// Takes over the socket. The listener owns the connection.
    VXSimulatorConnection(QTcpSocket* theSocket, VXSimulatorListener* theListener);
    ~VXSimulatorConnection() override;

private:
    void readMore();
    void answer();
    void refuse(int theStatus);
    void begin();
    void pump();
    void pumpSlowly();
    void writePiece(qint64 theCount);
    void finish();
    void finishFault();
    void resetWhenDrained();
    void nextRequest();
    [[nodiscard]] qint64 pendingBytes() const;

    VXSimulatorListener* myListener = nullptr; // parent
    QTcpSocket* mySocket = nullptr;            // child of this
    VXSimulatorPatience* myPatience = nullptr; // child of the socket
    VXSimulatorBudget::Share myShare;          // of the memory for bodies
    QByteArray myInput;
    VXSimulatorRequestParser myParser;
    VXSimulatorResponse myResponse;
    QTimer myPace; // next piece of a slow body; drained yet?
    QElapsedTimer myClock;
    qint64 mySent = 0;     // bytes of the body written so far
    qint64 myGoal = 0;     // bytes of the body to write
    bool myIsBusy = false; // between a request and the end of its answer
    bool myIsWriting = false;
    bool myHasContinued = false;
    bool myIsClosing = false;
    bool myIsRefusing = false; // the client may still be sending what nobody will read
};
