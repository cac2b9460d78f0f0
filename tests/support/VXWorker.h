#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QMetaObject>
#include <QtCore/QThread>

#include <memory>
#include <thread>
#include <utility>

/// Where a test runs a piece of work.
enum class VXWhere
{
    ApplicationThread,
    Worker,   // a std::thread, of which Qt learns by its first call only
    QtThread, // a QThread
};

/// Runs the work to its end, in this thread or in a new one; this thread handles events meanwhile,
/// so it can answer the questions of the other.
///
/// Prefer Worker to QtThread where one of them is enough: ThreadSanitizer sees the beginning and
/// the end of a std::thread. QTest's macros must not be used in the work: let it return what is to
/// be compared.
template <typename Work>
auto vxRun(VXWhere theWhere, Work theWork)
{
    if (theWhere == VXWhere::ApplicationThread)
        return theWork();

    decltype(theWork()) result{};
    QEventLoop loop;
    const auto workAndQuit = [&] {
        result = theWork();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    };
    if (theWhere == VXWhere::QtThread) {
        const std::unique_ptr<QThread> worker(QThread::create(workAndQuit));
        worker->start();
        loop.exec();
        worker->wait();
    } else {
        std::thread worker(workAndQuit);
        loop.exec();
        worker.join();
    }
    return result;
}
