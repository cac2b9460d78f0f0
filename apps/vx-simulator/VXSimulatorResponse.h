#pragma once

#include "VXSimulatorBytes.h"
#include "VXSimulatorRequest.h"

#include <functional>
#include <optional>

class QJsonObject;

/// What a route wants to be answered, faults included. A plain value; reentrant.
struct VXSimulatorResponse
{
    /// What goes wrong on the wire, on purpose.
    enum class Fault
    {
        None,
        Never,   ///< no answer; the connection stays open until the client leaves
        Reset,   ///< a TCP reset after `faultAfter` bytes of the body
        Truncate ///< the connection ends in order after `faultAfter` bytes of the body
    };

    int status = 200;
    VXSimulatorHeaders headers;
    QByteArray body;
    std::optional<VXSimulatorBytes> generated; ///< stands for the body when set
    qint64 bytesPerSecond = 0;                 ///< speed of the body; 0: as fast as it goes
    int delayMs = 0;                           ///< milliseconds before the answer begins
    Fault fault = Fault::None;
    qint64 faultAfter = 0;          ///< bytes of the body before the fault; -1: not even a head
    bool isClosing = false;         ///< end the connection after the answer
    std::function<void()> whenSent; ///< called once when the answer is on the wire

    /// A text answer of the given media type.
    static VXSimulatorResponse text(int theStatus, const QByteArray& theBody,
                                    const QByteArray& theType = "text/plain; charset=utf-8");
    /// A compact JSON answer.
    static VXSimulatorResponse json(const QJsonObject& theObject, int theStatus = 200);
    /// A JSON answer {"error": text}.
    static VXSimulatorResponse error(int theStatus, const QString& theText);

    /// Adds a header line at the end.
    void addHeader(const QByteArray& theName, const QByteArray& theValue);
    /// Bytes that "Content-Length" announces.
    [[nodiscard]] qint64 size() const;
    /// At most theCount bytes of the body from a position on.
    [[nodiscard]] QByteArray read(qint64 thePosition, qint64 theCount) const;
    /// Whether the status forbids a body (RFC 9110, 6.4.1).
    [[nodiscard]] bool isBodyless() const;
    /// Status line and headers, the empty line included.
    [[nodiscard]] QByteArray head() const;
};
