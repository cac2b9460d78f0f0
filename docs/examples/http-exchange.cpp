#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>

int main(int theCount, char** theArguments)
{
    const QCoreApplication application(theCount, theArguments);
    const QUrl url(application.arguments().value(1));

    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    operation.setTimeout(20); // seconds
    const QJsonObject answer = operation.receiveJsonObject();
    if (operation.errorOccurred()) {
        qWarning().noquote() << operation.errorStatus().errorMessage(); // German, for the customer
        return 1;
    }
    qInfo() << answer;
    return 0;
}
