#include "VXUploadLoadReport.h"
#include "VXUploadLoadRun.h"
#include "VXUploadPhone.h"
#include "VXUploadTarget.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTextStream>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace {

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

/// Bytes that do not compress, like those of a photo; the same in each run.
QByteArray generatedPhoto(qsizetype theSize)
{
    QRandomGenerator generator(1);
    QByteArray photo(theSize, Qt::Uninitialized);
    std::ranges::generate(photo, [&generator] { return static_cast<char>(generator.generate()); });
    return photo;
}

/// phone URL NUMBER COUNT BYTES
int runPhone(const QStringList& theWords)
{
    const QByteArray photo = generatedPhoto(theWords.at(5).toLongLong());
    VXUploadPhone phone;
    if (!phone.introduceTo(QUrl(theWords.at(2))))
        return 1;
    std::cout << "ready" << std::endl;
    std::string line;
    std::getline(std::cin, line);

    const qint64 start = now();
    for (int i = 0; i < theWords.at(4).toInt(); ++i) {
        const QByteArray name = theWords.at(3).toLatin1() + '-' + QByteArray::number(i) + ".JPG";
        if (!phone.send(name, photo))
            return 1;
    }
    std::cout << start << ' ' << now() << std::endl;
    return 0;
}

/// serve (service|bare) FOLDER
int runServer(const QStringList& theWords)
{
    VXUploadTarget target;
    if (theWords.at(2) == u"service")
        target.startService(theWords.at(3));
    else
        target.startBareRoute(theWords.at(3));
    return QCoreApplication::exec();
}

bool measure(const VXUploadLoad& theLoad, const QString& theServer,
             QList<VXUploadLoadResult>& theResults)
{
    VXUploadLoadRun run(theLoad);
    const std::optional<VXUploadLoadResult> result = run.measure(theServer);
    if (!result) {
        std::cerr << "upload_load: " << qPrintable(theServer) << ": " << qPrintable(run.error())
                  << std::endl;
        return false;
    }
    theResults.append(*result);
    return true;
}

int runBenchmark(const VXUploadLoad& theLoad, int theRuns, const QString& theJsonFile)
{
    QList<VXUploadLoadResult> service;
    QList<VXUploadLoadResult> bare;
    // Taking turns, so that whatever else the computer does meets both alike.
    for (int i = 0; i < theRuns; ++i) {
        if (!measure(theLoad, u"service"_s, service) || !measure(theLoad, u"bare"_s, bare))
            return 2;
    }
    const VXUploadLoadReport report(theLoad, service, bare);
    QTextStream(stdout) << report.table();
    QFile json(theJsonFile);
    if (!json.open(QIODevice::WriteOnly)) {
        std::cerr << "upload_load: cannot write " << qPrintable(theJsonFile) << std::endl;
        return 2;
    }
    json.write(QJsonDocument(report.json()).toJson());
    return report.isEachTargetMet() ? 0 : 1;
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const QCoreApplication application(theArgumentCount, theArguments);
    // The program calls itself as server and as phone.
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == u"phone" && words.size() == 6)
        return runPhone(words);
    if (words.value(1) == u"serve" && words.size() == 4)
        return runServer(words);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Load of the photo transfer, compared with a bare route. Exit status: 0 each target is "
        "met, 1 one is missed, 2 nothing could be measured."_s);
    parser.addHelpOption();
    parser.addOption({u"phones"_s, u"Phones at once."_s, u"number"_s, u"8"_s});
    parser.addOption({u"photos"_s, u"Photos of all phones together."_s, u"number"_s, u"50"_s});
    parser.addOption({u"bytes"_s, u"Bytes of a photo."_s, u"number"_s, u"5000000"_s});
    parser.addOption({u"runs"_s, u"Runs of each server."_s, u"number"_s, u"9"_s});
    parser.addOption({u"folder"_s, u"Where the photos go."_s, u"folder"_s, QDir::tempPath()});
    parser.addOption({u"json"_s, u"The file for every run."_s, u"file"_s, u"upload_load.json"_s});
    parser.process(application);

    const VXUploadLoad load{.phones = std::max(1, parser.value(u"phones"_s).toInt()),
                            .photos = std::max(1, parser.value(u"photos"_s).toInt()),
                            .bytes = std::max(1LL, parser.value(u"bytes"_s).toLongLong()),
                            .folder = parser.value(u"folder"_s)};
    return runBenchmark(load, std::max(1, parser.value(u"runs"_s).toInt()),
                        parser.value(u"json"_s));
}
