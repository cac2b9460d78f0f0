#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

class QTcpSocket;

/// Cuts a connection on which nothing moves, in either direction.
class VXSimulatorPatience : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorPatience)

public:
    /// Begins to wait. The socket owns this object.
    VXSimulatorPatience(QTcpSocket* theSocket, std::chrono::milliseconds theIdle);

    /// Waits for ever, for instance while it is us who lets the client wait.
    void pause();
    /// Begins to wait anew.
    void resume();

private:
    void restart();

    QTimer myTimer;
    bool myIsPaused = false;
};
