#include <VXCore/VXNetlinkMessage.h>
#include <VXCore/VXNl80211WifiName.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <cerrno>
#include <cstring>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The kernel's answer to a question: 0 when it knows one, else its error number.
int errorOf(const QByteArray& theQuestion)
{
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_GENERIC);
    std::array<char, 16384> answer{};
    const auto size = static_cast<size_t>(theQuestion.size());
    const bool isAnswered =
        ::send(socket, theQuestion.constData(), size, 0) == theQuestion.size() &&
        ::recv(socket, answer.data(), answer.size(), 0) >=
            static_cast<ssize_t>(NLMSG_HDRLEN + sizeof(nlmsgerr));
    ::close(socket);

    nlmsghdr header{};
    std::memcpy(&header, answer.data(), sizeof header);
    nlmsgerr error{};
    std::memcpy(&error, answer.data() + NLMSG_HDRLEN, sizeof error);
    if (!isAnswered)
        return EIO;
    return header.nlmsg_type == NLMSG_ERROR ? -error.error : 0;
}

} // namespace

/// The kernel's answers are composed from its header definitions; a real radio is not needed.
class tst_VXNl80211WifiName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFamilyIsAskedForByItsName();
    void theKernelUnderstandsTheQuestion();
    void theNameIsReadFromTheKernelsAnswer();
    void anAnswerWithoutNameMeansNotJoined();
    void anUnknownInterfaceGivesNothing();
    void aWiredInterfaceGivesNothing();
    void aNameLongerThanAnyInterfaceGivesNothing();
};

void tst_VXNl80211WifiName::theFamilyIsAskedForByItsName()
{
    // The controller (16) is asked for a family (command 3) of a name (attribute 2), which ends in
    // a NUL.
    QCOMPARE(VXNl80211WifiName::familyQuestion().toBytes().toHex(' '),
             "20 00 00 00 10 00 01 00 00 00 00 00 00 00 00 00 "
             "03 01 00 00 0c 00 02 00 6e 6c 38 30 32 31 31 00"_ba);
}

void tst_VXNl80211WifiName::theKernelUnderstandsTheQuestion()
{
    // A kernel without a wireless subsystem knows no such family; EINVAL would be our fault.
    const int error = errorOf(VXNl80211WifiName::familyQuestion().toBytes());
    QVERIFY2(error == 0 || error == ENOENT, std::strerror(error));
}

void tst_VXNl80211WifiName::theNameIsReadFromTheKernelsAnswer()
{
    // New interface (7): interface number (3), its name (4), kind "station" (5), SSID (52).
    VXNetlinkMessage answer(28, 7);
    answer.append(3, quint32(3));
    answer.append(4, QByteArrayView("wlan0", 6));
    answer.append(5, quint32(2));
    answer.append(52, QByteArrayView("Caf\xc3\xa9"));
    QCOMPARE(VXNl80211WifiName::nameIn(answer), u"Caf\u00e9"_s);
}

void tst_VXNl80211WifiName::anAnswerWithoutNameMeansNotJoined()
{
    VXNetlinkMessage answer(28, 7);
    answer.append(3, quint32(3));
    QCOMPARE(VXNl80211WifiName::nameIn(answer), QString());
}

void tst_VXNl80211WifiName::anUnknownInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(u"nosuch0"_s), std::nullopt);
    QCOMPARE(VXNl80211WifiName().wifiName(QString()), std::nullopt);
}

void tst_VXNl80211WifiName::aWiredInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(u"lo"_s), std::nullopt);
}

void tst_VXNl80211WifiName::aNameLongerThanAnyInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(QString(5000, u'w')), std::nullopt);
}

VX_TEST_MAIN(QCoreApplication, tst_VXNl80211WifiName)
#include "tst_VXNl80211WifiName.moc"
