#pragma once

#include "VXSimulatorRequest.h"

/// Reads HTTP/1.x requests (RFC 9112) from pieces of a byte stream. It touches no socket.
/// Every size is bounded, and whatever is malformed ends in a status to refuse it with.
class VXSimulatorRequestParser
{
public:
    /// Most bytes of the request line and all headers together.
    static constexpr qsizetype maximumHeadBytes = 64 * 1024;
    /// Most header lines.
    static constexpr qsizetype maximumHeaders = 500;
    /// Most bytes of a body.
    static constexpr qint64 maximumBodyBytes = 256LL * 1024 * 1024;

    /// How far the current request has been read.
    enum class State
    {
        RequestLine,
        Headers,
        Body,
        ChunkSize,
        ChunkData,
        ChunkEnd,
        Trailers,
        Complete,
        Failed
    };

    /// Takes from the front of the input what belongs to the current request and leaves the rest.
    State feed(QByteArray& theInput);
    [[nodiscard]] State state() const noexcept { return myState; }
    /// Whether nothing of a request was seen yet.
    [[nodiscard]] bool isIdle() const noexcept;
    /// Whether the client waits for "100 Continue" (RFC 9110, 10.1.1).
    [[nodiscard]] bool expectsContinue() const;
    /// HTTP status that refuses a failed request.
    [[nodiscard]] int refusal() const noexcept { return myRefusal; }
    /// Bytes of the body held now.
    [[nodiscard]] qint64 bodyBytes() const noexcept { return myRequest.body.size(); }
    /// The request read so far.
    [[nodiscard]] const VXSimulatorRequest& request() const noexcept { return myRequest; }
    /// Hands the request out and begins the next one.
    [[nodiscard]] VXSimulatorRequest take();

private:
    bool step(QByteArray& theInput);
    bool takeLine(QByteArray& theInput, QByteArray* theLine);
    bool takeBody(QByteArray& theInput);
    void readLine(const QByteArray& theLine);
    void readRequestLine(const QByteArray& theLine);
    void readHeader(const QByteArray& theLine);
    void readChunkSize(const QByteArray& theLine);
    void chooseFraming();
    void fail(int theStatus);

    State myState = State::RequestLine;
    VXSimulatorRequest myRequest;
    qsizetype myHeadBytes = 0; // request line, headers, chunk lines and trailers so far
    qint64 myMissing = 0;      // bytes of the body or chunk still to come
    int myRefusal = 0;
};
