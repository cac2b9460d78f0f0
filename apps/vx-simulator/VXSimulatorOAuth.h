#pragma once

#include "VXSimulatorRouter.h"

#include <QtCore/QDateTime>
#include <QtCore/QMap>

class VXSimulatorState;

/// The login service: OAuth2 tokens (RFC 6749), their revocation (RFC 7009), a login page and
/// the older direct login.
class VXSimulatorOAuth
{
    Q_DISABLE_COPY_MOVE(VXSimulatorOAuth)

public:
    /// Most tokens and codes of each kind kept; the oldest go first.
    static constexpr qsizetype maximumTokens = 10'000;

    /// The state must outlive this object.
    explicit VXSimulatorOAuth(const VXSimulatorState& theState);
    /// This object must outlive the routes.
    [[nodiscard]] QList<VXSimulatorRoute> routes();
    /// Ends all access tokens, and the refresh tokens, too, when asked.
    void expireTokens(bool theRefreshTokensToo);

private:
    struct Token
    {
        QString user;
        QDateTime end;
    };
    struct Code
    {
        QString user;
        QString redirectUri;
        QString challenge; // RFC 7636; empty: none was given
    };
    VXSimulatorResponse token(const VXSimulatorRequest& theRequest);
    VXSimulatorResponse passwordGrant(const QUrlQuery& theForm);
    VXSimulatorResponse refreshGrant(const QUrlQuery& theForm);
    VXSimulatorResponse codeGrant(const QUrlQuery& theForm);
    VXSimulatorResponse revoke(const VXSimulatorRequest& theRequest);
    VXSimulatorResponse check(const VXSimulatorRequest& theRequest) const;
    VXSimulatorResponse login(const VXSimulatorRequest& theRequest);
    VXSimulatorResponse loginPage(const VXSimulatorRequest& theRequest);
    VXSimulatorResponse authorize(const VXSimulatorRequest& theRequest);
    QJsonObject newTokens(const QString& theUser, const QString& theRefreshToken = {});
    QString newName(const QString& thePrefix);

    const VXSimulatorState& myState;
    QMap<QString, Token> myAccessTokens;
    QMap<QString, QString> myRefreshTokens; // with their users
    QMap<QString, Code> myCodes;
    int myLastNumber = 0;
};
