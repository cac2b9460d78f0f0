#pragma once

#include <QtCore/QByteArray>

/// A phone's TCP connection, used blockingly in a thread of its own. It lies in the phone's network
/// namespace, so the server sees the phone's address.
class VXPhoneSocket
{
    Q_DISABLE_COPY(VXPhoneSocket)

public:
    /// Brings the calling thread into the network of a phone, from 1, for the rest of its life.
    /// False without the right.
    [[nodiscard]] static bool enterNetwork(int thePhone);

    /// Connects; see isOpen(). An answer that takes longer than ten seconds counts as none.
    VXPhoneSocket(const QByteArray& theAddress, quint16 thePort);
    VXPhoneSocket(VXPhoneSocket&& theOther) noexcept;
    ~VXPhoneSocket();

    [[nodiscard]] bool isOpen() const { return myDescriptor >= 0; }
    bool send(const QByteArray& theBytes);

    /// The next answer with its body; empty when the connection ended or nothing came.
    QByteArray answer();

    /// Sends a GET, or a POST when there is a body, and returns the answer.
    QByteArray ask(const QByteArray& theTarget, const QByteArray& theHeaders = {},
                   const QByteArray& theBody = {});

    /// The status of an answer, 0 of none.
    [[nodiscard]] static int status(const QByteArray& theAnswer);

private:
    bool receive();

    int myDescriptor = -1;
    QByteArray myBuffer; // what came and belongs to later answers
};
