#include "VXSampleSignals.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<int> writeEnd = -1;

// A handler and not a signal mask: the web engine's threads are older than this object, and the
// kernel may choose any of them.
void wakeUp(int)
{
    const int before = errno;
    const char byte = 0;
    // A full pipe wakes the reader just as well.
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
    errno = before;
}

} // namespace

VXSampleSignals::VXSampleSignals()
{
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    myReadEnd = ends[0];
    writeEnd = ends[1];
    myNotifier = std::make_unique<QSocketNotifier>(myReadEnd, QSocketNotifier::Read);
    QObject::connect(myNotifier.get(), &QSocketNotifier::activated, QCoreApplication::instance(),
                     [this] {
                         std::array<char, 16> bytes{};
                         if (::read(myReadEnd, bytes.data(), bytes.size()) > 0)
                             QCoreApplication::quit();
                     });

    struct sigaction action = {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, &myInterruptBefore);
    ::sigaction(SIGTERM, &action, &myTerminateBefore);
}

VXSampleSignals::~VXSampleSignals()
{
    if (!myNotifier)
        return;
    ::sigaction(SIGINT, &myInterruptBefore, nullptr);
    ::sigaction(SIGTERM, &myTerminateBefore, nullptr);
    myNotifier.reset();
    ::close(myReadEnd);
    ::close(writeEnd.exchange(-1));
}
