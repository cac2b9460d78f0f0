#include "VXPrivateBus.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 30000; // milliseconds; python needs a while on a busy computer

constexpr auto configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>custom</type>
  <listen>%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_L1;

void finish(QProcess& theProcess)
{
    theProcess.kill(); // also wakes a stopped process
    theProcess.waitForFinished(patience);
}

/// Waits for a whole line on standard output.
bool saysLine(QProcess& theProcess)
{
    while (!theProcess.canReadLine()) {
        if (!theProcess.waitForReadyRead(patience))
            return false;
    }
    return true;
}

} // namespace

VXPrivateBus::VXPrivateBus() = default;

VXPrivateBus::~VXPrivateBus()
{
    for (const std::unique_ptr<QProcess>& fake : myFakes)
        finish(*fake);
    if (myDaemon)
        finish(*myDaemon);
}

QString VXPrivateBus::address() const
{
    return u"unix:path=%1/bus"_s.arg(myFolder.path());
}

QString VXPrivateBus::start()
{
    QFile file(myFolder.filePath(u"bus.conf"_s));
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write(QString(configuration).arg(address()).toUtf8());
    file.close();

    myDaemon = std::make_unique<QProcess>();
    myDaemon->start(u"dbus-daemon"_s,
                    {u"--config-file="_s + file.fileName(), u"--nofork"_s, u"--print-address"_s});
    if (!saysLine(*myDaemon))
        return u"dbus-daemon (Debian package dbus) did not start: "_s +
               QString::fromUtf8(myDaemon->readAllStandardError());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address().toLatin1());
    return {};
}

QProcess* VXPrivateBus::startFake(const QStringList& theArguments)
{
    auto fake = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, address());
    fake->setProcessEnvironment(environment);
    fake->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Debian's Python, for which python3-dbusmock is installed.
    fake->start(u"/usr/bin/python3"_s,
                QStringList{u"" VX_SOURCE_DIR "/tests/support/fake-wifi-services"_s} +
                    theArguments);
    const bool isReady = saysLine(*fake);
    myFakes.push_back(std::move(fake));
    return isReady ? myFakes.back().get() : nullptr;
}
