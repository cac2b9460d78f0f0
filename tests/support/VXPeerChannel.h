#pragma once

#include <QtCore/QByteArray>

#include <chrono>
#include <memory>

/// The server's end of one accepted connection, used blockingly in the thread that opened it.
class VXPeerChannel
{
    Q_DISABLE_COPY_MOVE(VXPeerChannel)

public:
    /// How a read ended.
    enum class Outcome
    {
        Data,
        TimedOut,
        Ended,
    };

    VXPeerChannel() = default;
    virtual ~VXPeerChannel() = default;

    /// Makes the connection usable (a TLS handshake). False when it ended instead.
    virtual bool open() { return true; }
    /// Appends what arrives within the time to theBuffer.
    virtual Outcome read(QByteArray& theBuffer, std::chrono::milliseconds theTime) = 0;
    /// Writes every byte; false when the client is gone.
    virtual bool write(const QByteArray& theBytes) = 0;
    virtual void close() = 0;
    /// Ends the connection with a TCP reset.
    virtual void reset() = 0;

    /// A plain TCP connection; takes the descriptor over.
    static std::unique_ptr<VXPeerChannel> plain(int theDescriptor);
};
