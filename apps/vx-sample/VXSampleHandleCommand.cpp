#include "VXSampleHandleCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleMediatorEvents.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QCommandLineParser>

#include <limits>

using namespace Qt::StringLiterals;

void VXSampleHandleCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption({u"wait"_s, u"The wait time that came with the error."_s, u"N"_s, u"0"_s});
}

VXSampleExitCode VXSampleHandleCommand::run(const QCommandLineParser& theArguments,
                                            VXSampleContext& theContext)
{
    QString complaint;
    const int wait = VXSampleArguments::number(theArguments, u"wait"_s, 0,
                                               std::numeric_limits<int>::max(), &complaint)
                         .value_or(0);
    const QString text = theArguments.positionalArguments().constFirst();
    bool isNumber = false;
    const int code = text.toInt(&isNumber);
    if (!isNumber)
        complaint = u"\"%1\" is no code"_s.arg(text);
    if (!complaint.isEmpty())
        return refuse(theContext, u"handle: %1"_s.arg(complaint));

    const VXSampleMediatorEvents events(theContext);
    VXNetworkingError error;
    error.raise(static_cast<VXNetworkingErrorCode>(code), {}, {}, wait);
    VXRequestNetwork* mediator = VXRequestNetwork::instance();
    bool retry = false;
    if (code == InvalidLogin)
        mediator->handleInvalidLoginError(error);
    else
        retry = mediator->handleNetworkError(error);
    theContext.output.result({{u"code"_s, code}, {u"retry"_s, retry}});
    return VXSampleExitCode::Success;
}
