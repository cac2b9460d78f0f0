#include "VXNetworkAccessManager.h"

#include "VXCertificateBundle.h"
#include "VXHeaderField.h"
#include "VXNetworkAccessManagerSignalDispatcher.h"
#include "VXNetworkSettings.h"

#include <VXCore/VXGeneralSettings.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXCore/VXResourceFile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QStringBuilder>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QHttpMultiPart>
#include <QtNetwork/QNetworkCookieJar>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QSslConfiguration>

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto userAgent =
    "Mozilla/5.0 AppleWebKit/538.1 (KHTML, like Gecko) Safari/538.1 - Orvelo Desk";

void setHeader(QNetworkRequest& theRequest, const QString& theName, const QString& theValue)
{
    if (VXHeaderField::isSound(theName, theValue))
        theRequest.setRawHeader(theName.toUtf8(), theValue.toUtf8());
}

/// An empty fragment is one that is not configured; it matches no host.
bool hostContains(const QUrl& theUrl, const QString& theFragment)
{
    return !theFragment.isEmpty() && theUrl.host().contains(theFragment);
}

/// Map-tile servers want their parameters percent-decoded once more.
QUrl withDecodedQuery(const QUrl& theUrl)
{
    QUrlQuery decoded;
    const auto items = QUrlQuery(theUrl).queryItems(QUrl::PrettyDecoded);
    for (const auto& [name, value] : items)
        decoded.addQueryItem(name, QUrl::fromPercentEncoding(value.toUtf8()));
    QUrl url = theUrl;
    url.setQuery(decoded);
    return url;
}

/// Saturates; the numbers of seconds above 24 days are all "very long".
int toMilliseconds(int theSeconds)
{
    constexpr int limit = std::numeric_limits<int>::max();
    return theSeconds > limit / 1000 ? limit : theSeconds * 1000;
}

/// A length beyond int is left to Qt, which counts the bytes of a body by itself.
int contentLength(const QByteArray& theData)
{
    constexpr int limit = std::numeric_limits<int>::max();
    return theData.size() > limit ? 0 : static_cast<int>(theData.size());
}

/// theText as Qt's debug stream shows it. The stream looks at each character by itself, which takes
/// longer than everything else about a message.
QString quoted(const QString& theText)
{
    const bool isPlain = std::ranges::all_of(theText, [](QChar theChar) {
        return theChar >= u' ' && theChar <= u'~' && theChar != u'"' && theChar != u'\\';
    });
    return isPlain ? u'"' % theText % u'"' : QDebug::toString(theText);
}

/// theUrl comes quoted.
void logOutcome(const QNetworkReply& theReply, const QString& theUrl)
{
    if (theReply.error() == QNetworkReply::NoError)
        qInfo().noquote() << QString(u" -- Request  " % theUrl % u" complete");
    else
        qInfo().noquote() << u" -- Request  "_s + theUrl + u" failed with Qt Error Code:"_s
                          << theReply.error();
}

/// Setting copies the request, looking does not.
void setIfOther(QNetworkRequest& theRequest, QNetworkRequest::Attribute theAttribute, bool theValue)
{
    const QVariant value(theValue);
    if (theRequest.attribute(theAttribute) != value)
        theRequest.setAttribute(theAttribute, value);
}

/// What all our requests have in common, put together once: setting a header parses it.
QNetworkRequest makeCommonRequest()
{
    QNetworkRequest request;
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::HttpPipeliningAllowedAttribute, true);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setRawHeader("User-Agent", userAgent);
    // No standard token, on purpose: servers see it, connections stay open.
    request.setRawHeader("Connection", "disable-keep-alive");
    return request;
}

/// Qt's form of a URL with the port only where the URL names one.
QString hostKey(const QUrl& theUrl)
{
    const QString host = theUrl.host(QUrl::FullyDecoded);
    return theUrl.port() < 0 ? host : host + u":%1"_s.arg(theUrl.port());
}

struct Attribute
{
    QLatin1StringView label;
    QSslCertificate::SubjectInfo info;
};

constexpr std::array attributes{
    Attribute{"Name of organization"_L1, QSslCertificate::Organization},
    Attribute{"Common name"_L1, QSslCertificate::CommonName},
    Attribute{"Locality"_L1, QSslCertificate::LocalityName},
    Attribute{"Organizational unit name"_L1, QSslCertificate::OrganizationalUnitName},
    Attribute{"Country"_L1, QSslCertificate::CountryName},
    Attribute{"State or province"_L1, QSslCertificate::StateOrProvinceName},
};

template <typename Values>
QString attributeLines(Values theValues)
{
    QStringList lines;
    for (const Attribute& attribute : attributes)
        lines.append(u"\t\t%1: %2"_s.arg(attribute.label, theValues(attribute.info).join(u',')));
    return lines.join(u'\n');
}

QString hexDigest(const QSslCertificate& theCertificate, QCryptographicHash::Algorithm theAlgorithm)
{
    return QString::fromLatin1(theCertificate.digest(theAlgorithm).toHex());
}

void warnUnlessConnected(const QMetaObject::Connection& theConnection, const char* theWhat)
{
    if (!theConnection)
        qWarning("-- %s of a request could not be connected", theWhat);
}

} // namespace

QRecursiveMutex VXNetworkAccessManager::ourMutex;
QHash<QThread*, VXNetworkAccessManager*>& VXNetworkAccessManager::ourManagersOfThreads =
    *new QHash<QThread*, VXNetworkAccessManager*>;
QStringList& VXNetworkAccessManager::sslTrustedHostList = *new QStringList;
std::atomic<bool> VXNetworkAccessManager::myValidateSslCertificate = true;
QMutex VXNetworkAccessManager::ourCertificateMutex;
std::atomic<bool> VXNetworkAccessManager::ourCertificatesAreLoaded = false;

VXNetworkAccessManager* VXNetworkAccessManager::threadInstance()
{
    const QMutexLocker locker(&ourMutex);
    VXNetworkAccessManager* const manager = registeredInstance();
    return manager ? manager : createNetworkAccessManager();
}

void VXNetworkAccessManager::releaseThreadInstance()
{
    VXNetworkAccessManager* manager = nullptr;
    {
        const QMutexLocker locker(&ourMutex);
        manager = registeredInstance();
    }
    delete manager; // only this thread deletes it, so it still exists here
}

VXNetworkAccessManager* VXNetworkAccessManager::registeredInstance()
{
    // A new thread may have the address of one that ended; the manager of that one lives in no
    // thread and would never finish a request.
    QThread* const thread = QThread::currentThread();
    VXNetworkAccessManager* const manager = ourManagersOfThreads.value(thread);
    return manager && manager->thread() == thread ? manager : nullptr;
}

VXNetworkAccessManager* VXNetworkAccessManager::createNetworkAccessManager()
{
    const QMutexLocker locker(&ourMutex);
    auto* const manager = new VXNetworkAccessManager; // the thread's own until it is released
    auto* const relay = VXNetworkAccessManagerSignalDispatcher::instance();
    // A worker waits here until the GUI thread has written its answer through the pointers.
    const Qt::ConnectionType type =
        manager->isInApplicationThread() ? Qt::AutoConnection : Qt::BlockingQueuedConnection;

    using Relay = VXNetworkAccessManagerSignalDispatcher;
    connect(manager, &VXNetworkAccessManager::authenticationRequired, relay,
            &Relay::authenticationRequired, type);
    connect(manager, &VXNetworkAccessManager::proxyAuthenticationRequired, relay,
            &Relay::proxyAuthenticationRequired, type);
    connect(manager, &VXNetworkAccessManager::askIgnoreSSLErrors, relay, &Relay::askIgnoreSSLErrors,
            type);

    ourManagersOfThreads.insert(manager->myThread, manager);
    return manager;
}

VXNetworkAccessManager::VXNetworkAccessManager()
{
    qRegisterMetaType<QNetworkProxy>();
    qRegisterMetaType<QList<QSslError>>();
    qRegisterMetaType<QSslCertificate>();
    qRegisterMetaType<QNetworkReply*>();

    std::ignore = VXNetworkSettings::instance(); // proxies must be settled before the first request
    if (!VXPlatformIndependent::instance()->usesPlatformCertificatesOnly())
        loadSslCertificates();

    connect(this, &QNetworkAccessManager::authenticationRequired, this,
            &VXNetworkAccessManager::handleAuthenticationRequest, Qt::DirectConnection);
    connect(this, &QNetworkAccessManager::proxyAuthenticationRequired, this,
            &VXNetworkAccessManager::handleProxyAuthenticationRequest, Qt::DirectConnection);
    connect(this, &QNetworkAccessManager::sslErrors, this, &VXNetworkAccessManager::handleSslErrors,
            Qt::DirectConnection);
}

VXNetworkAccessManager::~VXNetworkAccessManager()
{
    // The thread that destroys it need not be the one that it was made for, and a new thread with
    // the address of that one may have a manager of its own.
    const QMutexLocker locker(&ourMutex);
    if (ourManagersOfThreads.value(myThread) == this)
        ourManagersOfThreads.remove(myThread);
}

bool VXNetworkAccessManager::isInApplicationThread() const
{
    const QCoreApplication* const application = QCoreApplication::instance();
    Q_ASSERT_X(application, Q_FUNC_INFO, "needs an application object");
    return !application || thread() == application->thread();
}

bool VXNetworkAccessManager::doNotTrack() const
{
    return VXGeneralSettings::instance()->doNotTrack();
}

QNetworkRequest VXNetworkAccessManager::createRequest(const QUrl& theUrl,
                                                      const QString& theContentType,
                                                      int theContentLength,
                                                      const VXHttpParameter& theHeaders) const
{
    QUrl url = theUrl;
    if (VXPlatformIndependent::instance()->forcesHttps() && url.scheme() == "http"_L1)
        url.setScheme(u"https"_s);

    static const QNetworkRequest commonRequest = makeCommonRequest();
    QNetworkRequest request = commonRequest;
    request.setUrl(url);
    if (!theContentType.isEmpty() && VXHeaderField::isSound(u"Content-Type"_s, theContentType))
        request.setHeader(QNetworkRequest::ContentTypeHeader, theContentType);
    if (theContentLength > 0)
        request.setHeader(QNetworkRequest::ContentLengthHeader, theContentLength);
    for (const QString& name : theHeaders.keys())
        setHeader(request, name, theHeaders.value(name));
    if (doNotTrack())
        request.setRawHeader("DNT", "1");
    return request;
}

QNetworkReply* VXNetworkAccessManager::createRequest(QNetworkAccessManager::Operation theOperation,
                                                     const QNetworkRequest& theRequest,
                                                     QIODevice* theOutgoingData)
{
    const VXPlatformIndependent* const platform = VXPlatformIndependent::instance();
    const bool isTrackingUnwanted = doNotTrack();

    QNetworkRequest request(theRequest);
    if (isTrackingUnwanted)
        request.setRawHeader("DNT", "1");
    if (hostContains(request.url(), platform->mapTileHostFragment()))
        request.setUrl(withDecodedQuery(request.url()));
    setIfOther(request, QNetworkRequest::HttpPipeliningAllowedAttribute, true);
    // The "Connection" header exists in HTTP/1.1 only.
    setIfOther(request, QNetworkRequest::Http2AllowedAttribute, platform->allowsHttp2());

    QNetworkReply* const reply =
        QNetworkAccessManager::createRequest(theOperation, request, theOutgoingData);

    if (isTrackingUnwanted && hostContains(request.url(), platform->analyticsHostFragment())) {
        qInfo().noquote() << u"Filtering "_s + platform->analyticsHostFragment();
        // Too late to change the traffic, and meant so: the request has been sent.
        request.setUrl(platform->downloadServerUrl());
    }
    return reply;
}

QNetworkReply* VXNetworkAccessManager::doOp(QNetworkAccessManager::Operation theOperation,
                                            const QNetworkRequest& theRequest, QByteArray& theData)
{
    switch (theOperation) {
    case HeadOperation:
        return head(theRequest);
    case GetOperation:
        return get(theRequest);
    case PutOperation:
        return put(theRequest, theData);
    case PostOperation:
        return post(theRequest, theData);
    case DeleteOperation:
        return theData.isEmpty() ? deleteResource(theRequest)
                                 : sendCustomRequest(theRequest, "DELETE", theData);
    default:
        return nullptr;
    }
}

QNetworkReply* VXNetworkAccessManager::doOp(QNetworkAccessManager::Operation theOperation,
                                            const QNetworkRequest& theRequest,
                                            QHttpMultiPart* theMultiPart)
{
    if (!theMultiPart)
        return nullptr;
    switch (theOperation) {
    case PutOperation:
        return put(theRequest, theMultiPart);
    case PostOperation:
        return post(theRequest, theMultiPart);
    default:
        return nullptr;
    }
}

void VXNetworkAccessManager::connectRequest(QNetworkReply* theReply,
                                            const QObject* theProgressReceiver,
                                            const char* theProgressSlot, const QObject* theAborter)
{
    if (!theReply)
        return;
    const QNetworkAccessManager::Operation operation = theReply->operation();
    if (theProgressReceiver && theProgressSlot && operation != UnknownOperation) {
        const bool isUpload = operation == PutOperation || operation == PostOperation;
        const char* const progress = isUpload ? SIGNAL(uploadProgress(qint64, qint64))
                                              : SIGNAL(downloadProgress(qint64, qint64));
        warnUnlessConnected(
            connect(theReply, progress, theProgressReceiver, theProgressSlot, Qt::QueuedConnection),
            "the progress");
    }
    if (theAborter)
        warnUnlessConnected(
            connect(theAborter, SIGNAL(abort()), theReply, SLOT(abort()), Qt::QueuedConnection),
            "the aborter");
}

void VXNetworkAccessManager::waitForRequest(QNetworkReply* theReply, int theTimeoutSeconds)
{
    if (theReply)
        waitForRequest(theReply, theTimeoutSeconds, theReply->url().toString(QUrl::RemovePassword));
}

void VXNetworkAccessManager::waitForRequest(QNetworkReply* theReply, int theTimeoutSeconds,
                                            const QString& theUrl)
{
    if (!theReply)
        return;
    QEventLoop loop; // before the timer: it gives a plain thread the dispatcher that timers need
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, theReply, &QNetworkReply::abort, Qt::QueuedConnection);
    connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(theReply, &QNetworkReply::finished, &loop, &QEventLoop::quit);

    const QString url = quoted(theUrl);
    qInfo().noquote() << QString(u" --  \"" % describe(theReply->operation()) % u"\" : " % url);

    const bool isLimited = theTimeoutSeconds >= 0;
    if (isLimited)
        timer.start(toMilliseconds(theTimeoutSeconds));
    QEventLoop::ProcessEventsFlags flags = QEventLoop::WaitForMoreEvents;
    if (myBlockUIEvents)
        flags |= QEventLoop::ExcludeUserInputEvents;
    loop.exec(flags);

    if (isLimited && !timer.isActive()) {
        qInfo().noquote() << u" -- Request  "_s + url + u"  aborted: TIMEOUT after"_s
                          << theTimeoutSeconds;
        theReply->abort();
        return;
    }
    timer.stop();
    // The thread or the application quits: an unfinished reply must not pass for a success.
    if (!theReply->isFinished())
        theReply->abort();
    logOutcome(*theReply, url);
}

QString VXNetworkAccessManager::describe(QNetworkAccessManager::Operation theOperation) const
{
    switch (theOperation) {
    case HeadOperation:
        return u"HEAD"_s;
    case GetOperation:
        return u"GET"_s;
    case PutOperation:
        return u"PUT"_s;
    case PostOperation:
        return u"POST"_s;
    case DeleteOperation:
        return u"DELETE"_s;
    case CustomOperation:
        return u"CUSTOM"_s;
    default:
        return u"UNKNOWN"_s;
    }
}

QNetworkReply* VXNetworkAccessManager::syncronGet(const QUrl& theUrl, int theTimeout,
                                                  const QObject* theReceiver, const char* theSlot,
                                                  const VXHttpParameter& theHeaders)
{
    return syncronHttp(GetOperation, theUrl, {}, {}, theTimeout, theReceiver, theSlot, nullptr,
                       theHeaders);
}

QNetworkReply* VXNetworkAccessManager::syncronDelete(const QUrl& theUrl, int theTimeout,
                                                     const QObject* theReceiver,
                                                     const char* theSlot,
                                                     const VXHttpParameter& theHeaders)
{
    return syncronHttp(DeleteOperation, theUrl, {}, {}, theTimeout, theReceiver, theSlot, nullptr,
                       theHeaders);
}

QNetworkReply* VXNetworkAccessManager::syncronPost(const QUrl& theUrl, const QByteArray& theData,
                                                   const QString& theContentType, int theTimeout,
                                                   const QObject* theReceiver, const char* theSlot,
                                                   const VXHttpParameter& theHeaders)
{
    return syncronHttp(PostOperation, theUrl, theData, theContentType, theTimeout, theReceiver,
                       theSlot, nullptr, theHeaders);
}

QNetworkReply* VXNetworkAccessManager::syncronPut(const QUrl& theUrl, const QByteArray& theData,
                                                  const QString& theContentType, int theTimeout,
                                                  const QObject* theReceiver, const char* theSlot,
                                                  const VXHttpParameter& theHeaders)
{
    return syncronHttp(PutOperation, theUrl, theData, theContentType, theTimeout, theReceiver,
                       theSlot, nullptr, theHeaders);
}

QNetworkReply* VXNetworkAccessManager::startHttp(QNetworkAccessManager::Operation theOperation,
                                                 const QUrl& theUrl, const QByteArray& theData,
                                                 const QString& theContentType,
                                                 const QObject* theReceiver, const char* theSlot,
                                                 const QObject* theAborter,
                                                 const VXHttpParameter& theHeaders)
{
    QByteArray data = theData;
    QNetworkReply* const reply = doOp(
        theOperation, createRequest(theUrl, theContentType, contentLength(data), theHeaders), data);
    connectRequest(reply, theReceiver, theSlot, theAborter);
    return reply;
}

QNetworkReply* VXNetworkAccessManager::startHttp(QNetworkAccessManager::Operation theOperation,
                                                 const QUrl& theUrl, QHttpMultiPart* theMultiPart,
                                                 const QObject* theReceiver, const char* theSlot,
                                                 const QObject* theAborter,
                                                 const VXHttpParameter& theHeaders)
{
    QNetworkReply* const reply =
        doOp(theOperation, createRequest(theUrl, {}, 0, theHeaders), theMultiPart);
    connectRequest(reply, theReceiver, theSlot, theAborter);
    return reply;
}

QNetworkReply* VXNetworkAccessManager::syncronHttp(QNetworkAccessManager::Operation theOperation,
                                                   const QUrl& theUrl, const QByteArray& theData,
                                                   const QString& theContentType, int theTimeout,
                                                   const QObject* theReceiver, const char* theSlot,
                                                   const QObject* theAborter,
                                                   const VXHttpParameter& theHeaders)
{
    QNetworkReply* const reply = startHttp(theOperation, theUrl, theData, theContentType,
                                           theReceiver, theSlot, theAborter, theHeaders);
    waitForRequest(reply, theTimeout);
    return reply;
}

QNetworkReply* VXNetworkAccessManager::syncronHttp(QNetworkAccessManager::Operation theOperation,
                                                   const QUrl& theUrl, QHttpMultiPart* theMultiPart,
                                                   int theTimeout, const QObject* theReceiver,
                                                   const char* theSlot, const QObject* theAborter,
                                                   const VXHttpParameter& theHeaders)
{
    QNetworkReply* const reply =
        startHttp(theOperation, theUrl, theMultiPart, theReceiver, theSlot, theAborter, theHeaders);
    waitForRequest(reply, theTimeout);
    return reply;
}

bool VXNetworkAccessManager::blockUIEvents(bool theBlock)
{
    const QMutexLocker locker(&ourMutex);
    return std::exchange(myBlockUIEvents, theBlock);
}

void VXNetworkAccessManager::deleteCookies()
{
    setCookieJar(new QNetworkCookieJar); // takes it over and deletes the old one
}

void VXNetworkAccessManager::deleteAllCookies()
{
    const QMutexLocker locker(&ourMutex);
    for (VXNetworkAccessManager* const manager : std::as_const(ourManagersOfThreads))
        QMetaObject::invokeMethod(manager, "deleteCookies", Qt::QueuedConnection);
}

bool VXNetworkAccessManager::validateSslCertificate()
{
    return myValidateSslCertificate;
}

void VXNetworkAccessManager::setValidateSslCertificate(bool theValidate)
{
    myValidateSslCertificate = theValidate;
}

void VXNetworkAccessManager::loadSslCertificates()
{
    if (ourCertificatesAreLoaded)
        return;
    const QMutexLocker locker(&ourCertificateMutex);
    if (ourCertificatesAreLoaded)
        return;

    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    QList<QSslCertificate> list = VXCertificateBundle::merged(
        configuration.caCertificates(), QSslConfiguration::systemCaCertificates());
    const QFileInfo bundle = VXResourceFile(ResourceFileCaBundle).fileInfo();
    list = VXCertificateBundle::merged(std::move(list),
                                       VXCertificateBundle::read(bundle.absoluteFilePath()));

    configuration.setCaCertificates(removeInvalidCertificates(std::move(list)));
    QSslConfiguration::setDefaultConfiguration(configuration);
    ourCertificatesAreLoaded = true;
}

QList<QSslCertificate>
VXNetworkAccessManager::removeInvalidCertificates(QList<QSslCertificate> theCertificates) const
{
    const QDateTime now = QDateTime::currentDateTime();
    theCertificates.removeIf([&now](const QSslCertificate& theCertificate) {
        return theCertificate.expiryDate() < now || theCertificate.effectiveDate() > now ||
               theCertificate.isBlacklisted();
    });
    return theCertificates;
}

template <typename Emitter>
void VXNetworkAccessManager::ask(Emitter theEmitter)
{
    if (isInApplicationThread()) {
        theEmitter();
        return;
    }
    const VXNetworkAccessManagerSignalDispatcher::Question question;
    if (question.mayBeAsked())
        theEmitter();
}

void VXNetworkAccessManager::handleAuthenticationRequest(QNetworkReply* theReply,
                                                         QAuthenticator* theAuthenticator)
{
    ask([&] { Q_EMIT authenticationRequired(theReply->url(), theAuthenticator); });
}

void VXNetworkAccessManager::handleProxyAuthenticationRequest(const QNetworkProxy& theProxy,
                                                              QAuthenticator* theAuthenticator)
{
    ask([&] { Q_EMIT proxyAuthenticationRequired(QUrl(), theAuthenticator, theProxy.hostName()); });
}

void VXNetworkAccessManager::handleSslErrors(QNetworkReply* theReply,
                                             const QList<QSslError>& theErrors)
{
    if (!theReply)
        return;
    const QString key = hostKey(theReply->url());
    if (isTrustedHost(key) || !validateSslCertificate()) {
        qWarning().noquote() << u"-- Errors to %1 already ignored"_s.arg(key);
        theReply->ignoreSslErrors();
        return;
    }

    QList<QString> texts;
    for (const QSslError& error : theErrors) {
        texts.append(error.errorString());
        qInfo().noquote() << error.errorString();
        printSslCertificate(error.certificate());
    }
    bool isAccepted = false;
    ask([&] { Q_EMIT askIgnoreSSLErrors(key, texts, &isAccepted); });
    if (!isAccepted)
        return;
    trustHost(key);
    theReply->ignoreSslErrors();
}

bool VXNetworkAccessManager::isTrustedHost(const QString& theHostKey)
{
    const QMutexLocker locker(&ourMutex);
    return sslTrustedHostList.contains(theHostKey);
}

void VXNetworkAccessManager::trustHost(const QString& theHostKey)
{
    const QMutexLocker locker(&ourMutex);
    sslTrustedHostList.append(theHostKey);
}

void VXNetworkAccessManager::printSslCertificate(const QSslCertificate& theCertificate) const
{
    const QString issuer =
        attributeLines([&](auto theInfo) { return theCertificate.issuerInfo(theInfo); });
    const QString subject =
        attributeLines([&](auto theInfo) { return theCertificate.subjectInfo(theInfo); });
    qInfo().noquote() << u"\nCertificate:\n"
                         "\tEffective date: %1\n"
                         "\tExpiry date: %2\n"
                         "\tSerialnumber as hex: %3"
                         "\n\tFingerprint (MD5):%4"
                         "\n\tFingerprint (SHA1):%5"
                         "\n\tIssuer info:\n%6"
                         "\n\tSubject info:\n%7"_s.arg(
                             theCertificate.effectiveDate().toString(),
                             theCertificate.expiryDate().toString(),
                             QString::fromLatin1(theCertificate.serialNumber()),
                             hexDigest(theCertificate, QCryptographicHash::Md5),
                             hexDigest(theCertificate, QCryptographicHash::Sha1), issuer, subject);
}
