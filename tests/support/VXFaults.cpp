#include "VXFaults.h"

#include <QtCore/QHash>

#include <array>
#include <functional>
#include <limits>

using namespace std::chrono_literals;

namespace {

using Answer = VXRawAnswer;

// Enough for the client to read what came before a reset, on a busy machine too.
constexpr auto moment = 200ms;

const QByteArray okHead = "HTTP/1.1 200 OK\r\n";
const QByteArray lengthHead = okHead + "Content-Length: 100\r\n\r\n";
const QByteArray chunkHead = okHead + "Transfer-Encoding: chunked\r\n\r\n";
const QByteArray openHead = okHead + "\r\n"; // the end of the connection ends the body

/// Of a byte; RFC 1952, 8.
constexpr quint32 crcOf(quint32 theByte)
{
    for (int bit = 0; bit < 8; ++bit)
        theByte = (theByte >> 1) ^ ((theByte & 1U) ? 0xedb88320U : 0U);
    return theByte;
}

quint32 crc32(const QByteArray& theBytes)
{
    static const auto ourTable = [] {
        std::array<quint32, 256> table{};
        for (quint32 byte = 0; byte < table.size(); ++byte)
            table[byte] = crcOf(byte);
        return table;
    }();
    quint32 crc = ~0U;
    for (const char byte : theBytes)
        crc = (crc >> 8) ^ ourTable[(crc ^ static_cast<quint8>(byte)) & 0xffU];
    return ~crc;
}

QByteArray littleEndian(quint32 theNumber)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.append(static_cast<char>(theNumber >> shift));
    return bytes;
}

/// RFC 1952.
QByteArray gzip(const QByteArray& theBytes)
{
    // Qt: 4 bytes of length, 2 of the zlib header; at the end 4 of its check sum
    const QByteArray deflated = qCompress(theBytes).sliced(6).chopped(4);
    return QByteArray::fromHex("1f8b0800000000000003") + deflated + littleEndian(crc32(theBytes)) +
           littleEndian(static_cast<quint32>(theBytes.size()));
}

/// Megabytes of zeros, made once.
const QByteArray& zeros(int theMegabytes)
{
    static const QByteArray ourFew = gzip(QByteArray(5 << 20, '\0'));
    static const QByteArray ourMany = gzip(QByteArray(64 << 20, '\0'));
    return theMegabytes == 5 ? ourFew : ourMany;
}

Answer packed(const QByteArray& theBody)
{
    return Answer::http(200, theBody, {"Content-Encoding: gzip"});
}

Answer drip()
{
    Answer answer = Answer().send(lengthHead);
    for (int i = 0; i < 100; ++i)
        answer.pause(100ms).send("x");
    return answer;
}

Answer endlessHeader()
{
    Answer answer = Answer().send(okHead);
    const QByteArray lines = QByteArray("X-More: " + QByteArray(1000, 'x') + "\r\n").repeated(64);
    for (int i = 0; i < 1000; ++i)
        answer.send(lines).pause(10ms);
    return answer.stall();
}

Answer manyHeaders(int theCount)
{
    QByteArray lines;
    for (int i = 0; i < theCount; ++i)
        lines += "X-" + QByteArray::number(i) + ": value\r\n";
    return Answer().send(okHead + lines + "Content-Length: 2\r\n\r\nok");
}

Answer withHeader(const QByteArray& theLine)
{
    return Answer::http(200, "ok", {theLine});
}

Answer redirect(int theStatus, const QByteArray& theTarget)
{
    return Answer::http(theStatus, {}, {"Location: " + theTarget});
}

/// Asks for a password and is content with "karin" and "geheim" (Basic) only.
Answer login(const VXRawRequest& theRequest, int theStatus, const QByteArray& theChallenge)
{
    const bool isProxy = theStatus == 407;
    const QByteArray given = theRequest.header(isProxy ? "Proxy-Authorization" : "Authorization");
    if (given == "Basic a2FyaW46Z2VoZWlt")
        return Answer::http(200, "ok");
    return Answer::http(theStatus, "who?",
                        {(isProxy ? "Proxy-Authenticate: " : "WWW-Authenticate: ") + theChallenge});
}

const QByteArray basic = R"(Basic realm="r")";
const QByteArray digest = R"(Digest realm="r", nonce="n", qop="auth", algorithm=MD5)";

using Maker = std::function<Answer(const VXRawRequest&)>;

Maker always(const Answer& theAnswer)
{
    return [theAnswer](const VXRawRequest&) { return theAnswer; };
}

const QHash<QByteArray, Maker>& transportFaults()
{
    static const QHash<QByteArray, Maker> ourFaults{
        {"ok", always(Answer::http(200, "ok"))},
        {"late", always(Answer().pause(300ms).send(okHead + "Content-Length: 2\r\n\r\nok"))},
        {"then-close", always(Answer::http(200, "ok").close())},
        {"close-before-answer", always(Answer().close())},
        {"reset-before-answer", always(Answer().reset())},
        {"close-in-body", always(Answer().send(lengthHead + "half").pause(moment).close())},
        {"close-in-body-at-once", always(Answer().send(lengthHead + "half").close())},
        {"reset-in-body", always(Answer().send(lengthHead + "half").pause(moment).reset())},
        {"close-in-chunk", always(Answer().send(chunkHead + "9\r\nhalf").pause(moment).close())},
        {"reset-in-chunk", always(Answer().send(chunkHead + "9\r\nhalf").pause(moment).reset())},
        {"close-after-chunk",
         always(Answer().send(chunkHead + "4\r\nhalf\r\n").pause(moment).close())},
        {"close-without-length", always(Answer().send(openHead + "whole").pause(moment).close())},
        {"reset-without-length", always(Answer().send(openHead + "half").pause(moment).reset())},
        {"stall-before-headers", always(Answer().stall())},
        {"stall-in-headers", always(Answer().send(okHead + "Content-").stall())},
        {"stall-in-body", always(Answer().send(lengthHead + "half").stall())},
        {"slow-drip", always(drip())},
        {"early-413",
         always(Answer()
                    .send("HTTP/1.1 413 Too Large\r\nContent-Length: 9\r\n\r\ntoo large")
                    .stall())},
        {"early-413-close",
         always(Answer()
                    .send("HTTP/1.1 413 Too Large\r\nContent-Length: 9\r\n\r\ntoo large")
                    .close())},
        {"reset-in-upload", always(Answer().reset())},
    };
    return ourFaults;
}

const QHash<QByteArray, Maker>& httpFaults()
{
    static const QHash<QByteArray, Maker> ourFaults{
        {"redirect-loop", always(redirect(302, "/redirect-loop"))},
        {"redirect-to-file", always(redirect(302, "file:///etc/passwd"))},
        {"redirect-to-ftp", always(redirect(302, "ftp://127.0.0.1/"))},
        {"redirect-nowhere", always(Answer::http(302))},
        {"redirect-302", always(redirect(302, "/ok"))},
        {"redirect-307", always(redirect(307, "/ok"))},
        {"empty", always(Answer::http(200))},
        {"status-000", always(Answer().send("HTTP/1.1 000 What\r\nContent-Length: 2\r\n\r\nok"))},
        {"many-100",
         always(Answer().send(QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(2000) + okHead +
                              "Content-Length: 2\r\n\r\nok"))},
        {"gzip-broken", always(packed("this was never compressed"))},
        {"gzip-cut", always(packed(gzip("hello hello hello hello").chopped(12)))},
        {"chunk-not-hex", always(Answer().send(chunkHead + "xyz\r\nabc\r\n0\r\n\r\n"))},
        {"chunk-negative",
         always(Answer().send(chunkHead + "-5\r\nabcde\r\n0\r\n\r\n").pause(moment).close())},
        {"chunk-too-long",
         always(Answer().send(chunkHead + "fffffffffffffffffff\r\nabc\r\n0\r\n\r\n").close())},
        {"two-lengths",
         always(Answer().send(okHead + "Content-Length: 2\r\nContent-Length: 5\r\n\r\nok"))},
        {"length-and-chunks",
         always(Answer().send(okHead + "Content-Length: 50\r\nTransfer-Encoding: chunked\r\n\r\n"
                                       "2\r\nok\r\n0\r\n\r\n"))},
        {"length-negative",
         always(Answer().send(okHead + "Content-Length: -5\r\n\r\nok").pause(moment).close())},
        {"length-huge", always(Answer()
                                   .send(okHead + "Content-Length: 99999999999999999999\r\n\r\nok")
                                   .pause(moment)
                                   .close())},
        {"no-http", always(Answer().send("\x01\x02 what is this\r\n\r\n").close())},
        {"ssh-banner", always(Answer().send("SSH-2.0-OpenSSH_9.2\r\n").close())},
        {"bare-line-feeds", always(Answer().send("HTTP/1.1 200 OK\nContent-Length: 2\n\nok"))},
        {"nul-in-header", always(withHeader(QByteArray("X-Nul: a\0b", 10)))},
        {"latin1-header", always(withHeader("X-Latin: \xe4\xf6\xfc\xff"))},
        {"header-60k", always(withHeader("X-Long: " + QByteArray(60'000, 'x')))},
        {"header-1m", always(withHeader("X-Long: " + QByteArray(1 << 20, 'x')))},
        {"headers-50000", [](const VXRawRequest&) { return manyHeaders(50'000); }},
        {"endless-header", [](const VXRawRequest&) { return endlessHeader(); }},
        {"date-missing", always(Answer::http(200, "ok"))},
        {"date-unparsable", always(withHeader("Date: yesterday"))},
        {"date-1994", always(withHeader("Date: Sun, 06 Nov 1994 08:49:37 GMT"))},
        {"date-2100", always(withHeader("Date: Fri, 01 Jan 2100 00:00:00 GMT"))},
        {"echo-head",
         [](const VXRawRequest& theRequest) { return Answer::http(200, theRequest.head); }},
        {"basic", [](const VXRawRequest& theRequest) { return login(theRequest, 401, basic); }},
        {"digest", [](const VXRawRequest& theRequest) { return login(theRequest, 401, digest); }},
        {"ntlm", [](const VXRawRequest& theRequest) { return login(theRequest, 401, "NTLM"); }},
        {"negotiate",
         [](const VXRawRequest& theRequest) { return login(theRequest, 401, "Negotiate"); }},
    };
    return ourFaults;
}

const QHash<QByteArray, Maker>& proxyFaults()
{
    static const QHash<QByteArray, Maker> ourFaults{
        {"login", [](const VXRawRequest& theRequest) { return login(theRequest, 407, basic); }},
        {"close", always(Answer().close())},
        {"reset", always(Answer().reset())},
        {"stall", always(Answer().stall())},
        {"403", always(Answer::http(403, "no"))},
        {"502", always(Answer::http(502, "no"))},
    };
    return ourFaults;
}

/// "/status/404" and the like, with a short body where one is allowed.
Answer plainStatus(const QByteArray& theNumber)
{
    const int status = theNumber.toInt();
    const bool hasBody = status >= 200 && status != 204 && status != 304;
    return Answer::http(status, hasBody ? "why" : "");
}

} // namespace

VXRawAnswer VXFaults::answer(const VXRawRequest& theRequest)
{
    const QByteArray name = theRequest.target().sliced(1);
    if (name.startsWith("status/"))
        return plainStatus(name.sliced(7));
    if (name.startsWith("redirect-to/")) // the rest, a URL without "http://"
        return redirect(302, "http://" + name.sliced(12));
    if (name == "gzip-bomb" || name == "gzip-5mib")
        return packed(zeros(name == "gzip-bomb" ? 64 : 5));
    const Maker maker = transportFaults().value(name, httpFaults().value(name));
    return maker ? maker(theRequest) : Answer::http(404, "no such fault");
}

qsizetype VXFaults::bodyLimit(const VXRawRequest& theRequest)
{
    const QByteArray target = theRequest.target();
    if (target.startsWith("/early-"))
        return 0;
    return target == "/reset-in-upload" ? 1 << 20 : std::numeric_limits<qsizetype>::max();
}

VXRawAnswer VXFaults::proxyAnswer(const QByteArray& theName, const VXRawRequest& theRequest)
{
    return proxyFaults().value(theName)(theRequest);
}

QList<QByteArray> VXFaults::proxyNames()
{
    return proxyFaults().keys();
}
