#include <VXNetworking/VXCloudLoginAbstract.h>

#include <VXNetworking/VXCloudLoginOauth.h>
#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkingError.h>

#include "VXRawPeer.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

class Login : public VXCloudLoginAbstract
{
public:
    using VXCloudLoginAbstract::VXCloudLoginAbstract;

    [[nodiscard]] QByteArray loginRequestData(const VXCredentials& theCredentials) const override
    {
        return "user=" + theCredentials.username().toUtf8();
    }
    [[nodiscard]] VXHttpParameter headerParameters() const override
    {
        ++requests;
        VXHttpParameter headers;
        headers.insert(u"X-Login"_s, u"1"_s);
        return headers;
    }

    mutable int requests = 0; // that asked for headers, as each one does
};

const QByteArray goodReply = R"({"access_token":"abc","expires_in":3600})";

} // namespace

class tst_VXCloudLoginAbstract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTokenIsTheWholeReply();
    void theRequestCarriesBodyTypeAndHeaders();
    void aSubclassMayChooseTargetTypeAndToken();
    void whatIsATokenReply_data();
    void whatIsATokenReply();
    void aReplyThatNamesTheKeyOftenIsReadQuickly_data();
    void aReplyThatNamesTheKeyOftenIsReadQuickly();
    void aReplyWithoutTokenHasThePartnersMessage();
    void anInvalidTargetCausesNoTraffic_data();
    void anInvalidTargetCausesNoTraffic();
    void refusalsAreToldByTheirBody_data();
    void refusalsAreToldByTheirBody();
    void aFailureLeavesTheTokenAlone();
    void withoutAPlaceForTheReplyTheCallIsRefused();
    void aDeadServerIsUnreachable();
    void anyThreadMayLogIn();
    void aCopyKeepsItsTarget();
};

void tst_VXCloudLoginAbstract::theTokenIsTheWholeReply()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, goodReply));
    QString token = u"alt"_s;
    const auto error =
        Login(peer.url(u"/login"_s)).performLogin(VXCredentials(u"karl"_s, u"x"_s), token);
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
    QCOMPARE(token, QString::fromUtf8(goodReply));
}

void tst_VXCloudLoginAbstract::theRequestCarriesBodyTypeAndHeaders()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, goodReply));
    QString token;
    (void)Login(peer.url(u"/login"_s)).performLogin(VXCredentials(u"karl"_s, u"x"_s), token);
    const VXRawRequest request = peer.requests().constFirst();
    QCOMPARE(request.method(), "POST");
    QCOMPARE(request.target(), "/login");
    QCOMPARE(request.body, "user=karl");
    QCOMPARE(request.header("Content-Type"), "application/x-www-form-urlencoded");
    QCOMPARE(request.header("X-Login"), "1");
}

void tst_VXCloudLoginAbstract::aSubclassMayChooseTargetTypeAndToken()
{
    class OwnLogin : public Login
    {
    public:
        explicit OwnLogin(const QUrl& theTarget)
            : Login(QUrl())
            , myTarget(theTarget)
        {
        }
        QUrl connectTarget() const override { return myTarget; }
        QString contentType() const override { return u"application/json"_s; }
        QString buildValidToken(const QString& theReply) const override
        {
            return u"token of "_s + theReply;
        }

    private:
        const QUrl myTarget;
    };
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "anything"));
    QString token;
    const auto error =
        OwnLogin(peer.url(u"/own"_s)).performLogin(VXCredentials(u"karl"_s, u"x"_s), token);
    QCOMPARE(static_cast<int>(error.errorCode()), 0);
    QCOMPARE(token, u"token of anything"_s);
    QCOMPARE(peer.requests().constFirst().target(), "/own");
    QCOMPARE(peer.requests().constFirst().header("Content-Type"), "application/json");
}

void tst_VXCloudLoginAbstract::whatIsATokenReply_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("expected");

    QTest::newRow("object") << uR"({"access_token":"abc","expires_in":3600})"_s << true;
    QTest::newRow("blanks at the colon") << uR"({"access_token" : "abc"})"_s << true;
    QTest::newRow("empty value") << uR"({"access_token":""})"_s << true;
    QTest::newRow("nested") << uR"({"a":{"access_token":"q"}})"_s << true;
    QTest::newRow("one line feed at the end") << u"{\"access_token\":\"abc\"}\n"_s << true;
    QTest::newRow("over several lines") << u"{\n\"access_token\":\"abc\"\n}"_s << false;
    QTest::newRow("number") << uR"({"access_token":5})"_s << false;
    QTest::newRow("leading blank") << uR"( {"access_token":"abc"})"_s << false;
    QTest::newRow("other case") << uR"({"Access_token":"abc"})"_s << false;
    QTest::newRow("no object") << uR"("access_token":"abc")"_s << false;
    QTest::newRow("empty") << u""_s << false;
}

void tst_VXCloudLoginAbstract::whatIsATokenReply()
{
    QFETCH(QString, reply);
    QFETCH(bool, expected);

    QCOMPARE(Login(QUrl()).buildValidToken(reply), expected ? reply : QString());
}

void tst_VXCloudLoginAbstract::aReplyThatNamesTheKeyOftenIsReadQuickly_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("end");
    QTest::addColumn<bool>("expected");

    QTest::newRow("32 times") << 32 << u"}"_s << true;
    QTest::newRow("33 times") << 33 << u"}"_s << false;
    QTest::newRow("10,000 times") << 10000 << u"}x"_s << false; // half a minute without the limit
}

void tst_VXCloudLoginAbstract::aReplyThatNamesTheKeyOftenIsReadQuickly()
{
    QFETCH(int, count);
    QFETCH(QString, end);
    QFETCH(bool, expected);

    const QString reply = u'{' + uR"("access_token":"a",)"_s.repeated(count) + end;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(Login(QUrl()).buildValidToken(reply), expected ? reply : QString());
    QVERIFY(timer.elapsed() < 5000);
}

void tst_VXCloudLoginAbstract::aReplyWithoutTokenHasThePartnersMessage()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "{\n\"access_token\":\"abc\"}"));
    QString token = u"alt"_s;
    const auto error = Login(peer.url()).performLogin(VXCredentials(), token);
    QCOMPARE(static_cast<int>(error.errorCode()), 2);
    QCOMPARE(error.errorText(), u"Anmeldefehler auf dem Server des Online-Partners."_s);
    QVERIFY(token.isEmpty());
}

void tst_VXCloudLoginAbstract::anInvalidTargetCausesNoTraffic_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("blank in the host") << u"http://exa mple.org/"_s;
    QTest::newRow("port too large") << u"http://host:99999/"_s;
}

void tst_VXCloudLoginAbstract::anInvalidTargetCausesNoTraffic()
{
    QFETCH(QString, target);

    QByteArray reply = "alt";
    const Login login{QUrl(target)};
    const auto error = login.sendLoginRequest("x", &reply);
    QCOMPARE(static_cast<int>(error.errorCode()), 5009);
    QCOMPARE(reply, "alt");
    QCOMPARE(login.requests, 0);
}

void tst_VXCloudLoginAbstract::refusalsAreToldByTheirBody_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("code");

    QTest::newRow("401 with a body") << 401 << QByteArray("no") << 2;
    QTest::newRow("401 without") << 401 << QByteArray() << 5004;
    QTest::newRow("500 with a body") << 500 << QByteArray("<html>") << 2;
    QTest::newRow("500 without") << 500 << QByteArray() << 5004;
}

void tst_VXCloudLoginAbstract::refusalsAreToldByTheirBody()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(int, code);

    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(status, body));
    QByteArray reply;
    const auto error = Login(peer.url()).sendLoginRequest("x", &reply);
    QCOMPARE(static_cast<int>(error.errorCode()), code);
    QVERIFY(error.errorText().isEmpty());
    QVERIFY(reply.isEmpty());
}

void tst_VXCloudLoginAbstract::aFailureLeavesTheTokenAlone()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(401, "no"));
    QString token = u"alt"_s;
    (void)Login(peer.url()).performLogin(VXCredentials(), token);
    QCOMPARE(token, u"alt"_s);
}

void tst_VXCloudLoginAbstract::withoutAPlaceForTheReplyTheCallIsRefused()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, goodReply));
    QCOMPARE(static_cast<int>(Login(peer.url()).sendLoginRequest("x", nullptr).errorCode()), 2);
}

void tst_VXCloudLoginAbstract::aDeadServerIsUnreachable()
{
    QUrl dead;
    {
        const VXRawPeer peer;
        dead = peer.url();
    }
    QByteArray reply;
    QCOMPARE(static_cast<int>(Login(dead).sendLoginRequest("x", &reply).errorCode()), 5004);
}

void tst_VXCloudLoginAbstract::anyThreadMayLogIn()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, goodReply));
    const auto logIn = [&] {
        for (int i = 0; i < 5; ++i) {
            QString token;
            (void)Login(peer.url()).performLogin(VXCredentials(), token);
            if (token != QString::fromUtf8(goodReply))
                qFatal("a worker got no token");
        }
        VXNetworkAccessManager::releaseThreadInstance();
    };
    std::thread first(logIn);
    std::thread second(logIn);
    first.join();
    second.join();
    QCOMPARE(peer.requests().size(), 10);
}

void tst_VXCloudLoginAbstract::aCopyKeepsItsTarget()
{
    const Login original(QUrl(u"http://127.0.0.1/login"_s));
    const Login copy(original);
    QCOMPARE(copy.connectTarget(), QUrl(u"http://127.0.0.1/login"_s));
}

VX_TEST_MAIN(QCoreApplication, tst_VXCloudLoginAbstract)

#include "tst_VXCloudLoginAbstract.moc"
