#pragma once

#include "VXNetworkingExport.h"

#include <VXCore/VXSettings.h>
#include <VXCore/VXSingleton.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtNetwork/QNetworkCookie>

/// Prepares the web engine's default profile for the pages of the application: page features,
/// no cache, User-Agent, language, the scheme "tov", and a mirror of the cookies.
///
/// Make it after the application object and before any other object of the web engine, otherwise
/// the scheme comes too late to be registered (its pages load nevertheless). GUI thread.
class VXNETWORKING_EXPORT VXWebEngineSettings
    : public VXSettings
    , public VXSingleton<VXWebEngineSettings>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXWebEngineSettings)

public:
    using VXSingleton<VXWebEngineSettings>::instance;

    /// Registers the scheme, follows the cookies, deletes what an earlier run left, and prepares
    /// the profile.
    VXWebEngineSettings();
    ~VXWebEngineSettings() override;

    /// Prepares the profile. The product's name is appended to the User-Agent by each call, so it
    /// stands there as often as this was called.
    void loadSettings() override;

    /// Does nothing; there is nothing to keep.
    void saveSettings() override;

    /// Where the engine may store something: below the folder for temporary files.
    [[nodiscard]] QString chromiumCachePath() const;

    /// Empties the HTTP cache, if the profile has one, and deletes chromiumCachePath().
    void clearChromiumCache() const;

    /// At the end of the program: forgets visited links as well.
    void cleanup();

    /// Registers the scheme unless it is registered, and installs its handler, which lives until
    /// the process ends. With a handler in place it does nothing.
    void installUrlSchemeHandler() const;

    /// Notes a cookie that the engine has stored.
    void cookieAdded(const QNetworkCookie& theCookie);

    /// Forgets each noted cookie that equals the one that the engine has dropped.
    void cookieRemoved(const QNetworkCookie& theCookie);

    /// Deletes every cookie whose domain contains theDomain, anywhere and case-sensitively; an
    /// empty text means all.
    void deleteCookies(const QString& theDomain);

private:
    void clearHttpCache() const;

    QList<QNetworkCookie> myCookies; // as the engine told, from our beginning on
    bool myIsStarted = false;        // the constructor is over
};
