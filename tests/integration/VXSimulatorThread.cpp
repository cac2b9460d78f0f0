#include "VXSimulatorThread.h"

using namespace Qt::StringLiterals;

VXSimulatorThread::VXSimulatorThread(const VXSimulator::Setup& theSetup)
{
    myContext.moveToThread(&myThread);
    myThread.start();
    const auto begin = [&] {
        mySimulator = std::make_unique<VXSimulator>();
        myErrorText = mySimulator->start(theSetup);
        myReady = mySimulator->readyObject();
    };
    QMetaObject::invokeMethod(&myContext, begin, Qt::BlockingQueuedConnection);
}

VXSimulatorThread::~VXSimulatorThread()
{
    QMetaObject::invokeMethod(
        &myContext, [this] { mySimulator.reset(); }, Qt::BlockingQueuedConnection);
    myThread.quit();
    myThread.wait();
}

int VXSimulatorThread::port(const QString& theName) const
{
    const QJsonObject tls = myReady.value(u"https"_s).toObject();
    return (tls.contains(theName) ? tls : myReady).value(theName).toInt();
}
