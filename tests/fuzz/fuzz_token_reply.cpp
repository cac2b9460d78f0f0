#include "VXFuzzTarget.h"

#include <VXNetworking/VXCloudLoginAbstract.h>
#include <VXNetworking/VXCloudSessionOAuth2.h>
#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

class Login : public VXCloudLoginAbstract
{
public:
    Login()
        : VXCloudLoginAbstract(QUrl())
    {
    }
    QByteArray loginRequestData(const VXCredentials&) const override { return {}; }
};

class Session : public VXCloudSessionOAuth2
{
public:
    QString clientId() const override { return QStringLiteral("fuzz"); }
    QUrl logoutUrl() const override { return {}; }
    QUrl tokenUrl() const override { return {}; }
};

} // namespace

/// The reply of a token server, as the two ways to log in read it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QByteArray body = VXFuzzTarget::input(theData, theSize);
    const QString reply = QString::fromUtf8(body);

    static const Login login;
    const QString token = login.buildValidToken(reply);
    VXFuzzTarget::check(token.isEmpty() || token == reply, "the token is the reply or nothing");
    VXFuzzTarget::check(token.isEmpty() || reply.contains(u"\"access_token\""),
                        "a token reply names its key");

    static Session session;
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    session.parseOAuth2Reply(object);
    VXFuzzTarget::check(session.accessToken() == object.value(u"access_token").toString(),
                        "the token is the server's");
    VXFuzzTarget::check(session.isOpen() == !session.accessToken().isEmpty(), "open with a token");
    VXFuzzTarget::saw("keys", object.size());
    VXFuzzTarget::saw("token", token.size());
    VXFuzzTarget::saw("access", session.accessToken().size());
    VXFuzzTarget::saw("refresh", session.refreshToken().size());
    VXFuzzTarget::planted(!token.isEmpty() && session.refreshToken().size() > 4);
    session.VXCloudSessionAbstract::close();
    return 0;
}
