#include "VXScriptedUser.h"

#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtNetwork/QAuthenticator>

VXScriptedUser::VXScriptedUser(QObject* theParent)
    : QObject(theParent)
{
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    auto* const dispatcher = Dispatcher::instance();
    connect(dispatcher, &Dispatcher::authenticationRequired, this,
            [this](const QUrl& url, QAuthenticator* authenticator) {
                note(Kind::ServerPassword, {}, url, {});
                fill(authenticator);
            });
    connect(dispatcher, &Dispatcher::proxyAuthenticationRequired, this,
            [this](const QUrl& url, QAuthenticator* authenticator, const QString& host) {
                note(Kind::ProxyPassword, host, url, {});
                fill(authenticator);
            });
    connect(dispatcher, &Dispatcher::askIgnoreSSLErrors, this,
            [this](const QString& host, const QStringList& errors, bool* result) {
                note(Kind::Certificate, host, {}, errors);
                *result = myAcceptsCertificates;
            });
}

void VXScriptedUser::note(Kind theKind, const QString& theHost, const QUrl& theUrl,
                          const QStringList& theErrors)
{
    const bool isGuiThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    myQuestions << Question{theKind, theHost, theUrl, theErrors, isGuiThread};
}

void VXScriptedUser::fill(QAuthenticator* theAuthenticator)
{
    if (myAnswers.isEmpty())
        return;
    const Credentials answer = myAnswers.constFirst();
    if (myAnswers.size() > 1)
        myAnswers.removeFirst();
    if (answer.user.isEmpty())
        return; // a cancelled dialog touches nothing
    theAuthenticator->setUser(answer.user);
    theAuthenticator->setPassword(answer.password);
}
