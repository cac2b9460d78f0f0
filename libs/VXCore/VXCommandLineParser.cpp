#include "VXCommandLineParser.h"

#include "VXCommandLineOptionHandlerAbstract.h"

#include <QtCore/QDebug>

using namespace Qt::StringLiterals;

VXCommandLineParser::VXCommandLineParser() = default;
VXCommandLineParser::~VXCommandLineParser() = default;

void VXCommandLineParser::addOption(int, VXCommandLineOptionHandlerAbstract* theHandler,
                                    const QStringList& theNames, const QString& theHelp,
                                    const QString& theValueName, const QString& theDefaultValue)
{
    std::unique_ptr<VXCommandLineOptionHandlerAbstract> handler(theHandler);
    const QCommandLineOption option(theNames, theHelp, theValueName, theDefaultValue);
    if (option.names().isEmpty() || !myParser.addOption(option)) {
        qWarning().noquote() << "command-line option left out:" << theNames.join(", "_L1);
        return;
    }
    myOptions.push_back({option.names().constFirst(), std::move(handler)});
}

bool VXCommandLineParser::process(const QStringList& theArguments)
{
    if (!myParser.parse(theArguments))
        return false;
    for (const Option& option : myOptions) {
        if (option.handler && myParser.isSet(option.name))
            option.handler->optionUsed(myParser.value(option.name));
    }
    return true;
}
