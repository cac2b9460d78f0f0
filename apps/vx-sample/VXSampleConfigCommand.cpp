#include "VXSampleConfigCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"

#include <VXCore/VXDeploymentConfig.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>

using namespace Qt::StringLiterals;

VXSampleExitCode VXSampleConfigCommand::run(const QCommandLineParser& theArguments,
                                            VXSampleContext& theContext)
{
    const QString verb = theArguments.positionalArguments().constFirst();
    if (verb != u"show"_s)
        return refuse(theContext, u"config: \"%1\" is not show"_s.arg(verb));

    QJsonArray list;
    for (const VXDeploymentConfig::Entry& entry : VXDeploymentConfig::instance()->entries()) {
        list.append(QJsonObject{
            {u"key"_s, entry.key}, {u"value"_s, entry.value}, {u"origin"_s, entry.origin}});
        theContext.output.message(u"%1 = %2   (%3)"_s.arg(entry.key, entry.value, entry.origin));
    }
    theContext.output.result({{u"config"_s, list}});
    return VXSampleExitCode::Success;
}
