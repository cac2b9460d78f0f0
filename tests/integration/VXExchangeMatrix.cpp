#include "VXExchangeMatrix.h"

#include "VXNginxServer.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QEventLoop>

#include <thread>

void VXExchangeMatrix::addColumns()
{
    QTest::addColumn<bool>("worker");
    QTest::addColumn<bool>("asks");
}

VXExchangeMatrix::VXExchangeMatrix()
{
    QFETCH(bool, worker);
    QFETCH(bool, asks);
    myIsWorker = worker;
    myAsks = asks;
    setAnswers(
        {{QLatin1StringView(VXNginxServer::user), QLatin1StringView(VXNginxServer::password)}});
}

void VXExchangeMatrix::inThread(const std::function<void()>& theFunction) const
{
    inThread(myIsWorker, theFunction);
}

void VXExchangeMatrix::inThread(bool theIsWorker, const std::function<void()>& theFunction)
{
    const auto runAndRelease = [&theFunction] {
        theFunction();
        VXNetworkAccessManager::releaseThreadInstance(); // with its passwords and connections
    };
    if (!theIsWorker) {
        runAndRelease();
        return;
    }
    QEventLoop loop;
    std::thread worker([&] {
        runAndRelease();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
}

VXExchangeMatrix::Outcome VXExchangeMatrix::run(const std::function<Outcome()>& theExchange) const
{
    Outcome outcome;
    inThread([&] { outcome = theExchange(); });
    return outcome;
}

VXExchangeMatrix::Outcome VXExchangeMatrix::exec(VXHttpOperation& theOperation)
{
    Outcome outcome;
    outcome.body = theOperation.exec();
    outcome.code = theOperation.errorStatus().errorCode();
    outcome.status = theOperation.httpResponseCode();
    outcome.details = theOperation.describeError();
    return outcome;
}

bool VXExchangeMatrix::wasAskedAsExpected(Kind theKind) const
{
    const QList<Question> asked = questions();
    if (!myAsks)
        return asked.isEmpty();
    return asked.size() == 1 && asked.constFirst().kind == theKind &&
           asked.constFirst().wasAskedInGuiThread;
}
