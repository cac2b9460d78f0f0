#include "VXSampleOrder.h"

#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

VXNetworkingResult VXSampleOrder::exchange(VXHttpOperation& theOperation)
{
    const QDomDocument answer = theOperation.receiveXml();
    return theOperation.errorOccurred() ? VXNetworkingResult(theOperation.errorStatus().errorCode())
                                        : VXNetworkingResult(answer);
}

QString VXSampleOrder::contentText(const VXNetworkingResult& theResult)
{
    QString text;
    QTextStream stream(&text);
    theResult.contentNode().save(stream, 1);
    return text;
}
