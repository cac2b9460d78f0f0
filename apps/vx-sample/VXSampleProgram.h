#pragma once

#include "VXSampleExitCode.h"
#include "VXSampleOptions.h"
#include "VXSampleOutput.h"

#include <QtCore/QStringList>

#include <memory>

class QCommandLineParser;
class QCoreApplication;
enum class VXInitializerOption;
struct VXSampleCommandRow;

/// What is this program's own in the steps that main() takes: its options, its commands, and which
/// application object they need. A step that returns false ends the program with exitStatus().
class VXSampleProgram
{
    Q_DISABLE_COPY_MOVE(VXSampleProgram)

public:
    /// `theCount` and `theArguments` are main's; they must outlive this object.
    VXSampleProgram(int& theCount, char** theArguments);

    /// Deletes the application object.
    ~VXSampleProgram();

    /// The first look at the command line. It finds the command and does nothing yet. False also
    /// when only help or the version was asked for.
    bool readCommandLine();

    /// Reads the deployment: the file beside the program, --config, then the single options.
    bool readDeployment();

    /// Makes the application object: with widgets when the command has a window or a dialog, which
    /// needs a display, else without.
    bool makeApplication();

    /// The second look at the command line. It is strict, and the library acts on its own options.
    bool processCommandLine();

    /// Whether the command needs the web engine. Those without windows would start it in vain.
    [[nodiscard]] bool showsWebContent() const;

    [[nodiscard]] VXInitializerOption initializerOption() const;

    /// Runs the command to its end.
    void exec();

    /// See VXSampleExitCode.
    [[nodiscard]] int exitStatus() const { return static_cast<int>(myCode); }

private:
    VXSampleExitCode refuse(const QString& theText);
    bool fail(VXSampleExitCode theCode);
    bool showWhatWasAskedFor(const QCommandLineParser& theParser);
    [[nodiscard]] bool hasDisplay() const;
    void makeWidgetsApplication();
    void showPartner() const;
    VXSampleExitCode runCommand();
    VXSampleExitCode checkCount(qsizetype theCount);
    void endAfter(int theSeconds);

    int& myCount;
    char** myArguments;
    VXSampleOutput myOutput;
    VXSampleOptions myOptions;
    QStringList myCommandLine;                     // from the command on
    const VXSampleCommandRow* myCommand = nullptr; // null until readCommandLine() found it
    VXSampleExitCode myCode = VXSampleExitCode::Success;
    std::unique_ptr<QCoreApplication> myApplication;
    bool myTimeIsUp = false;
};
