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

    /// A login by token, without a password. The timeout is not checked here.
    VXCredentials(const QString& theUsername, const QString& theRefreshToken,
                  const QDateTime& theRefreshTimeout);

    ///@{
    /// Copies carry everything, the one-shot extras too.
    VXCredentials(const VXCredentials&) = default;
    VXCredentials& operator=(const VXCredentials&) = default;
    ///@}

    virtual ~VXCredentials();

    /// Takes the items "login" and "zelAuthOnceToken" of the link's query, in Qt's pretty-decoded
    /// form: "%C3%BC" becomes a letter, "%40" stays, so a link carries the at sign as it is. What
    /// is missing is empty.
    [[nodiscard]] static VXCredentials fromZelDeeplink(const QUrl& theUrl);

    /// Its case is kept; operator==() heeds it.
    [[nodiscard]] QString username() const { return myUsername; }

    /// Leaves password and tokens alone, also those of another user.
    void setUsername(const QString& theUsername) { myUsername = theUsername; }

    /// Blanks alone count as a name.
    [[nodiscard]] bool hasUserName() const { return !myUsername.isEmpty(); }

    /// The plain text, deciphered now.
    [[nodiscard]] QString password() const;

    /// Takes the plain text and enciphers it at once.
    void setPassword(const QString& thePassword);

    /// Deciphers it to look: an enciphered empty text is no password.
    [[nodiscard]] bool hasPassword() const;

    /// The enciphered form as it is.
    [[nodiscard]] QString encryptedPassword() const { return myEncryptedPassword; }

    /// Takes what encryptedPassword() gave; anything else deciphers to nothing useful.
    void setEncryptedPassword(const QString& thePassword) { myEncryptedPassword = thePassword; }

    /// The plain token (RFC 6749, 1.5), whether it is still valid or not.
    [[nodiscard]] QString refreshToken() const { return myRefreshToken; }

    /// The timeout stays and must be set with it.
    void setRefreshToken(const QString& theToken) { myRefreshToken = theToken; }

    /// When the refresh token lapses; an invalid time counts as lapsed.
    [[nodiscard]] QDateTime refreshTimeout() const { return myRefreshTimeout; }

    /// Not checked here; refreshTokenIsValid() looks at it.
    void setRefreshTimeout(const QDateTime& theTimeout) { myRefreshTimeout = theTimeout; }

    /// Works once, from a deep link.
    [[nodiscard]] QString authOnceToken() const { return myAuthOnceToken; }

    /// Neither save() nor strippedForRefresh() keeps it.
    void setAuthOnceToken(const QString& theToken) { myAuthOnceToken = theToken; }

    /// Whether it is not empty; it stays after its use.
    [[nodiscard]] bool hasAuthOnceToken() const { return !myAuthOnceToken.isEmpty(); }

    /// What the user typed as the second factor; works once.
    [[nodiscard]] QString twoFactorAuthentificationCode() const { return myTwoFactorCode; }

    /// Neither save() nor strippedForRefresh() keeps it.
    void setTwoFactorAuthentificationCode(const QString& theCode) { myTwoFactorCode = theCode; }

    /// Whether it is not empty; it stays after its use.
    [[nodiscard]] bool hasTwoFactorAuthentificationCode() const
    {
        return !myTwoFactorCode.isEmpty();
    }

    /// The host's reversible cipher.
    [[nodiscard]] QString encrypt(const QString& theText) const;

    /// The way back; see VXCrypto::decryptDES() for what is no such text.
    [[nodiscard]] QString decrypt(const QString& theText) const;

    /// User name and password.
    [[nodiscard]] bool isStrong() const { return hasUserName() && hasPassword(); }

    /// User name and a refresh token that is valid.
    [[nodiscard]] bool isWeak() const { return hasUserName() && refreshTokenIsValid(); }

    /// Whether a login with them can be tried: strong or weak.
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
    /// password's old form the first that is there counts; the old form is rewritten at once, and
    /// stays when that fails. Fields that are not read keep their values.
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
