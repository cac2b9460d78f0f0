#include "VXRawClient.h"

#include <QtCore/QEventLoop>
#include <QtNetwork/QHttpMultiPart>
#include <QtNetwork/QNetworkReply>

#include <memory>

using namespace Qt::StringLiterals;

QByteArray VXRawClient::get(const QUrl& theUrl)
{
    return wait(myManager.get(QNetworkRequest(theUrl)));
}

QByteArray VXRawClient::postForm(const QUrl& theUrl, const QByteArray& theForm)
{
    QNetworkRequest request(theUrl);
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/x-www-form-urlencoded"_s);
    return wait(myManager.post(request, theForm));
}

QByteArray VXRawClient::put(const QUrl& theUrl, QHttpMultiPart* theMultiPart)
{
    QNetworkReply* const reply = myManager.put(QNetworkRequest(theUrl), theMultiPart);
    theMultiPart->setParent(reply);
    return wait(reply);
}

QByteArray VXRawClient::wait(QNetworkReply* theReply)
{
    const std::unique_ptr<QNetworkReply> reply(theReply);
    QEventLoop loop;
    QObject::connect(theReply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    myStatus = theReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return theReply->readAll();
}
