#include "VXCloudLoginAbstract.h"

#include "VXCredentials.h"
#include "VXNetworkAccessManager.h"
#include "VXNetworkingError.h"
#include "VXNetworkingErrorMessageMap.h"

#include <VXCore/VXRegularExpression.h>

#include <QtNetwork/QNetworkReply>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int timeoutInSeconds = 120;

// The expression tries every place of the key in turn, and from each the rest of the reply. A token
// reply has one; with thousands of them a reply of 160 KB takes half a minute.
constexpr qsizetype mostKeys = 32;

} // namespace

const VXRegularExpression VXCloudLoginAbstract::tokenRegExp{
    uR"re(^\{.*"access_token"\s*:\s*"([^"]*)".*\}$)re"_s};

VXCloudLoginAbstract::VXCloudLoginAbstract(const QUrl& theConnectTarget)
    : myConnectTarget(theConnectTarget)
{
}

VXCloudLoginAbstract::VXCloudLoginAbstract(const VXCloudLoginAbstract& theOther) = default;

VXCloudLoginAbstract::~VXCloudLoginAbstract() = default;

VXNetworkingError VXCloudLoginAbstract::performLogin(const VXCredentials& theCredentials,
                                                     QString& theToken) const
{
    QByteArray reply;
    VXNetworkingError error = sendLoginRequest(loginRequestData(theCredentials), &reply);
    if (error.errorCode() != NoError)
        return error;

    theToken = buildValidToken(QString::fromUtf8(reply));
    if (theToken.isEmpty()) {
        // The code of a refused login, with the text of a server that cannot log anybody in.
        error.raise(InvalidLogin);
        error.setErrorText(VXNetworkingErrorMessageMap().message(PartnerLoginError));
    }
    return error;
}

QUrl VXCloudLoginAbstract::connectTarget() const
{
    return myConnectTarget;
}

QString VXCloudLoginAbstract::contentType() const
{
    return u"application/x-www-form-urlencoded"_s;
}

VXHttpParameter VXCloudLoginAbstract::headerParameters() const
{
    return {};
}

QString VXCloudLoginAbstract::buildValidToken(const QString& theReply) const
{
    if (theReply.count("\"access_token\""_L1) > mostKeys)
        return {};
    return tokenRegExp.match(theReply).hasMatch() ? theReply : QString();
}

VXNetworkingError VXCloudLoginAbstract::sendLoginRequest(const QByteArray& theBody,
                                                         QByteArray* theReply) const
{
    VXNetworkingError error(LoginServerUnreachableContactSupport);
    const QUrl target = connectTarget();
    if (!target.isValid())
        return error;

    const std::unique_ptr<QNetworkReply> reply(
        VXNetworkAccessManager::threadInstance()->syncronPost(target, theBody, contentType(),
                                                              timeoutInSeconds, nullptr, nullptr,
                                                              headerParameters()));
    if (!reply)
        return error;

    error.raiseQtError(reply->error());
    const QByteArray body = reply->isOpen() ? reply->readAll() : QByteArray();
    if (!error.errorOccurred() && theReply != nullptr) {
        *theReply = body;
        return error;
    }
    error.raise(body.isEmpty() ? LoginServerUnreachable : InvalidLogin);
    return error;
}
