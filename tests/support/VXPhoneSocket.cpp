#include "VXPhoneSocket.h"

#include <QtCore/QByteArrayList>

#include <array>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr timeval patience{10, 0};

qsizetype announcedLength(const QByteArray& theHead)
{
    for (const QByteArray& line : theHead.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).toLower() == "content-length")
            return line.sliced(colon + 1).trimmed().toLongLong();
    }
    return 0;
}

} // namespace

bool VXPhoneSocket::enterNetwork(int thePhone)
{
    const QByteArray path = "/run/netns/phone" + QByteArray::number(thePhone);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    const bool isInside = descriptor >= 0 && ::setns(descriptor, CLONE_NEWNET) == 0;
    if (descriptor >= 0)
        ::close(descriptor);
    return isInside;
}

VXPhoneSocket::VXPhoneSocket(const QByteArray& theAddress, quint16 thePort)
    : myDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    ::setsockopt(myDescriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    ::setsockopt(myDescriptor, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(thePort);
    ::inet_pton(AF_INET, theAddress.constData(), &address.sin_addr);
    if (::connect(myDescriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        return;
    ::close(myDescriptor);
    myDescriptor = -1;
}

VXPhoneSocket::VXPhoneSocket(VXPhoneSocket&& theOther) noexcept
    : myDescriptor(std::exchange(theOther.myDescriptor, -1))
    , myBuffer(std::move(theOther.myBuffer))
{
}

VXPhoneSocket::~VXPhoneSocket()
{
    if (isOpen())
        ::close(myDescriptor);
}

bool VXPhoneSocket::send(const QByteArray& theBytes)
{
    qsizetype sent = 0;
    while (isOpen() && sent < theBytes.size()) {
        const ssize_t count = ::send(myDescriptor, theBytes.constData() + sent,
                                     static_cast<size_t>(theBytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += count;
    }
    return isOpen();
}

bool VXPhoneSocket::receive()
{
    std::array<char, 65536> bytes;
    const ssize_t count = isOpen() ? ::recv(myDescriptor, bytes.data(), bytes.size(), 0) : -1;
    if (count > 0)
        myBuffer.append(bytes.data(), count);
    return count > 0;
}

QByteArray VXPhoneSocket::answer()
{
    qsizetype headEnd = myBuffer.indexOf("\r\n\r\n");
    while (headEnd < 0) {
        if (!receive())
            return {};
        headEnd = myBuffer.indexOf("\r\n\r\n");
    }
    const qsizetype size = headEnd + 4 + announcedLength(myBuffer.first(headEnd));
    while (myBuffer.size() < size) {
        if (!receive())
            return {};
    }
    const QByteArray result = myBuffer.first(size);
    myBuffer.remove(0, size);
    return result;
}

QByteArray VXPhoneSocket::ask(const QByteArray& theTarget, const QByteArray& theHeaders,
                              const QByteArray& theBody)
{
    QByteArray request = (theBody.isEmpty() ? "GET " : "POST ") + theTarget +
                         " HTTP/1.1\r\nHost: desktop\r\n" + theHeaders;
    if (!theBody.isEmpty())
        request += "Content-Length: " + QByteArray::number(theBody.size()) + "\r\n";
    return send(request + "\r\n" + theBody) ? answer() : QByteArray();
}

int VXPhoneSocket::status(const QByteArray& theAnswer)
{
    return theAnswer.startsWith("HTTP/1.1 ") ? theAnswer.mid(9, 3).toInt() : 0;
}
