#include "VXNetworkSettings.h"

#include "VXProxyFactory.h"

#include <VXCore/VXCrypto.h>
#include <VXCore/VXSettingsLock.h>

#include <QtCore/QDebug>
#include <QtCore/QMutexLocker>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct CapabilityRow
{
    QNetworkProxy::Capability capability;
    const char* text;
};

constexpr std::array capabilityTexts{
    CapabilityRow{QNetworkProxy::TunnelingCapability, "Tunneling capability"},
    CapabilityRow{QNetworkProxy::ListeningCapability, "Listening capability"},
    CapabilityRow{QNetworkProxy::UdpTunnelingCapability, "UDP Tunneling capability"},
    CapabilityRow{QNetworkProxy::CachingCapability, "Caching capability"},
    CapabilityRow{QNetworkProxy::HostNameLookupCapability, "Hostname lookup capability"},
};

// By value of QNetworkProxy::ProxyType.
constexpr std::array typeTexts{
    "Default Proxy", "Socks 5 Proxy",      "No Proxy",
    "HTTP Proxy",    "HTTP Caching Proxy", "FTP Caching Proxy",
};

// In the order of their deletion.
constexpr std::array oldKeys{
    "HttpProxyChoice", "HttpProxy",    "HttpProxyPort", "HttpProxyUseAuth",
    "HttpProxyLogin",  "HttpProxyPwd", "HttpProxyType",
};

bool isKnownType(int theType)
{
    return theType >= 0 && theType < std::ssize(typeTexts);
}

quint16 checkedPort(int thePort)
{
    if (thePort >= 0 && thePort <= 65535)
        return static_cast<quint16>(thePort);
    qWarning("a proxy's port is between 0 and 65535, not %d", thePort);
    return 0;
}

} // namespace

VXNetworkSettings::VXNetworkSettings()
    : myProxy(u"Proxy"_s, QNetworkProxy(QNetworkProxy::NoProxy))
{
    VXNetworkSettings::loadSettings();
    QNetworkProxyFactory::setApplicationProxyFactory(new VXProxyFactory); // Qt deletes it
}

VXNetworkSettings::~VXNetworkSettings() = default;

QNetworkProxy VXNetworkSettings::proxy() const
{
    const QMutexLocker locker(&myMutex);
    return myProxy.value();
}

QString VXNetworkSettings::proxyUser() const
{
    return proxy().user();
}

QString VXNetworkSettings::proxyPassword() const
{
    return proxy().password();
}

QNetworkProxy::ProxyType VXNetworkSettings::proxyType() const
{
    return proxy().type();
}

QString VXNetworkSettings::proxyHostName() const
{
    return proxy().hostName();
}

int VXNetworkSettings::proxyPort() const
{
    return proxy().port();
}

VXProxyChoice VXNetworkSettings::proxyChoice() const
{
    const QMutexLocker locker(&myMutex);
    return myProxyChoice;
}

template <typename Change>
void VXNetworkSettings::changeProxy(Change theChange)
{
    const QMutexLocker locker(&myMutex);
    QNetworkProxy changed = myProxy.value();
    theChange(changed);
    myProxy.setValue(changed);
}

void VXNetworkSettings::setProxy(const QNetworkProxy& theProxy)
{
    changeProxy([&theProxy](QNetworkProxy& theChanged) { theChanged = theProxy; });
}

void VXNetworkSettings::setProxyUser(const QString& theUser)
{
    changeProxy([&theUser](QNetworkProxy& theProxy) { theProxy.setUser(theUser); });
}

void VXNetworkSettings::setProxyPassword(const QString& thePassword)
{
    changeProxy([&thePassword](QNetworkProxy& theProxy) { theProxy.setPassword(thePassword); });
}

void VXNetworkSettings::setProxyType(QNetworkProxy::ProxyType theType)
{
    changeProxy([theType](QNetworkProxy& theProxy) { theProxy.setType(theType); });
}

void VXNetworkSettings::setProxyHostName(const QString& theHostName)
{
    changeProxy([&theHostName](QNetworkProxy& theProxy) { theProxy.setHostName(theHostName); });
}

void VXNetworkSettings::setProxyPort(int thePort)
{
    const quint16 port = checkedPort(thePort);
    changeProxy([port](QNetworkProxy& theProxy) { theProxy.setPort(port); });
}

void VXNetworkSettings::setProxyChoice(const VXProxyChoice& theChoice)
{
    const QMutexLocker locker(&myMutex);
    myProxyChoice = theChoice;
}

void VXNetworkSettings::loadSettings()
{
    const VXSettingsLock lock;
    if (doesEntryExist(u"HttpProxyChoice"_s))
        loadProxyTheOldWay();
    else
        loadProxy();
}

void VXNetworkSettings::saveSettings()
{
    const VXSettingsLock lock;
    writeNetworkGroup();
}

void VXNetworkSettings::loadProxy()
{
    const VXSettingsLock lock;
    beginGroup(u"Network"_s);
    setProxyChoice(VXProxyChoice().decode(value(u"ProxyChoice"_s, u""_s).toString()));
    if (doesEntryExist(u"Proxy"_s)) {
        VXConfigItem<QNetworkProxy> loaded(u"Proxy"_s, QNetworkProxy(QNetworkProxy::NoProxy));
        if (!loaded.load(*this))
            qWarning().noquote() << u"the entry Network/Proxy of %1 cannot be read"_s.arg(
                storeFile());
        const QMutexLocker locker(&myMutex);
        myProxy = loaded;
    }
    endGroup();
}

void VXNetworkSettings::loadProxyTheOldWay()
{
    const VXSettingsLock lock;
    setProxyChoice(VXProxyChoice().decode(value(u"HttpProxyChoice"_s, u""_s).toString()));
    setProxy(readOldProxy());

    if (!writeNetworkGroup())
        return; // the old keys are all there is
    for (const char* key : oldKeys)
        deleteEntry(QString::fromLatin1(key));
}

QNetworkProxy VXNetworkSettings::readOldProxy() const
{
    const int type = value(u"HttpProxyType"_s, int(QNetworkProxy::HttpProxy)).toInt();
    QNetworkProxy old(isKnownType(type) ? static_cast<QNetworkProxy::ProxyType>(type)
                                        : QNetworkProxy::HttpProxy);
    old.setHostName(value(u"HttpProxy"_s).toString());
    old.setPort(checkedPort(value(u"HttpProxyPort"_s, 0).toInt()));
    if (value(u"HttpProxyUseAuth"_s, false).toBool()) {
        old.setUser(value(u"HttpProxyLogin"_s).toString());
        old.setPassword(VXCrypto().decryptDES(value(u"HttpProxyPwd"_s).toString()));
    }
    return old;
}

bool VXNetworkSettings::writeNetworkGroup()
{
    QMutexLocker locker(&myMutex);
    const QString choice = myProxyChoice.encode();
    VXConfigItem<QNetworkProxy> item = myProxy;
    locker.unlock();

    beginGroup(u"Network"_s);
    const bool isChoiceWritten = writeEntry(u"ProxyChoice"_s, choice);
    const bool isProxyWritten = item.save(*this);
    endGroup();
    return isChoiceWritten && isProxyWritten;
}

QList<QNetworkProxy> VXNetworkSettings::proxyForQuery(const QNetworkProxyQuery& theQuery) const
{
    switch (proxyChoice().value()) {
    case ProxyChoiceSystem:
        return QNetworkProxyFactory::systemProxyForQuery(theQuery);
    case ProxyChoiceManual:
        return {proxy()};
    case ProxyChoiceNone:
        break;
    }
    return {QNetworkProxy(QNetworkProxy::NoProxy)};
}

QString VXNetworkSettings::proxyAsString(const QNetworkProxy& theProxy) const
{
    QString type = describeProxyType(theProxy.type());
    if (theProxy.type() == QNetworkProxy::NoProxy)
        return type;

    const QString credentials =
        theProxy.user() + (theProxy.password().isEmpty() ? u":[NO PWD]@"_s : u":[PWD]@"_s);
    const QString hostPort = u"%1:%2"_s.arg(theProxy.hostName(), QString::number(theProxy.port()));
    // The separator is meant: first the blank, then the comma.
    return u"%1%2 (%3) (%4)"_s.arg(credentials, hostPort, type,
                                   describeProxyCapabilities(theProxy).join(" ,"_L1));
}

QString VXNetworkSettings::describeProxyType(QNetworkProxy::ProxyType theType) const
{
    return isKnownType(theType) ? QString::fromLatin1(typeTexts[static_cast<size_t>(theType)])
                                : u"Unknown Proxy Type"_s;
}

QStringList VXNetworkSettings::describeProxyCapabilities(const QNetworkProxy& theProxy) const
{
    QStringList texts;
    for (const CapabilityRow& row : capabilityTexts)
        if (theProxy.capabilities().testFlag(row.capability))
            texts << QString::fromLatin1(row.text);
    return texts;
}
