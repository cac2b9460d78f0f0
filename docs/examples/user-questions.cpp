#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtWidgets/QApplication>

int main(int theCount, char** theArguments)
{
    const QApplication application(theCount, theArguments);

    // Once, at start: questions of all threads reach the mediator in this thread.
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    auto* const dispatcher = Dispatcher::instance();
    auto* const mediator = VXRequestNetwork::instance();
    QObject::connect(dispatcher, &Dispatcher::authenticationRequired, mediator,
                     &VXRequestNetwork::handleAuthenticationRequest);
    QObject::connect(dispatcher, &Dispatcher::proxyAuthenticationRequired, mediator,
                     &VXRequestNetwork::handleProxyAuthenticationRequest);
    QObject::connect(
        dispatcher, &Dispatcher::askIgnoreSSLErrors, mediator,
        [mediator](const QString& theHost, const QStringList& theErrors, bool* theAnswer) {
            *theAnswer = mediator->askIgnoreSSLErrors(theHost, theErrors);
        });

    // Then, for each exchange: the mediator's dialog fits the error, true means "once more".
    const QUrl url(application.arguments().value(1));
    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    do {
        operation.exec();
    } while (operation.errorOccurred() && mediator->handleNetworkError(operation.errorStatus()));
    return operation.errorOccurred() ? 1 : 0;
}
