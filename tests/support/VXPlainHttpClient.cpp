#include "VXPlainHttpClient.h"

#include <QtNetwork/QNetworkProxy>
#include <QtTest/QTest>

namespace {

constexpr int patience = 20000; // milliseconds

} // namespace

QByteArray VXPlainHttpClient::Answer::header(const QByteArray& theName) const
{
    for (const QByteArray& line : headers) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).compare(theName, Qt::CaseInsensitive) == 0)
            return line.sliced(colon + 1).trimmed();
    }
    return {};
}

VXPlainHttpClient::VXPlainHttpClient(const QHostAddress& theServer, quint16 thePort,
                                     const QHostAddress& theSource)
    : myHost(theServer.toString().toLatin1() + ':' + QByteArray::number(thePort))
{
    mySocket.setProxy(QNetworkProxy::NoProxy);
    if (!theSource.isNull())
        mySocket.bind(theSource);
    mySocket.connectToHost(theServer, thePort);
    myIsConnected = QTest::qWaitFor(
                        [this] {
                            return mySocket.state() == QAbstractSocket::ConnectedState ||
                                   mySocket.state() == QAbstractSocket::UnconnectedState;
                        },
                        patience) &&
                    mySocket.state() == QAbstractSocket::ConnectedState;
}

VXPlainHttpClient::~VXPlainHttpClient() = default;

VXPlainHttpClient::Answer VXPlainHttpClient::ask(const QByteArray& theRequestLine,
                                                 const QByteArrayList& theHeaders,
                                                 const QByteArray& theBody)
{
    QByteArrayList lines{theRequestLine + " HTTP/1.1", "Host: " + myHost};
    lines += theHeaders;
    if (!theBody.isEmpty())
        lines.append("Content-Length: " + QByteArray::number(theBody.size()));
    return askRaw(lines.join("\r\n") + "\r\n\r\n" + theBody);
}

VXPlainHttpClient::Answer VXPlainHttpClient::askRaw(const QByteArray& theBytes)
{
    mySocket.write(theBytes);
    QByteArray received;
    qsizetype end = -1; // of the header
    Answer answer;
    const auto isComplete = [&] {
        received += mySocket.readAll();
        if (end < 0 && (end = received.indexOf("\r\n\r\n")) >= 0)
            answer.headers = received.first(end).replace("\r\n", "\n").split('\n');
        const bool isWhole =
            end >= 0 && received.size() >= end + 4 + answer.header("Content-Length").toLongLong();
        return isWhole || mySocket.state() == QAbstractSocket::UnconnectedState;
    };
    if (!QTest::qWaitFor(isComplete, patience) || end < 0)
        return {};
    answer.status = answer.headers.takeFirst().mid(9, 3).toInt();
    answer.body = received.sliced(end + 4);
    return answer;
}
