#pragma once

#include "VXCredentials.h"
#include "VXNetworkingExport.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

class VXCloudSessionRestrictions;
class VXNetworkingError;

/// A session with the cloud: its tokens, the timer that renews them, and the credentials of the
/// last login that succeeded.
///
/// Belongs to the thread that made it; the timer fires there. A session that logs out when the
/// application quits must live in the GUI thread.
class VXNETWORKING_EXPORT VXCloudSessionAbstract : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXCloudSessionAbstract)

public:
    VXCloudSessionAbstract();
    ~VXCloudSessionAbstract() override;

    /// Logs in; no error on success. theRestrictions may be null.
    virtual VXNetworkingError open(const VXCredentials& theCredentials,
                                   VXCloudSessionRestrictions* theRestrictions) = 0;

    /// Whether the account still awaits the user's confirmation; false here.
    [[nodiscard]] virtual bool doubleOptInPending() const;

    /// Whether close() runs when the application quits. Off at the start.
    virtual void setLogoutOnClose(bool theIsOn);

    /// For sessions that know a safer kind; false here.
    virtual bool changeToSecureSession(const QString& thePassword);

    /// True when no renewal is due any more, that is when the timer does not run.
    [[nodiscard]] virtual bool isSessionExpired();

    /// True while an access token is held, expired or not.
    [[nodiscard]] bool isOpen() const { return !myAccessToken.isEmpty(); }

    /// Empty while the session is closed; the service may refuse it before its time.
    [[nodiscard]] QString accessToken() const { return myAccessToken; }

    /// The session's own, apart from the one inside the credentials.
    [[nodiscard]] QString refreshToken() const { return myRefreshToken; }

    /// Those of the last login; they stay after close(), and are empty before the first login.
    [[nodiscard]] VXCredentials credentials() const { return myCredentials; }

    /// For concrete sessions, after a login that succeeded; sends nothing.
    void setCredentials(const VXCredentials& theCredentials);

    /// That of credentials().
    [[nodiscard]] QString username() const { return myCredentials.username(); }

    /// Starts the renewal timer; 0 and negative values change nothing.
    void restartTimer(int theMilliseconds);

public Q_SLOTS:
    /// Stops the timer and empties both tokens. The credentials stay.
    virtual void close();

    /// Renews the access token; the timer calls it.
    virtual void updateAccessToken() = 0;

Q_SIGNALS:
    /// For concrete sessions to emit.
    void sessionExpired();

protected:
    /// An empty text closes the session as far as isOpen() tells; the timer goes on.
    void setAccessToken(const QString& theToken) { myAccessToken = theToken; }

    /// Leaves the one inside the credentials alone.
    void setRefreshToken(const QString& theToken) { myRefreshToken = theToken; }

private:
    QTimer myTimer;
    VXCredentials myCredentials;
    QString myAccessToken;
    QString myRefreshToken;
};
