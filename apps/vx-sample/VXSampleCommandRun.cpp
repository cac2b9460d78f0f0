#include "VXSampleCommandRun.h"

#include "VXSampleCommand.h"
#include "VXSampleCommandTable.h"
#include "VXSampleContext.h"
#include "VXSampleOutput.h"

#include <QtCore/QCommandLineParser>

VXSampleCommandRun::VXSampleCommandRun(const QStringList& theArguments, VXSampleContext& theContext)
{
    const VXSampleCommandRow* const row = VXSampleCommandTable::find(theArguments.value(0));
    Q_ASSERT(row); // the window names its own commands
    const std::unique_ptr<VXSampleCommand> command = row->create();
    QCommandLineParser parser;
    command->addOptions(parser);
    if (!parser.parse(theArguments))
        return;
    theContext.output.forgetResult();
    myCode = command->run(parser, theContext);
    myResult = theContext.output.lastResult();
}
