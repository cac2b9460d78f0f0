#pragma once

#include "VXSampleExitCode.h"
#include "VXSampleOptions.h"
#include "VXSampleOutput.h"

#include <QtCore/QStringList>

#include <memory>

class QCommandLineParser;
class QCoreApplication;
struct VXSampleCommandRow;

/// The program from its first line to its exit status: reads the command line, makes the
/// application object that the command needs, starts the library and runs the command.
class VXSampleProgram
{
    Q_DISABLE_COPY_MOVE(VXSampleProgram)

public:
    /// `theCount` and `theArguments` are main's; they must outlive this object.
    VXSampleProgram(int& theCount, char** theArguments);
    ~VXSampleProgram();

    /// Returns the exit status.
    VXSampleExitCode run();

private:
    VXSampleExitCode refuse(const QString& theText);
    VXSampleExitCode readCommandLine();
    bool showWhatWasAskedFor(const QCommandLineParser& theParser);
    bool configure();
    [[nodiscard]] bool hasDisplay() const;
    void makeApplication();
    void makeWidgetsApplication();
    void showPartner() const;
    VXSampleExitCode runInEventLoop(const QStringList& theArguments);
    VXSampleExitCode runCommand(const QStringList& theArguments);
    VXSampleExitCode checkCount(qsizetype theCount);
    void endAfter(int theSeconds);

    int& myCount;
    char** myArguments;
    VXSampleOutput myOutput;
    VXSampleOptions myOptions;
    const VXSampleCommandRow* myCommand = nullptr; // null: only help or version was asked for
    std::unique_ptr<QCoreApplication> myApplication;
    bool myTimeIsUp = false;
};
