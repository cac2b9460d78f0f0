// Sessions, logins and the browser login against OAuth2 servers that this project did not write.

#include "VXDialogVisitor.h"
#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXMockOAuthServer.h"
#include "VXStrictOAuthServer.h"
#include "VXTestMain.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXNetworking/VXCloudLoginOauth.h>
#include <VXNetworking/VXCloudSessionOAuth2.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtNetwork/QNetworkReply>
#include <QtWidgets/QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Form = QList<QPair<QByteArray, QByteArray>>;

class Session : public VXCloudSessionOAuth2
{
public:
    Session(const QUrl& theTokenUrl, const QUrl& theLogoutUrl)
        : myTokenUrl(theTokenUrl)
        , myLogoutUrl(theLogoutUrl)
    {
    }

    QString clientId() const override { return u"vx-test"_s; }
    QUrl tokenUrl() const override { return myTokenUrl; }
    QUrl logoutUrl() const override { return myLogoutUrl; }
    using VXCloudSessionOAuth2::setRefreshToken;

private:
    const QUrl myTokenUrl;
    const QUrl myLogoutUrl;
};

class Login : public VXCloudLoginOauth
{
public:
    explicit Login(const QUrl& theTarget)
        : VXCloudLoginOauth(u"vx-test"_s, QString(), theTarget)
    {
    }

    QByteArray loginRequestData(const VXCredentials& theCredentials) const override
    {
        return "grant_type=password&client_id=" + QUrl::toPercentEncoding(clientId()) +
               "&username=" + QUrl::toPercentEncoding(theCredentials.username()) +
               "&password=" + QUrl::toPercentEncoding(theCredentials.password());
    }
};

/// A browser without a window: follows the redirects of the address.
class Browser : public VXPlatformIndependent
{
public:
    bool openUrl(const QUrl& theUrl) override
    {
        QNetworkReply* const reply = myManager.get(QNetworkRequest(theUrl)); // the manager's
        QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply] {
            target = reply->url();
            page = reply->readAll();
        });
        return true;
    }

    QUrl target;
    QByteArray page;

private:
    QNetworkAccessManager myManager;
};

QJsonObject post(const QUrl& theUrl, const Form& theForm, int* theStatus)
{
    QByteArray body;
    for (const auto& [name, value] : theForm)
        body += name + '=' + value.toPercentEncoding() + '&';
    VXHttpOperation operation = VXHttpOperation::create(
        theUrl, body.chopped(1), ContentFormUrlEncoded, QNetworkAccessManager::PostOperation);
    const QJsonObject reply = operation.receiveJsonObjectWithErrorBody();
    *theStatus = operation.httpResponseCode();
    return reply;
}

} // namespace

class tst_oauth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    // a server that grants everything
    void passwordArrivesAsTyped_data();
    void passwordArrivesAsTyped();
    void sessionOpensRenewsAndCloses();
    void directLoginGetsTheReply();
    void redirectIsCaughtAndTheCodeExchanged();

    // a strict server
    void strictServerTakesAPasswordWithEverySign();
    void wrongPasswordIsRefused();
    void directLoginWithWrongPasswordIsRefused();
    void refreshTokenIsRotated();
    void reusedRefreshTokenIsRefusedAndTheSessionExpires();
    void doubledClientIdIsRefusedAndTheSessionClosesAllTheSame();
    void revokedTokenIsWorthless();

private:
    void keepSecret(const QString& theSecret);
    void keepSecrets(const VXCloudSessionOAuth2& theSession);
    [[nodiscard]] std::unique_ptr<Session> strictSession() const;

    std::unique_ptr<VXLogCapture> myLog; // made when Qt Test has put its own handler in place
    VXMockOAuthServer myMock;
    VXStrictOAuthServer myStrict;
    QSet<QString> mySecrets; // passwords, codes and tokens of the whole run
    const QString myUser = QString::fromUtf8(VXStrictOAuthServer::user);
    const QString myPassword = QString::fromUtf8(VXStrictOAuthServer::password);
};

void tst_oauth::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString()); // port 1031 is ours alone in there
    myLog = std::make_unique<VXLogCapture>();
    QVERIFY2(myMock.start(), qPrintable(myMock.errorString()));
    QVERIFY2(myStrict.start(), qPrintable(myStrict.errorString()));
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::OAuthSupport,
                                           u"" VX_SOURCE_DIR "/assets/oauth"_s);
    keepSecret(myPassword);
}

void tst_oauth::cleanup()
{
    myMock.showOutputOnFailure();
    myStrict.showOutputOnFailure();
}

/// The log of the whole run holds no secret, but in the answers of servers, which are logged as
/// they come.
void tst_oauth::cleanupTestCase()
{
    QVERIFY(mySecrets.size() > 15);
    QVERIFY(!myLog->textsWith(u"password=***"_s).isEmpty()); // failed requests were logged
    QVERIFY(!myLog->textsWith(u"refresh_token=***"_s).isEmpty());
    QVERIFY(!myLog->textsWith(u"token=***"_s).isEmpty());
    QVERIFY(!myLog->textsWith(u"code=***"_s).isEmpty());
    QVERIFY(!myLog->textsWith(u"code_verifier=***"_s).isEmpty());
    for (const QString& text : myLog->texts()) {
        if (text.startsWith(u" answer:"_s))
            continue;
        for (const QString& secret : std::as_const(mySecrets)) {
            QVERIFY2(!text.contains(secret), qPrintable(text));
            const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(secret));
            QVERIFY2(!text.contains(encoded), qPrintable(text));
        }
    }
    myLog.reset();
}

void tst_oauth::keepSecret(const QString& theSecret)
{
    if (!theSecret.isEmpty())
        mySecrets << theSecret;
}

void tst_oauth::keepSecrets(const VXCloudSessionOAuth2& theSession)
{
    keepSecret(theSession.accessToken());
    keepSecret(theSession.refreshToken());
}

std::unique_ptr<Session> tst_oauth::strictSession() const
{
    return std::make_unique<Session>(myStrict.url(u"/token"_s),
                                     myStrict.url(u"/token/revocation"_s));
}

void tst_oauth::passwordArrivesAsTyped_data()
{
    QTest::addColumn<QString>("password");

    for (const char* password :
         {"a+b plus", "50% and more", "%41 percent", "%26%zz", "a&b=c", "ä&=#\"<>", "blank in it",
          "'/\\?;:@,", "\xF0\x9F\x93\xB7 emoji", "tab\there", "{}|^`~[]"})
        QTest::newRow(password) << QString::fromUtf8(password);
}

void tst_oauth::passwordArrivesAsTyped()
{
    QFETCH(QString, password);
    keepSecret(password);
    Session session(myMock.url(u"/token"_s), myMock.url(u"/revoke"_s));
    QVERIFY(!session.open({u"max+1%41@x.test"_s, password}, nullptr).errorOccurred());

    QTRY_VERIFY(!myMock.requests().isEmpty()); // the server writes its line when it likes
    QTRY_COMPARE(myMock.requests().constLast()[u"form"_s].toObject()[u"password"_s].toString(),
                 password);
    const QJsonObject form = myMock.requests().constLast()[u"form"_s].toObject();
    QCOMPARE(form[u"username"_s].toString(), u"max+1%41@x.test"_s);
    QCOMPARE(form[u"grant_type"_s].toString(), u"password"_s);
    QCOMPARE(form[u"client_id"_s].toString(), u"vx-test"_s);
    QCOMPARE(form.size(), 4);
    keepSecrets(session);
}

void tst_oauth::sessionOpensRenewsAndCloses()
{
    Session session(myMock.url(u"/token"_s), myMock.url(u"/revoke"_s));
    QVERIFY(!session.open({myUser, myPassword}, nullptr).errorOccurred());
    QVERIFY(session.isOpen());
    QVERIFY(!session.isSessionExpired());
    keepSecrets(session);
    const QString access = session.accessToken();
    const QString refresh = session.refreshToken();

    session.updateAccessToken();
    QVERIFY(session.accessToken() != access);
    QVERIFY(session.refreshToken() != refresh);
    QVERIFY(!session.isSessionExpired());
    keepSecrets(session);

    session.close();
    QVERIFY(!session.isOpen());
    QVERIFY(session.isSessionExpired());
    QTRY_VERIFY(!myMock.requests().isEmpty());
    QTRY_COMPARE(myMock.requests().constLast()[u"endpoint"_s].toString(), u"revoke"_s);
}

void tst_oauth::directLoginGetsTheReply()
{
    QString token;
    const VXNetworkingError error =
        Login(myMock.url(u"/token"_s)).performLogin({myUser, myPassword}, token);
    QCOMPARE(error.errorCode(), 0);
    const QJsonObject reply = QJsonDocument::fromJson(token.toUtf8()).object();
    QVERIFY(!reply[u"access_token"_s].toString().isEmpty());
    keepSecret(reply[u"access_token"_s].toString());
    keepSecret(reply[u"refresh_token"_s].toString());
}

void tst_oauth::redirectIsCaughtAndTheCodeExchanged()
{
    const QByteArray verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"; // RFC 7636, B
    const QByteArray challenge = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM";
    keepSecret(QString::fromLatin1(verifier));
    auto platform = std::make_unique<Browser>();
    Browser* const browser = platform.get();
    VXPlatformIndependent::setInstance(std::move(platform));

    QUrl login = myMock.url(u"/authorize"_s);
    login.setQuery(u"response_type=code&client_id=vx-test&scope=openid&state=s%2B1"
                   "&redirect_uri=http%3A%2F%2F127.0.0.1%3A1031%2F&code_challenge_method=S256"
                   "&code_challenge="_s +
                   QString::fromLatin1(challenge));
    VXOAuth2ExternalLoginDialog dialog(login, u"Mock"_s);
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    keepSecret(dialog.accessCode());
    QTRY_VERIFY(!browser->page.isEmpty());
    QCOMPARE(browser->target.port(), 1031);
    QVERIFY(browser->page.startsWith("<!DOCTYPE html>"));

    const auto exchange = [&](const QByteArray& theVerifier, int* theStatus) {
        return post(myMock.url(u"/token"_s),
                    {{"grant_type", "authorization_code"},
                     {"client_id", "vx-test"},
                     {"redirect_uri", "http://127.0.0.1:1031/"},
                     {"code", dialog.accessCode().toUtf8()},
                     {"code_verifier", theVerifier}},
                    theStatus);
    };
    int status = 0;
    const QJsonObject reply = exchange(verifier, &status);
    QCOMPARE(status, 200);
    QVERIFY(!reply[u"access_token"_s].toString().isEmpty());
    keepSecret(reply[u"access_token"_s].toString());
    keepSecret(reply[u"refresh_token"_s].toString());
    // The server forgets the challenge with the code, so that it refuses a second time.
    const QJsonObject refusal = exchange(verifier, &status);
    QCOMPARE(status, 400);
    QCOMPARE(refusal[u"error"_s].toString(), u"invalid_request"_s);
}

void tst_oauth::strictServerTakesAPasswordWithEverySign()
{
    const auto session = strictSession();
    const VXNetworkingError error = session->open({myUser, myPassword}, nullptr);
    QVERIFY2(!error.errorOccurred(), qPrintable(error.errorDetails()));
    QVERIFY(session->isOpen());
    QVERIFY(!session->isSessionExpired());
    QCOMPARE(session->username(), myUser);
    keepSecrets(*session);
}

void tst_oauth::wrongPasswordIsRefused()
{
    keepSecret(u"quite-wrong-password"_s);
    const auto session = strictSession();
    const VXNetworkingError error = session->open({myUser, u"quite-wrong-password"_s}, nullptr);
    QCOMPARE(error.errorCode(), 3802); // HTTP 400
    QVERIFY(!session->isOpen());
    QVERIFY(session->isSessionExpired());
    QCOMPARE(session->username(), QString());
}

void tst_oauth::directLoginWithWrongPasswordIsRefused()
{
    QString token = u"as before"_s;
    const VXNetworkingError error =
        Login(myStrict.url(u"/token"_s)).performLogin({myUser, u"quite-wrong-password"_s}, token);
    QCOMPARE(error.errorCode(), int{InvalidLogin});
    QCOMPARE(token, u"as before"_s);
}

void tst_oauth::refreshTokenIsRotated()
{
    const auto session = strictSession();
    QVERIFY(!session->open({myUser, myPassword}, nullptr).errorOccurred());
    keepSecrets(*session);
    for (int i = 0; i < 3; ++i) {
        const QString access = session->accessToken();
        const QString refresh = session->refreshToken();
        session->updateAccessToken();
        QVERIFY(!session->isSessionExpired());
        QVERIFY(!session->refreshToken().isEmpty());
        QVERIFY(session->refreshToken() != refresh);
        QVERIFY(session->accessToken() != access);
        keepSecrets(*session);
    }
}

void tst_oauth::reusedRefreshTokenIsRefusedAndTheSessionExpires()
{
    const auto session = strictSession();
    QVERIFY(!session->open({myUser, myPassword}, nullptr).errorOccurred());
    keepSecrets(*session);
    const QString used = session->refreshToken();
    session->updateAccessToken();
    keepSecrets(*session);
    const QString held = session->accessToken();

    // A second holder of the old token, whose timer does not run.
    const auto thief = strictSession();
    thief->setRefreshToken(used);
    thief->updateAccessToken();
    QVERIFY(!thief->isOpen());
    QVERIFY(thief->isSessionExpired());

    // The server now distrusts every token of this login: the next renewal fails in silence.
    const qsizetype before = myLog->textsWith(u"refresh_token=***"_s).size();
    session->updateAccessToken();
    QCOMPARE(session->accessToken(), held);
    QCOMPARE(myLog->textsWith(u"refresh_token=***"_s).size(), before + 1);
}

void tst_oauth::doubledClientIdIsRefusedAndTheSessionClosesAllTheSame()
{
    const auto session = strictSession();
    QVERIFY(!session->open({myUser, myPassword}, nullptr).errorOccurred());
    keepSecrets(*session);
    const QString refresh = session->refreshToken();

    session->close();
    QVERIFY(!session->isOpen());
    QCOMPARE(session->refreshToken(), QString());
    QVERIFY(session->isSessionExpired());
    QVERIFY(!myLog->textsWith(u"'client_id' parameter must not be provided twice"_s).isEmpty());

    // So this server has revoked nothing.
    int status = 0;
    const QJsonObject reply = post(myStrict.url(u"/token"_s),
                                   {{"grant_type", "refresh_token"},
                                    {"client_id", "vx-test"},
                                    {"refresh_token", refresh.toUtf8()}},
                                   &status);
    QCOMPARE(status, 200);
    keepSecret(reply[u"access_token"_s].toString());
    keepSecret(reply[u"refresh_token"_s].toString());
}

void tst_oauth::revokedTokenIsWorthless()
{
    const auto session = strictSession();
    QVERIFY(!session->open({myUser, myPassword}, nullptr).errorOccurred());
    keepSecrets(*session);
    int status = 0;
    post(myStrict.url(u"/token/revocation"_s),
         {{"client_id", "vx-test"}, {"token", session->refreshToken().toUtf8()}}, &status);
    QCOMPARE(status, 200);

    const QString held = session->accessToken();
    session->updateAccessToken();
    QCOMPARE(session->accessToken(), held); // nothing new
}

VX_TEST_MAIN(QApplication, tst_oauth)

#include "tst_oauth.moc"
