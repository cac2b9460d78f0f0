#pragma once

#include "VXHttpParameter.h"
#include "VXNetworkingExport.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QThread>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkRequest>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslError>

#include <atomic>

class QHttpMultiPart;

/// The library's gateway to Qt Network: one manager per thread, with the system's request
/// defaults, blocking requests with a time-out, and questions that reach the GUI thread.
///
/// Get it with threadInstance() and use it in that thread only; an application object must
/// exist. Failures stay in the returned reply. Redirects, "file:" and "data:" URLs and the second
/// try after a connection that closed without an answer are as Qt does them; with a redirect to
/// another host the headers travel along, "Authorization" included.
class VXNETWORKING_EXPORT VXNetworkAccessManager : public QNetworkAccessManager
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXNetworkAccessManager)

public:
    /// The calling thread's manager, made on the first call. It lives until the process ends or
    /// releaseThreadInstance() is called; the library itself destroys no manager.
    static VXNetworkAccessManager* threadInstance();

    /// Deletes the calling thread's manager, if there is one. For owners of short-lived threads:
    /// call it as the last thing the thread does, with no reply of this thread in use any more.
    static void releaseThreadInstance();

    /// Makes and registers a manager for the calling thread. For threadInstance(), not for others.
    static VXNetworkAccessManager* createNetworkAccessManager();

    ~VXNetworkAccessManager() override;

    /// A request with the system's headers. theContentType may be empty; theContentLength counts
    /// bytes, 0 = none given. theHeaders override the defaults, except "DNT". A header with CR, LF
    /// or NUL in its name or value is dropped with a warning.
    [[nodiscard]] QNetworkRequest createRequest(const QUrl& theUrl, const QString& theContentType,
                                                int theContentLength,
                                                const VXHttpParameter& theHeaders) const;

    /// The user's preference that servers shall not track.
    [[nodiscard]] bool doNotTrack() const;

    /// Starts HEAD, GET, PUT, POST or DELETE; null for any other operation. A DELETE with data
    /// goes out as a custom request that carries it. The caller owns the reply.
    QNetworkReply* doOp(QNetworkAccessManager::Operation theOperation,
                        const QNetworkRequest& theRequest, QByteArray& theData);
    /// Starts PUT or POST; null for any other operation. theMultiPart must outlive the reply.
    QNetworkReply* doOp(QNetworkAccessManager::Operation theOperation,
                        const QNetworkRequest& theRequest, QHttpMultiPart* theMultiPart);

    /// Connects, queued: the reply's progress (upload of PUT and POST, else download) with the
    /// slot, given by SLOT() with (qint64,qint64), and the aborter's signal abort() with the
    /// reply. Each pointer may be null.
    void connectRequest(QNetworkReply* theReply, const QObject* theProgressReceiver,
                        const char* theProgressSlot, const QObject* theAborter);

    /// Runs an event loop until the reply has finished or the time is over; then it is aborted.
    /// 0 seconds abort at once, negative ones mean no limit. A reply whose wait ends because the
    /// thread or the application quits is aborted, too. Null is ignored.
    void waitForRequest(QNetworkReply* theReply, int theTimeoutSeconds);
    /// The same for a caller that has made a text of the reply's URL, without its password. The
    /// messages show that.
    void waitForRequest(QNetworkReply* theReply, int theTimeoutSeconds, const QString& theUrl);

    /// "HEAD", "GET", "PUT", "POST", "DELETE", "CUSTOM", else "UNKNOWN".
    [[nodiscard]] QString describe(QNetworkAccessManager::Operation theOperation) const;

    /// The first half of syncronHttp(): starts the exchange and connects progress and aborter, as
    /// connectRequest() does. waitForRequest() is the second half; between them the caller may
    /// connect to the reply, which it owns. Null when the operation is not supported.
    QNetworkReply* startHttp(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                             const QByteArray& theData, const QString& theContentType,
                             const QObject* theReceiver, const char* theSlot,
                             const QObject* theAborter, const VXHttpParameter& theHeaders);
    /// theMultiPart stays the caller's and must outlive the reply.
    QNetworkReply* startHttp(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                             QHttpMultiPart* theMultiPart, const QObject* theReceiver,
                             const char* theSlot, const QObject* theAborter,
                             const VXHttpParameter& theHeaders);

    /// GET. This and those below block until the reply has finished or theTimeout (seconds) is
    /// over. The caller owns the reply; it is null only when the operation is not supported.
    QNetworkReply* syncronGet(const QUrl& theUrl, int theTimeout, const QObject* theReceiver,
                              const char* theSlot, const VXHttpParameter& theHeaders);

    /// DELETE without a body.
    QNetworkReply* syncronDelete(const QUrl& theUrl, int theTimeout, const QObject* theReceiver,
                                 const char* theSlot, const VXHttpParameter& theHeaders);

    /// POST with theData as its body; theContentType may be empty.
    QNetworkReply* syncronPost(const QUrl& theUrl, const QByteArray& theData,
                               const QString& theContentType, int theTimeout,
                               const QObject* theReceiver, const char* theSlot,
                               const VXHttpParameter& theHeaders);

    /// PUT with theData as its body; theContentType may be empty.
    QNetworkReply* syncronPut(const QUrl& theUrl, const QByteArray& theData,
                              const QString& theContentType, int theTimeout,
                              const QObject* theReceiver, const char* theSlot,
                              const VXHttpParameter& theHeaders);

    /// startHttp() and waitForRequest() in one; for any supported operation.
    QNetworkReply* syncronHttp(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                               const QByteArray& theData, const QString& theContentType,
                               int theTimeout, const QObject* theReceiver, const char* theSlot,
                               const QObject* theAborter, const VXHttpParameter& theHeaders);
    /// theMultiPart stays the caller's and must outlive the reply.
    QNetworkReply* syncronHttp(QNetworkAccessManager::Operation theOperation, const QUrl& theUrl,
                               QHttpMultiPart* theMultiPart, int theTimeout,
                               const QObject* theReceiver, const char* theSlot,
                               const QObject* theAborter, const VXHttpParameter& theHeaders);

    /// Whether waits hold the user's input back; at first they do not. Returns the previous value.
    bool blockUIEvents(bool theBlock);

    /// Every thread's manager drops its cookies the next time that its thread handles events.
    static void deleteAllCookies();

    /// False: certificate errors are ignored without a question. Any thread.
    static bool validateSslCertificate();

    /// For the whole process, from the next TLS error on; true at the start. Any thread.
    static void setValidateSslCertificate(bool theValidate);

    /// Makes the process-wide list of CA certificates: Qt's, the system's and the application's
    /// bundle. The first call does it (about 0.1 s), later ones return at once. Any thread.
    void loadSslCertificates();

    /// Those that are valid now and not blacklisted, in the same order.
    [[nodiscard]] QList<QSslCertificate>
    removeInvalidCertificates(QList<QSslCertificate> theCertificates) const;

Q_SIGNALS:
    /// A server wants a login. VXNetworkAccessManagerSignalDispatcher hands this question on, and
    /// the two below.
    void authenticationRequired(const QUrl& theUrl, QAuthenticator* theAuthenticator);

    /// A proxy wants a login. theUrl is always empty: a proxy is known by its host name only.
    void proxyAuthenticationRequired(const QUrl& theUrl, QAuthenticator* theAuthenticator,
                                     const QString& theProxyHost);

    /// A certificate has errors. theHost is "host" or "host:port". *theResult is false at first;
    /// true ignores the errors, and those of this host until the process ends.
    void askIgnoreSSLErrors(const QString& theHost, const QList<QString>& theErrorList,
                            bool* theResult);

public Q_SLOTS:
    /// Emits authenticationRequired() with the reply's address, and waits for the answer.
    void handleAuthenticationRequest(QNetworkReply* theReply, QAuthenticator* theAuthenticator);

    /// Emits proxyAuthenticationRequired(), and waits for the answer.
    void handleProxyAuthenticationRequest(const QNetworkProxy& theProxy,
                                          QAuthenticator* theAuthenticator);
    /// Ignores those of a host that the user has accepted, or all without validation; else asks.
    void handleSslErrors(QNetworkReply* theReply, const QList<QSslError>& theErrors);
    /// Writes dates, serial number, fingerprints, issuer and subject as one info message.
    void printSslCertificate(const QSslCertificate& theCertificate) const;
    /// Gives the manager a fresh, empty cookie jar.
    void deleteCookies();

protected:
    /// Every request of this manager passes here.
    QNetworkReply* createRequest(QNetworkAccessManager::Operation theOperation,
                                 const QNetworkRequest& theRequest,
                                 QIODevice* theOutgoingData = nullptr) override;

private:
    VXNetworkAccessManager();

    [[nodiscard]] bool isInApplicationThread() const;
    template <typename Emitter>
    void ask(Emitter theEmitter);

    static VXNetworkAccessManager* registeredInstance();
    static bool isTrustedHost(const QString& theHostKey);
    static void trustHost(const QString& theHostKey);

    // Guards the registry, the trusted hosts and changes of myBlockUIEvents, which only the
    // manager's own thread reads. Recursive, because a manager is constructed under it.
    static QRecursiveMutex ourMutex;
    // Never destroyed: threads may outlive the static objects.
    static QHash<QThread*, VXNetworkAccessManager*>& ourManagersOfThreads;
    static QStringList& sslTrustedHostList; // host or host:port
    static std::atomic<bool> myValidateSslCertificate;
    static QMutex ourCertificateMutex;
    static std::atomic<bool> ourCertificatesAreLoaded; // once-flag, set under ourCertificateMutex

    QThread* const myThread = QThread::currentThread(); // its key in the registry; may have ended
    bool myBlockUIEvents = false;
};
