#include "VXCredentials.h"

#include <VXCore/VXCrypto.h>
#include <VXCore/VXEncoder.h>
#include <VXCore/VXSettings.h>
#include <VXCore/VXSettingsLock.h>
#include <VXCore/VXSingleton.h>

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

constexpr auto usernameKey = "username"_L1;
constexpr auto refreshTokenKey = "refreshToken"_L1;
constexpr auto refreshTimeoutKey = "refreshTimeout"_L1; // milliseconds since the epoch, as text
constexpr auto passwordKey = "pwd"_L1;
constexpr auto oldPasswordKey = "password"_L1;

/// The application's settings with a group open, under the settings lock.
class OpenGroup
{
    Q_DISABLE_COPY_MOVE(OpenGroup)

public:
    explicit OpenGroup(const QString& theGroup) { mySettings->beginGroup(theGroup); }
    ~OpenGroup() { mySettings->endGroup(); }

    [[nodiscard]] bool has(QLatin1StringView theKey) const
    {
        return mySettings->doesEntryExist(theKey);
    }
    [[nodiscard]] QString text(QLatin1StringView theKey) const
    {
        return mySettings->value(theKey, QString()).toString();
    }
    bool write(QLatin1StringView theKey, const QString& theText)
    {
        return mySettings->writeEntry(theKey, theText, false);
    }
    void erase(QLatin1StringView theKey) { mySettings->deleteEntry(theKey); }

private:
    const VXSettingsLock myLock; // before the group is begun until after it is ended
    VXSettings* mySettings = VXSingleton<VXSettings>::instance();
};

} // namespace

VXCredentials::VXCredentials() = default;

VXCredentials::VXCredentials(const QString& theUsername, const QString& thePassword)
    : myUsername(theUsername)
    , myEncryptedPassword(encrypt(thePassword))
{
}

VXCredentials::VXCredentials(const QString& theUsername, const QString& theRefreshToken,
                             const QDateTime& theRefreshTimeout)
    : myUsername(theUsername)
    , myRefreshToken(theRefreshToken)
    , myRefreshTimeout(theRefreshTimeout)
{
}

VXCredentials::~VXCredentials() = default;

VXCredentials VXCredentials::fromZelDeeplink(const QUrl& theUrl)
{
    const QUrlQuery query(theUrl);
    VXCredentials credentials(query.queryItemValue(u"login"_s), QString());
    credentials.setAuthOnceToken(query.queryItemValue(u"zelAuthOnceToken"_s));
    return credentials;
}

QString VXCredentials::password() const
{
    return decrypt(myEncryptedPassword);
}

void VXCredentials::setPassword(const QString& thePassword)
{
    myEncryptedPassword = encrypt(thePassword);
}

bool VXCredentials::hasPassword() const
{
    return !password().isEmpty();
}

QString VXCredentials::encrypt(const QString& theText) const
{
    return VXCrypto().encryptDES(theText);
}

QString VXCredentials::decrypt(const QString& theText) const
{
    return VXCrypto().decryptDES(theText);
}

bool VXCredentials::refreshTokenIsValid() const
{
    if (myRefreshToken.isEmpty())
        return false;
    return QDateTime::currentDateTime().daysTo(myRefreshTimeout) > 1;
}

void VXCredentials::clear()
{
    myUsername.clear();
    myEncryptedPassword.clear();
    myRefreshToken.clear();
}

VXCredentials VXCredentials::strippedForRefresh() const
{
    return {myUsername, myRefreshToken, myRefreshTimeout};
}

void VXCredentials::load(const QString& theGroup)
{
    OpenGroup group(theGroup);
    setUsername(group.text(usernameKey));
    if (group.has(refreshTokenKey)) {
        setRefreshToken(group.text(refreshTokenKey));
        setRefreshTimeout(
            QDateTime::fromMSecsSinceEpoch(group.text(refreshTimeoutKey).toLongLong()));
    } else if (group.has(passwordKey)) {
        setEncryptedPassword(group.text(passwordKey));
    } else {
        // The old form; also without it, so that the entry stands from now on.
        setPassword(VXEncoder::decodeString(group.text(oldPasswordKey)));
        if (group.write(passwordKey, myEncryptedPassword))
            group.erase(oldPasswordKey); // not before: it may be the only copy
    }
}

void VXCredentials::save(const QString& theGroup) const
{
    OpenGroup group(theGroup);
    group.write(usernameKey, myUsername);
    if (refreshTokenIsValid()) {
        group.erase(passwordKey);
        group.write(refreshTokenKey, myRefreshToken);
        group.write(refreshTimeoutKey, QString::number(myRefreshTimeout.toMSecsSinceEpoch()));
    } else if (hasPassword()) {
        group.write(passwordKey, myEncryptedPassword);
    } else {
        group.erase(passwordKey);
        group.erase(refreshTokenKey);
        group.erase(refreshTimeoutKey);
    }
}

bool VXCredentials::equals(const VXCredentials& theOther) const
{
    return myUsername == theOther.myUsername && password() == theOther.password() &&
           myRefreshToken == theOther.myRefreshToken &&
           myRefreshTimeout == theOther.myRefreshTimeout;
}
