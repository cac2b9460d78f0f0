// The sample host's embedded login and update dialog as black boxes, with the real engine.

#include "VXPlainHttpClient.h"
#include "VXRawPeer.h"
#include "VXSampleRun.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QUrlQuery>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The programs inherit it: root may not use the engine's sandbox.
const bool isPrepared = qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");

/// Leads to the redirect's address with that query, in which %1 stands for the state of the login.
VXRawPeer::Handler redirectWith(const QString& theQuery)
{
    return [theQuery](const VXRawRequest& theRequest) {
        const QUrl asked(QString::fromLatin1(theRequest.target()));
        const QString state = QUrlQuery(asked).queryItemValue(u"state"_s, QUrl::FullyEncoded);
        const QString query = theQuery.contains(u"%1"_s) ? theQuery.arg(state) : theQuery;
        return VXRawAnswer::http(302, {}, {"Location: http://127.0.0.1:1031/?" + query.toLatin1()});
    };
}

} // namespace

class tst_sample_webdialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void embeddedLoginGetsTokens();
    void wrongPasswordIsTypedOnce();
    void codeOfThisLoginIsTaken();
    void redirectThatIsNoAnswerIsPassedOver_data();
    void redirectThatIsNoAnswerIsPassedOver();
    void errorOfTheProviderEndsTheLogin();
    void silentProviderMayBeGivenUp();
    void passwordGoesToTheProviderOnly();

    void updateTellsTheAnswer_data();
    void updateTellsTheAnswer();
    void updateWaitsForTheUser();
    void updateWithoutNotesIsALibraryError();
    void wrongUsageEndsWithStatus2_data();
    void wrongUsageEndsWithStatus2();

private:
    [[nodiscard]] VXSampleRun run(const QStringList& theArguments,
                                  const QByteArray& theInput = "demo\n") const;
    [[nodiscard]] VXSampleRun login(const QStringList& theOptions, int theSeconds = 60,
                                    const QByteArray& theInput = "demo\n") const;
    [[nodiscard]] QByteArray ask(const QByteArray& theRequestLine,
                                 const QJsonObject& theBody = {}) const;
    [[nodiscard]] QList<QByteArray> formsAt(const QString& thePath) const;

    std::unique_ptr<VXSimulatorProcess> mySimulator;
};

void tst_sample_webdialogs::initTestCase()
{
    QVERIFY(isPrepared);
    mySimulator = std::make_unique<VXSimulatorProcess>();
    QCOMPARE(mySimulator->errorText(), QString());
}

void tst_sample_webdialogs::init()
{
    (void)ask("DELETE /behaviour");
    (void)ask("DELETE /requests");
}

VXSampleRun tst_sample_webdialogs::run(const QStringList& theArguments,
                                       const QByteArray& theInput) const
{
    VXSampleRun program(QStringList{u"--offscreen"_s, u"--simulator"_s, mySimulator->readyFile()} +
                            theArguments,
                        theInput);
    return program;
}

VXSampleRun tst_sample_webdialogs::login(const QStringList& theOptions, int theSeconds,
                                         const QByteArray& theInput) const
{
    return run(
        QStringList{u"--exit-after"_s, QString::number(theSeconds), u"login"_s, u"embedded"_s} +
            theOptions,
        theInput);
}

QByteArray tst_sample_webdialogs::ask(const QByteArray& theRequestLine,
                                      const QJsonObject& theBody) const
{
    VXPlainHttpClient client(QHostAddress::LocalHost,
                             static_cast<quint16>(mySimulator->port(u"control"_s)));
    const QByteArray body =
        theBody.isEmpty() ? QByteArray() : QJsonDocument(theBody).toJson(QJsonDocument::Compact);
    return client.ask(theRequestLine, {}, body).body;
}

/// The bodies of the POST requests at that path, in their order.
QList<QByteArray> tst_sample_webdialogs::formsAt(const QString& thePath) const
{
    const QJsonObject answer = QJsonDocument::fromJson(ask("GET /requests?since=0")).object();
    QList<QByteArray> forms;
    for (const QJsonValue& request : answer[u"requests"_s].toArray()) {
        const QByteArray body = QByteArray::fromBase64(request[u"body"_s].toString().toLatin1());
        if (request[u"target"_s].toString() == thePath && !body.isEmpty())
            forms << body;
    }
    return forms;
}

void tst_sample_webdialogs::embeddedLoginGetsTokens()
{
    const VXSampleRun done = login({u"--user"_s, u"demo"_s, u"--password-stdin"_s});
    QVERIFY2(done.exitCode() == 0, qPrintable(done.standardError()));
    QVERIFY(done.isJson());
    QCOMPARE(done.result()[u"accepted"_s].toBool(), true);
    QCOMPARE(done.result()[u"accessCode"_s].toString(), u"masked"_s);
    QCOMPARE(done.result()[u"tokens"_s].toString(), u"masked"_s);
    QCOMPARE(done.result()[u"hasRefreshToken"_s].toBool(), true);
    QCOMPARE(done.result()[u"http"_s].toInt(), 200);
    QCOMPARE(done.result()[u"save"_s].toBool(true), false);

    const QList<QByteArray> forms = formsAt(u"/oauth2/token"_s);
    QCOMPARE(forms.size(), 1);
    QVERIFY2(forms.at(0).contains("grant_type=authorization_code&code=code-"), forms.at(0));
    QVERIFY2(forms.at(0).contains("&code_verifier="), forms.at(0));
    // The simulator's codes and tokens are called "code-...", "access-..." and "refresh-...".
    const QString everything = QString::fromUtf8(done.standardOutput()) + done.standardError();
    for (const QString& secret : {u"code-0"_s, u"access-0"_s, u"refresh-0"_s})
        QVERIFY2(!everything.contains(secret), qPrintable(everything));
}

void tst_sample_webdialogs::wrongPasswordIsTypedOnce()
{
    const VXSampleRun refused =
        login({u"--user"_s, u"demo"_s, u"--password-stdin"_s}, 6, "secret wrong one\n");
    QCOMPARE(refused.exitCode(), 4);
    QCOMPARE(refused.result()[u"accepted"_s].toBool(true), false);
    QCOMPARE(refused.result()[u"accessCode"_s].toString(), u"none"_s);
    QCOMPARE(formsAt(u"/oauth2/authorize"_s).size(), 1);
    QVERIFY(!refused.standardOutput().contains("secret wrong one"));
    QVERIFY(!refused.standardError().contains(u"secret wrong one"_s));
}

void tst_sample_webdialogs::codeOfThisLoginIsTaken()
{
    VXRawPeer provider;
    provider.setHandler(redirectWith(u"code=unknown%2Bto%26it&state=%1"_s));
    const VXSampleRun done =
        login({u"--authorize-url"_s, provider.url(u"/auth?tenant=7"_s).toString()});
    QCOMPARE(done.result()[u"accepted"_s].toBool(), true);
    QCOMPARE(done.result()[u"http"_s].toInt(), 400); // the simulator never gave that code
    const QList<QByteArray> forms = formsAt(u"/oauth2/token"_s);
    QCOMPARE(forms.size(), 1);
    QVERIFY2(forms.at(0).contains("&code=unknown%2Bto%26it&"), forms.at(0));

    const QUrlQuery asked(QUrl(QString::fromLatin1(provider.requests().at(0).target())));
    QCOMPARE(asked.queryItemValue(u"tenant"_s), u"7"_s);
    QCOMPARE(asked.queryItemValue(u"response_type"_s), u"code"_s);
    QCOMPARE(asked.queryItemValue(u"code_challenge_method"_s), u"S256"_s);
    QCOMPARE(asked.queryItemValue(u"redirect_uri"_s, QUrl::FullyDecoded),
             u"http://127.0.0.1:1031/"_s);
}

void tst_sample_webdialogs::redirectThatIsNoAnswerIsPassedOver_data()
{
    QTest::addColumn<QString>("query");

    QTest::newRow("foreign state") << u"code=c&state=foreign"_s;
    QTest::newRow("no state") << u"code=c"_s;
    QTest::newRow("no code") << u"state=%1"_s;
    QTest::newRow("state with something before it") << u"code=c&state=x%1"_s;
}

void tst_sample_webdialogs::redirectThatIsNoAnswerIsPassedOver()
{
    QFETCH(QString, query);
    VXRawPeer provider;
    provider.setHandler(redirectWith(query));
    const VXSampleRun waiting =
        login({u"--authorize-url"_s, provider.url(u"/auth"_s).toString()}, 4);
    QVERIFY(!provider.requests().isEmpty());
    QCOMPARE(waiting.exitCode(), 4);
    QCOMPARE(waiting.result()[u"accepted"_s].toBool(true), false);
    QVERIFY(formsAt(u"/oauth2/token"_s).isEmpty());
}

void tst_sample_webdialogs::errorOfTheProviderEndsTheLogin()
{
    VXRawPeer provider;
    provider.setHandler(redirectWith(u"error=access_denied&state=%1"_s));
    const VXSampleRun refused = login({u"--authorize-url"_s, provider.url(u"/auth"_s).toString()});
    QCOMPARE(refused.exitCode(), 1);
    QCOMPARE(refused.result()[u"accepted"_s].toBool(true), false);
    QCOMPARE(refused.result()[u"error"_s].toString(), u"access_denied"_s);
}

void tst_sample_webdialogs::silentProviderMayBeGivenUp()
{
    VXRawPeer provider;
    provider.setAnswer(VXRawAnswer().stall());
    const VXSampleRun late = login({u"--authorize-url"_s, provider.url(u"/auth"_s).toString()}, 2);
    QCOMPARE(late.exitCode(), 4);
    QCOMPARE(late.result()[u"accepted"_s].toBool(true), false);
}

void tst_sample_webdialogs::passwordGoesToTheProviderOnly()
{
    VXRawPeer elsewhere;
    elsewhere.setAnswer(VXRawAnswer::http(
        200, "<form method=post><input name=u><input name=p type=password></form>",
        {"Content-Type: text/html"}));
    VXRawPeer provider;
    provider.setAnswer(VXRawAnswer::http(302, {}, {"Location: " + elsewhere.url().toEncoded()}));
    const VXSampleRun waiting = login({u"--authorize-url"_s, provider.url(u"/auth"_s).toString(),
                                       u"--user"_s, u"demo"_s, u"--password-stdin"_s},
                                      12);
    QCOMPARE(waiting.exitCode(), 4);
    QVERIFY(!elsewhere.requests().isEmpty());
    for (const VXRawRequest& request : elsewhere.requests())
        QCOMPARE(request.method(), "GET");
}

void tst_sample_webdialogs::updateTellsTheAnswer_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("update");
    QTest::addColumn<bool>("mandatory");

    QTest::newRow("now") << QStringList{u"--press"_s, u"now"_s} << true << false;
    QTest::newRow("later") << QStringList{u"--press"_s, u"later"_s} << false << false;
    QTest::newRow("mandatory") << QStringList{u"--mandatory"_s, u"--press"_s, u"now"_s} << true
                               << true;
}

void tst_sample_webdialogs::updateTellsTheAnswer()
{
    QFETCH(QStringList, options);
    QFETCH(bool, update);
    QFETCH(bool, mandatory);
    const VXSampleRun done = run(QStringList{u"--exit-after"_s, u"60"_s, u"update"_s} + options);
    QVERIFY2(done.exitCode() == 0, qPrintable(done.standardError()));
    QVERIFY(done.isJson());
    QCOMPARE(done.result(), (QJsonObject{{u"update"_s, update}, {u"mandatory"_s, mandatory}}));
}

void tst_sample_webdialogs::updateWaitsForTheUser()
{
    const VXSampleRun waiting = run({u"--exit-after"_s, u"2"_s, u"update"_s});
    QCOMPARE(waiting.exitCode(), 4);
    QCOMPARE(waiting.result()[u"update"_s].toBool(true), false);
}

void tst_sample_webdialogs::updateWithoutNotesIsALibraryError()
{
    (void)ask("PUT /behaviour", {{u"path"_s, u"/update"_s}, {u"status"_s, 503}});
    const VXSampleRun failed =
        run({u"update"_s, u"--notes"_s, u"/update"_s, u"--press"_s, u"now"_s});
    QCOMPARE(failed.exitCode(), 1);
    QCOMPARE(failed.result()[u"code"_s].toInt(), 3903);
}

void tst_sample_webdialogs::wrongUsageEndsWithStatus2_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("unknown button") << QStringList{u"update"_s, u"--press"_s, u"never"_s};
    QTest::newRow("no later") << QStringList{u"update"_s, u"--mandatory"_s, u"--press"_s,
                                             u"later"_s};
    QTest::newRow("too many") << QStringList{u"update"_s, u"now"_s};
    QTest::newRow("no address") << QStringList{u"login"_s, u"embedded"_s, u"--authorize-url"_s,
                                               u"javascript:alert(1)"_s};
}

void tst_sample_webdialogs::wrongUsageEndsWithStatus2()
{
    QFETCH(QStringList, arguments);
    QCOMPARE(run(arguments).exitCode(), 2);
}

VX_TEST_MAIN(QCoreApplication, tst_sample_webdialogs)

#include "tst_sample_webdialogs.moc"
