#include <VXNetworking/VXCloudLoginOauth.h>

#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkingError.h>

#include "VXRawPeer.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

class Login : public VXCloudLoginOauth
{
public:
    using VXCloudLoginOauth::VXCloudLoginOauth;

    [[nodiscard]] QByteArray loginRequestData(const VXCredentials& theCredentials) const override
    {
        return (clientId() + u':' + clientSecret() + u':' + theCredentials.username()).toUtf8();
    }
};

} // namespace

class tst_VXCloudLoginOauth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsClientAndSecret();
    void theBodyMayCarryThem();
};

void tst_VXCloudLoginOauth::knowsClientAndSecret()
{
    const Login login(u"client"_s, u"secret"_s, QUrl(u"http://127.0.0.1/"_s));
    QCOMPARE(login.clientId(), u"client"_s);
    QCOMPARE(login.clientSecret(), u"secret"_s);
    QCOMPARE(login.connectTarget(), QUrl(u"http://127.0.0.1/"_s));
    QCOMPARE(login.contentType(), u"application/x-www-form-urlencoded"_s);
    QVERIFY(login.headerParameters().keys().isEmpty());
}

void tst_VXCloudLoginOauth::theBodyMayCarryThem()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, R"({"access_token":"abc"})"));
    QString token;
    const auto error = Login(u"client"_s, u"secret"_s, peer.url())
                           .performLogin(VXCredentials(u"karl"_s, u"x"_s), token);
    QVERIFY(!error.errorOccurred());
    QCOMPARE(peer.requests().constFirst().body, "client:secret:karl");
}

VX_TEST_MAIN(QCoreApplication, tst_VXCloudLoginOauth)

#include "tst_VXCloudLoginOauth.moc"
