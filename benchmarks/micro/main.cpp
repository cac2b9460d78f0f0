/// Look-ups and small values, for Google Benchmark. vx-bench runs this program and finds the
/// results by the names below; by itself it takes that library's options.

#include <VXNetworking/VXHttpContentType.h>
#include <VXNetworking/VXHttpRangeHeaderInfo.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXNetworkingErrorMessageMap.h>
#include <VXNetworking/VXProxyFactory.h>
#include <VXNetworking/VXUrlQueryItemList.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QNetworkProxy>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

QList<VXNetworkingErrorCode> everyCode()
{
    QList<VXNetworkingErrorCode> codes;
    for (int code = 0; code <= 1015; ++code)
        codes.append(static_cast<VXNetworkingErrorCode>(code));
    for (int code = 2000; code <= 2003; ++code)
        codes.append(static_cast<VXNetworkingErrorCode>(code));
    for (int code = 3500; code <= 3500 + 499; ++code)
        codes.append(static_cast<VXNetworkingErrorCode>(code));
    for (int code = 5002; code <= 5011; ++code)
        codes.append(static_cast<VXNetworkingErrorCode>(code));
    for (int code = 10100; code <= 10599; ++code) // by HTTP status
        codes.append(static_cast<VXNetworkingErrorCode>(code));
    return codes;
}

const QNetworkProxyQuery& query()
{
    static const QNetworkProxyQuery query(QUrl(u"http://photos.example.net/album?id=17"_s));
    return query;
}

void queryProxy(benchmark::State& theState)
{
    VXProxyFactory factory;
    for (auto _ : theState)
        benchmark::DoNotOptimize(factory.queryProxy(query()));
}

void choose(VXProxyChoiceEnum theChoice)
{
    VXNetworkSettings::instance()->setProxyHostName(u"proxy.example.net"_s);
    VXNetworkSettings::instance()->setProxyPort(3128);
    VXNetworkSettings::instance()->setProxyType(QNetworkProxy::HttpProxy);
    VXNetworkSettings::instance()->setProxyChoice(theChoice);
}

void queryNone(benchmark::State& theState)
{
    queryProxy(theState);
}
BENCHMARK(queryNone)
    ->Setup([](const benchmark::State&) { choose(ProxyChoiceNone); })
    ->UseRealTime()
    ->MeasureProcessCPUTime()
    ->Threads(1)
    ->Threads(8);

void queryOwn(benchmark::State& theState)
{
    queryProxy(theState);
}
BENCHMARK(queryOwn)
    ->Setup([](const benchmark::State&) { choose(ProxyChoiceManual); })
    ->UseRealTime()
    ->MeasureProcessCPUTime()
    ->Threads(1)
    ->Threads(8);

void querySystem(benchmark::State& theState)
{
    queryProxy(theState);
}
BENCHMARK(querySystem)
    ->Setup([](const benchmark::State&) { choose(ProxyChoiceSystem); })
    ->UseRealTime()
    ->MeasureProcessCPUTime()
    ->Threads(1)
    ->Threads(8);

void queryQt(benchmark::State& theState)
{
    for (auto _ : theState)
        benchmark::DoNotOptimize(QNetworkProxyFactory::systemProxyForQuery(query()));
}
BENCHMARK(queryQt)->UseRealTime()->MeasureProcessCPUTime()->Threads(1)->Threads(8);

void errorMessage(benchmark::State& theState)
{
    static const QList<VXNetworkingErrorCode> codes = everyCode();
    for (auto _ : theState) {
        for (const VXNetworkingErrorCode code : codes)
            benchmark::DoNotOptimize(VXNetworkingError(code).errorMessage());
    }
    theState.SetItemsProcessed(theState.iterations() * codes.size());
    theState.counters["calls"] = static_cast<double>(codes.size());
}
BENCHMARK(errorMessage)->UseRealTime()->MeasureProcessCPUTime()->Threads(1)->Threads(8);

void messageTable(benchmark::State& theState)
{
    const VXNetworkingErrorMessageMap map;
    for (auto _ : theState)
        benchmark::DoNotOptimize(map.message(InvalidSessionId));
}
BENCHMARK(messageTable)->UseRealTime()->MeasureProcessCPUTime();

void enumEncode(benchmark::State& theState)
{
    const VXHttpContentType type(ContentJson);
    for (auto _ : theState)
        benchmark::DoNotOptimize(type.encode());
}
BENCHMARK(enumEncode)->UseRealTime()->MeasureProcessCPUTime();

void enumDecode(benchmark::State& theState)
{
    const VXHttpContentType type;
    const QString text = u"Application/JSON"_s;
    for (auto _ : theState)
        benchmark::DoNotOptimize(type.decode(text));
}
BENCHMARK(enumDecode)->UseRealTime()->MeasureProcessCPUTime();

void rangeHeader(benchmark::State& theState)
{
    const QString header = u"bytes=100-199"_s;
    for (auto _ : theState)
        benchmark::DoNotOptimize(VXHttpRangeHeaderInfo(header, 1000).rangeResponse());
}
BENCHMARK(rangeHeader)->UseRealTime()->MeasureProcessCPUTime();

QUrlQuery itemsOf(qint64 theCount)
{
    QUrlQuery items;
    for (qint64 i = 0; i < theCount; ++i)
        items.addQueryItem(u"name%1"_s.arg(i), u"value %1"_s.arg(i));
    return items;
}

/// One more item beside many.
void queryItem(benchmark::State& theState)
{
    const QUrlQuery items = itemsOf(theState.range(0));
    const VXUrlQueryItem item(u"another"_s, u"a b"_s);
    for (auto _ : theState) {
        QUrlQuery copy = items;
        item.addToUrlQuery(copy);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(queryItem)->UseRealTime()->MeasureProcessCPUTime()->Arg(10)->Arg(100)->Arg(1000);

void queryItemList(benchmark::State& theState)
{
    const VXUrlQueryItemList items(itemsOf(theState.range(0)));
    for (auto _ : theState) {
        QUrlQuery query;
        items.addToUrlQuery(query);
        benchmark::DoNotOptimize(query);
    }
}
BENCHMARK(queryItemList)->UseRealTime()->MeasureProcessCPUTime()->Arg(10)->Arg(100)->Arg(1000);

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    benchmark::Initialize(&theArgumentCount, theArguments);
    const QTemporaryDir home; // nothing of the user's settings is read or written
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, home.path().toLocal8Bit());
    const QCoreApplication application(theArgumentCount, theArguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
