#include "VXSimulatorControl.h"

#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int answerMilliseconds = 10'000;

} // namespace

VXSimulatorControl::VXSimulatorControl(quint16 thePort)
    : myPort(thePort)
{
    myManager.setProxy(QNetworkProxy::NoProxy);
    myManager.setTransferTimeout(answerMilliseconds);
}

int VXSimulatorControl::lastNumber()
{
    requestsSince(myLastNumber);
    return myLastNumber;
}

QList<VXRecordedRequest> VXSimulatorControl::requestsSince(int theNumber)
{
    bool isOk = false;
    const QJsonDocument answer =
        finish(myManager.get(request(u"/requests?since=%1"_s.arg(theNumber))), &isOk);
    const QJsonArray list =
        answer.isArray() ? answer.array() : answer.object().value(u"requests"_s).toArray();
    QList<VXRecordedRequest> requests;
    for (const auto entry : list)
        requests << VXRecordedRequest(entry.toObject());
    if (!isOk)
        myLastNumber = -1;
    else if (!requests.isEmpty())
        myLastNumber = requests.constLast().number();
    return requests;
}

bool VXSimulatorControl::put(const QString& thePath, const QJsonObject& theObject)
{
    bool isOk = false;
    QNetworkRequest put = request(thePath);
    put.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    finish(myManager.put(put, QJsonDocument(theObject).toJson(QJsonDocument::Compact)), &isOk);
    return isOk;
}

QJsonDocument VXSimulatorControl::finish(QNetworkReply* theReply, bool* theIsOk)
{
    const std::unique_ptr<QNetworkReply> reply(theReply);
    QEventLoop loop;
    QObject::connect(theReply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    *theIsOk = reply->isFinished() && reply->error() == QNetworkReply::NoError;
    return QJsonDocument::fromJson(reply->readAll());
}

QNetworkRequest VXSimulatorControl::request(const QString& thePathAndQuery) const
{
    return QNetworkRequest(
        QUrl(u"http://127.0.0.1:%1%2"_s.arg(QString::number(myPort), thePathAndQuery)));
}
