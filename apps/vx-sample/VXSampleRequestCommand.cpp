#include "VXSampleRequestCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"
#include "VXSampleSimulator.h"
#include "VXSampleWorkers.h"

#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QCommandLineParser>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostThreads = 64;

} // namespace

/// What one thread saw.
struct VXSampleRequestCommand::Outcome
{
    VXNetworkingError error;
    QJsonObject description;
};

void VXSampleRequestCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"H"_s, u"Send the header NAME with VALUE; may be repeated."_s, u"NAME:VALUE"_s},
        {u"d"_s, u"Send TEXT, or the content of FILE, as body."_s, u"TEXT|@FILE"_s},
        {u"json"_s, u"The body is JSON."_s},
        {u"xml"_s, u"The body is XML."_s},
        {u"form"_s, u"The body is a form."_s},
        {u"threads"_s, u"Do it in N worker threads at the same time."_s, u"N"_s, u"0"_s},
    });
    VXSampleArguments::addTimeout(theParser, 120);
}

VXSampleExitCode VXSampleRequestCommand::run(const QCommandLineParser& theArguments,
                                             VXSampleContext& theContext)
{
    const QString complaint = read(theArguments);
    if (!complaint.isEmpty())
        return refuse(theContext, u"request: %1"_s.arg(complaint));
    if (!theContext.resolve(theArguments.positionalArguments().at(1), &myUrl))
        return VXSampleExitCode::EnvironmentError;
    if (!myUrl.isValid() || myUrl.isRelative())
        return refuse(theContext, u"request: \"%1\" is no address"_s.arg(
                                      theArguments.positionalArguments().at(1)));

    const QList<Outcome> outcomes = exchanges();
    const auto isFailed = [](const Outcome& theOutcome) {
        return theOutcome.error.errorOccurred();
    };
    const auto firstFailed = std::ranges::find_if(outcomes, isFailed);
    const Outcome& telling = firstFailed == outcomes.end() ? outcomes.constFirst() : *firstFailed;

    QJsonObject result = telling.description;
    if (myThreads > 0) {
        QJsonArray list;
        for (const Outcome& outcome : outcomes)
            list.append(outcome.description);
        result.insert(u"threads"_s, myThreads);
        result.insert(u"failed"_s, static_cast<int>(std::ranges::count_if(outcomes, isFailed)));
        result.insert(u"exchanges"_s, list);
    }
    theContext.output.result(result);
    return VXSampleExchange::exitCode(telling.error);
}

/// Returns what is wrong, empty when nothing is.
QString VXSampleRequestCommand::read(const QCommandLineParser& theArguments)
{
    const QString method = theArguments.positionalArguments().constFirst();
    const auto operation = VXSampleArguments::operation(method);
    if (!operation)
        return u"\"%1\" is none of HEAD, GET, PUT, POST, DELETE"_s.arg(method);
    myOperation = *operation;

    QString complaint = readHeaders(theArguments.values(u"H"_s));
    if (theArguments.isSet(u"d"_s))
        myBody = VXSampleArguments::textOrFile(theArguments.value(u"d"_s), &complaint);
    myTimeout = VXSampleArguments::number(theArguments, u"timeout"_s, -1,
                                          std::numeric_limits<int>::max(), &complaint)
                    .value_or(0);
    myThreads = VXSampleArguments::number(theArguments, u"threads"_s, 0, mostThreads, &complaint)
                    .value_or(0);

    if (theArguments.isSet(u"json"_s))
        myContentType = ContentJson;
    else if (theArguments.isSet(u"xml"_s))
        myContentType = ContentXml;
    else if (theArguments.isSet(u"form"_s))
        myContentType = ContentFormUrlEncoded;
    else if (!myBody.isEmpty())
        myContentType = ContentOctetStream;
    return complaint;
}

QString VXSampleRequestCommand::readHeaders(const QStringList& theLines)
{
    for (const QString& line : theLines) {
        const qsizetype colon = line.indexOf(u':');
        if (colon <= 0)
            return u"-H: \"%1\" is no NAME:VALUE"_s.arg(line);
        myHeaders.insert(line.first(colon).trimmed(), line.sliced(colon + 1).trimmed());
    }
    return {};
}

/// Runs in the calling thread.
VXSampleRequestCommand::Outcome VXSampleRequestCommand::exchange() const
{
    VXHttpOperation operation(myOperation, myUrl, myBody, VXHttpContentType(myContentType));
    operation.setHeader(myHeaders);
    operation.setTimeout(myTimeout);
    const QByteArray body = operation.exec();

    Outcome outcome{operation.errorStatus(), VXSampleExchange::toJson(operation, body)};
    VXSampleExchange::addBody(outcome.description, body);
    return outcome;
}

QList<VXSampleRequestCommand::Outcome> VXSampleRequestCommand::exchanges() const
{
    if (myThreads == 0)
        return {exchange()};

    QList<Outcome> outcomes(myThreads);
    // Each thread writes its own element; taking the pointer beforehand keeps the list unshared.
    Outcome* const first = outcomes.data();
    VXSampleWorkers::run(myThreads,
                         [this, first](int theNumber) { first[theNumber] = exchange(); });
    return outcomes;
}
