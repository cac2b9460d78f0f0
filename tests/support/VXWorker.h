#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QMetaObject>

#include <thread>
#include <utility>

/// Where a test runs a piece of work.
enum class VXWhere
{
    ApplicationThread,
    Worker,
};

/// Runs the work to its end, in this thread or in a new one; this thread handles events meanwhile,
/// so it can answer the questions of the other.
///
/// A std::thread, because ThreadSanitizer sees its beginning and its end. QTest's macros must not
/// be used in the work: let it return what is to be compared.
template <typename Work>
auto vxRun(VXWhere theWhere, Work theWork)
{
    if (theWhere == VXWhere::ApplicationThread)
        return theWork();

    decltype(theWork()) result{};
    QEventLoop loop;
    std::thread worker([&] {
        result = theWork();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    return result;
}
