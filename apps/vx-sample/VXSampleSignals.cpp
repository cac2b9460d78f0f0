#include "VXSampleSignals.h"

#include <QtCore/QCoreApplication>

#include <sys/signalfd.h>
#include <unistd.h>

VXSampleSignals::VXSampleSignals()
{
    sigset_t both;
    sigemptyset(&both);
    sigaddset(&both, SIGINT);
    sigaddset(&both, SIGTERM);
    // Blocked signals wait to be read; threads made from now on inherit that.
    ::pthread_sigmask(SIG_BLOCK, &both, &myBefore);
    myDescriptor = ::signalfd(-1, &both, SFD_CLOEXEC | SFD_NONBLOCK);
    if (myDescriptor < 0)
        return;
    myNotifier = std::make_unique<QSocketNotifier>(myDescriptor, QSocketNotifier::Read);
    QObject::connect(myNotifier.get(), &QSocketNotifier::activated, qApp, [this] {
        signalfd_siginfo signal{};
        if (::read(myDescriptor, &signal, sizeof signal) == sizeof signal)
            QCoreApplication::quit();
    });
}

VXSampleSignals::~VXSampleSignals()
{
    myNotifier.reset();
    if (myDescriptor >= 0)
        ::close(myDescriptor);
    ::pthread_sigmask(SIG_SETMASK, &myBefore, nullptr);
}
