#pragma once

#include "VXCoreExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayView>
#include <QtCore/QtGlobal>

#include <optional>

/// A generic netlink message: the kernel's question-and-answer format, as linux/netlink.h and
/// linux/genetlink.h describe it. A plain value in the byte order of this computer; reentrant.
class VXCORE_EXPORT VXNetlinkMessage
{
public:
    /// A question of theFamily (netlink's message type) with theCommand and no attributes.
    VXNetlinkMessage(quint16 theFamily, quint8 theCommand);

    /// Reads the first message in theBytes. Nothing when its lengths contradict each other or the
    /// bytes, or when it is an error or an end-of-list message, which hold no attributes.
    [[nodiscard]] static std::optional<VXNetlinkMessage> fromBytes(QByteArrayView theBytes);

    /// Netlink's message type; generic netlink gives each family a number when it is registered.
    [[nodiscard]] quint16 family() const noexcept { return myFamily; }

    /// What it means depends on the family.
    [[nodiscard]] quint8 command() const noexcept { return myCommand; }

    /// Appends an attribute; its value is padded to four bytes, its length is not.
    void append(quint16 theAttribute, QByteArrayView theValue);

    /// The same for a number of 32 bits, in the byte order of this computer.
    void append(quint16 theAttribute, quint32 theValue);

    /// The value of the first attribute of that type; nothing when there is none or when an
    /// attribute before it claims more bytes than there are.
    [[nodiscard]] std::optional<QByteArray> attribute(quint16 theAttribute) const;

    /// The message as the kernel wants it, with its request flag set.
    [[nodiscard]] QByteArray toBytes() const;

private:
    quint16 myFamily = 0;
    quint8 myCommand = 0;
    QByteArray myAttributes; // as on the wire, padded
};
