#include "VXNl80211WifiName.h"

#include "VXNetlinkMessage.h"
#include "VXSsid.h"

#include <cstring>

#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <linux/nl80211.h>
#include <net/if.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

/// A question to the kernel at a time. It answers within the call, so nothing ever waits long.
class Socket
{
    Q_DISABLE_COPY_MOVE(Socket)

public:
    Socket()
        : myDescriptor(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_GENERIC))
    {
        constexpr timeval limit{0, 100'000}; // 100 ms
        ::setsockopt(myDescriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }

    ~Socket()
    {
        if (myDescriptor >= 0)
            ::close(myDescriptor);
    }

    std::optional<VXNetlinkMessage> ask(const VXNetlinkMessage& theQuestion) const
    {
        const QByteArray question = theQuestion.toBytes();
        if (::send(myDescriptor, question.constData(), static_cast<size_t>(question.size()), 0) !=
            question.size())
            return std::nullopt;
        QByteArray answer(16384, Qt::Uninitialized);
        const ssize_t length =
            ::recv(myDescriptor, answer.data(), static_cast<size_t>(answer.size()), 0);
        return VXNetlinkMessage::fromBytes(QByteArrayView(answer).first(qMax<ssize_t>(length, 0)));
    }

private:
    int myDescriptor = -1;
};

std::optional<quint16> familyNumber(const Socket& theSocket)
{
    const std::optional<VXNetlinkMessage> answer =
        theSocket.ask(VXNl80211WifiName::familyQuestion());
    if (!answer)
        return std::nullopt;
    const std::optional<QByteArray> number = answer->attribute(CTRL_ATTR_FAMILY_ID);
    quint16 family = 0;
    if (!number || number->size() != sizeof family)
        return std::nullopt;
    std::memcpy(&family, number->constData(), sizeof family);
    return family;
}

} // namespace

VXNl80211WifiName::VXNl80211WifiName() = default;

VXNl80211WifiName::~VXNl80211WifiName() = default;

std::optional<QString> VXNl80211WifiName::wifiName(const QString& theInterface)
{
    const uint index = ::if_nametoindex(theInterface.toLocal8Bit().constData());
    if (index == 0)
        return std::nullopt;
    const Socket socket;
    const std::optional<quint16> family = familyNumber(socket);
    if (!family)
        return std::nullopt;

    VXNetlinkMessage question(*family, NL80211_CMD_GET_INTERFACE);
    question.append(NL80211_ATTR_IFINDEX, index);
    const std::optional<VXNetlinkMessage> answer = socket.ask(question);
    if (!answer)
        return std::nullopt;
    return nameIn(*answer);
}

VXNetlinkMessage VXNl80211WifiName::familyQuestion()
{
    VXNetlinkMessage question(GENL_ID_CTRL, CTRL_CMD_GETFAMILY);
    // With the NUL at its end, which a view of a literal leaves out: the kernel refuses the
    // question without.
    question.append(CTRL_ATTR_FAMILY_NAME,
                    QByteArrayView(NL80211_GENL_NAME, sizeof NL80211_GENL_NAME));
    return question;
}

QString VXNl80211WifiName::nameIn(const VXNetlinkMessage& theAnswer)
{
    return VXSsid::text(theAnswer.attribute(NL80211_ATTR_SSID).value_or(QByteArray()));
}
