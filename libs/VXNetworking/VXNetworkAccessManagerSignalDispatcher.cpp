#include "VXNetworkAccessManagerSignalDispatcher.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto endingPatience = 2s;

} // namespace

std::atomic<int> VXNetworkAccessManagerSignalDispatcher::ourOpenQuestions = 0;
std::atomic<bool> VXNetworkAccessManagerSignalDispatcher::ourIsEnding = false;

VXNetworkAccessManagerSignalDispatcher::VXNetworkAccessManagerSignalDispatcher()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    Q_ASSERT_X(application, Q_FUNC_INFO, "needs an application object");
    if (!application)
        return;
    moveToThread(application->thread());
    connect(application, &QCoreApplication::aboutToQuit, this,
            &VXNetworkAccessManagerSignalDispatcher::declineOpenQuestions);
}

VXNetworkAccessManagerSignalDispatcher::~VXNetworkAccessManagerSignalDispatcher() = default;

void VXNetworkAccessManagerSignalDispatcher::declineOpenQuestions()
{
    ourIsEnding = true;
    // Removing a blocking queued call wakes the thread that waits for it. A worker that was just
    // about to ask has counted itself already, so its call is on the way.
    const QDeadlineTimer patience(endingPatience); // others may hold a worker up, too
    while (ourOpenQuestions > 0 && !patience.hasExpired()) {
        QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
        QThread::msleep(1);
    }
    // An application may run its event loop again: then questions are welcome again.
    QMetaObject::invokeMethod(
        this, [] { ourIsEnding = false; }, Qt::QueuedConnection);
}
