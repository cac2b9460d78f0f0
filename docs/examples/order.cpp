#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QUrl>
#include <QtXml/QDomDocument>

int main(int theCount, char** theArguments)
{
    const QCoreApplication application(theCount, theArguments);
    const QUrl url(application.arguments().value(1));

    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    const QDomDocument answer = operation.receiveXml();
    // An exchange that failed brings no answer; its error then stands for that of the order.
    const VXNetworkingResult result = operation.errorOccurred()
                                          ? VXNetworkingResult(operation.errorStatus().errorCode())
                                          : VXNetworkingResult(answer);
    if (result.errorOccurred()) {
        qWarning().noquote() << result.error().errorMessage() << result.error().errorDetails();
        return 1;
    }
    if (result.contentNode().isNull()) { // a broken answer without a head counts as success
        qWarning("the answer has no content");
        return 1;
    }
    qInfo().noquote() << result.documentToString();
    return 0;
}
