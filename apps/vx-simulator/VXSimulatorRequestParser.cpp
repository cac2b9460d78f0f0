#include "VXSimulatorRequestParser.h"

#include <algorithm>
#include <utility>

namespace {

constexpr qsizetype maximumMethodBytes = 32;

/// Characters of a method or header name (RFC 9110, 5.6.2).
bool isToken(const QByteArray& theText)
{
    constexpr QByteArrayView marks("!#$%&'*+-.^_`|~");
    return !theText.isEmpty() && std::ranges::all_of(theText, [&](char theLetter) {
        return (theLetter >= '0' && theLetter <= '9') || (theLetter >= 'A' && theLetter <= 'Z') ||
               (theLetter >= 'a' && theLetter <= 'z') || marks.contains(theLetter);
    });
}

bool hasControlBytes(const QByteArray& theText)
{
    return std::ranges::any_of(theText, [](char theLetter) {
        const auto byte = static_cast<unsigned char>(theLetter);
        return (byte < 0x20 && byte != '\t') || byte == 0x7f;
    });
}

bool isDigit(char theLetter, int theBase)
{
    const char lower = static_cast<char>(theLetter | 0x20);
    return (theLetter >= '0' && theLetter <= '9') ||
           (theBase == 16 && lower >= 'a' && lower <= 'f');
}

/// A length in digits only, or -1. A sign, a blank or "0x" is refused (RFC 9110, 8.6).
qint64 lengthFrom(const QByteArray& theText, int theBase)
{
    if (!std::ranges::all_of(theText, [&](char theLetter) { return isDigit(theLetter, theBase); }))
        return -1;
    bool isNumber = false;
    const qlonglong length = theText.toLongLong(&isNumber, theBase);
    return isNumber ? length : -1;
}

} // namespace

VXSimulatorRequestParser::State VXSimulatorRequestParser::feed(QByteArray& theInput)
{
    while (step(theInput)) {
    }
    return myState;
}

bool VXSimulatorRequestParser::isIdle() const noexcept
{
    return myState == State::RequestLine && myHeadBytes == 0;
}

bool VXSimulatorRequestParser::expectsContinue() const
{
    return (myState == State::Body || myState == State::ChunkSize) &&
           myRequest.header("Expect").compare("100-continue", Qt::CaseInsensitive) == 0;
}

VXSimulatorRequest VXSimulatorRequestParser::take()
{
    VXSimulatorRequest request = std::move(myRequest);
    *this = VXSimulatorRequestParser();
    return request;
}

bool VXSimulatorRequestParser::step(QByteArray& theInput)
{
    if (myState == State::Complete || myState == State::Failed)
        return false;
    if (myState == State::Body || myState == State::ChunkData)
        return takeBody(theInput);

    QByteArray line;
    if (!takeLine(theInput, &line))
        return false;
    readLine(line);
    return true;
}

bool VXSimulatorRequestParser::takeLine(QByteArray& theInput, QByteArray* theLine)
{
    const qsizetype end = theInput.indexOf('\n');
    const qsizetype used = end < 0 ? theInput.size() : end + 1;
    if (myHeadBytes + used > maximumHeadBytes) {
        fail(431);
        return false;
    }
    if (end < 0)
        return false;
    myHeadBytes += used;
    *theLine = theInput.first(end);
    theInput.remove(0, used);
    if (theLine->endsWith('\r')) // a bare line feed is accepted, too (RFC 9112, 2.2)
        theLine->chop(1);
    return true;
}

bool VXSimulatorRequestParser::takeBody(QByteArray& theInput)
{
    const qint64 count = std::min<qint64>(myMissing, theInput.size());
    if (count == 0)
        return false;
    myRequest.body.append(theInput.constData(), count);
    theInput.remove(0, count);
    myMissing -= count;
    if (myMissing > 0)
        return false;
    myState = myState == State::Body ? State::Complete : State::ChunkEnd;
    return true;
}

void VXSimulatorRequestParser::readLine(const QByteArray& theLine)
{
    switch (myState) {
    case State::RequestLine:
        return readRequestLine(theLine);
    case State::Headers:
        return theLine.isEmpty() ? chooseFraming() : readHeader(theLine);
    case State::ChunkSize:
        return readChunkSize(theLine);
    case State::ChunkEnd:
        myState = State::ChunkSize;
        return theLine.isEmpty() ? void() : fail(400);
    case State::Trailers: // read and forgotten
        if (theLine.isEmpty())
            myState = State::Complete;
        return;
    default:
        return;
    }
}

void VXSimulatorRequestParser::readRequestLine(const QByteArray& theLine)
{
    if (theLine.isEmpty()) { // a stray line end between two requests (RFC 9112, 2.2)
        myHeadBytes = 0;
        return;
    }
    const QList<QByteArray> words = theLine.split(' ');
    if (words.size() != 3 || !isToken(words[0]) || words[0].size() > maximumMethodBytes ||
        words[1].isEmpty() || hasControlBytes(theLine))
        return fail(400);
    if (words[2] != "HTTP/1.1" && words[2] != "HTTP/1.0")
        return fail(words[2].startsWith("HTTP/") ? 505 : 400);
    myRequest.method = words[0];
    myRequest.target = words[1];
    myRequest.version = words[2];
    myState = State::Headers;
}

void VXSimulatorRequestParser::readHeader(const QByteArray& theLine)
{
    // A line that begins with a blank continues the one before; servers refuse it (RFC 9112, 5.2).
    const qsizetype colon = theLine.indexOf(':');
    if (colon <= 0 || !isToken(theLine.first(colon)) || hasControlBytes(theLine))
        return fail(400);
    if (myRequest.headers.size() >= maximumHeaders)
        return fail(431);
    myRequest.headers.append(qMakePair(theLine.first(colon), theLine.sliced(colon + 1).trimmed()));
}

void VXSimulatorRequestParser::readChunkSize(const QByteArray& theLine)
{
    const QByteArray digits = theLine.first(std::max<qsizetype>(0, theLine.indexOf(';')));
    const qint64 size = lengthFrom((digits.isEmpty() ? theLine : digits).trimmed(), 16);
    if (size < 0)
        return fail(400);
    if (size > maximumBodyBytes - myRequest.body.size())
        return fail(413);
    myMissing = size;
    myHeadBytes = 0; // each chunk line has the whole limit
    myState = size == 0 ? State::Trailers : State::ChunkData;
}

void VXSimulatorRequestParser::chooseFraming()
{
    qint64 length = -1;
    bool isChunked = false;
    for (const auto& [name, value] : std::as_const(myRequest.headers)) {
        if (name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0) {
            if (isChunked || value.compare("chunked", Qt::CaseInsensitive) != 0)
                return fail(501);
            isChunked = true;
        } else if (name.compare("Content-Length", Qt::CaseInsensitive) == 0) {
            const qint64 read = lengthFrom(value, 10);
            if (read < 0 || (length >= 0 && read != length))
                return fail(400);
            length = read;
        }
    }
    // The classic ways to smuggle a request (RFC 9112, 6.1).
    if (isChunked && (length >= 0 || myRequest.version == "HTTP/1.0"))
        return fail(400);
    if (length > maximumBodyBytes)
        return fail(413);
    myMissing = length;
    myHeadBytes = isChunked ? 0 : myHeadBytes;
    myState = isChunked ? State::ChunkSize : (length > 0 ? State::Body : State::Complete);
}

void VXSimulatorRequestParser::fail(int theStatus)
{
    myRefusal = theStatus;
    myState = State::Failed;
}
