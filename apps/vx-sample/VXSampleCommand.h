#pragma once

#include "VXSampleExitCode.h"

#include <QtCore/QtGlobal>

class QCommandLineParser;
class QString;
struct VXSampleContext;

/// One command of the program. Its row in VXSampleCommandTable makes it; it runs once, in the main
/// thread, and ends with an exit code. A command that waits for something runs an event loop.
class VXSampleCommand
{
    Q_DISABLE_COPY_MOVE(VXSampleCommand)

public:
    VXSampleCommand() = default;
    virtual ~VXSampleCommand();

    /// Declares the command's own options. Its plain arguments are counted by the table.
    virtual void addOptions(QCommandLineParser& theParser) const;

    /// Does the work. `theArguments` has parsed without error; events and the result line go to
    /// the output of `theContext`.
    virtual VXSampleExitCode run(const QCommandLineParser& theArguments,
                                 VXSampleContext& theContext) = 0;

protected:
    /// Tells the user what is wrong with the arguments. Returns UsageError.
    static VXSampleExitCode refuse(VXSampleContext& theContext, const QString& theText);
};
