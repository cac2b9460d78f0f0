#include "VXBenchmarks.h"

QList<VXBenchmark> allBenchmarks()
{
    return {
        {"B1", "GET of 1 KiB on a live connection", true, benchGet},
        {"B2", "POST of a form, JSON answer", true, benchPost},
        {"B3", "First request in a fresh thread", false, benchFreshThread},
        {"B4", "Very first manager of the process", false, benchFirstManager},
        {"B5", "GET of 100 MiB", true, benchDownload},
        {"B6", "Multipart upload of 100 MiB", false, benchUpload},
        {"B7", "Many threads", true, benchThreads},
        {"B8", "Time-out of a stalled server", false, benchTimeout},
        {"B9", "abort() from another thread", false, benchAbort},
        {"B10", "Questions of a worker", false, benchQuestions},
        {"B11", "GUI thread during a download", false, benchTicker},
        {"B12", "404 with a body", false, benchNotFound},
        {"B13", "Proxy of a query", true, benchProxy},
        {"B14", "Error messages", true, benchMessages},
        {"B15", "Web view", false, benchWebView},
        {"B16", "Scripts in one go", false, benchExecutor},
        {"B17", "Files through the application's scheme", false, benchScheme},
        {"B18", "Web channel", false, benchChannel},
        {"B19", "Photos from eight phones", true, benchPhones},
        {"B20", "Loading the library", false, benchLoad},
        {"B21", "Look-ups and small values", false, benchTables},
        {"B22", "libcurl and curl, for comparison", false, benchCurl},
    };
}
