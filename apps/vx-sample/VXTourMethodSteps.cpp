#include "VXTourMethodSteps.h"

#include "VXRecordedRequest.h"
#include "VXSampleSimulator.h"
#include "VXSampleWorkers.h"
#include "VXTourRun.h"

#include <VXNetworking/VXHttpContentType.h>
#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Method
{
    QLatin1StringView name;
    QNetworkAccessManager::Operation operation;
    QByteArrayView body;
};

constexpr std::array methods{
    Method{"HEAD"_L1, QNetworkAccessManager::HeadOperation, {}},
    Method{"GET"_L1, QNetworkAccessManager::GetOperation, {}},
    Method{"PUT"_L1, QNetworkAccessManager::PutOperation, "<photo/>"},
    Method{"POST"_L1, QNetworkAccessManager::PostOperation,
           "<order>Gr\xC3\xBC\xC3\x9F\x65</order>"},
    Method{"DELETE"_L1, QNetworkAccessManager::DeleteOperation, {}},
    Method{"DELETE"_L1, QNetworkAccessManager::DeleteOperation, "<reason>double</reason>"},
};
constexpr int workers = 4;

VXTourExpectation expectation(const Method& theMethod, const QString& theTarget)
{
    VXTourExpectation wanted{theMethod.name,
                             theTarget,
                             theMethod.body.toByteArray(),
                             {{u"Zel-Request-Id"_s, theTarget.sliced(1)}}};
    if (!theMethod.body.isEmpty())
        wanted.headers.insert(u"Content-Type"_s, u"text/xml"_s);
    return wanted;
}

VXHttpOperation operation(const Method& theMethod, const QUrl& theUrl)
{
    const QByteArray body = theMethod.body.toByteArray();
    VXHttpOperation made(theMethod.operation, theUrl, body,
                         VXHttpContentType(body.isEmpty() ? ContentNone : ContentXml));
    made.setHeader(u"Zel-Request-Id"_s,
                   theUrl.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).sliced(1));
    return made;
}

void methodFromGuiThread(VXTourRun& theRun, const Method& theMethod)
{
    VXHttpOperation exchange = operation(theMethod, theRun.world.simulator.http(u"/echo"_s));
    const QByteArray answer = exchange.exec();
    theRun.expectSuccess(exchange);
    const QList<VXRecordedRequest> received =
        theRun.expectReceived({expectation(theMethod, u"/echo"_s)});
    if (theMethod.operation != QNetworkAccessManager::HeadOperation && !received.isEmpty())
        theRun.expectEcho(answer, received.constFirst());
    theRun.came(exchange, answer.size());
}

QString targetOf(int theWorker, size_t theMethod)
{
    return u"/echo?worker=%1&request=%2"_s.arg(theWorker).arg(theMethod);
}

void methodsFromWorkers(VXTourRun& theRun)
{
    std::array<int, workers> successes{};
    VXSampleWorkers::run(workers, [&theRun, &successes](int theWorker) {
        for (size_t i = 0; i < methods.size(); ++i) {
            VXHttpOperation exchange =
                operation(methods[i], theRun.world.simulator.http(targetOf(theWorker, i)));
            if (exchange.send())
                ++successes[static_cast<size_t>(theWorker)];
        }
    });

    QList<VXTourExpectation> wanted;
    qint64 sum = 0;
    for (int worker = 0; worker < workers; ++worker) {
        sum += successes[static_cast<size_t>(worker)];
        for (size_t i = 0; i < methods.size(); ++i)
            wanted << expectation(methods[i], targetOf(worker, i));
    }
    theRun.expectReceived(wanted);
    theRun.expectEqual<qint64>(u"successes"_s, sum, wanted.size());
    theRun.came(u"%1 of %2 exchanges succeeded"_s.arg(sum).arg(wanted.size()));
}

void clockOffsetIsLogged(VXTourRun& theRun)
{
    const QString target = u"/date?offset=-1500"_s;
    VXHttpOperation exchange = VXHttpOperation::create(theRun.world.simulator.http(target),
                                                       QNetworkAccessManager::GetOperation);
    QElapsedTimer timer;
    timer.start();
    exchange.exec();
    const qint64 elapsed = timer.elapsed();
    theRun.expectSuccess(exchange);
    theRun.expectReceived({{u"GET"_s, target, {}, {}}});

    static const QRegularExpression record(
        u"TOV NETREQUEST OFFBYMS:(\\d+) BYTES:6  DURATIONMS:\\d+ URL:\\S+ SERVEREPOCH:\\d+"_s);
    const QRegularExpressionMatch match =
        record.match(theRun.logLines(u"TOV NETREQUEST"_s).join(u'\n'));
    const int offset = match.captured(1).toInt();
    theRun.expect(match.hasMatch(), u"there is no request record in the log"_s);
    // The header counts whole seconds, so up to one more is seen, and the answer's way.
    theRun.expect(offset >= 1500 && offset <= 2500 + elapsed,
                  u"the clock offset is %1 ms and not 1500 to 2500"_s.arg(offset));
    theRun.came(u"log record with OFFBYMS:%1"_s.arg(offset));
}

void noDateNoRecord(VXTourRun& theRun)
{
    VXHttpOperation exchange = VXHttpOperation::create(theRun.world.simulator.http(u"/nodate"_s),
                                                       QNetworkAccessManager::GetOperation);
    exchange.exec();
    theRun.expectSuccess(exchange);
    theRun.expectReceived({{u"GET"_s, u"/nodate"_s, {}, {}}});
    theRun.expectEqual<qint64>(u"number of request records"_s,
                               theRun.logLines(u"TOV NETREQUEST"_s).size(), 0);
    theRun.came(u"success, no request record"_s);
}

} // namespace

QList<VXTourStep> VXTourMethodSteps::steps()
{
    QList<VXTourStep> steps;
    for (const Method& method : methods) {
        const QString what = u"%1%2, GUI thread"_s.arg(
            method.name, method.body.isEmpty() ? u""_s : u" with a body"_s);
        steps << VXTourStep{u"methods"_s, what,
                            [&method](VXTourRun& theRun) { methodFromGuiThread(theRun, method); }};
    }
    steps << VXTourStep{u"methods"_s, u"All of them from four worker threads"_s, methodsFromWorkers}
          << VXTourStep{u"methods"_s, u"Server whose clock is 1.5 s behind"_s, clockOffsetIsLogged}
          << VXTourStep{u"methods"_s, u"Server without a clock"_s, noDateNoRecord};
    return steps;
}
