#include "VXSampleProgram.h"

#include "VXSampleAnswers.h"
#include "VXSampleCommand.h"
#include "VXSampleCommandTable.h"
#include "VXSampleContext.h"
#include "VXSampleHelp.h"
#include "VXSampleSimulator.h"

#include <VXCore/VXCommandLineParser.h>
#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXInitializerOption.h>
#include <VXCore/VXUrlOpener.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXGUIWidgets/VXGUIWidgetsConfig.h>
#include <VXGUIWidgets/VXRequest.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXNetworkingErrorMessageMap.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <array>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

QStringList commandLine(int theCount, char** theArguments)
{
    QStringList arguments;
    for (int i = 0; i < theCount; ++i)
        arguments << QString::fromLocal8Bit(theArguments[i]);
    return arguments;
}

/// Qt's own options that have a value: the application object removes them, but the first look
/// at the command line takes place before there is one.
QStringList withoutQtOptions(QStringList theArguments)
{
    static constexpr std::array withValue{"-platform"_L1, "-platformtheme"_L1, "-style"_L1,
                                          "-stylesheet"_L1};
    for (qsizetype i = 1; i + 1 < theArguments.size();) {
        if (std::ranges::find(withValue, theArguments.at(i)) != withValue.end())
            theArguments.remove(i, 2);
        else
            ++i;
    }
    return theArguments;
}

/// Without a command the window is meant.
QStringList withDefaultCommand(const QStringList& theArguments)
{
    return theArguments.isEmpty() ? QStringList{u"gui"_s} : theArguments;
}

/// The deployment file of a program that was built but not installed; empty when there is none.
QString fileBesideProgram()
{
    const QString program = QFileInfo(u"/proc/self/exe"_s).symLinkTarget();
    const QFileInfo file(QFileInfo(program).dir(), u"vx-sample.ini"_s);
    return file.isFile() ? file.filePath() : QString();
}

} // namespace

VXSampleProgram::VXSampleProgram(int& theCount, char** theArguments)
    : myCount(theCount)
    , myArguments(theArguments)
{
}

VXSampleProgram::~VXSampleProgram() = default;

/// The login text names the retail partner when the deployment has its logo.
void VXSampleProgram::showPartner() const
{
    const VXDeploymentConfig& deployment = *VXDeploymentConfig::instance();
    const QString logo = deployment.text(u"KeyAccount/logo"_s);
    if (!logo.isEmpty())
        VXNetworkingErrorMessageMap().updateInvalidLoginMessage(
            deployment.text(u"KeyAccount/name"_s), QImage(logo));
}

/// Ignores options that it does not know, because Qt's own are still in the list.
bool VXSampleProgram::readCommandLine()
{
    VXCommandLineParser options;
    VXSampleOptions::addTo(options);
    QCommandLineParser& parser = options.parser();
    parser.parse(withoutQtOptions(commandLine(myCount, myArguments)));
    if (showWhatWasAskedFor(parser))
        return false;
    if (parser.positionalArguments().isEmpty() && !parser.errorText().isEmpty())
        return fail(refuse(parser.errorText()));

    const QString name = withDefaultCommand(parser.positionalArguments()).constFirst();
    myCommand = VXSampleCommandTable::find(name);
    if (!myCommand)
        return fail(refuse(u"there is no command \"%1\""_s.arg(name)));
    myOptions = VXSampleOptions::fromParser(parser);
    return myOptions.errorText().isEmpty() || fail(refuse(myOptions.errorText()));
}

bool VXSampleProgram::readDeployment()
{
    if (myOptions.offscreen)
        qputenv("QT_QPA_PLATFORM", "offscreen");

    VXDeploymentConfig& deployment = *VXDeploymentConfig::instance();
    const QString beside = fileBesideProgram();
    if (!beside.isEmpty())
        deployment.readFile(beside);
    if (!myOptions.config.isEmpty() && !deployment.readFile(myOptions.config))
        return fail(VXSampleExitCode::UsageError);

    // The tour compares texts, and knows the German ones.
    if (myCommand->name == "tour"_L1 && myOptions.language.isEmpty())
        myOptions.language = u"de"_s;
    bool isUsable = true;
    for (const auto& [key, value] : myOptions.deploymentValues())
        isUsable = deployment.setValue(key, value) && isUsable;
    QCoreApplication::setOrganizationName(deployment.text(u"Program/organization"_s));
    QCoreApplication::setApplicationName(deployment.text(u"Program/name"_s));
    return isUsable || fail(VXSampleExitCode::UsageError);
}

bool VXSampleProgram::fail(VXSampleExitCode theCode)
{
    myCode = theCode;
    return false;
}

VXSampleExitCode VXSampleProgram::refuse(const QString& theText)
{
    myOutput.message(u"vx-sample: %1"_s.arg(theText));
    myOutput.message(u"vx-sample --help lists the commands and options."_s);
    return VXSampleExitCode::UsageError;
}

bool VXSampleProgram::showWhatWasAskedFor(const QCommandLineParser& theParser)
{
    if (theParser.isSet(u"version"_s)) {
        myOutput.text(u"vx-sample %1"_s.arg(QCoreApplication::applicationVersion()));
        return true;
    }
    const QStringList arguments = theParser.positionalArguments();
    const VXSampleCommandRow* row = VXSampleCommandTable::find(arguments.value(0));
    if (row && (arguments.contains(u"--help"_s) || arguments.contains(u"-h"_s))) {
        myOutput.text(VXSampleHelp::command(*row));
        return true;
    }
    if (theParser.isSet(u"help"_s)) {
        myOutput.text(VXSampleHelp::overview());
        return true;
    }
    return false;
}

/// Without a display Qt would end the process, so it is asked for beforehand.
bool VXSampleProgram::hasDisplay() const
{
    if (myCommand->application == VXSampleApplication::Core)
        return true;
    const QStringList arguments = commandLine(myCount, myArguments);
    return arguments.contains(u"-platform"_s) ||
           std::ranges::any_of(
               std::array{"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"},
               [](const char* theVariable) { return !qEnvironmentVariableIsEmpty(theVariable); });
}

bool VXSampleProgram::makeApplication()
{
    if (!hasDisplay()) {
        myOutput.message(u"vx-sample: there is no display; --offscreen works without one"_s);
        return fail(VXSampleExitCode::EnvironmentError);
    }
    if (showsWebContent())
        makeWidgetsApplication();
    else
        myApplication = std::make_unique<QCoreApplication>(myCount, myArguments);
    return true;
}

bool VXSampleProgram::processCommandLine()
{
    VXCommandLineParser parser;
    VXSampleOptions::addTo(parser);
    if (!parser.process(QCoreApplication::arguments()))
        return fail(refuse(parser.errorText()));
    myCommandLine = withDefaultCommand(parser.parser().positionalArguments());
    return true;
}

bool VXSampleProgram::showsWebContent() const
{
    return myCommand->application == VXSampleApplication::Widgets;
}

VXInitializerOption VXSampleProgram::initializerOption() const
{
    return myOptions.offscreen ? VXInitializerOption::Headless : VXInitializerOption::Normal;
}

void VXSampleProgram::makeWidgetsApplication()
{
    myApplication = std::make_unique<QApplication>(myCount, myArguments);
    // A dialog that closes while there is no other window is not the end of the program.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(VXGUIWidgetsConfig::loadPixmapById(u"ico_logo_vx_simulator"_s));
    VXCSSSkinManager::instance()->applyConfiguredMode();
    VXUrlOpener::installConfigured();
    // Web views follow the user's proxy, too, but ask no access manager, which would make these.
    std::ignore = VXNetworkSettings::instance();
}

/// A command runs inside the application's event loop, so that quitting ends its waits.
void VXSampleProgram::exec()
{
    showPartner();
    if (myOptions.exitAfter)
        endAfter(*myOptions.exitAfter);

    QTimer::singleShot(0, myApplication.get(), [this] {
        myCode = runCommand();
        QCoreApplication::exit();
    });
    QCoreApplication::exec();
}

VXSampleExitCode VXSampleProgram::runCommand()
{
    const std::unique_ptr<VXSampleCommand> command = myCommand->create();
    QCommandLineParser parser;
    command->addOptions(parser);
    if (!parser.parse(myCommandLine)) // the command's name stands where the program's would
        return refuse(u"%1: %2"_s.arg(myCommand->name, parser.errorText()));

    const VXSampleExitCode count = checkCount(parser.positionalArguments().size());
    if (count != VXSampleExitCode::Success)
        return count;

    VXSampleSimulator simulator(myOptions.simulator);
    VXSampleAnswers answers(myOutput);
    answers.setUserIsThere(showsWebContent() && myOptions.answers.isEmpty());
    VXRequest::setDialogDriver(&answers);
    if (!myOptions.answers.isEmpty()) {
        const QString complaint = answers.readFile(myOptions.answers);
        if (!complaint.isEmpty())
            return refuse(u"--answers: %1"_s.arg(complaint));
    }
    // A running simulator's certificates count from the first exchange on.
    const bool isRunning = myOptions.simulator != u"auto"_s && myOptions.simulator != u"none"_s;
    if (isRunning && !simulator.open())
        return refuse(u"--simulator: %1"_s.arg(simulator.errorText()));

    VXSampleContext context{myOptions, myOutput, simulator, answers};
    const VXSampleExitCode code = command->run(parser, context);
    const bool isLate = myTimeIsUp && myCommand->duration == VXSampleDuration::Finite;
    if (isLate)
        return VXSampleExitCode::TimedOut;
    const bool isUnanswered = code == VXSampleExitCode::Success && answers.unanswered() > 0;
    return isUnanswered ? VXSampleExitCode::LibraryError : code;
}

VXSampleExitCode VXSampleProgram::checkCount(qsizetype theCount)
{
    const bool isTooFew = theCount < myCommand->fewestArguments;
    const bool isTooMany = myCommand->mostArguments >= 0 && theCount > myCommand->mostArguments;
    if (!isTooFew && !isTooMany)
        return VXSampleExitCode::Success;

    return refuse(u"%1: %2 arguments; usage: vx-sample %1 %3"_s.arg(
        myCommand->name, isTooFew ? "too few"_L1 : "too many"_L1, myCommand->arguments));
}

void VXSampleProgram::endAfter(int theSeconds)
{
    QTimer::singleShot(std::chrono::seconds(theSeconds), myApplication.get(), [this] {
        myTimeIsUp = true;
        myOutput.message(u"vx-sample: --exit-after is over"_s);
        QCoreApplication::quit(); // ends a wait for an answer, too
    });
}
