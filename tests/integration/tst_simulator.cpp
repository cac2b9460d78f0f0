#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

/// Drives the program vx-simulator as a child process, with curl as a client that we did not write.
class tst_simulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readyFileHoldsTheReadyLine();
    void addressesAnswer_data();
    void addressesAnswer();
    void bytesAreTheDocumentedSequence();
    void faultsShowOnTheWire_data();
    void faultsShowOnTheWire();
    void certificatesAreTrustedOrRefused_data();
    void certificatesAreTrustedOrRefused();
    void largeBodiesPassTls();
    void proxyAsksForThePassword_data();
    void proxyAsksForThePassword();
    void proxyRefusesForeignHosts();
    void requestsAreRecorded();
    void behaviourHoldsForItsTimes();
    void controlRefusesWhatItDoesNotKnow();
    void quitEndsWithSuccess();
    void signalsEndWithSuccess_data();
    void signalsEndWithSuccess();
    void badUsageEndsWithTwo_data();
    void badUsageEndsWithTwo();
    void takenPortEndsWithThree();

private:
    struct Result
    {
        int exitCode = -1;
        QByteArray output;
    };
    static Result run(const QString& theProgram, const QStringList& theArguments);
    static Result curl(const QStringList& theArguments);
    QString http(const QString& theTarget) const;
    QString control(const QString& theTarget) const;
    QString proxy(const QString& theName, const QString& theUser) const;

    QTemporaryDir myFolder;
    std::unique_ptr<QProcess> myProcess;
    QByteArray myReadyLine;
    QJsonObject myReady;
};

namespace {

const QString program = QStringLiteral(VX_BINARY_DIR "/bin/vx-simulator");

} // namespace

tst_simulator::Result tst_simulator::run(const QString& theProgram, const QStringList& theArguments)
{
    QProcess process;
    process.start(theProgram, theArguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput()};
}

tst_simulator::Result tst_simulator::curl(const QStringList& theArguments)
{
    return run(u"curl"_s, QStringList{u"-sS"_s, u"-m"_s, u"20"_s} + theArguments);
}

QString tst_simulator::http(const QString& theTarget) const
{
    return u"http://127.0.0.1:%1%2"_s.arg(QString::number(myReady.value(u"http"_s).toInt()),
                                          theTarget);
}

QString tst_simulator::control(const QString& theTarget) const
{
    return u"http://127.0.0.1:%1%2"_s.arg(QString::number(myReady.value(u"control"_s).toInt()),
                                          theTarget);
}

QString tst_simulator::proxy(const QString& theName, const QString& theUser) const
{
    const QString scheme = theName == u"socks"_s ? u"socks5h://"_s : u"http://"_s;
    return scheme + theUser + u"127.0.0.1:"_s + QString::number(myReady.value(theName).toInt());
}

void tst_simulator::init()
{
    myProcess = std::make_unique<QProcess>();
    myProcess->start(program, {u"--quiet"_s, u"--exit-after"_s, u"100"_s, u"--certs"_s,
                               myFolder.filePath(u"certs"_s), u"--ready-file"_s,
                               myFolder.filePath(u"ready.json"_s)});
    QTRY_VERIFY_WITH_TIMEOUT(myProcess->canReadLine(), 30'000);
    myReadyLine = myProcess->readLine();
    myReady = QJsonDocument::fromJson(myReadyLine).object();
    QCOMPARE(myReady.value(u"event"_s).toString(), u"ready"_s);
}

void tst_simulator::cleanup()
{
    if (myProcess->state() == QProcess::NotRunning)
        return;
    myProcess->terminate();
    QVERIFY(myProcess->waitForFinished());
}

void tst_simulator::readyFileHoldsTheReadyLine()
{
    QFile file(myFolder.filePath(u"ready.json"_s));
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(file.readAll(), myReadyLine);
    QCOMPARE(myReady.value(u"pid"_s).toInteger(), myProcess->processId());
    QCOMPARE(
        myReady.value(u"https"_s).toObject().keys(),
        (QStringList{u"expired"_s, u"notYet"_s, u"trusted"_s, u"unknownCa"_s, u"wrongHost"_s}));
}

void tst_simulator::addressesAnswer_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("expected");

    const QStringList head{u"-D-"_s};
    const QStringList password{u"-d"_s, u"grant_type=password&username=demo&password=demo"_s};
    const QStringList part{u"-F"_s, u"a=b"_s};
    QTest::newRow("echo") << QStringList{u"-XFOO"_s} << u"/echo?a=b"_s
                          << QByteArray(R"("method":"FOO")");
    QTest::newRow("status") << head << u"/status/418?body=tea"_s << QByteArray("HTTP/1.1 418 ");
    QTest::newRow("bad status") << head << u"/status/9x"_s << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("date") << head << u"/date"_s << QByteArray(" GMT\r\n");
    QTest::newRow("slow") << head << u"/slow?ms=20"_s << QByteArray(R"({"delayMs":20})");
    QTest::newRow("redirect") << head << u"/redirect/2"_s
                              << QByteArray("Location: /redirect/1\r\n");
    QTest::newRow("cookie") << head << u"/cookie/set?k=v"_s << QByteArray("Set-Cookie: k=v;");
    QTest::newRow("no password") << head << u"/auth/basic/u/p"_s << QByteArray("HTTP/1.1 401 ");
    QTest::newRow("password") << QStringList{u"-uu:p"_s} << u"/auth/basic/u/p"_s
                              << QByteArray(R"("authenticated":true)");
    QTest::newRow("multipart") << part << u"/multipart"_s << QByteArray(R"("name":"a")");
    QTest::newRow("json error") << head << u"/json/error?code=7&http=409"_s
                                << QByteArray(R"("resultCode":7)");
    QTest::newRow("order") << head << u"/xtci/order?errorcode=70&coupon=X1&wait=3"_s
                           << QByteArray(R"(<errorcode coupon_code="X1" wait_time="3">70<)");
    QTest::newRow("token") << password << u"/oauth2/token"_s << QByteArray(R"("expires_in":3600)");
    QTest::newRow("login") << password << u"/login"_s << QByteArray(R"("access_token":")");
    QTest::newRow("page") << head << u"/pages/tall.html"_s << QByteArray("<title>Hohe Seite<");
    QTest::newRow("outside the pages")
        << head << u"/pages/..%2Fmain.cpp"_s << QByteArray("HTTP/1.1 404 ");
    QTest::newRow("update") << head << u"/update"_s << QByteArray("<title>Neue Version<");
    QTest::newRow("tile") << head << u"/tiles/1.png?x=%41"_s << QByteArray(R"("query":"x=%41")");
    QTest::newRow("method") << head << u"/oauth2/token"_s << QByteArray("HTTP/1.1 405 ");
}

void tst_simulator::addressesAnswer()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, target);
    QFETCH(QByteArray, expected);
    const Result result = curl(arguments + QStringList{http(target)});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains(expected), result.output.constData());
}

void tst_simulator::bytesAreTheDocumentedSequence()
{
    // The first number of the published SplitMix64 sequence of seed 0 is e220a8397b1dcdaf.
    QCOMPARE(curl({http(u"/bytes/8?seed=0"_s)}).output.toHex(), QByteArray("afcd1d7b39a820e2"));
    const QByteArray whole = curl({http(u"/bytes/100000"_s)}).output;
    QCOMPARE(whole.size(), 100'000);
    QCOMPARE(curl({u"-r7-1006"_s, http(u"/bytes/100000"_s)}).output, whole.sliced(7, 1000));
}

void tst_simulator::faultsShowOnTheWire_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("curlExitCode");
    QTest::addColumn<int>("received");

    QTest::newRow("never") << u"/never"_s << 28 << 0;
    QTest::newRow("reset at once") << u"/reset"_s << 56 << 0;
    QTest::newRow("reset later") << u"/reset?after=100"_s << 56 << 100;
    QTest::newRow("truncated") << u"/truncate/100"_s << 18 << 50;
}

void tst_simulator::faultsShowOnTheWire()
{
    QFETCH(QString, target);
    const Result result = curl({u"-m2"_s, http(target)});
    QTEST(result.exitCode, "curlExitCode");
    QTEST(int(result.output.size()), "received");
}

void tst_simulator::certificatesAreTrustedOrRefused_data()
{
    QTest::addColumn<int>("curlExitCode");

    QTest::newRow("trusted") << 0;
    for (const char* name : {"unknownCa", "expired", "notYet", "wrongHost"})
        QTest::newRow(name) << 60;
}

void tst_simulator::certificatesAreTrustedOrRefused()
{
    const int port = myReady.value(u"https"_s)
                         .toObject()
                         .value(QString::fromLatin1(QTest::currentDataTag()))
                         .toInt();
    const Result result = curl({u"--cacert"_s, myReady.value(u"caFile"_s).toString(),
                                u"https://127.0.0.1:%1/echo"_s.arg(port)});
    QTEST(result.exitCode, "curlExitCode");
}

void tst_simulator::largeBodiesPassTls()
{
    const int port = myReady.value(u"https"_s).toObject().value(u"trusted"_s).toInt();
    const Result result = curl({u"--cacert"_s, myReady.value(u"caFile"_s).toString(),
                                u"https://127.0.0.1:%1/bytes/9000000"_s.arg(port)});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output.size(), 9'000'000);
}

void tst_simulator::proxyAsksForThePassword_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("url");

    QTest::newRow("forward") << u"proxy"_s << u"http://service.test/status/200?body=fine"_s;
    QTest::newRow("connect") << u"proxy"_s << u"https://service.test/status/200?body=fine"_s;
    QTest::newRow("socks") << u"socks"_s << u"http://service.test/status/200?body=fine"_s;
}

void tst_simulator::proxyAsksForThePassword()
{
    QFETCH(QString, name);
    QFETCH(QString, url);
    const auto get = [&](const QString& theUser) {
        return curl({u"--cacert"_s, myReady.value(u"caFile"_s).toString(), u"--proxy"_s,
                     proxy(name, theUser), url})
            .output;
    };
    QCOMPARE(get({}), QByteArray("fine"));
    curl({u"-XPUT"_s, u"-d"_s, uR"({"user":"u","password":"p"})"_s, control(u'/' + name)});
    QVERIFY(get({}) != "fine");
    QVERIFY(get(u"u:wrong@"_s) != "fine");
    QCOMPARE(get(u"u:p@"_s), QByteArray("fine"));
}

void tst_simulator::proxyRefusesForeignHosts()
{
    const Result result =
        curl({u"-D-"_s, u"--proxy"_s, proxy(u"proxy"_s, {}), u"http://service.invalid/"_s});
    QVERIFY(result.output.startsWith("HTTP/1.1 502 "));
}

void tst_simulator::requestsAreRecorded()
{
    curl({u"-d"_s, u"a b"_s, u"-HX-Odd-Case:1"_s, http(u"/echo?q=%41"_s)});
    const QByteArray answer = curl({control(u"/requests?since=0"_s)}).output;
    const QJsonArray list = QJsonDocument::fromJson(answer).object().value(u"requests"_s).toArray();
    QCOMPARE(list.size(), 1);
    const QJsonObject record = list.at(0).toObject();
    QCOMPARE(record.value(u"method"_s).toString(), u"POST"_s);
    QCOMPARE(record.value(u"target"_s).toString(), u"/echo?q=%41"_s);
    QCOMPARE(record.value(u"text"_s).toString(), u"a b"_s);
    QVERIFY(record.value(u"headers"_s).toArray().contains(QJsonArray{u"X-Odd-Case"_s, u"1"_s}));
}

void tst_simulator::behaviourHoldsForItsTimes()
{
    curl({u"-XPUT"_s, u"-d"_s, uR"({"path":"/echo","status":500,"times":2})"_s,
          control(u"/behaviour"_s)});
    for (const char* status : {"500", "500", "200"})
        QCOMPARE(curl({u"-o/dev/null"_s, u"-w%{http_code}"_s, http(u"/echo"_s)}).output,
                 QByteArray(status));
}

void tst_simulator::controlRefusesWhatItDoesNotKnow()
{
    const Result result = curl({u"-XPUT"_s, u"-d"_s, uR"({"offset":1})"_s, control(u"/clock"_s)});
    QVERIFY(result.output.contains(R"(unknown key \"offset\")"));
}

void tst_simulator::quitEndsWithSuccess()
{
    QCOMPARE(curl({u"-XPOST"_s, control(u"/quit"_s)}).output, QByteArray(R"({"ok":true})"));
    QVERIFY(myProcess->waitForFinished());
    QCOMPARE(myProcess->exitStatus(), QProcess::NormalExit);
    QCOMPARE(myProcess->exitCode(), 0);
}

void tst_simulator::signalsEndWithSuccess_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void tst_simulator::signalsEndWithSuccess()
{
    QFETCH(int, number);
    ::kill(static_cast<::pid_t>(myProcess->processId()), number);
    QVERIFY(myProcess->waitForFinished());
    QCOMPARE(myProcess->exitStatus(), QProcess::NormalExit);
    QCOMPARE(myProcess->exitCode(), 0);
}

void tst_simulator::badUsageEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("unknown option") << QStringList{u"--colour"_s};
    QTest::newRow("no port") << QStringList{u"--http"_s, u"65536"_s};
    QTest::newRow("not the loopback") << QStringList{u"--bind"_s, u"0.0.0.0"_s};
    QTest::newRow("unknown command") << QStringList{u"serve"_s};
    QTest::newRow("missing scenario") << QStringList{u"--scenario"_s, u"/no/such/file"_s};
}

void tst_simulator::badUsageEndsWithTwo()
{
    QFETCH(QStringList, arguments);
    QCOMPARE(run(program, arguments).exitCode, 2);
}

void tst_simulator::takenPortEndsWithThree()
{
    const QString taken = QString::number(myReady.value(u"http"_s).toInt());
    QCOMPARE(run(program, {u"--http"_s, taken}).exitCode, 3);
}

VX_TEST_MAIN(QCoreApplication, tst_simulator)

#include "tst_simulator.moc"
