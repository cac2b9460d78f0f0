#pragma once

#include "VXNetworkingExport.h"

#include <VXCore/VXSingleton.h>

#include <QtCore/QObject>

#include <atomic>

class QAuthenticator;
class QUrl;

/// The one place where the questions of every thread's VXNetworkAccessManager arrive.
///
/// It lives in the application object's thread, whatever thread created it, so an application
/// object must exist. The application connects its dialogs to the signals; their receivers must
/// live in that thread as well and must not wait for a worker thread while they answer. A worker
/// stands still until its question is answered; when the application quits first, the question
/// counts as declined.
class VXNETWORKING_EXPORT VXNetworkAccessManagerSignalDispatcher
    : public QObject
    , public VXSingleton<VXNetworkAccessManagerSignalDispatcher>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXNetworkAccessManagerSignalDispatcher)

public:
    /// A worker thread keeps one of these for as long as it asks.
    ///
    /// Blocked workers would otherwise wait for ever once the GUI thread runs no event loop.
    class Question
    {
        Q_DISABLE_COPY_MOVE(Question)

    public:
        Question() { ++ourOpenQuestions; }
        ~Question() { --ourOpenQuestions; }
        /// False while the application is ending: do not ask.
        [[nodiscard]] bool mayBeAsked() const { return !ourIsEnding; }
    };

    ~VXNetworkAccessManagerSignalDispatcher() override;

Q_SIGNALS:
    /// A server wants a user name and a password; untouched means that the request fails.
    void authenticationRequired(const QUrl& theUrl, QAuthenticator* theAuthenticator);
    /// The same for a proxy. theUrl is empty.
    void proxyAuthenticationRequired(const QUrl& theUrl, QAuthenticator* theAuthenticator,
                                     const QString& theProxyHost);
    /// May the certificate problems of this host be ignored for the rest of the run?
    void askIgnoreSSLErrors(const QString& theHost, const QList<QString>& theErrorList,
                            bool* theResult);

private:
    friend class VXSingleton<VXNetworkAccessManagerSignalDispatcher>;
    VXNetworkAccessManagerSignalDispatcher();
    void declineOpenQuestions();

    static std::atomic<int> ourOpenQuestions;
    static std::atomic<bool> ourIsEnding;
};
