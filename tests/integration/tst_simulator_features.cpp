#include "VXSimulatorProcess.h"
#include "VXSimulatorThread.h"
#include "VXSimulatorWire.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>
#include <QtCore/QUrlQuery>

#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The simulator's tokens, clock, scenario file, certificates and command line.
class tst_simulator_features : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void passwordGrantGivesTokens();
    void badGrantsAreRefused_data();
    void badGrantsAreRefused();
    void refreshTokenIsReplacedUnlessToldOtherwise();
    void refreshTokenCanBeLeftOut();
    void loginPageLeadsToACode();
    void codeIsGoodForOneTry();
    void codeIsBoundToItsTarget();
    void wrongPasswordShowsTheLoginPageAgain();
    void revokedTokensAreNotGood();
    void tokensExpireWhenTold();
    void tokensExpireByThemselves();
    void clockMovesAllDates();
    void brokenAnswersAreBroken_data();
    void brokenAnswersAreBroken();
    void scenarioFileIsApplied();
    void badScenarioFileIsNamed_data();
    void badScenarioFileIsNamed();
    void makeCertsFillsAFolder();
    void makeCertsNeedsAFolder();
    void exitAfterEndsWithSuccess();
    void exitAfterRefusesWhatIsNoTime_data();
    void exitAfterRefusesWhatIsNoTime();
    void otherAddressesNeedAPrivateNamespace_data();
    void otherAddressesNeedAPrivateNamespace();
    void twoSimulatorsRunInThreads();

private:
    struct Result
    {
        int exitCode = -1;
        QByteArray output;
        QByteArray errors;
    };
    static Result run(const QString& theProgram, const QStringList& theArguments);
    [[nodiscard]] QByteArray ask(const QString& thePort, const QByteArray& theLine,
                                 const QByteArray& theBody = {},
                                 const QByteArray& theHeader = {}) const;
    [[nodiscard]] QJsonObject token(const QByteArray& theForm) const;
    [[nodiscard]] bool isGood(const QJsonObject& theTokens) const;
    [[nodiscard]] QByteArray codeFor(const QByteArray& theTarget) const;
    void control(const QByteArray& theLine, const QByteArray& theBody) const;

    QTemporaryDir myFolder; // certificates, made once
    std::unique_ptr<VXSimulatorThread> mySimulator;
};

namespace {

const QString program = QStringLiteral(VX_BINARY_DIR "/bin/vx-simulator");
const QByteArray login = "grant_type=password&username=demo&password=demo";

QByteArray bodyOf(const QByteArray& theAnswer)
{
    return theAnswer.mid(theAnswer.indexOf("\r\n\r\n") + 4);
}

QByteArray headerOf(const QByteArray& theAnswer, const QByteArray& theName)
{
    for (const QByteArray& line : theAnswer.first(theAnswer.indexOf("\r\n\r\n")).split('\n'))
        if (line.startsWith(theName + ": "))
            return line.sliced(theName.size() + 2).trimmed();
    return {};
}

QByteArray refreshForm(const QJsonObject& theTokens)
{
    return "grant_type=refresh_token&refresh_token=" +
           theTokens.value(u"refresh_token"_s).toString().toUtf8();
}

QDateTime dateOf(const QByteArray& theAnswer)
{
    QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(headerOf(theAnswer, "Date")),
                                             u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
    date.setTimeSpec(Qt::UTC);
    return date;
}

} // namespace

tst_simulator_features::Result tst_simulator_features::run(const QString& theProgram,
                                                           const QStringList& theArguments)
{
    QProcess process;
    process.start(theProgram, theArguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray tst_simulator_features::ask(const QString& thePort, const QByteArray& theLine,
                                       const QByteArray& theBody, const QByteArray& theHeader) const
{
    return VXSimulatorWire::exchange(
        mySimulator->port(thePort),
        theLine + " HTTP/1.1\r\nHost: service.test\r\nConnection: close\r\n" + theHeader +
            "Content-Length: " + QByteArray::number(theBody.size()) + "\r\n\r\n" + theBody);
}

QJsonObject tst_simulator_features::token(const QByteArray& theForm) const
{
    return QJsonDocument::fromJson(bodyOf(ask(u"http"_s, "POST /oauth2/token", theForm))).object();
}

bool tst_simulator_features::isGood(const QJsonObject& theTokens) const
{
    const QByteArray name = theTokens.value(u"access_token"_s).toString().toUtf8();
    const QByteArray answer =
        ask(u"http"_s, "GET /oauth2/check", {}, "Authorization: Bearer " + name + "\r\n");
    return answer.startsWith("HTTP/1.1 200 ");
}

void tst_simulator_features::control(const QByteArray& theLine, const QByteArray& theBody) const
{
    QCOMPARE(bodyOf(ask(u"control"_s, theLine, theBody)), QByteArray(R"({"ok":true})"));
}

void tst_simulator_features::initTestCase()
{
    QVERIFY(myFolder.isValid());
}

void tst_simulator_features::init()
{
    VXSimulator::Setup setup;
    setup.certificates = myFolder.path();
    mySimulator = std::make_unique<VXSimulatorThread>(setup);
    QCOMPARE(mySimulator->errorText(), QString());
}

void tst_simulator_features::cleanup()
{
    mySimulator.reset();
}

void tst_simulator_features::passwordGrantGivesTokens()
{
    const QJsonObject tokens = token(login);
    QCOMPARE(tokens.keys(), (QStringList{u"access_token"_s, u"expires_in"_s, u"refresh_token"_s,
                                         u"token_type"_s}));
    QCOMPARE(tokens.value(u"expires_in"_s).toInt(), 3600);
    QCOMPARE(tokens.value(u"token_type"_s).toString(), u"Bearer"_s);
    QVERIFY(isGood(tokens));
    QVERIFY(!isGood({{u"access_token"_s, u"other"_s}}));
}

void tst_simulator_features::badGrantsAreRefused_data()
{
    QTest::addColumn<QByteArray>("form");
    QTest::addColumn<QString>("error");

    QTest::newRow("none") << QByteArray() << u"unsupported_grant_type"_s;
    QTest::newRow("unknown") << QByteArray("grant_type=magic") << u"unsupported_grant_type"_s;
    QTest::newRow("password") << QByteArray("grant_type=password&username=demo&password=x")
                              << u"invalid_grant"_s;
    QTest::newRow("refresh") << QByteArray("grant_type=refresh_token&refresh_token=x")
                             << u"invalid_grant"_s;
    QTest::newRow("code") << QByteArray("grant_type=authorization_code&code=x")
                          << u"invalid_grant"_s;
    QTest::newRow("above 1 MiB") << login + '&' + QByteArray(1024 * 1024, 'x')
                                 << u"unsupported_grant_type"_s;
}

void tst_simulator_features::badGrantsAreRefused()
{
    QFETCH(QByteArray, form);
    QVERIFY(ask(u"http"_s, "POST /oauth2/token", form).startsWith("HTTP/1.1 400 "));
    QTEST(token(form).value(u"error"_s).toString(), "error");
}

void tst_simulator_features::refreshTokenIsReplacedUnlessToldOtherwise()
{
    const QJsonObject first = token(login);
    const QJsonObject second = token(refreshForm(first));
    QVERIFY(isGood(second));
    QVERIFY(first.value(u"refresh_token"_s) != second.value(u"refresh_token"_s));
    QCOMPARE(token(refreshForm(first)).value(u"error"_s).toString(), u"invalid_grant"_s);

    control("PUT /oauth", R"({"expiresIn":3,"rotateRefresh":false})");
    const QJsonObject third = token(refreshForm(second));
    QCOMPARE(third.value(u"expires_in"_s).toInt(), 3);
    QCOMPARE(third.value(u"refresh_token"_s), second.value(u"refresh_token"_s));
    QVERIFY(isGood(token(refreshForm(second))));
}

void tst_simulator_features::refreshTokenCanBeLeftOut()
{
    control("PUT /oauth", R"({"sendRefreshToken":false})");
    QVERIFY(!token(login).contains(u"refresh_token"_s));
    QCOMPARE(token(login).value(u"expires_in"_s).toInt(), 3600); // the other rules stay
}

QByteArray tst_simulator_features::codeFor(const QByteArray& theTarget) const
{
    const QByteArray answer =
        ask(u"http"_s, "POST /oauth2/authorize",
            "username=demo&password=demo&state=a+b%26&redirect_uri=" + theTarget);
    const QUrlQuery query(QUrl(QString::fromLatin1(headerOf(answer, "Location"))));
    return query.queryItemValue(u"code"_s).toUtf8();
}

void tst_simulator_features::loginPageLeadsToACode()
{
    const QByteArray target = "http://127.0.0.1:1031/";
    const QByteArray page = ask(u"http"_s, "GET /oauth2/authorize?state=s&redirect_uri=" + target);
    QVERIFY(page.startsWith("HTTP/1.1 200 "));
    QVERIFY(page.contains("value=\"" + target + '"'));
    const QByteArray answer =
        ask(u"http"_s, "POST /oauth2/authorize",
            "username=demo&password=demo&state=a+b%26&redirect_uri=" + target);
    QVERIFY(answer.startsWith("HTTP/1.1 302 Found\r\n"));
    QVERIFY(headerOf(answer, "Location").startsWith(target + "?code=code-"));
    QVERIFY(headerOf(answer, "Location").endsWith("&state=a%20b%26"));
    QVERIFY(ask(u"http"_s, "GET /oauth2/authorize?redirect_uri=javascript:1")
                .startsWith("HTTP/1.1 400 "));
}

void tst_simulator_features::codeIsGoodForOneTry()
{
    const QByteArray form = "grant_type=authorization_code&redirect_uri=http://a.test/&code=" +
                            codeFor("http://a.test/");
    QVERIFY(isGood(token(form)));
    QCOMPARE(token(form).value(u"error"_s).toString(), u"invalid_grant"_s);
}

void tst_simulator_features::codeIsBoundToItsTarget()
{
    const QByteArray code = codeFor("http://a.test/");
    QVERIFY(!code.isEmpty());
    QCOMPARE(token("grant_type=authorization_code&redirect_uri=http://b.test/&code=" + code)
                 .value(u"error"_s)
                 .toString(),
             u"invalid_grant"_s);
}

void tst_simulator_features::wrongPasswordShowsTheLoginPageAgain()
{
    const QByteArray answer =
        ask(u"http"_s, "POST /oauth2/authorize",
            "username=demo&password=x&state=%22%3E%3Cb%3E&redirect_uri=http://a.test/");
    QVERIFY(answer.startsWith("HTTP/1.1 200 "));
    QVERIFY(answer.contains("Benutzername oder Passwort ist falsch."));
    QVERIFY(answer.contains("&quot;&gt;&lt;b&gt;"));
    QVERIFY(!answer.contains("\"><b>"));
}

void tst_simulator_features::revokedTokensAreNotGood()
{
    const QJsonObject tokens = token(login);
    const auto revoke = [&](const QByteArray& theName) {
        return bodyOf(ask(u"http"_s, "POST /oauth2/revoke", "token=" + theName));
    };
    const QByteArray access = tokens.value(u"access_token"_s).toString().toUtf8();
    QCOMPARE(revoke(access), QByteArray(R"({"revoked":true})"));
    QCOMPARE(revoke(access), QByteArray(R"({"revoked":false})"));
    QVERIFY(!isGood(tokens));
    QCOMPARE(revoke(tokens.value(u"refresh_token"_s).toString().toUtf8()),
             QByteArray(R"({"revoked":true})"));
    QCOMPARE(token(refreshForm(tokens)).value(u"error"_s).toString(), u"invalid_grant"_s);
}

void tst_simulator_features::tokensExpireWhenTold()
{
    const QJsonObject tokens = token(login);
    control("POST /tokens/expire", {});
    QVERIFY(!isGood(tokens));
    const QJsonObject renewed = token(refreshForm(tokens));
    QVERIFY(isGood(renewed));
    control("POST /tokens/expire", R"({"refresh":true})");
    QVERIFY(!isGood(renewed));
    QCOMPARE(token(refreshForm(renewed)).value(u"error"_s).toString(), u"invalid_grant"_s);
}

void tst_simulator_features::tokensExpireByThemselves()
{
    control("PUT /oauth", R"({"expiresIn":1})");
    const QJsonObject tokens = token(login);
    QTRY_VERIFY(!isGood(tokens));
    control("PUT /oauth", R"({"expiresIn":1000})");
    QVERIFY(isGood(token(login)));
}

void tst_simulator_features::clockMovesAllDates()
{
    QVERIFY(headerOf(ask(u"http"_s, "GET /echo"), "Date").isNull());
    control("PUT /clock", R"({"offsetMs":-86400000})");
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    QVERIFY(qAbs(yesterday.secsTo(dateOf(ask(u"http"_s, "GET /echo")))) < 60);
    QVERIFY(qAbs(yesterday.secsTo(dateOf(ask(u"http"_s, "GET /date?offset=3600000"))) - 3600) < 60);
    QVERIFY(headerOf(ask(u"http"_s, "GET /nodate"), "Date").isNull());
    control("PUT /clock", "{}");
    QVERIFY(headerOf(ask(u"http"_s, "GET /echo"), "Date").isNull());
}

void tst_simulator_features::brokenAnswersAreBroken_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("json") << QByteArray("/json/bad") << QByteArray("application/json")
                          << QByteArray(R"({"resultCode": 0, "items": [1, 2)");
    QTest::newRow("xml") << QByteArray("/xtci/broken") << QByteArray("text/xml")
                         << QByteArray("<answer><head></answer>");
    QTest::newRow("empty xml") << QByteArray("/xtci/empty") << QByteArray("text/xml")
                               << QByteArray("");
}

void tst_simulator_features::brokenAnswersAreBroken()
{
    QFETCH(QByteArray, target);
    const QByteArray answer = ask(u"http"_s, "GET " + target);
    QVERIFY(answer.startsWith("HTTP/1.1 200 OK\r\n"));
    QTEST(headerOf(answer, "Content-Type"), "type");
    QTEST(bodyOf(answer), "body");
}

void tst_simulator_features::scenarioFileIsApplied()
{
    const QByteArray text = R"({
        "users": [{"user": "max", "password": "geheim"}],
        "hosts": ["photos.example"],
        "proxy": {"user": "u", "password": "p"},
        "oauth": {"expiresIn": 7},
        "clock": {"offsetMs": 0},
        "behaviours": [{"path": "/echo", "status": 503}]})";
    const VXSimulatorProcess simulator(QJsonDocument::fromJson(text).object());
    QCOMPARE(simulator.errorText(), QString());
    const auto get = [&](const QString& thePort, const QByteArray& theTarget) {
        return VXSimulatorWire::exchange(simulator.port(thePort), VXSimulatorWire::get(theTarget));
    };
    const auto logIn = [&](const QByteArray& theForm) {
        return VXSimulatorWire::exchange(
            simulator.port(u"http"_s),
            "POST /login HTTP/1.1\r\nConnection: close\r\nContent-Length: " +
                QByteArray::number(theForm.size()) + "\r\n\r\n" + theForm);
    };
    QVERIFY(logIn("username=max&password=geheim").contains(R"("expires_in":7)"));
    QVERIFY(logIn("username=demo&password=demo").startsWith("HTTP/1.1 401 "));
    QVERIFY(get(u"http"_s, "/echo").startsWith("HTTP/1.1 503 "));
    const QByteArray second = get(u"http"_s, "/echo");
    QVERIFY(second.startsWith("HTTP/1.1 200 "));
    QVERIFY(dateOf(second).isValid());
    QVERIFY(get(u"proxy"_s, "http://photos.example/echo").startsWith("HTTP/1.1 407 "));
}

void tst_simulator_features::badScenarioFileIsNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("error");

    QTest::newRow("no JSON") << QByteArray("users: max") << QByteArray("scenario.json: ");
    QTest::newRow("list") << QByteArray("[]") << QByteArray("this is no JSON object");
    QTest::newRow("unknown key") << QByteArray(R"({"user":[]})")
                                 << QByteArray(R"(scenario: unknown key "user")");
    QTest::newRow("user without name")
        << QByteArray(R"({"users":[{"password":"x"}]})")
        << QByteArray(R"(users: "user" must be a name without colon)");
}

void tst_simulator_features::badScenarioFileIsNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, error);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"scenario.json"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(text);
    file.close();
    const Result result = run(program, {u"--scenario"_s, file.fileName()});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains(error), result.errors.constData());
    QVERIFY(result.output.isEmpty());
}

void tst_simulator_features::makeCertsFillsAFolder()
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath(u"a/b"_s);
    const Result result = run(program, {u"make-certs"_s, folder});
    QCOMPARE(result.exitCode, 0);
    const QJsonObject line = QJsonDocument::fromJson(result.output).object();
    QCOMPARE(line.value(u"event"_s).toString(), u"certificates"_s);
    QCOMPARE(line.value(u"caFile"_s).toString(), folder + u"/ca.pem"_s);
    for (const char* name : {"trusted", "unknownCa", "expired", "notYet", "wrongHost"}) {
        const QString path = folder + u'/' + QString::fromLatin1(name);
        QCOMPARE(QFile::permissions(path + u".key"_s) &
                     (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
                 QFile::Permissions());
        const Result verified =
            run(u"openssl"_s, {u"verify"_s, u"-no-CApath"_s, u"-CAfile"_s, folder + u"/ca.pem"_s,
                               u"-verify_hostname"_s, u"service.test"_s, path + u".pem"_s});
        QCOMPARE(verified.exitCode == 0, name == QByteArrayView("trusted"));
    }
}

void tst_simulator_features::makeCertsNeedsAFolder()
{
    QCOMPARE(run(program, {u"make-certs"_s}).exitCode, 2);
    QCOMPARE(run(program, {u"make-certs"_s, u"a"_s, u"b"_s}).exitCode, 2);
    QCOMPARE(run(program, {u"make-certs"_s, u"/proc/certs"_s}).exitCode, 3);
}

void tst_simulator_features::exitAfterEndsWithSuccess()
{
    const Result result =
        run(program, {u"--exit-after"_s, u"0.1"_s, u"--certs"_s, myFolder.path()});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.startsWith('{'));
}

void tst_simulator_features::exitAfterRefusesWhatIsNoTime_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("value");

    for (const char* option : {"--exit-after", "--idle"})
        for (const char* value : {"", "0", "-1", "soon", "nan", "inf", "604801"})
            QTest::addRow("%s \"%s\"", option, value)
                << QString::fromLatin1(option) << QString::fromLatin1(value);
}

void tst_simulator_features::exitAfterRefusesWhatIsNoTime()
{
    QFETCH(QString, option);
    QFETCH(QString, value);
    const Result result = run(program, {option, value});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.errors.contains("is no number of seconds"));
}

void tst_simulator_features::otherAddressesNeedAPrivateNamespace_data()
{
    QTest::addColumn<QByteArray>("network");
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("error");

    const QByteArray routed = "ip route add default via 10.77.0.2";
    const QByteArray routed6 = "ip -6 address add fd77::1/64 dev lan0 nodad && "
                               "ip -6 route add default via fd77::2";
    const QByteArray allowed = "--allow-namespace";
    QTest::newRow("private") << QByteArray("true") << allowed << 0 << QByteArray();
    QTest::newRow("option missing") << QByteArray("true") << QByteArray("--quiet") << 2
                                    << QByteArray("only loopback addresses are admitted");
    QTest::newRow("default route")
        << routed << allowed << 2 << QByteArray("there is a default route here");
    QTest::newRow("IPv6 default route")
        << routed6 << allowed << 2 << QByteArray("there is a default route here");
}

void tst_simulator_features::otherAddressesNeedAPrivateNamespace()
{
    QFETCH(QByteArray, network);
    QFETCH(QByteArray, option);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, error);
    QStringList arguments{u"--net"_s};
    if (::geteuid() != 0)
        arguments << u"--user"_s << u"--map-root-user"_s;
    const QByteArray script = "ip link set lo up && ip link add lan0 type bridge && "
                              "ip address add 10.77.0.1/24 dev lan0 && ip link set lan0 up && " +
                              network + R"( || exit 99; exec "$0" "$@")";
    arguments << u"sh"_s << u"-c"_s << QString::fromLatin1(script) << program
              << QString::fromLatin1(option) << u"--bind"_s << u"10.77.0.1"_s << u"--exit-after"_s
              << u"0.1"_s << u"--certs"_s << myFolder.path();
    const Result result = run(u"unshare"_s, arguments);
    QVERIFY2(result.exitCode == exitCode, result.errors.constData());
    QVERIFY2(result.errors.contains(error), result.errors.constData());
    QCOMPARE(result.output.startsWith(R"({"caFile")"), exitCode == 0);
}

void tst_simulator_features::twoSimulatorsRunInThreads()
{
    VXSimulator::Setup setup;
    setup.certificates = myFolder.path();
    const VXSimulatorThread other(setup);
    QCOMPARE(other.errorText(), QString());
    QVERIFY(ask(u"http"_s, "GET /echo").startsWith("HTTP/1.1 200 "));
    const auto last = [](int thePort) {
        const QByteArray answer =
            VXSimulatorWire::exchange(thePort, VXSimulatorWire::get("/requests"));
        return QJsonDocument::fromJson(bodyOf(answer)).object().value(u"last"_s).toInt();
    };
    QCOMPARE(last(mySimulator->port(u"control"_s)), 1);
    QCOMPARE(last(other.port(u"control"_s)), 0);

    // A taken port is an error text, not an end of the process.
    setup.http = static_cast<quint16>(other.port(u"http"_s));
    const VXSimulatorThread third(setup);
    QVERIFY(third.errorText().startsWith(u"cannot listen on 127.0.0.1 port "_s));
}

VX_TEST_MAIN(QCoreApplication, tst_simulator_features)

#include "tst_simulator_features.moc"
