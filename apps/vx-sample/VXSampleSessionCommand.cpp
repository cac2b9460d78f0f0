#include "VXSampleSessionCommand.h"

#include "VXSampleCloudSession.h"
#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonObject>

using namespace Qt::StringLiterals;

namespace {

QJsonObject describe(VXSampleCloudSession& theSession)
{
    return {{u"open"_s, theSession.isOpen()},
            {u"expired"_s, theSession.isSessionExpired()},
            {u"tokens"_s, theSession.isOpen() ? u"masked"_s : u"none"_s},
            {u"hasRefreshToken"_s, !theSession.refreshToken().isEmpty()}};
}

} // namespace

void VXSampleSessionCommand::addOptions(QCommandLineParser& theParser) const
{
    VXSampleLogin::addOptions(theParser);
}

VXSampleExitCode VXSampleSessionCommand::run(const QCommandLineParser& theArguments,
                                             VXSampleContext& theContext)
{
    static const QStringList verbs{u"open"_s, u"refresh"_s, u"expire"_s, u"close"_s};
    const QString verb = theArguments.positionalArguments().constFirst();
    if (!verbs.contains(verb))
        return refuse(theContext, u"session: use open, refresh, expire or close"_s);

    VXSampleLogin login;
    if (!login.read(theArguments, theContext))
        return VXSampleExitCode::EnvironmentError;
    const QString complaint = VXSampleLogin::complaintAbout(u"token-url"_s, login.tokenUrl) +
                              VXSampleLogin::complaintAbout(u"revoke-url"_s, login.revokeUrl);
    if (!complaint.isEmpty())
        return refuse(theContext, u"session: %1"_s.arg(complaint));

    VXSampleCloudSession session(login);
    const VXNetworkingError error = session.open({login.user, login.password}, nullptr);
    QJsonObject result = VXSampleErrorJson::fromError(error);
    VXSampleExitCode code = VXSampleExchange::exitCode(error);
    if (code == VXSampleExitCode::Success && !proceed(verb, session, theContext))
        code = VXSampleExitCode::LibraryError;
    const QJsonObject state = describe(session);
    for (auto entry = state.begin(); entry != state.end(); ++entry)
        result.insert(entry.key(), entry.value());
    theContext.output.result(result);
    return code;
}

/// What the verb wants after the login; false when it failed.
bool VXSampleSessionCommand::proceed(const QString& theVerb, VXSampleCloudSession& theSession,
                                     VXSampleContext& theContext)
{
    if (theVerb == "open"_L1)
        return theSession.isOpen();

    theContext.output.event(u"opened"_s, describe(theSession));
    if (theVerb == "expire"_L1)
        return waitForExpiry(theSession, theContext);
    if (theVerb == "close"_L1) {
        theSession.close();
        return !theSession.isOpen();
    }
    const QString before = theSession.accessToken();
    theSession.updateAccessToken();
    const bool isRenewed = theSession.accessToken() != before;
    theContext.output.event(u"refreshed"_s, {{u"renewed"_s, isRenewed}});
    return isRenewed;
}

/// Until the timer fires, which is after 90 % of the tokens' lifetime.
bool VXSampleSessionCommand::waitForExpiry(VXSampleCloudSession& theSession,
                                           VXSampleContext& theContext)
{
    if (theSession.isSessionExpired()) // a token without a lifetime
        return true;
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    bool isExpired = false;
    QObject::connect(&theSession, &VXSampleCloudSession::sessionExpired, &loop, [&] {
        isExpired = true;
        theContext.output.event(u"expired"_s, {{u"afterMs"_s, clock.elapsed()}});
        loop.quit();
    });
    theSession.setRenews(false);
    loop.exec();
    return isExpired;
}
