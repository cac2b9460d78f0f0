#include "VXSampleLoginCommand.h"

#include "VXSampleContext.h"
#include "VXSampleDirectLogin.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleForm.h"
#include "VXSampleFormTypist.h"
#include "VXSampleOutput.h"
#include "VXSamplePageWatch.h"
#include "VXSamplePkce.h"
#include "VXSampleRedirectWatch.h"

#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>
#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonObject>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int stateBytes = 16;

/// Ties the redirect to this login (RFC 6749, 10.12).
QString newState()
{
    return QString::fromLatin1(VXSamplePkce::randomText(stateBytes));
}

} // namespace

void VXSampleLoginCommand::addOptions(QCommandLineParser& theParser) const
{
    VXSampleLogin::addOptions(theParser);
    theParser.addOptions({
        {u"service"_s, u"The provider's name for the user."_s, u"NAME"_s, u"VX Simulator"_s},
        {u"redirect-uri"_s, u"The address of this computer that the provider knows."_s, u"URL"_s,
         u"http://127.0.0.1:1031/"_s},
    });
}

VXSampleExitCode VXSampleLoginCommand::run(const QCommandLineParser& theArguments,
                                           VXSampleContext& theContext)
{
    const QString kind = theArguments.positionalArguments().constFirst();
    if (kind != "direct"_L1 && kind != "embedded"_L1 && kind != "external"_L1)
        return refuse(theContext, u"login: use direct, embedded or external"_s);
    if (!myLogin.read(theArguments, theContext))
        return VXSampleExitCode::EnvironmentError;
    myService = theArguments.value(u"service"_s);
    myRedirectUri = theArguments.value(u"redirect-uri"_s);

    QString complaint = VXSampleLogin::complaintAbout(u"token-url"_s, myLogin.tokenUrl);
    if (complaint.isEmpty())
        complaint = VXSampleLogin::complaintAbout(u"authorize-url"_s, myLogin.authorizeUrl);
    if (!complaint.isEmpty())
        return refuse(theContext, u"login: %1"_s.arg(complaint));
    if (kind == "direct"_L1)
        return direct(theContext);
    return kind == "embedded"_L1 ? embedded(theContext) : external(theContext);
}

VXSampleExitCode VXSampleLoginCommand::direct(VXSampleContext& theContext) const
{
    QString token;
    const VXNetworkingError error =
        VXSampleDirectLogin(myLogin).performLogin({myLogin.user, myLogin.password}, token);
    QJsonObject result = VXSampleErrorJson::fromError(error);
    result.insert(u"accepted"_s, !token.isEmpty());
    result.insert(u"accessCode"_s, token.isEmpty() ? u"none"_s : u"masked"_s);
    theContext.output.result(result);
    return VXSampleExchange::exitCode(error);
}

VXSampleExitCode VXSampleLoginCommand::embedded(VXSampleContext& theContext) const
{
    const VXSamplePkce pkce;
    const QString state = newState();
    VXOAuth2LoginDialog dialog(loginAddress(pkce, state), myService,
                               VXOAuth2LoginDialog::SaveLoginDataOption |
                                   VXOAuth2LoginDialog::CancelButtonOption);
    const VXSampleRedirectWatch watch(dialog, QUrl(myRedirectUri), state);
    std::optional<VXSampleFormTypist> typist;
    if (!myLogin.user.isEmpty())
        typist.emplace(dialog, myLogin.authorizeUrl, myLogin.user, myLogin.password);
    if (dialog.exec() != QDialog::Accepted)
        return giveUp(theContext, watch.errorCode());

    QJsonObject result;
    const VXSampleExitCode code = exchange(dialog.accessCode(), pkce, &result);
    result.insert(u"save"_s, dialog.saveLoginData());
    theContext.output.result(result);
    return code;
}

/// The login ended without a code.
VXSampleExitCode VXSampleLoginCommand::giveUp(VXSampleContext& theContext,
                                              const QString& theErrorCode) const
{
    QJsonObject result{{u"accepted"_s, false}, {u"accessCode"_s, u"none"_s}};
    if (!theErrorCode.isEmpty())
        result.insert(u"error"_s, theErrorCode);
    theContext.output.result(result);
    return VXSampleExitCode::LibraryError;
}

VXSampleExitCode VXSampleLoginCommand::external(VXSampleContext& theContext) const
{
    if (!VXSampleLogin::isRedirectPortFree()) {
        theContext.output.message(u"vx-sample: login: port 1031 is in use"_s);
        return VXSampleExitCode::EnvironmentError;
    }
    const VXSamplePkce pkce;
    // The dialog does not hand the state back, so the challenge is what counts.
    VXOAuth2ExternalLoginDialog dialog(loginAddress(pkce, newState()), myService);
    if (dialog.exec() != QDialog::Accepted)
        return giveUp(theContext);

    VXSamplePageWatch page(dialog); // the browser asks for the rest of its page meanwhile
    QJsonObject result;
    // The dialog gives the code with its reserved characters still percent-encoded.
    const QString accessCode = QUrl::fromPercentEncoding(dialog.accessCode().toUtf8());
    const VXSampleExitCode code = exchange(accessCode, pkce, &result);
    page.wait();
    theContext.output.result(result);
    return code;
}

/// The address holds the challenge that makes a foreign code worthless (RFC 7636).
QUrl VXSampleLoginCommand::loginAddress(const VXSamplePkce& thePkce, const QString& theState) const
{
    QUrl url = myLogin.authorizeUrl;
    QByteArray query = url.query(QUrl::FullyEncoded).toLatin1();
    if (!query.isEmpty())
        query += '&';
    query += VXSampleForm::encode({{"response_type", u"code"_s},
                                   {"client_id", myLogin.clientId},
                                   {"redirect_uri", myRedirectUri},
                                   {"scope", myLogin.scope},
                                   {"state", theState},
                                   {"code_challenge", QString::fromLatin1(thePkce.challenge())},
                                   {"code_challenge_method", u"S256"_s}});
    url.setQuery(QString::fromLatin1(query));
    return url;
}

VXSampleExitCode VXSampleLoginCommand::exchange(const QString& theCode, const VXSamplePkce& thePkce,
                                                QJsonObject* theResult) const
{
    const QByteArray form =
        VXSampleForm::encode({{"grant_type", u"authorization_code"_s},
                              {"code", theCode},
                              {"redirect_uri", myRedirectUri},
                              {"client_id", myLogin.clientId},
                              {"code_verifier", QString::fromLatin1(thePkce.verifier())}});
    VXHttpOperation operation = VXHttpOperation::create(
        myLogin.tokenUrl, form, ContentFormUrlEncoded, QNetworkAccessManager::PostOperation);
    const QJsonObject reply = operation.receiveJsonObject();

    *theResult = VXSampleErrorJson::fromError(operation.errorStatus());
    theResult->insert(u"accepted"_s, true);
    theResult->insert(u"accessCode"_s, u"masked"_s);
    theResult->insert(u"http"_s, operation.httpResponseCode());
    theResult->insert(u"tokens"_s, reply.contains("access_token"_L1) ? u"masked"_s : u"none"_s);
    theResult->insert(u"hasRefreshToken"_s, reply.contains("refresh_token"_L1));
    theResult->insert(u"expiresIn"_s, reply["expires_in"_L1]);
    return VXSampleExchange::exitCode(operation.errorStatus());
}
