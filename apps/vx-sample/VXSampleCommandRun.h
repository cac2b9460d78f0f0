#pragma once

#include "VXSampleExitCode.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

struct VXSampleContext;

/// One command, run inside the window as it runs from a shell. It prints as always. Main thread;
/// returns when the command has ended.
class VXSampleCommandRun
{
public:
    /// `theArguments` begins with the command's name.
    VXSampleCommandRun(const QStringList& theArguments, VXSampleContext& theContext);

    [[nodiscard]] bool isSuccess() const { return myCode == VXSampleExitCode::Success; }

    [[nodiscard]] VXSampleExitCode exitCode() const { return myCode; }

    /// The command's last line; empty when it had none.
    [[nodiscard]] QJsonObject result() const { return myResult; }

private:
    VXSampleExitCode myCode = VXSampleExitCode::UsageError;
    QJsonObject myResult;
};
