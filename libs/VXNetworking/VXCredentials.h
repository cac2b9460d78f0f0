#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>

class QUrl;

/// A user's login to the cloud: a user name with a password ("strong") or with a refresh token
/// ("weak"), and two one-shot extras that are never stored.
///
/// The password is held enciphered and deciphered on every read. A value; reentrant. load() and
/// save() hold the settings lock.
class VXNETWORKING_EXPORT VXCredentials
{
public:
    VXCredentials();

    /// An empty password is enciphered, too.
    VXCredentials(const QString& theUsername, const QString& thePassword);
    VXCredentials(const QString& theUsername, const QString& theRefreshToken,
                  const QDateTime& theRefreshTimeout);

    VXCredentials(const VXCredentials&) = default;
    VXCredentials& operator=(const VXCredentials&) = default;
    virtual ~VXCredentials();

    /// Takes the items "login" and "zelAuthOnceToken" of the link's query, in Qt's pretty-decoded
    /// form: "%C3%BC" becomes a letter, "%40" stays, so a link carries the at sign as it is. What
    /// is missing is empty.
    [[nodiscard]] static VXCredentials fromZelDeeplink(const QUrl& theUrl);

    [[nodiscard]] QString username() const { return myUsername; }
    void setUsername(const QString& theUsername) { myUsername = theUsername; }
    [[nodiscard]] bool hasUserName() const { return !myUsername.isEmpty(); }

    /// The plain text, deciphered now.
    [[nodiscard]] QString password() const;
    void setPassword(const QString& thePassword);
    [[nodiscard]] bool hasPassword() const;

    /// The enciphered form as it is.
    [[nodiscard]] QString encryptedPassword() const { return myEncryptedPassword; }
    void setEncryptedPassword(const QString& thePassword) { myEncryptedPassword = thePassword; }

    [[nodiscard]] QString refreshToken() const { return myRefreshToken; }
    void setRefreshToken(const QString& theToken) { myRefreshToken = theToken; }
    [[nodiscard]] QDateTime refreshTimeout() const { return myRefreshTimeout; }
    void setRefreshTimeout(const QDateTime& theTimeout) { myRefreshTimeout = theTimeout; }

    /// Works once, from a deep link.
    [[nodiscard]] QString authOnceToken() const { return myAuthOnceToken; }
    void setAuthOnceToken(const QString& theToken) { myAuthOnceToken = theToken; }
    [[nodiscard]] bool hasAuthOnceToken() const { return !myAuthOnceToken.isEmpty(); }

    [[nodiscard]] QString twoFactorAuthentificationCode() const { return myTwoFactorCode; }
    void setTwoFactorAuthentificationCode(const QString& theCode) { myTwoFactorCode = theCode; }
    [[nodiscard]] bool hasTwoFactorAuthentificationCode() const
    {
        return !myTwoFactorCode.isEmpty();
    }

    /// The host's reversible cipher.
    [[nodiscard]] QString encrypt(const QString& theText) const;
    [[nodiscard]] QString decrypt(const QString& theText) const;

    /// User name and password.
    [[nodiscard]] bool isStrong() const { return hasUserName() && hasPassword(); }

    /// User name and a refresh token that is valid.
    [[nodiscard]] bool isWeak() const { return hasUserName() && refreshTokenIsValid(); }

    [[nodiscard]] bool isValid() const { return isStrong() || isWeak(); }

    /// Whether at least two calendar days remain until the timeout, so that no refresh is tried
    /// with a token about to lapse.
    [[nodiscard]] bool refreshTokenIsValid() const;

    /// Empties user name, password and refresh token. Timeout, auth-once token and two-factor code
    /// stay, on purpose.
    void clear();

    /// User name, refresh token and timeout only: what a token refresh needs.
    [[nodiscard]] VXCredentials strippedForRefresh() const;

    /// Reads from a group of the application's settings. Of a refresh token, a password and the
    /// password's old form the first that is there counts; the old form is rewritten at once.
    /// Fields that are not read keep their values.
    void load(const QString& theGroup);

    /// Writes the user name, and either a valid refresh token or the password; a valid token drives
    /// the stored password out. With a password alone, token entries that are stored stay.
    void save(const QString& theGroup) const;

    /// Compares user names, plain passwords, refresh tokens and timeouts. The one-shot extras take
    /// no part.
    friend bool operator==(const VXCredentials& theLeft, const VXCredentials& theRight)
    {
        return theLeft.equals(theRight);
    }

private:
    [[nodiscard]] bool equals(const VXCredentials& theOther) const;

    QString myUsername;
    QString myEncryptedPassword;
    QString myRefreshToken;
    QDateTime myRefreshTimeout; // invalid: never
    QString myAuthOnceToken;
    QString myTwoFactorCode;
};
