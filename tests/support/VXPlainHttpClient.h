#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>

/// Sends the very bytes of a test to an HTTP server and reads one answer at a time over one
/// connection. Runs the event loop meanwhile, so the server may live on the same thread.
class VXPlainHttpClient
{
    Q_DISABLE_COPY_MOVE(VXPlainHttpClient)

public:
    struct Answer
    {
        int status = 0;         // 0: no answer, or the peer hung up
        QByteArrayList headers; // lines as they came
        QByteArray body;

        /// The value of the first header of that name, whatever the case; null when missing.
        [[nodiscard]] QByteArray header(const QByteArray& theName) const;
    };

    /// theSource, unless null, is the local address that the server shall see.
    VXPlainHttpClient(const QHostAddress& theServer, quint16 thePort,
                      const QHostAddress& theSource = QHostAddress());
    ~VXPlainHttpClient();

    /// Sends "<theRequestLine> HTTP/1.1" with Host, theHeaders (whole lines) and, unless empty,
    /// Content-Length and theBody.
    Answer ask(const QByteArray& theRequestLine, const QByteArrayList& theHeaders = {},
               const QByteArray& theBody = {});

    /// Sends theBytes as they are and reads one answer.
    Answer askRaw(const QByteArray& theBytes);

    /// False when the connection could not be made.
    [[nodiscard]] bool isConnected() const { return myIsConnected; }

    QTcpSocket& socket() { return mySocket; }

private:
    QTcpSocket mySocket;
    QByteArray myHost;
    bool myIsConnected = false;
};
