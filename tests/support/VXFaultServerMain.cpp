// The fault server: every fault of VXFaults is a path, TLS and proxies have ports of their own.
//
// It writes one line of JSON with its ports and the file of the authority that its certificates
// come from, and runs until its standard input ends.

#include "VXFaults.h"
#include "VXRawPeer.h"
#include "VXTlsPeer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <array>
#include <cstdio>
#include <cstring>
#include <map>

#include <netinet/in.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace {

void serveFaults(VXRawPeer& thePeer)
{
    thePeer.setHandler(&VXFaults::answer);
    thePeer.setBodyLimit(&VXFaults::bodyLimit);
}

/// A port that is taken and refuses connections.
quint16 refusedPort()
{
    // Left open on purpose: the port stays ours as long as the process lives.
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (descriptor < 0 || ::bind(descriptor, generic, size) != 0 ||
        ::getsockname(descriptor, generic, &size) != 0)
        qFatal("no port: %s", std::strerror(errno));
    return ntohs(address.sin_port);
}

/// Fills the queue of a listener that never accepts; further connections wait for an answer.
class SilentPort
{
    Q_DISABLE_COPY_MOVE(SilentPort)

public:
    SilentPort()
    {
        myServer.setListenBacklogSize(1);
        if (!myServer.listen(QHostAddress::LocalHost))
            qFatal("no port: %s", qPrintable(myServer.errorString()));
        myServer.pauseAccepting();
        for (QTcpSocket& socket : mySockets) {
            socket.connectToHost(QHostAddress::LocalHost, myServer.serverPort());
            socket.waitForConnected(200); // the last ones do not get through
        }
    }
    [[nodiscard]] quint16 port() const { return myServer.serverPort(); }

private:
    QTcpServer myServer;
    std::array<QTcpSocket, 4> mySockets;
};

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    QCoreApplication application(theArgumentCount, theArguments);
    VXTestCertificates certificates;

    VXRawPeer plain;
    VXRawPeer ipv6(VXRawPeer::Family::IPv6);
    VXTlsPeer tls(certificates.leaf());
    VXTlsPeer untrusted(certificates.selfSigned());
    for (VXRawPeer* const peer :
         {&plain, &ipv6, static_cast<VXRawPeer*>(&tls), static_cast<VXRawPeer*>(&untrusted)})
        serveFaults(*peer);
    const SilentPort silent;

    QJsonObject proxies;
    std::map<QByteArray, VXRawPeer> peers;
    for (const QByteArray& name : VXFaults::proxyNames()) {
        VXRawPeer& peer = peers[name];
        peer.setHandler([name](const VXRawRequest& theRequest) {
            return VXFaults::proxyAnswer(name, theRequest);
        });
        proxies[QString::fromLatin1(name)] = peer.port();
    }

    const QJsonObject ports{
        {u"authority"_s, certificates.authority().certificateFile},
        {u"plain"_s, plain.port()},
        {u"ipv6"_s, ipv6.port()},
        {u"tls"_s, tls.port()},
        {u"untrusted"_s, untrusted.port()},
        {u"refused"_s, refusedPort()},
        {u"silent"_s, silent.port()},
        {u"proxies"_s, proxies},
    };
    std::puts(QJsonDocument(ports).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
