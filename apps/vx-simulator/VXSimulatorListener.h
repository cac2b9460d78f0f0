#pragma once

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

    /// Most clients at a time; who comes then is hung up on.
    static constexpr int maximumConnections = 500;
    /// Most bytes of unfinished request bodies of all clients together.
    static constexpr qint64 maximumHeldBytes = 1024LL * 1024 * 1024;

    /// A plain port; the name stands in the records.
    VXSimulatorListener(const QString& theName, Handler theHandler, QObject* theParent);
    /// Makes it a TLS port. Then each connection carries one request, so that each request has a
    /// handshake of its own, and no handshake is shortened by an earlier one.
    void setTls(const QSslConfiguration& theConfiguration);

    [[nodiscard]] QString name() const { return objectName(); }
    [[nodiscard]] VXSimulatorResponse answer(const VXSimulatorRequest& theRequest) const;
    [[nodiscard]] bool isClosingAlways() const { return myTls.has_value(); }
    /// Counts bytes of bodies in memory; false when there are too many.
    bool hold(qint64 theBytes);
    [[nodiscard]] int completedHandshakes() const { return myCompletedHandshakes; }
    [[nodiscard]] int failedHandshakes() const { return myFailedHandshakes; }

protected:
    void incomingConnection(qintptr theDescriptor) override;

private:
    void startTls(QSslSocket* theSocket);

    Handler myHandler;
    std::optional<QSslConfiguration> myTls;
    qint64 myHeldBytes = 0;
    int myConnections = 0;
    int myCompletedHandshakes = 0;
    int myFailedHandshakes = 0;
};
