// The login in a page of the program, at OAuth2 servers that this project did not write: real pages
// in the real engine, the code from the redirect, the tokens through a session.

#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXMockOAuthServer.h"
#include "VXStrictOAuthServer.h"
#include "VXTestMain.h"
#include "VXWebTest.h"

#include <VXNetworking/VXCloudSessionOAuth2.h>
#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QUrlQuery>
#include <QtWebEngineCore/QWebEngineCookieStore>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto redirectUri = "http://127.0.0.1:1031/";                   // nobody listens there
constexpr auto verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"; // RFC 7636, B
constexpr auto challenge = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM";
constexpr auto wantedState = "s+1%&=ä";

/// What a customer does: types name and password, and agrees to what the login is for.
constexpr auto fillIn = R"((() => {
    const form = document.querySelector('form');
    if (!form)
        return 'nothing';
    const name = form.querySelector('input[name=login]');
    if (name) {
        name.value = 'max@example.test';
        form.querySelector('input[name=password]').value = 'any password';
    }
    form.requestSubmit();
    return name ? 'login' : 'consent';
})())";

constexpr auto cancel = "document.querySelector('a[href$=\"/abort\"]').click()";

/// A session that logs in by the code of a dialog instead of a password (RFC 6749, 4.1.3).
class Session : public VXCloudSessionOAuth2
{
public:
    Session(const QUrl& theTokenUrl, const QUrl& theLogoutUrl, const QString& theCode,
            const QByteArray& theVerifier = verifier)
        : myTokenUrl(theTokenUrl)
        , myLogoutUrl(theLogoutUrl)
        , myCode(theCode)
        , myVerifier(theVerifier)
    {
    }

    QString clientId() const override { return u"vx-test"_s; }
    QUrl tokenUrl() const override { return myTokenUrl; }
    QUrl logoutUrl() const override { return myLogoutUrl; }

    QUrlQuery buildOpenQuery(const VXCredentials&) const override
    {
        QUrlQuery query = buildBasicQuery();
        const auto add = [&query](const QString& theName, const QByteArray& theValue) {
            query.addQueryItem(theName, QString::fromLatin1(theValue.toPercentEncoding()));
        };
        add(u"grant_type"_s, "authorization_code");
        add(u"code"_s, myCode.toUtf8());
        add(u"redirect_uri"_s, redirectUri);
        add(u"code_verifier"_s, myVerifier);
        return query;
    }

private:
    const QUrl myTokenUrl;
    const QUrl myLogoutUrl;
    const QString myCode;
    const QByteArray myVerifier;
};

/// The dialog of an application, with a customer who does `script` on each page of the provider.
class Dialog : public VXOAuth2LoginDialog
{
public:
    explicit Dialog(const QUrl& theProvider, const QString& theScript = QString::fromUtf8(fillIn))
        : VXOAuth2LoginDialog(address(theProvider), u"Provider"_s, CancelButtonOption)
        , myProvider(theProvider)
        , myScript(theScript)
    {
    }

    void handleUrlChanged(const QUrl& theUrl) override
    {
        VXOAuth2LoginDialog::handleUrlChanged(theUrl);
        if (redirect.isValid() || theUrl.port() != 1031)
            return;
        redirect = theUrl;
        if (item(u"code"_s).isEmpty()) {
            startRejectTimer();
            return;
        }
        setAccessCode(item(u"code"_s));
        startAcceptTimer();
    }

    void handleLoadFinished(bool theIsOk) override
    {
        VXOAuth2LoginDialog::handleLoadFinished(theIsOk);
        if (url().port() != myProvider.port())
            return;
        findChild<QWebEngineView*>()->page()->runJavaScript(
            myScript, [self = QPointer<Dialog>(this)](const QVariant& theResult) {
                if (self)
                    self->steps << theResult.toString();
            });
    }

    [[nodiscard]] QString item(const QString& theName) const
    {
        QString query = redirect.query(QUrl::FullyEncoded);
        query.replace(u'+', u"%20"_s); // how forms write blanks
        return QUrlQuery(query).queryItemValue(theName, QUrl::FullyDecoded);
    }

    QUrl redirect;
    QStringList steps;

private:
    static QUrl address(QUrl theProvider)
    {
        const auto encoded = [](const char* theText) {
            return QString::fromLatin1(QByteArray(theText).toPercentEncoding());
        };
        theProvider.setQuery(
            u"response_type=code&client_id=vx-test&scope=openid&redirect_uri=%1&state=%2"
            "&code_challenge_method=S256&code_challenge=%3"_s.arg(
                encoded(redirectUri), encoded(wantedState), encoded(challenge)),
            QUrl::StrictMode);
        return theProvider;
    }

    const QUrl myProvider;
    const QString myScript;
};

} // namespace

class tst_embedded_login : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void redirectAtOnceIsCaught();
    void customerTypesAndAgrees();
    void knownCustomerIsNotAskedAgain();
    void tokensAreRenewedAndGivenBack();
    void codeOfAnotherLoginIsRefused();
    void codeIsGoodOnce();
    void customerChangesHisMind();

private:
    std::unique_ptr<VXCloudSessionOAuth2> logIn(const Dialog& theDialog,
                                                const QByteArray& theVerifier = verifier);

    std::unique_ptr<VXLogCapture> myLog; // made when Qt Test has put its own handler in place
    VXMockOAuthServer myMock;
    VXStrictOAuthServer myStrict;
    QSet<QString> mySecrets; // codes and tokens of the whole run
};

void tst_embedded_login::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString()); // port 1031 is ours alone in there
    myLog = std::make_unique<VXLogCapture>();
    QVERIFY2(myMock.start(), qPrintable(myMock.errorString()));
    QVERIFY2(myStrict.start(), qPrintable(myStrict.errorString()));
    mySecrets << u"any password"_s << QString::fromLatin1(verifier);
}

/// Nobody is logged in at the provider.
void tst_embedded_login::init()
{
    QWebEngineProfile::defaultProfile()->cookieStore()->deleteAllCookies();
}

void tst_embedded_login::cleanup()
{
    myMock.showOutputOnFailure();
    myStrict.showOutputOnFailure();
}

void tst_embedded_login::cleanupTestCase()
{
    QVERIFY(mySecrets.size() > 8);
    for (const QString& text : myLog->texts()) {
        for (const QString& secret : std::as_const(mySecrets))
            QVERIFY2(!text.contains(secret), qPrintable(text));
    }
    myLog.reset();
}

/// The session that the code of theDialog opens at the strict server.
std::unique_ptr<VXCloudSessionOAuth2> tst_embedded_login::logIn(const Dialog& theDialog,
                                                                const QByteArray& theVerifier)
{
    auto session =
        std::make_unique<Session>(myStrict.url(u"/token"_s), myStrict.url(u"/token/revocation"_s),
                                  theDialog.accessCode(), theVerifier);
    (void)session->open({u"max@example.test"_s, QString()}, nullptr);
    for (const QString& secret :
         {theDialog.accessCode(), session->accessToken(), session->refreshToken()})
        if (!secret.isEmpty())
            mySecrets << secret;
    return session;
}

void tst_embedded_login::redirectAtOnceIsCaught()
{
    Dialog dialog(myMock.url(u"/authorize"_s));
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QCOMPARE(dialog.item(u"state"_s), QString::fromUtf8(wantedState));
    QVERIFY(!dialog.accessCode().isEmpty());
    QCOMPARE(dialog.steps, QStringList()); // this server has no page

    Session session(myMock.url(u"/token"_s), myMock.url(u"/revoke"_s), dialog.accessCode());
    const VXNetworkingError error = session.open({u"max"_s, QString()}, nullptr);
    QVERIFY2(!error.errorOccurred(), qPrintable(error.errorDetails()));
    QVERIFY(session.isOpen());
    mySecrets << dialog.accessCode() << session.accessToken() << session.refreshToken();
    QTRY_VERIFY(!myMock.requests().isEmpty());
    const QJsonObject form = myMock.requests().constLast()[u"form"_s].toObject();
    QCOMPARE(form[u"grant_type"_s].toString(), u"authorization_code"_s);
    QCOMPARE(form[u"code"_s].toString(), dialog.accessCode());
    QCOMPARE(form[u"redirect_uri"_s].toString(), QString::fromLatin1(redirectUri));
    QCOMPARE(form[u"code_verifier"_s].toString(), QString::fromLatin1(verifier));
}

void tst_embedded_login::customerTypesAndAgrees()
{
    Dialog dialog(myStrict.url(u"/auth"_s));
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QCOMPARE(dialog.steps, (QStringList{u"login"_s, u"consent"_s}));
    QCOMPARE(dialog.item(u"state"_s), QString::fromUtf8(wantedState));

    const auto session = logIn(dialog);
    QVERIFY(session->isOpen());
    QVERIFY(!session->isSessionExpired());
    QVERIFY(!session->accessToken().isEmpty());
}

void tst_embedded_login::knownCustomerIsNotAskedAgain()
{
    Dialog first(myStrict.url(u"/auth"_s));
    QCOMPARE(first.exec(), int{QDialog::Accepted});
    Dialog second(myStrict.url(u"/auth"_s)); // the profile has the provider's cookie
    QCOMPARE(second.exec(), int{QDialog::Accepted});
    QVERIFY(!second.steps.contains(u"login"_s));
    QVERIFY(second.accessCode() != first.accessCode());
}

void tst_embedded_login::tokensAreRenewedAndGivenBack()
{
    Dialog dialog(myStrict.url(u"/auth"_s));
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    const auto session = logIn(dialog);
    const QString access = session->accessToken();
    session->updateAccessToken();
    QVERIFY(!session->isSessionExpired());
    QVERIFY(session->accessToken() != access);
    mySecrets << session->accessToken() << session->refreshToken();
    session->close();
    QVERIFY(!session->isOpen());
}

void tst_embedded_login::codeOfAnotherLoginIsRefused()
{
    Dialog dialog(myStrict.url(u"/auth"_s));
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    const auto session = logIn(dialog, QByteArray(43, 'x')); // who asked had another proof
    QVERIFY(!session->isOpen());
}

void tst_embedded_login::codeIsGoodOnce()
{
    Dialog dialog(myStrict.url(u"/auth"_s));
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QVERIFY(logIn(dialog)->isOpen());
    QVERIFY(!logIn(dialog)->isOpen());
}

void tst_embedded_login::customerChangesHisMind()
{
    Dialog dialog(myStrict.url(u"/auth"_s), QString::fromUtf8(cancel));
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(dialog.item(u"error"_s), u"access_denied"_s);
    QCOMPARE(dialog.accessCode(), QString());
}

VX_TEST_MAIN(QApplication, tst_embedded_login)

#include "tst_embedded_login.moc"
