#include "VXUploadPhone.h"

#include <array>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// How many bytes the answer in theBytes has in all; -1 while its header is incomplete.
qsizetype answerSize(const QByteArray& theBytes)
{
    const qsizetype headerEnd = theBytes.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return -1;
    const QByteArray header = theBytes.first(headerEnd + 2).toLower();
    const QByteArray field = "content-length:";
    const qsizetype begin = header.indexOf(field) + field.size();
    return headerEnd + 4 + header.mid(begin, header.indexOf('\r', begin) - begin).toLongLong();
}

} // namespace

VXUploadPhone::~VXUploadPhone()
{
    if (mySocket >= 0)
        ::close(mySocket);
}

bool VXUploadPhone::introduceTo(const QUrl& theUrl)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<quint16>(theUrl.port()));
    ::inet_pton(AF_INET, theUrl.host().toLatin1().constData(), &address.sin_addr);

    mySocket = ::socket(AF_INET, SOCK_STREAM, 0);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the interface of sockets
    if (::connect(mySocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return false;
    myPuts = theUrl.path() == QLatin1StringView("/put");
    myCookie = theUrl.query(QUrl::FullyEncoded).toLatin1();
    return write("GET /translations.json?" + myCookie + " HTTP/1.1\r\nHost: server\r\n\r\n") &&
           readAnswer();
}

bool VXUploadPhone::send(const QByteArray& theName, const QByteArray& thePhoto)
{
    const QByteArray target = myPuts ? "PUT /upload/" : "POST /upload?file=";
    return write(target + theName + " HTTP/1.1\r\nHost: server\r\nCookie: sid=" + myCookie +
                 "\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
                 QByteArray::number(thePhoto.size()) + "\r\n\r\n") &&
           write(thePhoto) && readAnswer();
}

bool VXUploadPhone::write(const QByteArray& theBytes) const
{
    qsizetype sent = 0;
    while (sent < theBytes.size()) {
        const ssize_t count = ::send(mySocket, theBytes.constData() + sent,
                                     static_cast<size_t>(theBytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += count;
    }
    return true;
}

bool VXUploadPhone::readAnswer() const
{
    QByteArray answer;
    qsizetype expected = -1;
    while (expected < 0 || answer.size() < expected) {
        std::array<char, 4096> buffer{};
        const ssize_t count = ::recv(mySocket, buffer.data(), buffer.size(), 0);
        if (count <= 0)
            return false;
        answer.append(buffer.data(), count);
        expected = answerSize(answer);
    }
    return answer.startsWith("HTTP/1.1 200 ") || answer.startsWith("HTTP/1.1 201 ");
}
