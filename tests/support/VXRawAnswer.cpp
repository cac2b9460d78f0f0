#include "VXRawAnswer.h"

#include <algorithm>

namespace {

bool namesContentLength(const QByteArray& theHeaderLine)
{
    return theHeaderLine.toLower().startsWith("content-length:");
}

} // namespace

VXRawAnswer VXRawAnswer::http(int theStatus, const QByteArray& theBody,
                              const QList<QByteArray>& theHeaderLines)
{
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(theStatus) + " Status\r\n";
    for (const QByteArray& line : theHeaderLines)
        bytes += line + "\r\n";
    const bool mayHaveBody = theStatus >= 200 && theStatus != 204 && theStatus != 304;
    if (mayHaveBody && std::ranges::none_of(theHeaderLines, namesContentLength))
        bytes += "Content-Length: " + QByteArray::number(theBody.size()) + "\r\n";
    return VXRawAnswer().send(bytes + "\r\n" + theBody);
}

VXRawAnswer& VXRawAnswer::send(const QByteArray& theBytes)
{
    return add(Kind::Send, theBytes);
}

VXRawAnswer& VXRawAnswer::pause(std::chrono::milliseconds theDuration)
{
    return add(Kind::Pause, {}, theDuration);
}

VXRawAnswer& VXRawAnswer::close()
{
    return add(Kind::Close);
}

VXRawAnswer& VXRawAnswer::reset()
{
    return add(Kind::Reset);
}

VXRawAnswer& VXRawAnswer::stall()
{
    return add(Kind::Stall);
}

VXRawAnswer& VXRawAnswer::add(Kind theKind, const QByteArray& theBytes,
                              std::chrono::milliseconds theDuration)
{
    mySteps.append({theKind, theBytes, theDuration});
    return *this;
}
