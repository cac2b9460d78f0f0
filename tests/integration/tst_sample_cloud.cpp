// The sample host's cloud commands as black boxes, against the simulator and its faults.

#include "VXLan.h"
#include "VXPlainHttpClient.h"
#include "VXSampleRun.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtNetwork/QTcpServer>

#include <memory>

using namespace Qt::StringLiterals;

class tst_sample_cloud : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void openTellsNoToken();
    void refreshRenewsTheTokens();
    void expireWaitsForTheTimer();
    void tokenWithoutLifetimeIsExpiredAtOnce();
    void closeRevokesWithTheClientIdTwice();
    void wrongPasswordIsALibraryError();
    void faultOfTheTokenServerIsALibraryError_data();
    void faultOfTheTokenServerIsALibraryError();
    void failedRenewalIsALibraryError();
    void slowServerIsWaitedFor();
    void silentServerEndsWithStatus4();
    void revocationMayFail();

    void directLoginIsAccepted();
    void directLoginWithWrongPasswordIsRefused();
    void externalLoginNeedsThePort();
    void externalLoginMayBeGivenUp();
    void externalLoginGetsTokens();

    void recordIsKeptBetweenRunsWithoutShowingThePassword();
    void refreshTokenDrivesThePasswordOut();
    void recordComesFromALink();

    void wrongUsageEndsWithStatus2_data();
    void wrongUsageEndsWithStatus2();

private:
    [[nodiscard]] VXSampleRun run(const QStringList& theArguments,
                                  const QByteArray& theInput = "demo\n") const;
    [[nodiscard]] VXSampleRun session(const QString& theVerb,
                                      const QByteArray& theInput = "demo\n") const;
    void control(const QByteArray& theRequestLine, const QJsonObject& theBody = {}) const;
    [[nodiscard]] QList<QByteArray> formsAt(const QString& thePath) const;

    std::unique_ptr<VXSimulatorProcess> mySimulator;
};

void tst_sample_cloud::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString()); // port 1031 is ours alone in there
    mySimulator = std::make_unique<VXSimulatorProcess>();
    QCOMPARE(mySimulator->errorText(), QString());
}

void tst_sample_cloud::init()
{
    control("DELETE /behaviour");
    control("DELETE /requests");
    control("PUT /oauth", {{u"expiresIn"_s, 3600}});
}

VXSampleRun tst_sample_cloud::run(const QStringList& theArguments, const QByteArray& theInput) const
{
    VXSampleRun program(QStringList{u"--offscreen"_s, u"--simulator"_s, mySimulator->readyFile()} +
                            theArguments,
                        theInput);
    return program;
}

VXSampleRun tst_sample_cloud::session(const QString& theVerb, const QByteArray& theInput) const
{
    return run({u"session"_s, theVerb, u"--user"_s, u"demo"_s, u"--password-stdin"_s}, theInput);
}

void tst_sample_cloud::control(const QByteArray& theRequestLine, const QJsonObject& theBody) const
{
    VXPlainHttpClient client(QHostAddress::LocalHost,
                             static_cast<quint16>(mySimulator->port(u"control"_s)));
    const QByteArray body =
        theBody.isEmpty() ? QByteArray() : QJsonDocument(theBody).toJson(QJsonDocument::Compact);
    const int status = client.ask(theRequestLine, {}, body).status;
    QVERIFY2(status >= 200 && status < 300, theRequestLine);
}

/// The bodies of the requests at that path, in their order.
QList<QByteArray> tst_sample_cloud::formsAt(const QString& thePath) const
{
    VXPlainHttpClient client(QHostAddress::LocalHost,
                             static_cast<quint16>(mySimulator->port(u"control"_s)));
    const QJsonObject answer =
        QJsonDocument::fromJson(client.ask("GET /requests?since=0").body).object();
    QList<QByteArray> forms;
    for (const QJsonValue& request : answer[u"requests"_s].toArray()) {
        if (request[u"target"_s].toString() == thePath)
            forms << QByteArray::fromBase64(request[u"body"_s].toString().toLatin1());
    }
    return forms;
}

void tst_sample_cloud::openTellsNoToken()
{
    const VXSampleRun opened = session(u"open"_s);
    QCOMPARE(opened.exitCode(), 0);
    QVERIFY(opened.isJson());
    const QJsonObject result = opened.result();
    QCOMPARE(result[u"open"_s].toBool(), true);
    QCOMPARE(result[u"expired"_s].toBool(), false);
    QCOMPARE(result[u"tokens"_s].toString(), u"masked"_s);
    QCOMPARE(result[u"code"_s].toInt(-1), 0);
    // The simulator's tokens are called "access-..." and "refresh-...".
    const QString everything = QString::fromUtf8(opened.standardOutput()) + opened.standardError();
    QVERIFY2(!everything.contains(u"access-0"_s), qPrintable(everything));
    QVERIFY2(!everything.contains(u"refresh-0"_s), qPrintable(everything));
}

void tst_sample_cloud::refreshRenewsTheTokens()
{
    const VXSampleRun refreshed = session(u"refresh"_s);
    QCOMPARE(refreshed.exitCode(), 0);
    QCOMPARE(refreshed.events(u"opened"_s).size(), 1);
    QCOMPARE(refreshed.events(u"refreshed"_s).size(), 1);
    QCOMPARE(refreshed.events(u"refreshed"_s).at(0)[u"renewed"_s].toBool(), true);

    const QList<QByteArray> forms = formsAt(u"/oauth2/token"_s);
    QCOMPARE(forms.size(), 2);
    QVERIFY2(forms.at(0).contains("grant_type=password"), forms.at(0));
    QVERIFY2(forms.at(1).startsWith(
                 "client_id=vx-sample&grant_type=refresh_token&refresh_token=refresh-"),
             forms.at(1));
}

void tst_sample_cloud::expireWaitsForTheTimer()
{
    control("PUT /oauth", {{u"expiresIn"_s, 3}});
    const VXSampleRun expired = session(u"expire"_s);
    QCOMPARE(expired.exitCode(), 0);
    QCOMPARE(expired.events(u"expired"_s).size(), 1);
    const qint64 elapsed = expired.events(u"expired"_s).at(0)[u"afterMs"_s].toInteger();
    // 90 % of 3 s, less what passed between the login and the command's own clock.
    QVERIFY2(elapsed > 1000, QByteArray::number(elapsed));
    QCOMPARE(expired.result()[u"expired"_s].toBool(), true);
    QCOMPARE(expired.result()[u"open"_s].toBool(), true);
}

void tst_sample_cloud::tokenWithoutLifetimeIsExpiredAtOnce()
{
    control("PUT /behaviour", {{u"path"_s, u"/oauth2/token"_s},
                               {u"type"_s, u"application/json"_s},
                               {u"body"_s, u"{\"access_token\":\"a\"}"_s}});
    const VXSampleRun opened = session(u"open"_s);
    QCOMPARE(opened.exitCode(), 0);
    QCOMPARE(opened.result()[u"open"_s].toBool(), true);
    QCOMPARE(opened.result()[u"expired"_s].toBool(), true);
    QCOMPARE(opened.result()[u"hasRefreshToken"_s].toBool(), false);
}

void tst_sample_cloud::closeRevokesWithTheClientIdTwice()
{
    const VXSampleRun closed = session(u"close"_s);
    QCOMPARE(closed.exitCode(), 0);
    QCOMPARE(closed.result()[u"open"_s].toBool(true), false);
    QCOMPARE(closed.result()[u"tokens"_s].toString(), u"none"_s);

    const QList<QByteArray> forms = formsAt(u"/oauth2/revoke"_s);
    QCOMPARE(forms.size(), 1);
    QVERIFY2(forms.at(0).startsWith("client_id=vx-sample&client_id=vx-sample&token=refresh-"),
             forms.at(0));
}

void tst_sample_cloud::wrongPasswordIsALibraryError()
{
    const VXSampleRun refused = session(u"open"_s, "secret wrong one\n");
    QCOMPARE(refused.exitCode(), 1);
    QCOMPARE(refused.result()[u"open"_s].toBool(true), false);
    QCOMPARE(refused.result()[u"code"_s].toInt(), 3802); // HTTP 400
    QVERIFY(!refused.standardOutput().contains("secret wrong one"));
    QVERIFY(!refused.standardError().contains(u"secret wrong one"_s));
}

void tst_sample_cloud::faultOfTheTokenServerIsALibraryError_data()
{
    QTest::addColumn<QJsonObject>("behaviour");
    QTest::addColumn<int>("code");

    QTest::newRow("401") << QJsonObject{{u"status"_s, 401}} << 3704;
    QTest::newRow("500") << QJsonObject{{u"status"_s, 500}} << 3901;
    QTest::newRow("503") << QJsonObject{{u"status"_s, 503}} << 3903;
    QTest::newRow("HTML instead of JSON")
        << QJsonObject{{u"type"_s, u"text/html"_s}, {u"body"_s, u"<html>Wartung</html>"_s}} << 5010;
    QTest::newRow("nothing instead of JSON") << QJsonObject{{u"body"_s, u""_s}} << 5010;
    QTest::newRow("reset") << QJsonObject{{u"fault"_s, u"reset"_s}} << 3502;
    QTest::newRow("cut off") << QJsonObject{{u"fault"_s, u"truncate"_s}, {u"after"_s, 10}} << 3502;
}

void tst_sample_cloud::faultOfTheTokenServerIsALibraryError()
{
    QFETCH(QJsonObject, behaviour);
    QFETCH(int, code);
    behaviour.insert(u"path"_s, u"/oauth2/token"_s);
    behaviour.insert(u"times"_s, -1);
    control("PUT /behaviour", behaviour);

    const VXSampleRun failed = session(u"open"_s);
    QCOMPARE(failed.exitCode(), 1);
    QCOMPARE(failed.result()[u"code"_s].toInt(), code);
    QCOMPARE(failed.result()[u"open"_s].toBool(true), false);
}

void tst_sample_cloud::failedRenewalIsALibraryError()
{
    control("PUT /oauth", {{u"expiresIn"_s, 3600}, {u"sendRefreshToken"_s, false}});
    const VXSampleRun failed = session(u"refresh"_s);
    control("PUT /oauth", {{u"expiresIn"_s, 3600}, {u"sendRefreshToken"_s, true}});
    QCOMPARE(failed.exitCode(), 1);
    QCOMPARE(failed.events(u"refreshed"_s).at(0)[u"renewed"_s].toBool(true), false);
    QVERIFY(formsAt(u"/oauth2/token"_s).constLast().contains("grant_type=refresh_token"));
}

void tst_sample_cloud::slowServerIsWaitedFor()
{
    control("PUT /behaviour", {{u"path"_s, u"/oauth2/token"_s}, {u"delayMs"_s, 700}});
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(session(u"open"_s).exitCode(), 0);
    QVERIFY(clock.elapsed() >= 700);
}

void tst_sample_cloud::silentServerEndsWithStatus4()
{
    control("PUT /behaviour", {{u"path"_s, u"/oauth2/token"_s}, {u"fault"_s, u"never"_s}});
    const VXSampleRun late = run({u"--exit-after"_s, u"1"_s, u"session"_s, u"open"_s, u"--user"_s,
                                  u"demo"_s, u"--password-stdin"_s});
    QCOMPARE(late.exitCode(), 4);
    QCOMPARE(late.result()[u"open"_s].toBool(true), false);
}

void tst_sample_cloud::revocationMayFail()
{
    control("PUT /behaviour",
            {{u"path"_s, u"/oauth2/revoke"_s}, {u"status"_s, 503}, {u"times"_s, -1}});
    const VXSampleRun closed = session(u"close"_s);
    QCOMPARE(closed.exitCode(), 0);
    QCOMPARE(closed.result()[u"open"_s].toBool(true), false);
}

void tst_sample_cloud::directLoginIsAccepted()
{
    const VXSampleRun login =
        run({u"login"_s, u"direct"_s, u"--user"_s, u"demo"_s, u"--password-stdin"_s});
    QCOMPARE(login.exitCode(), 0);
    QCOMPARE(login.result()[u"accepted"_s].toBool(), true);
    QCOMPARE(login.result()[u"accessCode"_s].toString(), u"masked"_s);
    QVERIFY(!login.standardOutput().contains("access-0"));
}

void tst_sample_cloud::directLoginWithWrongPasswordIsRefused()
{
    const VXSampleRun login =
        run({u"login"_s, u"direct"_s, u"--user"_s, u"demo"_s, u"--password-stdin"_s}, "no\n");
    QCOMPARE(login.exitCode(), 1);
    QCOMPARE(login.result()[u"accepted"_s].toBool(true), false);
    QCOMPARE(login.result()[u"code"_s].toInt(), 2);
}

void tst_sample_cloud::externalLoginNeedsThePort()
{
    QTcpServer other;
    QVERIFY2(other.listen(QHostAddress::LocalHost, 1031), qPrintable(other.errorString()));
    const VXSampleRun login = run({u"login"_s, u"external"_s});
    QCOMPARE(login.exitCode(), 3);
    QVERIFY2(login.standardError().contains(u"port 1031 is in use"_s),
             qPrintable(login.standardError()));
}

void tst_sample_cloud::externalLoginMayBeGivenUp()
{
    const VXSampleRun login =
        run({u"--opener"_s, u"/bin/true"_s, u"--exit-after"_s, u"1"_s, u"login"_s, u"external"_s});
    QCOMPARE(login.exitCode(), 4);
    QCOMPARE(login.result()[u"accepted"_s].toBool(true), false);
}

/// The browser is a script that sends the login form and follows the provider back.
void tst_sample_cloud::externalLoginGetsTokens()
{
    const QTemporaryDir folder;
    QFile browser(folder.filePath(u"browser"_s));
    QVERIFY(browser.open(QIODevice::WriteOnly));
    browser.write("#!/bin/sh\n"
                  "curl -s -L -d \"username=demo&password=demo&${1#*\\?}\" \"${1%%\\?*}\" "
                  "> \"$0.page\"\n");
    browser.close();
    browser.setPermissions(browser.permissions() | QFile::ExeOwner);
    const VXSampleRun login = run(
        {u"--opener"_s, browser.fileName(), u"--exit-after"_s, u"60"_s, u"login"_s, u"external"_s});
    QVERIFY2(login.exitCode() == 0, qPrintable(login.standardError()));
    QCOMPARE(login.result()[u"accepted"_s].toBool(), true);
    QCOMPARE(login.result()[u"tokens"_s].toString(), u"masked"_s);
    const QList<QByteArray> forms = formsAt(u"/oauth2/token"_s);
    QCOMPARE(forms.size(), 1);
    QVERIFY2(forms.at(0).contains("grant_type=authorization_code&code=code-"), forms.at(0));
    QFile page(browser.fileName() + u".page"_s);
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(page.readAll().contains("<html"));
}

void tst_sample_cloud::recordIsKeptBetweenRunsWithoutShowingThePassword()
{
    QTemporaryDir folder;
    const QString settings = folder.filePath(u"settings.ini"_s);
    const VXSampleRun saved = run({u"--settings"_s, settings, u"credentials"_s, u"save"_s,
                                   u"Cloud"_s, u"--user"_s, u"anna"_s, u"--password-stdin"_s},
                                  "sehr geheim\n");
    QCOMPARE(saved.exitCode(), 0);
    QCOMPARE(saved.result()[u"strong"_s].toBool(), true);

    const VXSampleRun loaded =
        run({u"--settings"_s, settings, u"credentials"_s, u"load"_s, u"Cloud"_s});
    QCOMPARE(loaded.result()[u"user"_s].toString(), u"anna"_s);
    QCOMPARE(loaded.result()[u"strong"_s].toBool(), true);
    QCOMPARE(loaded.result()[u"hasPassword"_s].toBool(), true);
    QFile file(settings);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray stored = file.readAll();
    QVERIFY2(stored.contains("pwd="), stored);
    QVERIFY2(!stored.contains("geheim"), stored);
}

void tst_sample_cloud::refreshTokenDrivesThePasswordOut()
{
    QTemporaryDir folder;
    const QString settings = folder.filePath(u"settings.ini"_s);
    const VXSampleRun first = run({u"--settings"_s, settings, u"credentials"_s, u"save"_s,
                                   u"Cloud"_s, u"--user"_s, u"anna"_s, u"--password-stdin"_s});
    QCOMPARE(first.result()[u"strong"_s].toBool(), true);
    const VXSampleRun saved = run({u"--settings"_s, settings, u"credentials"_s, u"save"_s,
                                   u"Cloud"_s, u"--user"_s, u"anna"_s, u"--refresh-token-stdin"_s},
                                  "refresh-secret\n");
    QCOMPARE(saved.result()[u"weak"_s].toBool(), true);
    QVERIFY(!saved.standardOutput().contains("refresh-secret"));

    const VXSampleRun loaded =
        run({u"--settings"_s, settings, u"credentials"_s, u"load"_s, u"Cloud"_s});
    QCOMPARE(loaded.result()[u"weak"_s].toBool(), true);
    QCOMPARE(loaded.result()[u"strong"_s].toBool(true), false);
}

void tst_sample_cloud::recordComesFromALink()
{
    const VXSampleRun link = run(
        {u"credentials"_s, u"deeplink"_s, u"vx://login?login=M%C3%BCller&zelAuthOnceToken=once"_s});
    QCOMPARE(link.exitCode(), 0);
    QCOMPARE(link.result()[u"user"_s].toString(), u"Müller"_s);
    QCOMPARE(link.result()[u"hasAuthOnceToken"_s].toBool(), true);
    QCOMPARE(link.result()[u"valid"_s].toBool(true), false);
}

void tst_sample_cloud::wrongUsageEndsWithStatus2_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("session without verb") << QStringList{u"session"_s};
    QTest::newRow("unknown verb") << QStringList{u"session"_s, u"begin"_s};
    QTest::newRow("no address") << QStringList{u"session"_s, u"open"_s, u"--token-url"_s, u"x y"_s};
    QTest::newRow("foreign scheme")
        << QStringList{u"login"_s, u"external"_s, u"--authorize-url"_s, u"file:///etc/passwd"_s};
    QTest::newRow("unknown login") << QStringList{u"login"_s, u"somehow"_s};
    QTest::newRow("password as an argument")
        << QStringList{u"session"_s, u"open"_s, u"--password"_s, u"x"_s};
    QTest::newRow("credentials without group") << QStringList{u"credentials"_s, u"load"_s};
    QTest::newRow("unknown record") << QStringList{u"credentials"_s, u"drop"_s, u"Cloud"_s};
    QTest::newRow("bad number of days")
        << QStringList{u"credentials"_s, u"save"_s, u"Cloud"_s, u"--days"_s, u"soon"_s};
}

void tst_sample_cloud::wrongUsageEndsWithStatus2()
{
    QFETCH(QStringList, arguments);
    const VXSampleRun refused = run(arguments);
    QCOMPARE(refused.exitCode(), 2);
    QVERIFY(!refused.standardError().isEmpty());
}

VX_TEST_MAIN(QCoreApplication, tst_sample_cloud)

#include "tst_sample_cloud.moc"
