#include "VXNetworkTester.h"

#include "VXHttpOperation.h"

VXNetworkingError VXNetworkTester::testConnection(const QUrl& theUrl, int theTimeout)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::HeadOperation);
    operation.setTimeout(theTimeout);
    operation.send();
    return operation.errorStatus();
}

bool VXNetworkTester::testServer(const QString& theServer, int theTimeout)
{
    return !testConnection(QUrl(theServer), theTimeout).errorOccurred();
}
