#include "VXSampleQuestions.h"

#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtNetwork/QAuthenticator>

VXSampleQuestions::VXSampleQuestions(QObject* theParent)
    : QObject(theParent)
{
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    const Dispatcher* dispatcher = Dispatcher::instance();
    VXRequestNetwork* mediator = VXRequestNetwork::instance();

    // This object as context: the connections end with it, and the answers come from its thread.
    connect(dispatcher, &Dispatcher::authenticationRequired, this,
            [mediator](const QUrl& theUrl, QAuthenticator* theAuthenticator) {
                mediator->handleAuthenticationRequest(theUrl, theAuthenticator);
            });
    connect(dispatcher, &Dispatcher::proxyAuthenticationRequired, this,
            [mediator](const QUrl& theUrl, QAuthenticator* theAuthenticator,
                       const QString& theProxyHost) {
                mediator->handleProxyAuthenticationRequest(theUrl, theAuthenticator, theProxyHost);
            });
    // The mediator returns this answer, while the dispatcher wants it written.
    connect(dispatcher, &Dispatcher::askIgnoreSSLErrors, this,
            [mediator](const QString& theHost, const QStringList& theErrors, bool* theResult) {
                *theResult = mediator->askIgnoreSSLErrors(theHost, theErrors);
            });
}
