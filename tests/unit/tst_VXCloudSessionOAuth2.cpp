#include <VXNetworking/VXCloudSessionOAuth2.h>

#include <VXNetworking/VXCloudSessionRestrictions.h>
#include <VXNetworking/VXNetworkingError.h>

#include "VXRawPeer.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

class Session : public VXCloudSessionOAuth2
{
    Q_OBJECT

public:
    explicit Session(const VXRawPeer& thePeer)
        : myPeer(thePeer)
    {
    }

    [[nodiscard]] QString clientId() const override { return id; }
    [[nodiscard]] QString clientSecret() const override { return secret; }
    [[nodiscard]] QString scope() const override { return scopeText; }
    [[nodiscard]] QString loginGrantType() const override
    {
        return grantType.isEmpty() ? VXCloudSessionOAuth2::loginGrantType() : grantType;
    }
    [[nodiscard]] QUrl logoutUrl() const override { return myPeer.url(u"/revoke"_s); }
    [[nodiscard]] QUrl tokenUrl() const override { return myPeer.url(u"/token"_s); }

    void setTokens(const QString& theAccess, const QString& theRefresh)
    {
        setAccessToken(theAccess);
        setRefreshToken(theRefresh);
    }

    /// The interval of the running renewal timer in milliseconds.
    [[nodiscard]] int interval() const { return findChild<QTimer*>()->interval(); }

    QString id = u"client-1"_s;
    QString secret;
    QString scopeText;
    QString grantType; // empty: the library's

private:
    const VXRawPeer& myPeer;
};

/// Something that sends a request.
using SessionStep = std::function<void(Session&)>;

VXRawAnswer json(const QByteArray& theText, int theStatus = 200)
{
    return VXRawAnswer::http(theStatus, theText, {"Content-Type: application/json"});
}

const QByteArray goodReply = R"({"access_token":"at-1","expires_in":3600,"refresh_token":"rt-1"})";

QStringList keysOf(const QUrlQuery& theQuery)
{
    QStringList keys;
    const auto items = theQuery.queryItems();
    for (const auto& [key, value] : items)
        keys << key;
    return keys;
}

} // namespace

class tst_VXCloudSessionOAuth2 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openSendsThePasswordGrant();
    void scopeAndSecretAreSentWhenThereAreSome();
    void aSubclassMayChooseTheGrant();
    void whatTheFarEndDecodesIsWhatWasTyped_data();
    void whatTheFarEndDecodesIsWhatWasTyped();
    void aReplyStartsTheTimerAt90PercentOfTheLifetime_data();
    void aReplyStartsTheTimerAt90PercentOfTheLifetime();
    void withoutALifetimeNoTimerRuns_data();
    void withoutALifetimeNoTimerRuns();
    void aRefusedLoginLeavesTheSessionAsItWas_data();
    void aRefusedLoginLeavesTheSessionAsItWas();
    void aRefusedLoginKeepsTheTokens();
    void openStoresTheCredentialsAsGiven();
    void refreshSendsTheSessionsToken();
    void aRefreshReplyWithoutTokenEmptiesIt();
    void aFailedRefreshLetsTheSessionExpire();
    void closingSendsTheClientIdTwice();
    void closingEmptiesTheTokensWhateverTheAnswer_data();
    void closingEmptiesTheTokensWhateverTheAnswer();
    void aLateReplyFillsAClosedSessionAgain();
    void deletingTheSessionDuringARequestIsSafe_data();
    void deletingTheSessionDuringARequestIsSafe();
    void quittingRevokesTheToken();
};

void tst_VXCloudSessionOAuth2::openSendsThePasswordGrant()
{
    VXRawPeer peer;
    peer.setAnswer(json(goodReply));
    Session session(peer);
    const VXNetworkingError error = session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    QVERIFY(!error.errorOccurred());
    QVERIFY(session.isOpen());
    QCOMPARE(session.accessToken(), u"at-1"_s);
    QCOMPARE(session.refreshToken(), u"rt-1"_s);

    const VXRawRequest request = peer.requests().constFirst();
    QCOMPARE(request.method(), "POST");
    QCOMPARE(request.target(), "/token");
    QCOMPARE(request.header("Content-Type"), "application/x-www-form-urlencoded");
    QCOMPARE(request.body, "client_id=client-1&grant_type=password&username=karl&password=geheim");
}

void tst_VXCloudSessionOAuth2::scopeAndSecretAreSentWhenThereAreSome()
{
    VXRawPeer peer;
    peer.setAnswer(json(goodReply));
    Session session(peer);
    session.secret = u"s3"_s;
    session.scopeText = u"photos"_s;
    session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    QCOMPARE(peer.requests().constFirst().body,
             "client_id=client-1&scope=photos&client_secret=s3&grant_type=password&username=karl&"
             "password=geheim");
}

void tst_VXCloudSessionOAuth2::aSubclassMayChooseTheGrant()
{
    VXRawPeer peer;
    peer.setAnswer(json(goodReply));
    Session session(peer);
    session.grantType = u"urn:x:once"_s;
    session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    QCOMPARE(peer.requests().constFirst().body,
             "client_id=client-1&grant_type=urn:x:once&username=karl&password=geheim");
}

void tst_VXCloudSessionOAuth2::whatTheFarEndDecodesIsWhatWasTyped_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("plus") << u"a+b"_s << QByteArray("password=a%2Bb");
    QTest::newRow("percent") << u"50%"_s << QByteArray("password=50%25");
    QTest::newRow("looks encoded") << u"%41"_s << QByteArray("password=%2541");
    QTest::newRow("separators") << u"ä&=#\"<>"_s << QByteArray("password=ä%26%3D#%22%3C%3E");
    QTest::newRow("emoji") << u"😀"_s << QByteArray("password=😀");
    QTest::newRow("blank") << u"a b"_s << QByteArray("password=a b");
}

void tst_VXCloudSessionOAuth2::whatTheFarEndDecodesIsWhatWasTyped()
{
    QFETCH(QString, password);
    QFETCH(QByteArray, body);

    VXRawPeer peer;
    peer.setAnswer(json(goodReply));
    Session session(peer);
    session.open(VXCredentials(u"karl"_s, password), nullptr);
    const QList<QByteArray> fields = peer.requests().constFirst().body.split('&');
    QCOMPARE(fields.size(), 4);
    QCOMPARE(fields.constLast(), body);

    // A form decoder: a plus sign is a blank, then percent escapes.
    QByteArray value = body.sliced(qstrlen("password="));
    QCOMPARE(QString::fromUtf8(QByteArray::fromPercentEncoding(value.replace('+', ' '))), password);
}

void tst_VXCloudSessionOAuth2::aReplyStartsTheTimerAt90PercentOfTheLifetime_data()
{
    QTest::addColumn<QByteArray>("lifetime");
    QTest::addColumn<int>("interval");

    QTest::newRow("an hour") << QByteArray("3600") << 3240000;
    QTest::newRow("59 seconds") << QByteArray("59") << 53100;
    QTest::newRow("fraction") << QByteArray("1.5") << 1350;
    QTest::newRow("beyond the int range") << QByteArray("31536000") << 2147483647;
}

void tst_VXCloudSessionOAuth2::aReplyStartsTheTimerAt90PercentOfTheLifetime()
{
    QFETCH(QByteArray, lifetime);
    QFETCH(int, interval);

    VXRawPeer peer;
    Session session(peer);
    session.parseOAuth2Reply(
        QJsonDocument::fromJson(R"({"access_token":"a","expires_in":)" + lifetime + '}').object());
    QVERIFY(!session.isSessionExpired());
    QCOMPARE(session.interval(), interval);
}

void tst_VXCloudSessionOAuth2::withoutALifetimeNoTimerRuns_data()
{
    QTest::addColumn<QByteArray>("reply");

    QTest::newRow("missing") << QByteArray(R"({"access_token":"a"})");
    QTest::newRow("zero") << QByteArray(R"({"access_token":"a","expires_in":0})");
    QTest::newRow("text") << QByteArray(R"({"access_token":"a","expires_in":"3600"})");
    QTest::newRow("negative") << QByteArray(R"({"access_token":"a","expires_in":-5})");
    QTest::newRow("very negative") << QByteArray(R"({"access_token":"a","expires_in":-1e300})");
}

void tst_VXCloudSessionOAuth2::withoutALifetimeNoTimerRuns()
{
    QFETCH(QByteArray, reply);

    VXRawPeer peer;
    peer.setAnswer(json(reply));
    Session session(peer);
    QVERIFY(!session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr).errorOccurred());
    QVERIFY(session.isOpen());
    QVERIFY(session.isSessionExpired());
}

void tst_VXCloudSessionOAuth2::aRefusedLoginLeavesTheSessionAsItWas_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("code");

    QTest::newRow("invalid_grant") << 400 << QByteArray(R"({"error":"invalid_grant"})") << 3802;
    QTest::newRow("unauthorised") << 401 << QByteArray(R"({"error":"invalid_client"})") << 3704;
    QTest::newRow("server error") << 500 << QByteArray() << 3901;
    QTest::newRow("page in place of JSON") << 200 << QByteArray("<html>") << 5010;
    QTest::newRow("nothing") << 200 << QByteArray() << 5010;
}

void tst_VXCloudSessionOAuth2::aRefusedLoginLeavesTheSessionAsItWas()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(int, code);

    VXRawPeer peer;
    peer.setAnswer(json(body, status));
    Session session(peer);
    session.setCredentials(VXCredentials(u"alt"_s, u"alt"_s));
    const VXNetworkingError error = session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    QCOMPARE(static_cast<int>(error.errorCode()), code);
    QVERIFY(!session.isOpen());
    QCOMPARE(session.username(), u"alt"_s);
}

void tst_VXCloudSessionOAuth2::aRefusedLoginKeepsTheTokens()
{
    VXRawPeer peer;
    peer.setAnswer(json(R"({"error":"invalid_grant"})", 400));
    Session session(peer);
    session.setTokens(u"at-0"_s, u"rt-0"_s);
    session.restartTimer(60'000);
    QVERIFY(session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr).errorOccurred());
    QCOMPARE(session.accessToken(), u"at-0"_s);
    QCOMPARE(session.refreshToken(), u"rt-0"_s);
    QCOMPARE(session.interval(), 60'000);
    QVERIFY(!session.isSessionExpired());
}

void tst_VXCloudSessionOAuth2::openStoresTheCredentialsAsGiven()
{
    VXRawPeer peer;
    peer.setAnswer(json(goodReply));
    Session session(peer);
    VXCloudSessionRestrictions restrictions;
    session.open(VXCredentials(u"karl"_s, u"geheim"_s), &restrictions);
    QCOMPARE(session.credentials().password(), u"geheim"_s);
    QVERIFY(session.credentials().refreshToken().isEmpty());
}

void tst_VXCloudSessionOAuth2::refreshSendsTheSessionsToken()
{
    VXRawPeer peer;
    peer.setAnswer(json(R"({"access_token":"at-2","expires_in":60,"refresh_token":"rt-2"})"));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt+1%"_s);
    session.updateAccessToken();
    QCOMPARE(peer.requests().constFirst().target(), "/token");
    QCOMPARE(peer.requests().constFirst().body,
             "client_id=client-1&grant_type=refresh_token&refresh_token=rt%2B1%25");
    QCOMPARE(session.accessToken(), u"at-2"_s);
    QCOMPARE(session.refreshToken(), u"rt-2"_s);
    QCOMPARE(session.interval(), 54000);
}

void tst_VXCloudSessionOAuth2::aRefreshReplyWithoutTokenEmptiesIt()
{
    VXRawPeer peer;
    peer.setAnswer(json(R"({"access_token":"at-2","expires_in":60})"));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt-1"_s);
    session.updateAccessToken();
    QVERIFY(session.refreshToken().isEmpty());
    QCOMPARE(keysOf(session.buildUpdateQuery()),
             (QStringList{u"client_id"_s, u"grant_type"_s, u"refresh_token"_s}));
    QVERIFY(session.buildUpdateQuery().queryItemValue(u"refresh_token"_s).isEmpty());
}

void tst_VXCloudSessionOAuth2::aFailedRefreshLetsTheSessionExpire()
{
    VXRawPeer peer;
    peer.setAnswer(json(R"({"error":"invalid_grant"})", 400));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt-1"_s);
    session.updateAccessToken();
    QVERIFY(session.isOpen());
    QVERIFY(session.isSessionExpired());
    QCOMPARE(session.accessToken(), u"at-1"_s);
}

void tst_VXCloudSessionOAuth2::closingSendsTheClientIdTwice()
{
    VXRawPeer peer;
    peer.setAnswer(json("{}"));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt-1"_s);
    QCOMPARE(keysOf(session.buildRefreshQuery()),
             (QStringList{u"client_id"_s, u"client_id"_s, u"token"_s}));
    session.close();
    QCOMPARE(peer.requests().constFirst().target(), "/revoke");
    QCOMPARE(peer.requests().constFirst().body, "client_id=client-1&client_id=client-1&token=rt-1");
}

void tst_VXCloudSessionOAuth2::closingEmptiesTheTokensWhateverTheAnswer_data()
{
    QTest::addColumn<int>("status");

    QTest::newRow("accepted") << 200;
    QTest::newRow("client id given twice") << 400;
    QTest::newRow("out of order") << 503;
}

void tst_VXCloudSessionOAuth2::closingEmptiesTheTokensWhateverTheAnswer()
{
    QFETCH(int, status);

    VXRawPeer peer;
    peer.setAnswer(json({}, status));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt-1"_s);
    session.restartTimer(60'000);
    session.close();
    QVERIFY(!session.isOpen());
    QVERIFY(session.refreshToken().isEmpty());
    QVERIFY(session.isSessionExpired());
}

void tst_VXCloudSessionOAuth2::aLateReplyFillsAClosedSessionAgain()
{
    VXRawPeer peer;
    Session session(peer);
    peer.setHandler([&](const VXRawRequest& theRequest) {
        if (theRequest.target() == "/revoke")
            return json("{}");
        // The session is closed while this reply is on its way.
        QMetaObject::invokeMethod(
            &session, [&session] { session.close(); }, Qt::BlockingQueuedConnection);
        return json(goodReply);
    });
    session.setTokens(u"at-0"_s, u"rt-0"_s);
    session.updateAccessToken();
    QCOMPARE(session.accessToken(), u"at-1"_s);
    QVERIFY(!session.isSessionExpired());
}

void tst_VXCloudSessionOAuth2::deletingTheSessionDuringARequestIsSafe_data()
{
    QTest::addColumn<SessionStep>("step");

    QTest::newRow("open") << SessionStep([](Session& theSession) {
        theSession.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    });
    QTest::newRow("renew") << SessionStep(
        [](Session& theSession) { theSession.updateAccessToken(); });
    QTest::newRow("close") << SessionStep([](Session& theSession) { theSession.close(); });
}

void tst_VXCloudSessionOAuth2::deletingTheSessionDuringARequestIsSafe()
{
    QFETCH(SessionStep, step);

    VXRawPeer peer;
    auto session = std::make_unique<Session>(peer);
    peer.setHandler([&](const VXRawRequest&) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&session] { session.reset(); },
            Qt::BlockingQueuedConnection);
        return json(goodReply);
    });
    step(*session);
    QVERIFY(!session);
    QCOMPARE(peer.requests().size(), 1);
}

void tst_VXCloudSessionOAuth2::quittingRevokesTheToken()
{
    VXRawPeer peer;
    peer.setAnswer(json("{}"));
    Session session(peer);
    session.setTokens(u"at-1"_s, u"rt-1"_s);
    session.setLogoutOnClose(true);
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QCOMPARE(peer.requests().size(), 1);
    QCOMPARE(peer.requests().constFirst().target(), "/revoke");
    QVERIFY(!session.isOpen());
}

VX_TEST_MAIN(QCoreApplication, tst_VXCloudSessionOAuth2)

#include "tst_VXCloudSessionOAuth2.moc"
