#include "VXWebEngineSettings.h"

#include "VXQWebEngineUrlSchemeHandler.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXFileHandler.h>
#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXCore/VXSettingsLock.h>

#include <QtWebEngineCore/QWebEngineCookieStore>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>
#include <QtWebEngineCore/QWebEngineUrlScheme>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* schemeName = "tov";

// The engine takes new schemes only as long as nobody has touched a profile.
void registerScheme()
{
    if (QWebEngineUrlScheme::schemeByName(schemeName).name().isEmpty())
        QWebEngineUrlScheme::registerScheme(QWebEngineUrlScheme(schemeName));
}

QWebEngineProfile* profile()
{
    return QWebEngineProfile::defaultProfile();
}

void enablePageFeatures()
{
    static constexpr std::array features{
        QWebEngineSettings::JavascriptCanOpenWindows, QWebEngineSettings::JavascriptEnabled,
        QWebEngineSettings::PluginsEnabled,
        QWebEngineSettings::LocalContentCanAccessRemoteUrls, // "tov" counts as remote
    };
    for (const QWebEngineSettings::WebAttribute feature : features)
        profile()->settings()->setAttribute(feature, true);
}

} // namespace

VXWebEngineSettings::VXWebEngineSettings()
{
    registerScheme(); // before the cookie store, which makes the profile
    const QWebEngineCookieStore* store = profile()->cookieStore();
    connect(store, &QWebEngineCookieStore::cookieAdded, this, &VXWebEngineSettings::cookieAdded);
    connect(store, &QWebEngineCookieStore::cookieRemoved, this,
            &VXWebEngineSettings::cookieRemoved);

    // Deleted before it is named as storage: nothing of an earlier run survives.
    clearChromiumCache();
    VXWebEngineSettings::loadSettings();
    installUrlSchemeHandler();
    myIsStarted = true;
}

VXWebEngineSettings::~VXWebEngineSettings() = default;

void VXWebEngineSettings::loadSettings()
{
    const VXSettingsLock lock;
    beginGroup(u"QtWebEngine"_s);
    enablePageFeatures();
    profile()->setHttpCacheType(QWebEngineProfile::NoCache);
    profile()->setPersistentStoragePath(chromiumCachePath());
    profile()->setHttpUserAgent(profile()->httpUserAgent() + " Orvelo Desk"_L1);
    profile()->setHttpAcceptLanguage(VXLocaleAndTranslationManager::instance()->bcp47Name());
    endGroup();
}

void VXWebEngineSettings::saveSettings() {}

QString VXWebEngineSettings::chromiumCachePath() const
{
    return VXBasisSettings::instance()->temporaryDirectory() + "/QtWebEngine/Cache"_L1;
}

void VXWebEngineSettings::clearChromiumCache() const
{
    clearHttpCache();
    VXFileHandler::recursiveRemove(chromiumCachePath());
}

// What caches nothing is left alone. Qt 6.4.2 pays for clearing it: the next load from a server
// hangs for ever now and then (3 of 16 starts), and the engine may make the folder again that is
// deleted.
void VXWebEngineSettings::clearHttpCache() const
{
    const bool isEmpty = profile()->isOffTheRecord() &&
                         (!myIsStarted || profile()->httpCacheType() == QWebEngineProfile::NoCache);
    if (!isEmpty)
        profile()->clearHttpCache();
}

void VXWebEngineSettings::cleanup()
{
    profile()->clearAllVisitedLinks();
    clearHttpCache();
    clearChromiumCache();
}

void VXWebEngineSettings::installUrlSchemeHandler() const
{
    registerScheme();
    // Never destroyed: the engine asks it until the process ends.
    static auto* const ourHandler = new VXQWebEngineUrlSchemeHandler;
    if (!profile()->urlSchemeHandler(schemeName))
        profile()->installUrlSchemeHandler(schemeName, ourHandler);
}

void VXWebEngineSettings::cookieAdded(const QNetworkCookie& theCookie)
{
    myCookies.append(theCookie);
}

void VXWebEngineSettings::cookieRemoved(const QNetworkCookie& theCookie)
{
    myCookies.removeAll(theCookie);
}

void VXWebEngineSettings::deleteCookies(const QString& theDomain)
{
    const QList<QNetworkCookie> cookies = myCookies; // it shrinks meanwhile
    for (const QNetworkCookie& cookie : cookies) {
        if (!cookie.domain().contains(theDomain))
            continue;
        profile()->cookieStore()->deleteCookie(cookie);
        myCookies.removeAll(cookie);
    }
}
