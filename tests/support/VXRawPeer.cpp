#include "VXRawPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstring>
#include <mutex>
#include <set>

using namespace std::chrono_literals;

namespace {

// How soon a waiting thread notices that the peer is being destroyed.
constexpr auto pollInterval = 20ms;

qsizetype bodySize(const VXRawRequest& theRequest)
{
    // A GET or HEAD that announces a length sends no body all the same.
    const QByteArray method = theRequest.method();
    if (method == "GET" || method == "HEAD")
        return 0;
    return theRequest.header("Content-Length").toLongLong();
}

/// The family's loopback address with port 0; returns its size.
socklen_t loopback(VXRawPeer::Family theFamily, sockaddr_storage& theAddress)
{
    if (theFamily == VXRawPeer::Family::IPv4) {
        auto& address = reinterpret_cast<sockaddr_in&>(theAddress);
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return sizeof address;
    }
    auto& address = reinterpret_cast<sockaddr_in6&>(theAddress);
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    return sizeof address;
}

quint16 portOf(const sockaddr_storage& theAddress)
{
    if (theAddress.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in&>(theAddress).sin_port);
    return ntohs(reinterpret_cast<const sockaddr_in6&>(theAddress).sin6_port);
}

/// Whether no peer of this process had the port before: a host that the user once trusted is
/// trusted until the process ends.
bool isNew(quint16 thePort)
{
    static std::mutex ourMutex;
    static std::set<quint16> ourPorts;
    const std::lock_guard lock(ourMutex);
    return ourPorts.insert(thePort).second;
}

} // namespace

VXRawPeer::VXRawPeer(Family theFamily)
    : VXRawPeer(&VXPeerChannel::plain, theFamily)
{
}

VXRawPeer::VXRawPeer(ChannelFactory theFactory, Family theFamily)
    : myFactory(std::move(theFactory))
    , myFamily(theFamily)
    , myAnswers{VXRawAnswer::http(200)}
{
    listen();
    myAcceptor = std::thread([this] { acceptLoop(); });
}

VXRawPeer::~VXRawPeer()
{
    stop();
}

void VXRawPeer::stop()
{
    myIsStopping = true;
    myChange.notify_all();
    if (myAcceptor.joinable())
        myAcceptor.join();
    // Nobody adds servers any more.
    for (std::thread& server : myServers) {
        if (server.joinable())
            server.join();
    }
    myServers.clear();
    if (myListener >= 0)
        ::close(myListener);
    myListener = -1;
}

QUrl VXRawPeer::url(const QString& thePath) const
{
    const QString host =
        myFamily == Family::IPv4 ? QStringLiteral("127.0.0.1") : QStringLiteral("[::1]");
    return QUrl(QStringLiteral("http://%1:%2").arg(host).arg(myPort) + thePath);
}

void VXRawPeer::setAnswers(const QList<VXRawAnswer>& theAnswers)
{
    const std::lock_guard lock(myMutex);
    myHandler = nullptr;
    myAnswers = theAnswers;
}

void VXRawPeer::setHandler(Handler theHandler)
{
    const std::lock_guard lock(myMutex);
    myHandler = std::move(theHandler);
}

void VXRawPeer::setBodyLimit(BodyLimit theLimit)
{
    const std::lock_guard lock(myMutex);
    myBodyLimit = std::move(theLimit);
}

QList<VXRawRequest> VXRawPeer::requests() const
{
    const std::lock_guard lock(myMutex);
    return myRequests;
}

QList<QByteArray> VXRawPeer::connections() const
{
    const std::lock_guard lock(myMutex);
    return myConnections;
}

bool VXRawPeer::waitForRequests(int theCount, std::chrono::milliseconds theTime) const
{
    std::unique_lock lock(myMutex);
    return myChange.wait_for(lock, theTime, [&] { return myRequests.size() >= theCount; });
}

void VXRawPeer::listen()
{
    do {
        if (myListener >= 0)
            ::close(myListener);
        sockaddr_storage address{};
        socklen_t size = loopback(myFamily, address);
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        myListener = ::socket(address.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (myListener < 0 || ::bind(myListener, generic, size) != 0 ||
            ::listen(myListener, 64) != 0 || ::getsockname(myListener, generic, &size) != 0)
            qFatal("the test peer cannot listen: %s", std::strerror(errno));
        myPort = portOf(address);
    } while (!isNew(myPort));
}

void VXRawPeer::acceptLoop()
{
    while (!myIsStopping) {
        pollfd wait{myListener, POLLIN, 0};
        if (::poll(&wait, 1, static_cast<int>(pollInterval.count())) <= 0)
            continue;
        const int descriptor = ::accept4(myListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor < 0)
            continue;
        // A client that does not read must not keep the peer from ending.
        const timeval patience{5, 0};
        ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        const std::lock_guard lock(myMutex);
        const int connection = static_cast<int>(myConnections.size());
        myConnections.append(QByteArray());
        myServers.emplace_back([this, descriptor, connection] { serve(descriptor, connection); });
    }
}

void VXRawPeer::serve(int theDescriptor, int theConnection)
{
    const std::unique_ptr<VXPeerChannel> channel = myFactory(theDescriptor);
    if (!channel->open())
        return;
    QByteArray buffer;
    for (;;) {
        VXRawRequest request;
        request.connection = theConnection;
        if (!readRequest(*channel, buffer, request))
            return;
        {
            const std::lock_guard lock(myMutex);
            myRequests.append(request);
        }
        myChange.notify_all();
        if (!perform(*channel, nextAnswer(request), theConnection))
            return;
    }
}

bool VXRawPeer::readRequest(VXPeerChannel& theChannel, QByteArray& theBuffer,
                            VXRawRequest& theRequest)
{
    qsizetype end = -1;
    while ((end = theBuffer.indexOf("\r\n\r\n")) < 0) {
        if (!readMore(theChannel, theBuffer, theRequest.connection))
            return false;
    }
    theRequest.head = theBuffer.left(end);
    theBuffer.remove(0, end + 4);

    const qsizetype size = wantedBody(theRequest);
    while (theBuffer.size() < size) {
        if (!readMore(theChannel, theBuffer, theRequest.connection))
            return false;
    }
    theRequest.body = theBuffer.left(size);
    theBuffer.remove(0, size);
    return true;
}

bool VXRawPeer::readMore(VXPeerChannel& theChannel, QByteArray& theBuffer, int theConnection)
{
    while (!myIsStopping) {
        const qsizetype before = theBuffer.size();
        const VXPeerChannel::Outcome outcome = theChannel.read(theBuffer, pollInterval);
        if (outcome == VXPeerChannel::Outcome::Ended)
            return false;
        if (outcome == VXPeerChannel::Outcome::TimedOut)
            continue;
        const std::lock_guard lock(myMutex);
        myConnections[theConnection].append(theBuffer.mid(before));
        return true;
    }
    return false;
}

qsizetype VXRawPeer::wantedBody(const VXRawRequest& theRequest) const
{
    std::unique_lock lock(myMutex);
    const BodyLimit limit = myBodyLimit;
    lock.unlock();
    const qsizetype size = bodySize(theRequest);
    return limit ? qMin(size, limit(theRequest)) : size;
}

VXRawAnswer VXRawPeer::nextAnswer(const VXRawRequest& theRequest)
{
    std::unique_lock lock(myMutex);
    if (const Handler handler = myHandler) {
        lock.unlock(); // the handler may ask this peer
        return handler(theRequest);
    }
    return myAnswers.size() > 1 ? myAnswers.takeFirst() : myAnswers.value(0);
}

bool VXRawPeer::perform(VXPeerChannel& theChannel, const VXRawAnswer& theAnswer, int theConnection)
{
    for (const VXRawAnswer::Step& step : theAnswer.steps()) {
        switch (step.kind) {
        case VXRawAnswer::Kind::Send:
            if (!theChannel.write(step.bytes))
                return false;
            break;
        case VXRawAnswer::Kind::Pause:
            if (!sleepFor(step.duration))
                return false;
            break;
        case VXRawAnswer::Kind::Close:
            theChannel.close();
            return false;
        case VXRawAnswer::Kind::Reset:
            theChannel.reset();
            return false;
        case VXRawAnswer::Kind::Stall:
            for (QByteArray ignored; readMore(theChannel, ignored, theConnection);)
                ignored.clear();
            return false;
        }
    }
    return true;
}

bool VXRawPeer::sleepFor(std::chrono::milliseconds theDuration)
{
    std::unique_lock lock(myMutex);
    myChange.wait_for(lock, theDuration, [this] { return myIsStopping.load(); });
    return !myIsStopping;
}
