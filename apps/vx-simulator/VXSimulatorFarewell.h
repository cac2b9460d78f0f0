#pragma once

#include <QtCore/QObject>

class QTcpSocket;

/// Ends a connection whose client may still be sending. Closing at once would make the kernel
/// reset it because of what is unread, and the client could lose the answer; so what still comes
/// is read and forgotten until the client ends, too (RFC 9112, 9.6), two seconds at most.
class VXSimulatorFarewell : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorFarewell)

public:
    /// What was written is still sent. The socket owns this object and emits disconnected().
    explicit VXSimulatorFarewell(QTcpSocket* theSocket);

private:
    void swallow();
    void endWriting();

    QTcpSocket* mySocket = nullptr; // parent
};
