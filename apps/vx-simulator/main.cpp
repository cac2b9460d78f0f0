#include "VXSimulatorCertificates.h"
#include "VXSimulatorOptions.h"
#include "VXSimulatorSignals.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QSaveFile>
#include <QtCore/QTimer>

#include <algorithm>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum ExitCode
{
    Success = 0,
    UsageError = 2,
    EnvironmentError = 3 // cannot listen, cannot write, no openssl
};

int fail(ExitCode theCode, const QString& theText)
{
    std::fprintf(stderr, "vx-simulator: %s\n", qUtf8Printable(theText));
    return theCode;
}

/// A line for people. It is dropped when nobody reads them: a full pipe must not stop the service.
void report(const QString& theLine)
{
    ::pollfd out{STDERR_FILENO, POLLOUT, 0};
    const QByteArray line = theLine.toUtf8().left(1000) + '\n';
    if (::poll(&out, 1, 0) == 1 && (out.revents & POLLOUT) != 0 &&
        ::write(STDERR_FILENO, line.constData(), std::size_t(line.size())) < 0)
        return;
}

/// The scenario of a file; the error text is empty on success.
QJsonObject readScenario(const QString& thePath, QString* theError)
{
    QFile file(thePath);
    if (!file.open(QFile::ReadOnly)) {
        *theError = u"%1: %2"_s.arg(thePath, file.errorString());
        return {};
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        *theError = u"%1: %2 at offset %3"_s.arg(thePath, parseError.errorString(),
                                                 QString::number(parseError.offset));
    else if (!document.isObject())
        *theError = thePath + u": this is no JSON object"_s;
    return document.object();
}

bool writeReadyFile(const QString& thePath, const QByteArray& theLine)
{
    QSaveFile file(thePath); // written beside and renamed: nobody reads half of it
    return file.open(QFile::WriteOnly) && file.write(theLine) == theLine.size() && file.commit();
}

int makeCertificates(const QString& theFolder)
{
    const VXSimulatorCertificates certificates(theFolder);
    const QString error = certificates.make({});
    if (!error.isEmpty())
        return fail(EnvironmentError, error);
    std::printf("%s\n", QJsonDocument(
                            {{u"event"_s, u"certificates"_s}, {u"caFile"_s, certificates.caFile()}})
                            .toJson(QJsonDocument::Compact)
                            .constData());
    return Success;
}

int serve(QCoreApplication& theApplication, const VXSimulatorOptions& theOptions)
{
    const VXSimulatorSignals signals;
    VXSimulator simulator;
    if (!theOptions.scenarioFile.isEmpty()) {
        QString error;
        const QJsonObject scenario = readScenario(theOptions.scenarioFile, &error);
        if (error.isEmpty())
            error = simulator.applyScenario(scenario);
        if (!error.isEmpty())
            return fail(UsageError, u"--scenario: "_s + error);
    }
    if (const QString error = simulator.start(theOptions.setup); !error.isEmpty())
        return fail(EnvironmentError, error);

    const auto quit = [&theApplication] { theApplication.exit(Success); };
    QObject::connect(&signals, &VXSimulatorSignals::terminated, &theApplication, quit);
    QObject::connect(&simulator, &VXSimulator::quitRequested, &theApplication, quit);
    if (!theOptions.isQuiet)
        QObject::connect(&simulator, &VXSimulator::requestServed, &theApplication, report);
    if (theOptions.exitAfterMs > 0)
        QTimer::singleShot(theOptions.exitAfterMs, &theApplication, quit);

    const QByteArray ready =
        QJsonDocument(simulator.readyObject()).toJson(QJsonDocument::Compact) + '\n';
    if (!theOptions.readyFile.isEmpty() && !writeReadyFile(theOptions.readyFile, ready))
        return fail(EnvironmentError, u"cannot write "_s + theOptions.readyFile);
    std::fputs(ready.constData(), stdout);
    std::fflush(stdout);
    return theApplication.exec();
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    QCoreApplication application(theArgumentCount, theArguments);
    application.setApplicationName(u"vx-simulator"_s);
    const auto options = VXSimulatorOptions::fromArguments(application.arguments());
    if (!options.error.isEmpty())
        return fail(UsageError, options.error);
    if (options.isHelpWanted) {
        std::fputs(qUtf8Printable(options.helpText), stdout);
        return Success;
    }
    if (!options.certificatesToMake.isEmpty())
        return makeCertificates(options.certificatesToMake);
    return serve(application, options);
}
