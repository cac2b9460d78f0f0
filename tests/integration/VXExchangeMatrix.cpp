#include "VXExchangeMatrix.h"

#include "VXNginxServer.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <tuple>

void VXExchangeMatrix::addColumns()
{
    QTest::addColumn<VXWhere>("where");
    QTest::addColumn<bool>("asks");
}

VXExchangeMatrix::VXExchangeMatrix()
{
    QFETCH(VXWhere, where);
    QFETCH(bool, asks);
    myWhere = where;
    myAsks = asks;
    setAnswers(
        {{QLatin1StringView(VXNginxServer::user), QLatin1StringView(VXNginxServer::password)}});
}

void VXExchangeMatrix::inThread(const std::function<void()>& theFunction) const
{
    inThread(myWhere, theFunction);
}

void VXExchangeMatrix::inThread(VXWhere theWhere, const std::function<void()>& theFunction)
{
    std::ignore = vxRun(theWhere, [&theFunction] {
        theFunction();
        VXNetworkAccessManager::releaseThreadInstance(); // with its passwords and connections
        return true;
    });
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
