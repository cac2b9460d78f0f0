#include "VXNetlinkMessage.h"

#include <cstring>

#include <linux/genetlink.h>
#include <linux/netlink.h>

namespace {

template <typename Header>
QByteArrayView bytesOf(const Header& theHeader)
{
    return {reinterpret_cast<const char*>(&theHeader), sizeof theHeader};
}

/// Copies, because nothing promises the alignment of what arrived. theBytes must be long enough.
template <typename Header>
Header read(QByteArrayView theBytes)
{
    Header header;
    std::memcpy(&header, theBytes.data(), sizeof header);
    return header;
}

constexpr qsizetype headerSize = NLMSG_HDRLEN + GENL_HDRLEN;

} // namespace

VXNetlinkMessage::VXNetlinkMessage(quint16 theFamily, quint8 theCommand)
    : myFamily(theFamily)
    , myCommand(theCommand)
{
}

std::optional<VXNetlinkMessage> VXNetlinkMessage::fromBytes(QByteArrayView theBytes)
{
    if (theBytes.size() < headerSize)
        return std::nullopt;
    const auto header = read<nlmsghdr>(theBytes);
    if (header.nlmsg_len < headerSize || header.nlmsg_len > static_cast<size_t>(theBytes.size()))
        return std::nullopt;
    if (header.nlmsg_type < NLMSG_MIN_TYPE) // NLMSG_ERROR, NLMSG_DONE and the like
        return std::nullopt;

    const auto command = read<genlmsghdr>(theBytes.sliced(NLMSG_HDRLEN));
    VXNetlinkMessage message(header.nlmsg_type, command.cmd);
    message.myAttributes = theBytes.first(header.nlmsg_len).sliced(headerSize).toByteArray();
    return message;
}

void VXNetlinkMessage::append(quint16 theAttribute, QByteArrayView theValue)
{
    nlattr header{};
    header.nla_len = static_cast<quint16>(NLA_HDRLEN + theValue.size());
    header.nla_type = theAttribute;
    myAttributes.append(bytesOf(header));
    myAttributes.append(theValue);
    myAttributes.append(NLA_ALIGN(header.nla_len) - header.nla_len, '\0');
}

void VXNetlinkMessage::append(quint16 theAttribute, quint32 theValue)
{
    append(theAttribute, bytesOf(theValue));
}

std::optional<QByteArray> VXNetlinkMessage::attribute(quint16 theAttribute) const
{
    QByteArrayView rest(myAttributes);
    while (rest.size() >= NLA_HDRLEN) {
        const auto header = read<nlattr>(rest);
        if (header.nla_len < NLA_HDRLEN || header.nla_len > rest.size())
            return std::nullopt;
        if ((header.nla_type & NLA_TYPE_MASK) == theAttribute)
            return rest.first(header.nla_len).sliced(NLA_HDRLEN).toByteArray();
        rest = rest.sliced(qMin<qsizetype>(NLA_ALIGN(header.nla_len), rest.size()));
    }
    return std::nullopt;
}

QByteArray VXNetlinkMessage::toBytes() const
{
    nlmsghdr header{};
    header.nlmsg_len = static_cast<quint32>(headerSize + myAttributes.size());
    header.nlmsg_type = myFamily;
    header.nlmsg_flags = NLM_F_REQUEST;
    genlmsghdr command{};
    command.cmd = myCommand;
    command.version = 1;
    return bytesOf(header).toByteArray() + bytesOf(command).toByteArray() + myAttributes;
}
