#pragma once

#include <QtCore/QByteArray>

/// Bytes to a port of the loopback and back, as no proper client would send them.
class VXSimulatorWire
{
public:
    VXSimulatorWire() = delete;

    /// Sends the bytes and gives all that comes until the peer ends the connection. A null array
    /// when there is no connection, or no end within 20 seconds.
    [[nodiscard]] static QByteArray exchange(int thePort, const QByteArray& theBytes);

    /// Sends the bytes and leaves without waiting for an answer.
    static void leave(int thePort, const QByteArray& theBytes);

    /// A GET request with the wish that the peer closes.
    [[nodiscard]] static QByteArray get(const QByteArray& theTarget);
};
