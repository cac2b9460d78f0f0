#include "VXSampleWorkers.h"

#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>

#include <memory>
#include <vector>

namespace {

constexpr int pollMilliseconds = 20;

} // namespace

void VXSampleWorkers::run(int theCount, const std::function<void(int)>& theWork)
{
    QEventLoop loop;
    int open = theCount;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int number = 0; number < theCount; ++number) {
        threads.emplace_back(QThread::create([&theWork, number] {
            theWork(number);
            VXNetworkAccessManager::releaseThreadInstance(); // the thread ends here
        }));
        QObject::connect(threads.back().get(), &QThread::finished, &loop, [&loop, &open] {
            if (--open == 0)
                loop.quit();
        });
        threads.back()->start();
    }
    if (theCount > 0)
        loop.exec();

    for (const std::unique_ptr<QThread>& thread : threads) {
        thread->quit(); // only when the application quits: ends the worker's wait for an answer
        while (!thread->wait(pollMilliseconds))
            QCoreApplication::processEvents(); // a worker may stand still until it is answered
    }
}
