#include "VXCloudSessionOAuth2.h"

#include "VXHttpOperation.h"
#include "VXNetworkingError.h"

#include <QtCore/QJsonObject>
#include <QtCore/QPointer>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

// The renewal comes after this share of the lifetime, with milliseconds for seconds.
constexpr double renewalShare = 0.9;
constexpr double msPerSecond = 1000.0;

VXHttpOperation formPost(const QUrl& theUrl, const QUrlQuery& theQuery)
{
    return VXHttpOperation::create(theUrl, theQuery.query().toUtf8(), ContentFormUrlEncoded,
                                   QNetworkAccessManager::PostOperation);
}

// QUrlQuery takes "%41" for an encoded "A" and leaves "+" alone, which a form decoder reads as a
// blank. Everything else travels safely as it is.
void addValue(QUrlQuery& theQuery, const QString& theKey, const QString& theValue)
{
    QString value = theValue;
    value.replace(u'%', "%25"_L1).replace(u'+', "%2B"_L1);
    theQuery.addQueryItem(theKey, value);
}

int renewalInMs(double theLifetimeInSeconds)
{
    const double milliseconds = theLifetimeInSeconds * renewalShare * msPerSecond;
    constexpr double largest = std::numeric_limits<int>::max();
    return static_cast<int>(qBound(-largest, milliseconds, largest));
}

} // namespace

VXCloudSessionOAuth2::VXCloudSessionOAuth2() = default;

VXCloudSessionOAuth2::~VXCloudSessionOAuth2() = default;

VXNetworkingError VXCloudSessionOAuth2::open(const VXCredentials& theCredentials,
                                             VXCloudSessionRestrictions* theRestrictions)
{
    Q_UNUSED(theRestrictions)
    const QPointer<QObject> guard(this);
    VXHttpOperation operation = formPost(tokenUrl(), buildOpenQuery(theCredentials));
    const QJsonObject reply = operation.receiveJsonObject();
    if (guard && !operation.errorOccurred()) {
        parseOAuth2Reply(reply);
        setCredentials(theCredentials);
    }
    return operation.errorStatus();
}

void VXCloudSessionOAuth2::updateAccessToken()
{
    const QPointer<QObject> guard(this);
    VXHttpOperation operation = formPost(tokenUrl(), buildUpdateQuery());
    const QJsonObject reply = operation.receiveJsonObject();
    if (guard && !operation.errorOccurred())
        parseOAuth2Reply(reply);
}

void VXCloudSessionOAuth2::close()
{
    const QPointer<QObject> guard(this);
    VXHttpOperation operation = formPost(logoutUrl(), buildRefreshQuery());
    (void)operation.receiveJsonObject();
    if (guard)
        VXCloudSessionAbstract::close();
}

QUrlQuery VXCloudSessionOAuth2::buildBasicQuery() const
{
    QUrlQuery query;
    addValue(query, u"client_id"_s, clientId());
    if (const QString text = scope(); !text.isEmpty())
        addValue(query, u"scope"_s, text);
    if (const QString secret = clientSecret(); !secret.isEmpty())
        addValue(query, u"client_secret"_s, secret);
    return query;
}

QUrlQuery VXCloudSessionOAuth2::buildOpenQuery(const VXCredentials& theCredentials) const
{
    QUrlQuery query = buildBasicQuery();
    addValue(query, u"grant_type"_s, loginGrantType());
    addValue(query, u"username"_s, theCredentials.username());
    addValue(query, u"password"_s, theCredentials.password());
    return query;
}

QUrlQuery VXCloudSessionOAuth2::buildUpdateQuery() const
{
    QUrlQuery query = buildBasicQuery();
    addValue(query, u"grant_type"_s, u"refresh_token"_s);
    addValue(query, u"refresh_token"_s, refreshToken());
    return query;
}

QUrlQuery VXCloudSessionOAuth2::buildRefreshQuery() const
{
    QUrlQuery query = buildBasicQuery();
    addValue(query, u"client_id"_s, clientId()); // the second one, on purpose
    addValue(query, u"token"_s, refreshToken());
    return query;
}

QString VXCloudSessionOAuth2::clientSecret() const
{
    return {};
}

QString VXCloudSessionOAuth2::scope() const
{
    return {};
}

QString VXCloudSessionOAuth2::loginGrantType() const
{
    return u"password"_s;
}

void VXCloudSessionOAuth2::parseOAuth2Reply(const QJsonObject& theReply)
{
    setAccessToken(theReply[AccessTokenKey].toString());
    setRefreshToken(theReply[RefreshTokenKey].toString());
    restartTimer(renewalInMs(theReply[ExpiresInKey].toDouble(0.0)));
}
