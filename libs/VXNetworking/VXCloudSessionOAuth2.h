#pragma once

#include "VXCloudSessionAbstract.h"

#include <QtCore/QLatin1StringView>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

class QJsonObject;

/// A session by OAuth2 (RFC 6749): password grant, refresh and revocation (RFC 7009) as form posts.
///
/// The application derives from it and names client and endpoints. Each request blocks its caller,
/// at most 120 seconds, in a nested event loop: the session may be closed meanwhile, and a reply
/// that comes later fills it again; it may also be deleted.
class VXNETWORKING_EXPORT VXCloudSessionOAuth2 : public VXCloudSessionAbstract
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXCloudSessionOAuth2)

public:
    VXCloudSessionOAuth2();
    ~VXCloudSessionOAuth2() override;

    /// Logs in with user name and password. A failure leaves tokens and credentials alone.
    /// theRestrictions is for concrete sessions; not looked at here.
    VXNetworkingError open(const VXCredentials& theCredentials,
                           VXCloudSessionRestrictions* theRestrictions) override;

    /// Client id, and scope and secret where they are not empty.
    [[nodiscard]] QUrlQuery buildBasicQuery() const;

    /// For the login (RFC 6749, 4.3). In this body and the two below a percent sign and a plus sign
    /// in a value are percent-encoded on the way in, so that the far end's form decoder reads what
    /// the customer typed.
    [[nodiscard]] virtual QUrlQuery buildOpenQuery(const VXCredentials& theCredentials) const;

    /// For the renewal (RFC 6749, 6): the grant type "refresh_token" with refreshToken().
    [[nodiscard]] virtual QUrlQuery buildUpdateQuery() const;
    /// For the revocation. The service wants "client_id" twice.
    [[nodiscard]] virtual QUrlQuery buildRefreshQuery() const;

    /// The public name of the program at the service (RFC 6749, 2.2).
    [[nodiscard]] virtual QString clientId() const = 0;
    [[nodiscard]] virtual QString clientSecret() const; ///< empty here
    [[nodiscard]] virtual QString scope() const;        ///< empty here

    /// "password" here.
    [[nodiscard]] virtual QString loginGrantType() const;

    /// The revocation endpoint (RFC 7009, 2).
    [[nodiscard]] virtual QUrl logoutUrl() const = 0;

    /// The token endpoint (RFC 6749, 3.2), for login and renewal.
    [[nodiscard]] virtual QUrl tokenUrl() const = 0;

    /// Takes over both tokens (a missing one empties what was there) and starts the timer at 90 %
    /// of the lifetime. Without a lifetime no timer is started.
    void parseOAuth2Reply(const QJsonObject& theReply);

public Q_SLOTS:
    /// Revokes the refresh token, whatever the outcome, and closes.
    void close() override;

    /// Renews the tokens. An error is dropped: the session then counts as expired.
    void updateAccessToken() override;

protected:
    /// A key of the token reply (RFC 6749, 5.1), like the two below.
    static constexpr QLatin1StringView AccessTokenKey{"access_token"};

    /// The lifetime of the access token in seconds; a JSON number.
    static constexpr QLatin1StringView ExpiresInKey{"expires_in"};

    /// What the next renewal sends.
    static constexpr QLatin1StringView RefreshTokenKey{"refresh_token"};
};
