#pragma once

#include "VXHttpParameter.h"
#include "VXNetworkingExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QUrl>

class VXCredentials;
class VXNetworkingError;
class VXRegularExpression;

/// One login request whose reply becomes a token: the older way beside the cloud session.
///
/// The application derives from it and builds the body. Blocks the calling thread at most 120
/// seconds; any thread may log in. Every outcome is an error value, nothing is logged here.
class VXNETWORKING_EXPORT VXCloudLoginAbstract
{
public:
    /// theConnectTarget is the address of the login service; an invalid one makes each login fail
    /// with 5009.
    explicit VXCloudLoginAbstract(const QUrl& theConnectTarget);

    ///@{
    /// A copy asks the same service.
    VXCloudLoginAbstract(const VXCloudLoginAbstract& theOther);
    VXCloudLoginAbstract& operator=(const VXCloudLoginAbstract&) = default;
    ///@}

    /// Logs in. theToken gets the reply on success and is emptied when the reply is no token reply;
    /// other failures leave it alone.
    [[nodiscard]] virtual VXNetworkingError performLogin(const VXCredentials& theCredentials,
                                                         QString& theToken) const;

    /// As given to the constructor; a subclass may choose it anew for each request.
    [[nodiscard]] virtual QUrl connectTarget() const;

    /// "application/x-www-form-urlencoded" here.
    [[nodiscard]] virtual QString contentType() const;

    /// Further request headers; none here.
    [[nodiscard]] virtual VXHttpParameter headerParameters() const;

    /// The whole of theReply, when it is a JSON object in one line with an "access_token" in double
    /// quotes; else an empty text. A reply that names the key more than 32 times is none.
    [[nodiscard]] virtual QString buildValidToken(const QString& theReply) const;

    /// The body of the request.
    [[nodiscard]] virtual QByteArray
    loginRequestData(const VXCredentials& theCredentials) const = 0;

    virtual ~VXCloudLoginAbstract();

    /// Posts theBody and gives the reply's body. Errors: 5009 without a usable target or reply, 2
    /// when a refused login has a body, 5004 when it has none. Without theReply nothing can be
    /// handed over, and the call counts as refused.
    [[nodiscard]] VXNetworkingError sendLoginRequest(const QByteArray& theBody,
                                                     QByteArray* theReply) const;

private:
    static const VXRegularExpression tokenRegExp;

    QUrl myConnectTarget;
};
