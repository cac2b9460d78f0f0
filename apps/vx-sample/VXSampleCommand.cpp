#include "VXSampleCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"

using namespace Qt::StringLiterals;

VXSampleCommand::~VXSampleCommand() = default;

void VXSampleCommand::addOptions(QCommandLineParser& /*theParser*/) const {}

VXSampleExitCode VXSampleCommand::refuse(VXSampleContext& theContext, const QString& theText)
{
    theContext.output.message(u"vx-sample: %1"_s.arg(theText));
    return VXSampleExitCode::UsageError;
}
