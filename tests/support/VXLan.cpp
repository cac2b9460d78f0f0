#include "VXLan.h"

#include <QtCore/QProcess>
#include <QtNetwork/QNetworkInterface>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

/// The kernel notices a change of a cable a moment later.
bool waitUntilRunning(const QString& theName, bool theIsRunning)
{
    return QTest::qWaitFor(
        [&] {
            return QNetworkInterface::interfaceFromName(theName).flags().testFlag(
                       QNetworkInterface::IsRunning) == theIsRunning;
        },
        20000);
}

} // namespace

QString VXLan::missingRight()
{
    if (qEnvironmentVariableIntValue("VX_NAMESPACE") == 1)
        return {};
    return u"needs a network namespace: run it by ctest, or as script/in-namespace <this program>"_s;
}

QString VXLan::ip(const QString& theCommand)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"ip"_s, QProcess::splitCommand(theCommand));
    if (!process.waitForFinished(30000))
        return u"ip %1: %2"_s.arg(theCommand, process.errorString());
    if (process.exitCode() != 0)
        return u"ip %1: %2"_s.arg(theCommand, QString::fromUtf8(process.readAll()));
    return {};
}

QString VXLan::addInterface(const QString& theName, const QStringList& theAddresses)
{
    QStringList commands{
        u"link add %1 type veth peer name p%1 netns phone1"_s.arg(theName),
        u"-n phone1 link set p%1 up"_s.arg(theName),
    };
    for (const QString& address : theAddresses)
        commands.append(u"address add %1 dev %2 nodad"_s.arg(address, theName));
    commands.append(u"link set %1 up"_s.arg(theName));
    for (QString& command : commands) {
        // Only IPv6 knows duplicate detection.
        if (!command.contains(u':'))
            command.remove(u" nodad"_s);
        const QString error = ip(command);
        if (!error.isEmpty())
            return error;
    }
    return waitUntilRunning(theName, true) ? QString() : theName + u" does not run"_s;
}

QString VXLan::unplugInterface(const QString& theName)
{
    const QString error = ip(u"-n phone1 link set p%1 down"_s.arg(theName));
    if (!error.isEmpty())
        return error;
    return waitUntilRunning(theName, false) ? QString() : theName + u" still runs"_s;
}

void VXLan::removeInterface(const QString& theName)
{
    [[maybe_unused]] const QString notThere = ip(u"link delete "_s + theName);
}

QStringList VXLan::asPhone(int theNumber, const QStringList& theCommand)
{
    return QStringList{u"nsenter"_s, u"--net=/run/netns/phone%1"_s.arg(theNumber)} + theCommand;
}
