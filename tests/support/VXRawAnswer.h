#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <chrono>

/// What VXRawPeer does with one request: a list of steps, done in order. After the last one the
/// connection stays open for the next request, unless a step ended it.
class VXRawAnswer
{
public:
    enum class Kind
    {
        Send,  // write the bytes
        Pause, // wait for the duration
        Close, // end the connection in order (FIN)
        Reset, // end it with a TCP reset
        Stall, // keep it open and silent until the client or the peer ends
    };
    struct Step
    {
        Kind kind;
        QByteArray bytes;
        std::chrono::milliseconds duration{0};
    };

    /// An HTTP/1.1 answer. Header lines stand without CR LF, for example "Date: x". It gets a
    /// Content-Length, except with 1xx, 204, 304 or when a line of that name is given.
    static VXRawAnswer http(int theStatus, const QByteArray& theBody = {},
                            const QList<QByteArray>& theHeaderLines = {});

    VXRawAnswer& send(const QByteArray& theBytes);
    VXRawAnswer& pause(std::chrono::milliseconds theDuration);
    VXRawAnswer& close();
    VXRawAnswer& reset();
    VXRawAnswer& stall();

    [[nodiscard]] const QList<Step>& steps() const { return mySteps; }

private:
    VXRawAnswer& add(Kind theKind, const QByteArray& theBytes = {},
                     std::chrono::milliseconds theDuration = {});

    QList<Step> mySteps;
};
