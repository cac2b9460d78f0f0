#include "VXBenchReport.h"
#include "VXBenchSession.h"
#include "VXBenchmarks.h"
#include "VXTestEnvironment.h"
#include "VXUploadPhone.h"
#include "VXUploadTarget.h"
#include "VXWebRun.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXLogger.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QSysInfo>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iostream>
#include <string>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr double fullSlack = 1.15;
constexpr double shortSlack = 1.3; // nobody keeps those machines quiet
constexpr int leastRounds = 30;
constexpr int shortRounds = 12; // CI has five minutes

std::atomic<qint64> loggedBytes = 0;

void countMessage(QtMsgType theType, const QMessageLogContext&, const QString& theText)
{
    loggedBytes += theText.size();
    if (theType == QtFatalMsg)
        std::cerr << qPrintable(theText) << std::endl;
}

/// Both sides log into nothing but a counter. The library composes its records all the same.
void countLogs()
{
    qInstallMessageHandler(countMessage);
    VXLogger::instance()->setSink(
        [](const QString&, const QString& theText) { loggedBytes += theText.size(); });
}

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

/// phone URL NUMBER COUNT BYTES
int runPhone(const QStringList& theWords)
{
    const QByteArray photo = VXBenchSession::randomBytes(theWords.at(5).toLongLong());
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
    countLogs();
    VXUploadTarget target;
    if (theWords.at(2) == u"service")
        target.startService(theWords.at(3));
    else
        target.startBareRoute(theWords.at(3));
    return QCoreApplication::exec();
}

QString processorName()
{
    QFile file(u"/proc/cpuinfo"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("model name"))
            return QString::fromLatin1(line.mid(line.indexOf(':') + 2));
    }
    return {};
}

QString loadAverage()
{
    QFile file(u"/proc/loadavg"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()).section(u' ', 0, 2)
                                          : QString();
}

void describeSetting(VXBenchSession& theSession)
{
    VXBenchReport& report = theSession.report();
    report.setSetting(u"Date"_s, QDateTime::currentDateTime().toString(Qt::ISODate));
    report.setSetting(u"Machine"_s,
                      u"%1 processors, %2, %3, Qt %4"_s.arg(
                          QString::number(sysconf(_SC_NPROCESSORS_ONLN)), processorName(),
                          QSysInfo::prettyProductName(), QString::fromLatin1(qVersion())));
    report.setSetting(u"Load average at the start"_s, loadAverage());
    report.setSetting(
        u"Rounds"_s,
        QString::number(theSession.rounds()) +
            (theSession.rounds() < leastRounds ? u" (too few for a full report)"_s : QString()));
    if (theSession.isShort())
        report.setSetting(u"Sizes"_s, u"small"_s);
}

bool writeFile(const QString& thePath, const QByteArray& theContent)
{
    QFile file(thePath);
    if (file.open(QIODevice::WriteOnly) && file.write(theContent) == theContent.size())
        return true;
    std::cerr << "vx-bench: cannot write " << qPrintable(thePath) << std::endl;
    return false;
}

bool writeReport(const VXBenchReport& theReport, const QString& theFolder)
{
    const QDir folder(theFolder);
    return folder.mkpath(u"."_s) &&
           writeFile(folder.filePath(u"report.json"_s), QJsonDocument(theReport.json()).toJson()) &&
           writeFile(folder.filePath(u"report.md"_s), theReport.markdown().toUtf8());
}

/// The benchmarks of the arguments, all when there are none; empty when one is unknown.
QList<VXBenchmark> chosen(const QStringList& theIds, bool theIsShort)
{
    QList<VXBenchmark> result;
    for (const VXBenchmark& benchmark : allBenchmarks()) {
        if (theIds.isEmpty() ? !theIsShort || benchmark.isInShortList
                             : theIds.contains(QString::fromLatin1(benchmark.id)))
            result.append(benchmark);
    }
    const bool isEachKnown = theIds.isEmpty() || result.size() == theIds.size();
    return isEachKnown ? result : QList<VXBenchmark>();
}

void listBenchmarks()
{
    QTextStream output(stdout);
    for (const VXBenchmark& benchmark : allBenchmarks())
        output << QString::fromLatin1(benchmark.id).leftJustified(5) << benchmark.title
               << (benchmark.isInShortList ? " (short list)" : "") << '\n';
}

void run(const QList<VXBenchmark>& theBenchmarks, VXBenchSession& theSession)
{
    for (const VXBenchmark& benchmark : theBenchmarks) {
        QElapsedTimer timer;
        timer.start();
        std::cerr << benchmark.id << ' ' << benchmark.title << " ..." << std::flush;
        benchmark.run(theSession);
        std::cerr << ' ' << timer.elapsed() / 1000 << " s" << std::endl;
    }
}

int judge(const VXBenchReport& theReport, bool theIsCheck, double theSlack)
{
    const QStringList complaints = theReport.complaints(theIsCheck ? theSlack : 1);
    for (const QString& complaint : complaints)
        std::cerr << (theIsCheck ? "FAILED " : "missed ") << qPrintable(complaint) << std::endl;
    return theIsCheck && !complaints.isEmpty() ? 1 : theReport.failures().isEmpty() ? 0 : 2;
}

int runSuite(const QCoreApplication& theApplication)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Measures the library side by side with its yardsticks. Exit status: 0 measured (with "
        "--check: each goal is reached), 1 a goal is missed, 2 something could not be measured."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(u"ID"_s, u"Benchmarks, all unless named."_s, u"[ID...]"_s);
    parser.addOption({u"list"_s, u"Names the benchmarks."_s});
    parser.addOption({u"rounds"_s, u"Rounds of each side."_s, u"number"_s});
    parser.addOption({u"check"_s, u"Fails when a goal is missed by more than 15 %."_s});
    parser.addOption({u"short"_s, u"The short list with small sizes; a slack of 1.3."_s});
    parser.addOption({u"output"_s, u"Folder of the report."_s, u"folder"_s, u"build/bench"_s});
    parser.process(theApplication);
    if (parser.isSet(u"list"_s)) {
        listBenchmarks();
        return 0;
    }
    const bool isShort = parser.isSet(u"short"_s);
    const QList<VXBenchmark> benchmarks = chosen(parser.positionalArguments(), isShort);
    if (benchmarks.isEmpty()) {
        std::cerr << "vx-bench: no such benchmark; --list names them" << std::endl;
        return 2;
    }
    const int usualRounds = isShort ? shortRounds : leastRounds;
    const int rounds = parser.isSet(u"rounds"_s) ? parser.value(u"rounds"_s).toInt() : usualRounds;
    countLogs();
    VXBenchSession session(std::max(1, rounds), isShort);
    VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s,
                                             session.authority().certificateFile);
    describeSetting(session);
    run(benchmarks, session);
    if (!writeReport(session.report(), parser.value(u"output"_s)))
        return 2;
    return judge(session.report(), parser.isSet(u"check"_s), isShort ? shortSlack : fullSlack);
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    // Files in memory: a disk would say more about itself than about us.
    const QFileInfo memory(u"/dev/shm"_s);
    if (!qEnvironmentVariableIsSet("TMPDIR") && memory.isDir() && memory.isWritable())
        qputenv("TMPDIR", "/dev/shm");
    const VXTestEnvironment environment;

    // The program calls itself as server, as phone and for what happens once in a process.
    const QString role = theArgumentCount > 1 ? QString::fromLocal8Bit(theArguments[1]) : QString();
    if (role == "phone"_L1 || role == "serve"_L1 || role == "child"_L1) {
        const QCoreApplication application(theArgumentCount, theArguments);
        const QStringList words = QCoreApplication::arguments();
        if (role == "phone"_L1 && words.size() == 6)
            return runPhone(words);
        if (role == "serve"_L1 && words.size() == 4)
            return runServer(words);
        return runChild(words.mid(2));
    }
    if (role == "first-load"_L1 && theArgumentCount == 4) { // counts what it logs, too
        countLogs();
        return VXWebRun::startToFirstLoad(theArgumentCount, theArguments,
                                          QString::fromLocal8Bit(theArguments[2]),
                                          QString::fromLocal8Bit(theArguments[3]));
    }
    const QApplication application(theArgumentCount, theArguments);
    if (role == "web"_L1) {
        countLogs();
        return VXWebRun::measure(QCoreApplication::arguments().mid(1));
    }
    return runSuite(application);
}
