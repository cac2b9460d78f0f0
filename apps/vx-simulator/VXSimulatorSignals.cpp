#include "VXSimulatorSignals.h"

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

VXSimulatorSignals::VXSimulatorSignals(QObject* theParent)
    : QObject(theParent)
{
    // Blocked before any other thread begins, so that none of them takes the signal.
    ::sigset_t wanted;
    ::sigemptyset(&wanted);
    ::sigaddset(&wanted, SIGTERM);
    ::sigaddset(&wanted, SIGINT);
    ::sigprocmask(SIG_BLOCK, &wanted, nullptr);
    myDescriptor = ::signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
    myNotifier = new QSocketNotifier(myDescriptor, QSocketNotifier::Read, this);
    connect(myNotifier, &QSocketNotifier::activated, this, [this] {
        ::signalfd_siginfo received{};
        if (::read(myDescriptor, &received, sizeof received) == sizeof received)
            Q_EMIT terminated();
    });
}

VXSimulatorSignals::~VXSimulatorSignals()
{
    myNotifier->setEnabled(false);
    ::close(myDescriptor);
}
