#pragma once

#include "VXPeerChannel.h"
#include "VXRawAnswer.h"
#include "VXRawRequest.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// An HTTP server on the loopback that records every byte and answers from a script.
///
/// It runs in threads of its own, so a test can talk to it with calls that block. The system
/// chooses the port. Every operation may be called from any thread.
class VXRawPeer
{
    Q_DISABLE_COPY_MOVE(VXRawPeer)

public:
    using Handler = std::function<VXRawAnswer(const VXRawRequest&)>;
    /// How many bytes of a request's body to read before its answer begins.
    using BodyLimit = std::function<qsizetype(const VXRawRequest&)>;
    enum class Family
    {
        IPv4, // 127.0.0.1
        IPv6, // ::1
    };
    using ChannelFactory = std::function<std::unique_ptr<VXPeerChannel>(int theDescriptor)>;

    /// Listens at once. Every request is answered with 200 and no body until told otherwise.
    explicit VXRawPeer(Family theFamily = Family::IPv4);
    /// Ends every connection and waits for the threads.
    virtual ~VXRawPeer();

    [[nodiscard]] quint16 port() const { return myPort; }
    /// "http://127.0.0.1:port" or "http://[::1]:port" + thePath, which begins with a slash.
    [[nodiscard]] virtual QUrl url(const QString& thePath = QStringLiteral("/")) const;

    /// Answers one request each, in order; the last one serves every further request.
    void setAnswers(const QList<VXRawAnswer>& theAnswers);
    void setAnswer(const VXRawAnswer& theAnswer) { setAnswers({theAnswer}); }
    /// Asks the handler, which runs in the connection's thread, for each answer instead.
    void setHandler(Handler theHandler);
    /// The whole body when never called. What is left unread ends with the connection, so an
    /// answer to such a request must end with close(), reset() or stall().
    void setBodyLimit(BodyLimit theLimit);

    /// The requests so far. A request counts before its answer begins.
    [[nodiscard]] QList<VXRawRequest> requests() const;
    /// The bytes received so far on each connection, in the order of accepting.
    [[nodiscard]] QList<QByteArray> connections() const;
    /// Waits until that many requests have arrived; false after the time.
    bool waitForRequests(int theCount,
                         std::chrono::milliseconds theTime = std::chrono::seconds(10)) const;

protected:
    explicit VXRawPeer(ChannelFactory theFactory, Family theFamily = Family::IPv4);
    /// For destructors of derived classes whose members the connection threads use.
    void stop();

private:
    void listen();
    void acceptLoop();
    void serve(int theDescriptor, int theConnection);
    bool readRequest(VXPeerChannel& theChannel, QByteArray& theBuffer, VXRawRequest& theRequest);
    bool readMore(VXPeerChannel& theChannel, QByteArray& theBuffer, int theConnection);
    qsizetype wantedBody(const VXRawRequest& theRequest) const;
    VXRawAnswer nextAnswer(const VXRawRequest& theRequest);
    bool perform(VXPeerChannel& theChannel, const VXRawAnswer& theAnswer, int theConnection);
    bool sleepFor(std::chrono::milliseconds theDuration);

    const ChannelFactory myFactory;
    const Family myFamily;
    int myListener = -1;
    quint16 myPort = 0;
    std::atomic<bool> myIsStopping = false;

    mutable std::mutex myMutex; // guards the rest
    mutable std::condition_variable myChange;
    Handler myHandler;
    BodyLimit myBodyLimit;
    QList<VXRawAnswer> myAnswers;
    QList<VXRawRequest> myRequests;
    QList<QByteArray> myConnections;
    std::vector<std::thread> myServers;

    std::thread myAcceptor;
};
