#include "VXPeerChannel.h"

#include <QtCore/QtGlobal>

#include <array>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

class PlainChannel final : public VXPeerChannel
{
    Q_DISABLE_COPY_MOVE(PlainChannel)

public:
    explicit PlainChannel(int theDescriptor)
        : myDescriptor(theDescriptor)
    {
    }
    ~PlainChannel() override { PlainChannel::close(); }

    Outcome read(QByteArray& theBuffer, std::chrono::milliseconds theTime) override
    {
        pollfd wait{myDescriptor, POLLIN, 0};
        if (::poll(&wait, 1, static_cast<int>(theTime.count())) <= 0)
            return Outcome::TimedOut;
        std::array<char, 65536> part{};
        const ssize_t size = ::recv(myDescriptor, part.data(), part.size(), 0);
        if (size <= 0)
            return Outcome::Ended;
        theBuffer.append(part.data(), size);
        return Outcome::Data;
    }

    bool write(const QByteArray& theBytes) override
    {
        for (qsizetype done = 0; done < theBytes.size();) {
            const ssize_t size = ::send(myDescriptor, theBytes.constData() + done,
                                        static_cast<size_t>(theBytes.size() - done), MSG_NOSIGNAL);
            if (size <= 0)
                return false;
            done += size;
        }
        return true;
    }

    void close() override
    {
        if (myDescriptor >= 0)
            ::close(myDescriptor);
        myDescriptor = -1;
    }

    void reset() override
    {
        const linger abortively{1, 0}; // closing now sends RST instead of FIN
        ::setsockopt(myDescriptor, SOL_SOCKET, SO_LINGER, &abortively, sizeof abortively);
        close();
    }

private:
    int myDescriptor;
};

} // namespace

std::unique_ptr<VXPeerChannel> VXPeerChannel::plain(int theDescriptor)
{
    return std::make_unique<PlainChannel>(theDescriptor);
}
