#pragma once

#include "VXNetworkingExport.h"
#include "VXProxyChoice.h"

#include <VXCore/VXConfigItem.h>
#include <VXCore/VXSettings.h>
#include <VXCore/VXSingleton.h>

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtNetwork/QNetworkProxy>

/// The user's proxy preference: kept in the settings, group "Network", and asked for every
/// connection of the process.
///
/// The instance is made once, and from then on every QNetworkAccessManager follows it; never call
/// QNetworkProxy::setApplicationProxy() or QNetworkProxyFactory::setUseSystemConfiguration(), which
/// would remove it again. Make it at start-up, or at least while holding no VXSettingsLock.
///
/// Thread-safe: requests ask in any thread while the preferences page writes.
class VXNETWORKING_EXPORT VXNetworkSettings
    : public VXSettings
    , public VXSingleton<VXNetworkSettings>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXNetworkSettings)

public:
    using VXSingleton<VXNetworkSettings>::instance;

    /// Loads the settings and installs a VXProxyFactory for the process.
    VXNetworkSettings();
    ~VXNetworkSettings() override;

    /// The proxy that the user entered, whether it is used or not.
    [[nodiscard]] QNetworkProxy proxy() const;

    /// Empty when the proxy wants no login.
    [[nodiscard]] QString proxyUser() const;

    /// Plain text; only the store holds it enciphered.
    [[nodiscard]] QString proxyPassword() const;

    /// NoProxy until the user entered a proxy.
    [[nodiscard]] QNetworkProxy::ProxyType proxyType() const;

    /// A host name or an address, without scheme and port.
    [[nodiscard]] QString proxyHostName() const;

    /// 0 to 65535; 0 when none was entered.
    [[nodiscard]] int proxyPort() const;

    /// Whether the proxy above is used, the system's, or none.
    [[nodiscard]] VXProxyChoice proxyChoice() const;

    // The setters change the value in memory; saveSettings() keeps it.

    /// The whole proxy at once: no request sees the host of one with the password of another.
    void setProxy(const QNetworkProxy& theProxy);

    /// An empty text means no login.
    void setProxyUser(const QString& theUser);

    /// Takes the plain text.
    void setProxyPassword(const QString& thePassword);

    /// Qt sets the proxy's capabilities by it.
    void setProxyType(QNetworkProxy::ProxyType theType);

    /// Not checked.
    void setProxyHostName(const QString& theHostName);

    /// Outside 0..65535 stores 0, with a warning.
    void setProxyPort(int thePort);

    /// Requests that begin afterwards follow it.
    void setProxyChoice(const VXProxyChoice& theChoice);

    /// Reads choice and proxy, from the keys of old versions if there are some.
    void loadSettings() override;

    /// Writes choice and proxy; the password is enciphered.
    void saveSettings() override;

    /// Reads the group "Network".
    void loadProxy();

    /// Reads the seven top-level keys of old versions, writes the group "Network" at once and
    /// deletes them; they stay when it cannot be written.
    void loadProxyTheOldWay();

    /// The proxies to try for a connection, in order; never empty. A choice that is none of the
    /// three counts as ProxyChoiceNone.
    [[nodiscard]] QList<QNetworkProxy> proxyForQuery(const QNetworkProxyQuery& theQuery) const;

    /// One line for the log. The password is never shown, only whether there is one.
    [[nodiscard]] QString proxyAsString(const QNetworkProxy& theProxy) const;

    /// The type in words, English and untranslated.
    [[nodiscard]] QString describeProxyType(QNetworkProxy::ProxyType theType) const;

    /// One text for each capability that is set, English and untranslated.
    [[nodiscard]] QStringList describeProxyCapabilities(const QNetworkProxy& theProxy) const;

private:
    template <typename Change>
    void changeProxy(Change theChange);
    [[nodiscard]] QNetworkProxy readOldProxy() const;
    bool writeNetworkGroup();

    mutable QMutex myMutex;      // guards the two below; held only to copy them
    VXProxyChoice myProxyChoice; // none
    VXConfigItem<QNetworkProxy> myProxy;
};
