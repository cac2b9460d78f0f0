#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

class VXBenchSession;

/// A benchmark of the suite: what script/bench --list shows, and the function that measures it.
/// A new one is a function, its line in VXBenchmarks.cpp, and a row in docs/performance.md.
struct VXBenchmark
{
    const char* id;
    const char* title;
    bool isInShortList;
    void (*run)(VXBenchSession& theSession);
};

/// All benchmarks in the order in which they run.
[[nodiscard]] QList<VXBenchmark> allBenchmarks();

// VXExchangeBenchmarks.cpp
void benchGet(VXBenchSession& theSession);
void benchPost(VXBenchSession& theSession);
void benchFreshThread(VXBenchSession& theSession);
void benchThreads(VXBenchSession& theSession);
void benchNotFound(VXBenchSession& theSession);
void benchCurl(VXBenchSession& theSession);

// VXTransferBenchmarks.cpp
void benchDownload(VXBenchSession& theSession);
void benchUpload(VXBenchSession& theSession);

// VXWaitBenchmarks.cpp
void benchTimeout(VXBenchSession& theSession);
void benchAbort(VXBenchSession& theSession);
void benchQuestions(VXBenchSession& theSession);
void benchTicker(VXBenchSession& theSession);

// VXStartBenchmarks.cpp
void benchFirstManager(VXBenchSession& theSession);
void benchLoad(VXBenchSession& theSession);

// VXLookupBenchmarks.cpp
void benchProxy(VXBenchSession& theSession);
void benchMessages(VXBenchSession& theSession);
void benchTables(VXBenchSession& theSession);

// VXWebBenchmarks.cpp
void benchWebView(VXBenchSession& theSession);
void benchExecutor(VXBenchSession& theSession);
void benchScheme(VXBenchSession& theSession);
void benchChannel(VXBenchSession& theSession);

// VXPhoneBenchmarks.cpp
void benchPhones(VXBenchSession& theSession);

/// What a process of the suite does when it is called as "child NAME ARGUMENT...".
[[nodiscard]] int runChild(const QStringList& theWords);
