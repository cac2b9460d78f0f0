#include "VXSampleProbeCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkTester.h>
#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QUrl>

#include <limits>

using namespace Qt::StringLiterals;

void VXSampleProbeCommand::addOptions(QCommandLineParser& theParser) const
{
    VXSampleArguments::addTimeout(theParser, 10);
}

VXSampleExitCode VXSampleProbeCommand::run(const QCommandLineParser& theArguments,
                                           VXSampleContext& theContext)
{
    QString complaint;
    const auto timeout = VXSampleArguments::number(theArguments, u"timeout"_s, -1,
                                                   std::numeric_limits<int>::max(), &complaint);
    if (!timeout)
        return refuse(theContext, u"probe: %1"_s.arg(complaint));
    QUrl url;
    if (!theContext.resolve(theArguments.positionalArguments().constFirst(), &url))
        return VXSampleExitCode::EnvironmentError;

    const VXNetworkingError error = VXNetworkTester::testConnection(url, *timeout);
    QJsonObject result = VXSampleErrorJson::fromError(error);
    result.insert(u"reachable"_s, !error.errorOccurred());
    theContext.output.result(result);
    return VXSampleExchange::exitCode(error);
}
