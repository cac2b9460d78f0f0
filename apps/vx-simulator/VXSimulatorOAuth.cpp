#include "VXSimulatorOAuth.h"

#include "VXSimulatorState.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

using namespace Qt::StringLiterals;

namespace {

using Response = VXSimulatorResponse;

QString item(const QUrlQuery& theForm, const QString& theName)
{
    return theForm.queryItemValue(theName, QUrl::FullyDecoded);
}

/// An error of the token endpoint (RFC 6749, 5.2).
Response oauthError(const QString& theCode, const QString& theDescription)
{
    return Response::json({{u"error"_s, theCode}, {u"error_description"_s, theDescription}}, 400);
}

/// A redirect target: absolute, http or https, with a host.
bool isTarget(const QUrl& theUrl)
{
    return theUrl.isValid() && !theUrl.host().isEmpty() &&
           (theUrl.scheme() == u"http"_s || theUrl.scheme() == u"https"_s);
}

template <typename Map>
void dropOldest(Map& theMap)
{
    while (theMap.size() > VXSimulatorOAuth::maximumTokens)
        theMap.erase(theMap.begin());
}

/// Whether theVerifier fits what the login page was asked with (RFC 7636, 4.6, S256 only).
bool isProof(const QString& theChallenge, const QString& theVerifier)
{
    const auto form = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;
    const QByteArray hash =
        QCryptographicHash::hash(theVerifier.toUtf8(), QCryptographicHash::Sha256).toBase64(form);
    return theChallenge.isEmpty() || QString::fromLatin1(hash) == theChallenge;
}

Response page(const QString& theRedirectUri, const QString& theState, const QString& theChallenge,
              const QString& theMessage)
{
    QFile file(u":/vx-simulator/pages/login.html"_s);
    if (!file.open(QFile::ReadOnly))
        return Response::error(500, u"the login page is missing"_s);
    const QString html = QString::fromUtf8(file.readAll())
                             .arg(theRedirectUri.toHtmlEscaped(), theState.toHtmlEscaped(),
                                  theMessage.toHtmlEscaped(), theChallenge.toHtmlEscaped());
    return Response::text(200, html.toUtf8(), "text/html; charset=utf-8");
}

} // namespace

VXSimulatorOAuth::VXSimulatorOAuth(const VXSimulatorState& theState)
    : myState(theState)
{
}

QList<VXSimulatorRoute> VXSimulatorOAuth::routes()
{
    using Request = VXSimulatorRequest;
    return {
        {u"/oauth2/token"_s,
         {"POST"},
         [this](const Request& theRequest, const QString&) { return token(theRequest); }},
        {u"/oauth2/revoke"_s,
         {"POST"},
         [this](const Request& theRequest, const QString&) { return revoke(theRequest); }},
        {u"/oauth2/check"_s,
         {},
         [this](const Request& theRequest, const QString&) { return check(theRequest); }},
        {u"/oauth2/authorize"_s,
         {"GET", "HEAD"},
         [this](const Request& theRequest, const QString&) { return loginPage(theRequest); }},
        {u"/oauth2/authorize"_s,
         {"POST"},
         [this](const Request& theRequest, const QString&) { return authorize(theRequest); }},
        {u"/login"_s,
         {"POST"},
         [this](const Request& theRequest, const QString&) { return login(theRequest); }},
    };
}

QString VXSimulatorOAuth::newName(const QString& thePrefix)
{
    // Leading zeros: the maps sort by age.
    return u"%1-%2"_s.arg(thePrefix).arg(++myLastNumber, 8, 10, '0'_L1);
}

QJsonObject VXSimulatorOAuth::newTokens(const QString& theUser, const QString& theRefreshToken)
{
    const auto rules = myState.oauth();
    const QString access = newName(u"access"_s);
    myAccessTokens.insert(access,
                          {theUser, QDateTime::currentDateTimeUtc().addSecs(rules.expiresIn)});
    dropOldest(myAccessTokens);
    QJsonObject reply{
        {u"access_token"_s, access},
        {u"token_type"_s, u"Bearer"_s},
        {u"expires_in"_s, rules.expiresIn},
    };
    if (!rules.sendRefreshToken)
        return reply;
    const QString refresh = theRefreshToken.isEmpty() ? newName(u"refresh"_s) : theRefreshToken;
    myRefreshTokens.insert(refresh, theUser);
    dropOldest(myRefreshTokens);
    reply.insert(u"refresh_token"_s, refresh);
    return reply;
}

Response VXSimulatorOAuth::token(const VXSimulatorRequest& theRequest)
{
    const QUrlQuery form = theRequest.form();
    const QString grant = item(form, u"grant_type"_s);
    if (grant == u"password"_s)
        return passwordGrant(form);
    if (grant == u"refresh_token"_s)
        return refreshGrant(form);
    if (grant == u"authorization_code"_s)
        return codeGrant(form);
    return oauthError(u"unsupported_grant_type"_s,
                      u"password, refresh_token or authorization_code"_s);
}

Response VXSimulatorOAuth::passwordGrant(const QUrlQuery& theForm)
{
    const QString user = item(theForm, u"username"_s);
    if (!myState.isUser(user, item(theForm, u"password"_s)))
        return oauthError(u"invalid_grant"_s, u"user or password is wrong"_s);
    return Response::json(newTokens(user));
}

Response VXSimulatorOAuth::refreshGrant(const QUrlQuery& theForm)
{
    const QString refresh = item(theForm, u"refresh_token"_s);
    if (!myRefreshTokens.contains(refresh))
        return oauthError(u"invalid_grant"_s, u"the refresh token is not known"_s);
    const QString user = myRefreshTokens.value(refresh);
    if (!myState.oauth().rotateRefresh)
        return Response::json(newTokens(user, refresh));
    if (myState.oauth().sendRefreshToken)
        myRefreshTokens.remove(refresh);
    return Response::json(newTokens(user));
}

Response VXSimulatorOAuth::codeGrant(const QUrlQuery& theForm)
{
    const QString name = item(theForm, u"code"_s);
    const bool isKnown = myCodes.contains(name);
    const Code code = myCodes.take(name); // a code is good for one try (RFC 6749, 4.1.2)
    if (!isKnown || code.redirectUri != item(theForm, u"redirect_uri"_s))
        return oauthError(u"invalid_grant"_s, u"code or redirect_uri is wrong"_s);
    if (!isProof(code.challenge, item(theForm, u"code_verifier"_s)))
        return oauthError(u"invalid_grant"_s, u"code_verifier is wrong"_s);
    return Response::json(newTokens(code.user));
}

Response VXSimulatorOAuth::revoke(const VXSimulatorRequest& theRequest)
{
    // A token that nobody knows is revoked with success, too (RFC 7009, 2.2).
    const QString name = item(theRequest.form(), u"token"_s);
    const bool wasKnown = myRefreshTokens.remove(name) + myAccessTokens.remove(name) > 0;
    return Response::json({{u"revoked"_s, wasKnown}});
}

Response VXSimulatorOAuth::check(const VXSimulatorRequest& theRequest) const
{
    const QByteArray header = theRequest.header("Authorization");
    if (header.startsWith("Bearer ")) {
        const auto token = myAccessTokens.constFind(QString::fromLatin1(header.sliced(7)));
        if (token != myAccessTokens.cend() && token->end > QDateTime::currentDateTimeUtc())
            return Response::json({{u"active"_s, true}, {u"user"_s, token->user}});
    }
    Response response = Response::error(401, u"the access token is missing, wrong or expired"_s);
    response.addHeader("WWW-Authenticate", "Bearer");
    return response;
}

Response VXSimulatorOAuth::login(const VXSimulatorRequest& theRequest)
{
    const QUrlQuery form = theRequest.form();
    const QString user = item(form, u"username"_s);
    if (!myState.isUser(user, item(form, u"password"_s)))
        return Response::error(401, u"user or password is wrong"_s);
    return Response::json(newTokens(user));
}

Response VXSimulatorOAuth::loginPage(const VXSimulatorRequest& theRequest)
{
    const QString uri = theRequest.queryValue(u"redirect_uri"_s);
    if (!isTarget(QUrl(uri, QUrl::StrictMode)))
        return Response::error(400, u"redirect_uri is missing or no absolute address"_s);
    const bool isPlain = !theRequest.queryValue(u"code_challenge"_s).isEmpty() &&
                         theRequest.queryValue(u"code_challenge_method"_s) != u"S256"_s;
    if (isPlain)
        return Response::error(400, u"code_challenge_method must be S256"_s);
    return page(uri, theRequest.queryValue(u"state"_s), theRequest.queryValue(u"code_challenge"_s),
                {});
}

Response VXSimulatorOAuth::authorize(const VXSimulatorRequest& theRequest)
{
    const QUrlQuery form = theRequest.form();
    const QString uri = item(form, u"redirect_uri"_s);
    const QString state = item(form, u"state"_s);
    const QString challenge = item(form, u"code_challenge"_s);
    QUrl target(uri, QUrl::StrictMode);
    if (!isTarget(target))
        return Response::error(400, u"redirect_uri is missing or no absolute address"_s);
    const QString user = item(form, u"username"_s);
    if (!myState.isUser(user, item(form, u"password"_s)))
        return page(uri, state, challenge, u"Benutzername oder Passwort ist falsch."_s);

    const QString code = newName(u"code"_s);
    myCodes.insert(code, {user, uri, challenge});
    dropOldest(myCodes);
    QUrlQuery query(target);
    query.addQueryItem(u"code"_s, code);
    if (!state.isEmpty())
        query.addQueryItem(u"state"_s, QString::fromLatin1(QUrl::toPercentEncoding(state)));
    target.setQuery(query);
    Response response;
    response.status = 302;
    response.addHeader("Location", target.toEncoded());
    return response;
}

void VXSimulatorOAuth::expireTokens(bool theRefreshTokensToo)
{
    myAccessTokens.clear();
    if (theRefreshTokensToo)
        myRefreshTokens.clear();
}
