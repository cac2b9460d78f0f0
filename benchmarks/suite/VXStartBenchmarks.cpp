#include "VXBenchSession.h"
#include "VXBenchmarks.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXResourceFile.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QTextStream>
#include <QtNetwork/QSslConfiguration>

#include <cstdio>
#include <ctime>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

using Figure = VXBenchGoal::Figure;

QList<QSslCertificate> bundleCertificates()
{
    const QFileInfo bundle = VXResourceFile(ResourceFileCaBundle).fileInfo();
    return QSslCertificate::fromPath(bundle.absoluteFilePath(), QSsl::Pem,
                                     QSslCertificate::PatternSyntax::FixedString);
}

void appendNewPairwise(QList<QSslCertificate>& theList,
                       const QList<QSslCertificate>& theCertificates)
{
    for (const QSslCertificate& certificate : theCertificates) {
        if (!theList.contains(certificate))
            theList.append(certificate);
    }
}

/// The list as one would write it down: read, merge pairwise, drop what is not valid now.
void makeListByHand()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    QList<QSslCertificate> list = configuration.caCertificates();
    appendNewPairwise(list, QSslConfiguration::systemCaCertificates());
    appendNewPairwise(list, bundleCertificates());
    const QDateTime now = QDateTime::currentDateTime();
    list.removeIf([&now](const QSslCertificate& theCertificate) {
        return theCertificate.expiryDate() < now || theCertificate.effectiveDate() > now ||
               theCertificate.isBlacklisted();
    });
    configuration.setCaCertificates(list);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

/// What cannot be saved: reading both sources.
void readOnly()
{
    const QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    const qsizetype count = configuration.caCertificates().size() +
                            QSslConfiguration::systemCaCertificates().size() +
                            bundleCertificates().size();
    if (count == 0)
        qFatal("this machine has no CA certificates");
}

qint64 cpuNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<qint64>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

/// Wall time and the processor time of this process.
template <typename Work>
int printNanoseconds(Work theWork)
{
    const qint64 cpuBefore = cpuNanoseconds();
    QElapsedTimer timer;
    timer.start();
    theWork();
    const qint64 wall = timer.nsecsElapsed();
    QTextStream(stdout) << wall << ' ' << cpuNanoseconds() - cpuBefore << '\n';
    return 0;
}

int makeCaList(const QString& theWay)
{
    if (theWay == "hand"_L1)
        return printNanoseconds(makeListByHand);
    if (theWay == "read"_L1)
        return printNanoseconds(readOnly);
    if (theWay == "manager"_L1)
        return printNanoseconds([] { std::ignore = VXNetworkAccessManager::threadInstance(); });
    // The manager's constructor would do it too, together with other things.
    VXDeploymentConfig::instance()->setValue(u"Platform/platformCertificatesOnly"_s, u"true"_s);
    VXNetworkAccessManager* const manager = VXNetworkAccessManager::threadInstance();
    return printNanoseconds([manager] { manager->loadSslCertificates(); });
}

/// Milliseconds, wall and processor, of a process that makes the list in this way.
std::pair<double, double> caListTimes(VXBenchSession& theSession, const QString& theWay)
{
    const QByteArray output = theSession.run(u"B4"_s, QCoreApplication::applicationFilePath(),
                                             {u"child"_s, u"ca-list"_s, theWay});
    const QList<QByteArray> words = output.trimmed().split(' ');
    return {words.value(0).toDouble() / 1e6, words.value(1).toDouble() / 1e6};
}

QString pathOfLibrary()
{
    const QDir folder(QCoreApplication::applicationDirPath() + u"/../lib"_s);
    return folder.canonicalPath() + u"/libVXNetworking.so"_s;
}

QByteArray outputOf(VXBenchSession& theSession, const QString& theProgram,
                    const QStringList& theArguments)
{
    return theSession.run(u"B20"_s, theProgram, theArguments);
}

/// All that the library needs and that is not of this project, with Qt's libraries among it.
QStringList foreignDependencies(VXBenchSession& theSession, const QString& theLibrary)
{
    QStringList paths;
    const QString text = QString::fromLocal8Bit(outputOf(theSession, u"ldd"_s, {theLibrary}));
    static const QRegularExpression expression(uR"(=> (/\S+))"_s);
    for (const QRegularExpressionMatch& match : expression.globalMatch(text)) {
        const QString path = match.captured(1);
        if (!QFileInfo(path).fileName().startsWith("libVX"_L1))
            paths.append(path);
    }
    return paths;
}

void addCount(VXBenchSession& theSession, const QString& theMetric, const QString& theUnit,
              double theValue)
{
    theSession.report().add({.id = u"B20"_s,
                             .workload = u"libVXNetworking.so"_s,
                             .metric = theMetric,
                             .unit = theUnit,
                             .yardstick = {},
                             .ours = {theValue},
                             .theirs = {},
                             .goal = {},
                             .note = {}});
}

double matches(const QByteArray& theText, const QString& theExpression)
{
    const QRegularExpression expression(theExpression, QRegularExpression::MultilineOption);
    double count = 0;
    for ([[maybe_unused]] const auto& match :
         expression.globalMatch(QString::fromLocal8Bit(theText)))
        ++count;
    return count;
}

void addCounts(VXBenchSession& theSession, const QString& theLibrary)
{
    const QByteArray relocations = outputOf(theSession, u"readelf"_s, {u"-rW"_s, theLibrary});
    const QByteArray symbols =
        outputOf(theSession, u"nm"_s, {u"-DC"_s, u"--defined-only"_s, theLibrary});
    const QByteArray sections = outputOf(theSession, u"readelf"_s, {u"-SW"_s, theLibrary});
    const QByteArray sizes = outputOf(theSession, u"size"_s, {theLibrary});
    addCount(theSession, u"relocations"_s, u"entries"_s, matches(relocations, u" R_X86_64_"_s));
    addCount(theSession, u"relocations without a symbol"_s, u"entries"_s,
             matches(relocations, u" R_X86_64_RELATIVE"_s));
    addCount(theSession, u"exported symbols"_s, u"symbols"_s, matches(symbols, u"^[0-9a-f]+ "_s));
    const QRegularExpression initialisers(uR"(\.init_array\s+\S+\s+\S+\s+\S+\s+([0-9a-f]+))"_s);
    const QString size = initialisers.match(QString::fromLocal8Bit(sections)).captured(1);
    addCount(theSession, u"static initialisers"_s, u"functions"_s, size.toInt(nullptr, 16) / 8.0);
    const QStringList words =
        QString::fromLocal8Bit(sizes).split(u'\n').value(1).simplified().split(u' ');
    addCount(theSession, u"code and constants"_s, u"KiB"_s, words.value(0).toDouble() / 1024);
    addCount(theSession, u"variables"_s, u"KiB"_s,
             (words.value(1).toDouble() + words.value(2).toDouble()) / 1024);
}

} // namespace

void benchFirstManager(VXBenchSession& theSession)
{
    QHash<QString, QList<double>> wall;
    QHash<QString, QList<double>> cpu;
    for (int i = -1; i < theSession.rounds(); ++i) {
        for (const QString& way : {u"library"_s, u"hand"_s, u"manager"_s, u"read"_s}) {
            const auto [wallTime, cpuTime] = caListTimes(theSession, way);
            if (i < 0)
                continue;
            wall[way].append(wallTime);
            cpu[way].append(cpuTime);
        }
    }
    const auto add = [&](const QString& theWorkload, const QString& theWay, const QString& theOther,
                         const QString& theYardstick, const VXBenchGoal& theGoal) {
        for (const auto& [metric, times] :
             {std::pair(u"wall time"_s, &wall), {u"CPU time"_s, &cpu}})
            theSession.report().add({.id = u"B4"_s,
                                     .workload = theWorkload,
                                     .metric = metric,
                                     .unit = u"ms"_s,
                                     .yardstick = theYardstick,
                                     .ours = times->value(theWay),
                                     .theirs = times->value(theOther),
                                     .goal = theGoal,
                                     .note = {}});
    };
    add(u"CA list"_s, u"library"_s, u"hand"_s, u"by hand, pairwise"_s, VXBenchGoal::noMoreThan(1));
    add(u"CA list"_s, u"library"_s, u"read"_s, u"reading alone"_s, {});
    add(u"very first manager"_s, u"manager"_s, u"hand"_s, u"CA list by hand"_s, {});
}

void benchLoad(VXBenchSession& theSession)
{
    const QString library = pathOfLibrary();
    const QStringList dependencies = foreignDependencies(theSession, library);
    QList<QList<double>> figures(5);
    for (int i = -1; i < theSession.rounds(); ++i) {
        const QByteArray line =
            outputOf(theSession, QCoreApplication::applicationDirPath() + u"/vx-bench-load"_s,
                     QStringList{library} + dependencies);
        const QList<QByteArray> words = line.trimmed().split(' ');
        for (int k = 0; i >= 0 && k < words.size() && k < figures.size(); ++k)
            figures[k].append(words.at(k).toDouble());
    }
    for (QList<double>* const times : {&figures[0], &figures[1]}) {
        for (double& nanoseconds : *times)
            nanoseconds /= 1e6;
    }

    const auto add = [&](const QString& theMetric, const QString& theUnit, int theFigure,
                         const VXBenchGoal& theGoal) {
        theSession.report().add({.id = u"B20"_s,
                                 .workload = u"dlopen of libVXNetworking.so after Qt"_s,
                                 .metric = theMetric,
                                 .unit = theUnit,
                                 .yardstick = {},
                                 .ours = figures.at(theFigure),
                                 .theirs = {},
                                 .goal = theGoal,
                                 .note = {}});
    };
    add(u"wall time"_s, u"ms"_s, 0, VXBenchGoal::noMoreThan(5, Figure::Median));
    add(u"CPU time"_s, u"ms"_s, 1, VXBenchGoal::noMoreThan(5, Figure::Median));
    add(u"files opened by initialisers"_s, u"files"_s, 2,
        VXBenchGoal::noMoreThan(0, Figure::Largest));
    add(u"regular expressions compiled"_s, u"expressions"_s, 3,
        VXBenchGoal::noMoreThan(0, Figure::Largest));
    add(u"memory allocated"_s, u"bytes"_s, 4, {});
    addCounts(theSession, library);
}

int runChild(const QStringList& theWords)
{
    if (theWords.value(0) == "ca-list"_L1)
        return makeCaList(theWords.value(1));
    if (theWords.value(0) == "first-message"_L1)
        return printNanoseconds(
            [] { std::ignore = VXNetworkingError(InvalidSessionId).errorMessage(); });
    return 2;
}
