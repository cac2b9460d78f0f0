#include "VXSampleCredentialsCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXCredentials.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

using namespace Qt::StringLiterals;

namespace {

QJsonObject classify(const VXCredentials& theCredentials)
{
    return {{u"user"_s, theCredentials.username()},
            {u"strong"_s, theCredentials.isStrong()},
            {u"weak"_s, theCredentials.isWeak()},
            {u"valid"_s, theCredentials.isValid()},
            {u"hasPassword"_s, theCredentials.hasPassword()},
            {u"hasRefreshToken"_s, !theCredentials.refreshToken().isEmpty()},
            {u"refreshTimeout"_s, theCredentials.refreshTimeout().toString(Qt::ISODate)},
            {u"hasAuthOnceToken"_s, theCredentials.hasAuthOnceToken()}};
}

} // namespace

void VXSampleCredentialsCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"user"_s, u"The user name to save."_s, u"NAME"_s},
        {u"password-stdin"_s, u"Read the password from the first line of standard input."_s},
        {u"refresh-token-stdin"_s,
         u"Read a refresh token from the first line of standard input."_s},
        {u"days"_s, u"The refresh token is good for N days."_s, u"N"_s, u"30"_s},
    });
}

VXSampleExitCode VXSampleCredentialsCommand::run(const QCommandLineParser& theArguments,
                                                 VXSampleContext& theContext)
{
    const QString verb = theArguments.positionalArguments().constFirst();
    const QString operand = theArguments.positionalArguments().at(1);
    VXCredentials credentials;
    if (verb == "save"_L1) {
        const QString complaint = fill(theArguments, credentials);
        if (!complaint.isEmpty())
            return refuse(theContext, u"credentials: %1"_s.arg(complaint));
        credentials.save(operand);
    } else if (verb == "load"_L1) {
        credentials.load(operand);
    } else if (verb == "deeplink"_L1) {
        credentials = VXCredentials::fromZelDeeplink(QUrl(operand));
    } else {
        return refuse(theContext, u"credentials: use save GROUP, load GROUP or deeplink URL"_s);
    }
    theContext.output.result(classify(credentials));
    return VXSampleExitCode::Success;
}

/// Returns what is wrong, empty when nothing is.
QString VXSampleCredentialsCommand::fill(const QCommandLineParser& theArguments,
                                         VXCredentials& theCredentials)
{
    QString complaint;
    const int days =
        VXSampleArguments::number(theArguments, u"days"_s, 0, 36'500, &complaint).value_or(0);
    theCredentials.setUsername(theArguments.value(u"user"_s));
    if (theArguments.isSet(u"password-stdin"_s))
        theCredentials.setPassword(VXSampleArguments::lineFromStandardInput());
    if (theArguments.isSet(u"refresh-token-stdin"_s)) {
        theCredentials.setRefreshToken(VXSampleArguments::lineFromStandardInput());
        theCredentials.setRefreshTimeout(QDateTime::currentDateTime().addDays(days));
    }
    return complaint;
}
