#include "VXSampleRun.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtGui/QImage>
#include <QtNetwork/QTcpSocket>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

class tst_sample : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void helpListsEachCommandWithAnExample();
    void helpOfACommandShowsItsOptions();
    void helpNeedsNoDisplay();
    void versionIsPrinted();
    void commandWithWidgetsNeedsADisplay();

    void wrongUsageEndsWithStatus2_data();
    void wrongUsageEndsWithStatus2();
    void unusableDeploymentValueIsNamedWithFileAndKey_data();
    void unusableDeploymentValueIsNamedWithFileAndKey();
    void missingSimulatorIsAnEnvironmentError();

    void requestSendsMethodHeadersAndBody();
    void requestReadsItsBodyFromAFile();
    void requestSaysWhatItsBodyIs_data();
    void requestSaysWhatItsBodyIs();
    void certificatesCountUnlessTheOptionSaysOtherwise_data();
    void certificatesCountUnlessTheOptionSaysOtherwise();
    void requestRunsInSeveralThreads();
    void failedRequestKeepsTheServersBody();
    void timedOutRequestEndsWithStatus4();
    void exitAfterEndsAWaitingCommand_data();
    void exitAfterEndsAWaitingCommand();
    void refusedConnectionIsALibraryError();

    void orderSavesItsContent();
    void orderTellsTheRejectedCoupon();
    void informationalOrderIsSuccess();

    void downloadWritesTheFileWithProgress();
    void downloadWithoutTargetKeepsATemporaryFile();
    void downloadIntoMissingFolderIsALibraryError();
    void uploadSendsEachFileWithItsFields();

    void probeTellsReachability_data();
    void probeTellsReachability();
    void messageShowsTheGermanText_data();
    void messageShowsTheGermanText();
    void messageSpeaksTheChosenLanguage_data();
    void messageSpeaksTheChosenLanguage();
    void messagesShowsTheWholeTable();
    void loginTextNamesThePartnerOfTheDeployment();

    void proxyIsKeptBetweenRunsWithoutShowingThePassword();
    void proxyForLoopbackIsDirect();
    void configShowNamesValueAndOrigin();
    void configShowHidesSecrets();
    void masterModeIsADeploymentValue();

    void serverLoginIsAnsweredFromTheFile();
    void proxyLoginIsAnsweredFromTheFile();
    void tlsQuestionIsAnsweredFromTheFile_data();
    void tlsQuestionIsAnsweredFromTheFile();
    void questionWithoutAnswerIsRefusedAndSaysSo();
    void dialogsSpeakTheChosenLanguage();
    void handleTellsTheDialogAndTheAnswer_data();
    void handleTellsTheDialogAndTheAnswer();
    void handleKeepsTheLoginButtonDisabledForTheWait();
    void unansweredDialogCountsAsFailure();
    void problemsComeFromRealErrors_data();
    void problemsComeFromRealErrors();
    void refusedCertificateIsExplained();
    void mainWindowAppearsWithoutADisplay();
    void windowIsWhatNoCommandMeans();
    void temporaryFolderIsTheUsersAlone();
    void twoWindowsDoNotDisturbEachOther();
    void workOfAnotherProcessDoesNotDisturbAPage();
    void onlyCommandsWithWindowsStartTheWebEngine();

private:
    [[nodiscard]] VXSampleRun run(const QStringList& theArguments,
                                  const QByteArray& theInput = {}) const;
    QString write(const QString& theName, const QByteArray& theContent) const;

    std::unique_ptr<VXSimulatorProcess> mySimulator;
    QTemporaryDir myFolder;
};

void tst_sample::initTestCase()
{
    mySimulator = std::make_unique<VXSimulatorProcess>(
        QJsonObject{{u"proxy"_s, QJsonObject{{u"user"_s, u"kunde"_s}, {u"password"_s, u"s3"_s}}}});
    QVERIFY2(mySimulator->errorText().isEmpty(), qPrintable(mySimulator->errorText()));
}

void tst_sample::cleanupTestCase()
{
    mySimulator.reset();
}

VXSampleRun tst_sample::run(const QStringList& theArguments, const QByteArray& theInput) const
{
    return VXSampleRun(QStringList{u"--simulator"_s, mySimulator->readyFile()} + theArguments,
                       theInput);
}

/// Returns the path.
QString tst_sample::write(const QString& theName, const QByteArray& theContent) const
{
    QFile file(myFolder.filePath(theName));
    if (!file.open(QIODevice::WriteOnly) || file.write(theContent) != theContent.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void tst_sample::helpListsEachCommandWithAnExample()
{
    const VXSampleRun help({u"--help"_s});
    QCOMPARE(help.exitCode(), 0);
    const QString text = QString::fromUtf8(help.standardOutput());
    QStringList examples;
    const QRegularExpression example(u"Example: vx-sample ([a-z-]+)"_s);
    for (const QRegularExpressionMatch& match : example.globalMatch(text)) {
        examples << match.captured(1);
        QVERIFY2(text.contains(u"\n  %1"_s.arg(match.captured(1))), qPrintable(match.captured(1)));
    }
    // Each is tested as a black box: here, or in tst_sample_cloud (session, credentials, login),
    // tst_sample_webdialogs (login, update), tst_upload_from_phones (upload-service,
    // upload-dialog), tst_sample_channel, tst_sample_web and tst_tour. A new one has to get tests,
    // too.
    QCOMPARE(examples,
             (QStringList{
                 u"request"_s, u"order"_s,          u"download"_s,      u"upload"_s,  u"probe"_s,
                 u"message"_s, u"messages"_s,       u"handle"_s,        u"problem"_s, u"gui"_s,
                 u"proxy"_s,   u"session"_s,        u"credentials"_s,   u"login"_s,   u"update"_s,
                 u"config"_s,  u"upload-service"_s, u"upload-dialog"_s, u"channel"_s, u"web"_s,
                 u"tour"_s}));
}

void tst_sample::helpOfACommandShowsItsOptions()
{
    const VXSampleRun help({u"request"_s, u"--help"_s});
    QCOMPARE(help.exitCode(), 0);
    QVERIFY(help.standardOutput().startsWith("Usage: vx-sample [OPTIONS] request METHOD URL\n"));
    QVERIFY(help.standardOutput().contains("--threads <N>"));
    QVERIFY(help.standardOutput().contains("Example: vx-sample request "));
}

void tst_sample::helpNeedsNoDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "xcb"); // fails at once: there is no display of that name
    qputenv("DISPLAY", ":9999");
    const VXSampleRun help({u"tour"_s, u"--help"_s});
    qputenv("QT_QPA_PLATFORM", platform);
    qunsetenv("DISPLAY");
    QCOMPARE(help.exitCode(), 0);
}

void tst_sample::versionIsPrinted()
{
    const VXSampleRun version({u"--version"_s});
    QCOMPARE(version.exitCode(), 0);
    QVERIFY(version.standardOutput().startsWith("vx-sample 0."));
}

void tst_sample::commandWithWidgetsNeedsADisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const QByteArray display = qgetenv("DISPLAY");
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    const VXSampleRun tour({u"tour"_s, myFolder.filePath(u"tour"_s)});
    qputenv("QT_QPA_PLATFORM", platform);
    if (!display.isEmpty())
        qputenv("DISPLAY", display);
    QCOMPARE(tour.exitCode(), 3);
    QVERIFY(tour.standardError().contains(u"there is no display; --offscreen"_s));
}

void tst_sample::wrongUsageEndsWithStatus2_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");

    const QString answers = write(u"no-list.json"_s, "{}");
    const QString badKind = write(u"bad-kind.json"_s, R"([{"kind":"password"},{"kind":"x"}])");
    const QString badJson = write(u"bad.json"_s, "[{");
    const QString message = u"message"_s;
    const QString request = u"request"_s;
    const QString url = u"http://127.0.0.1:1/"_s;

    QTest::newRow("unknown command") << QStringList{u"fly"_s} << u"no command \"fly\""_s;
    QTest::newRow("unknown option") << QStringList{u"--bogus"_s, message, u"1"_s} << u"bogus"_s;
    QTest::newRow("unknown option of a command")
        << QStringList{message, u"--bogus"_s, u"1"_s} << u"'bogus'"_s;
    QTest::newRow("missing argument") << QStringList{message} << u"usage: vx-sample message CODE"_s;
    QTest::newRow("missing second argument")
        << QStringList{request, u"GET"_s} << u"usage: vx-sample request METHOD URL"_s;
    QTest::newRow("one argument too many")
        << QStringList{u"config"_s, u"show"_s, u"x"_s} << u"too many arguments"_s;
    QTest::newRow("option without its value")
        << QStringList{request, u"GET"_s, url, u"--timeout"_s} << u"timeout"_s;
    QTest::newRow("code that is no number") << QStringList{message, u"70x"_s} << u"\"70x\""_s;
    QTest::newRow("number that is too large")
        << QStringList{message, u"99999999999"_s} << u"\"99999999999\""_s;
    QTest::newRow("bad global number")
        << QStringList{u"--exit-after"_s, u"soon"_s, message, u"1"_s} << u"--exit-after"_s;
    QTest::newRow("bad program number")
        << QStringList{u"--program-id"_s, u"-1"_s, message, u"1"_s} << u"--program-id"_s;
    QTest::newRow("bad time-out") << QStringList{request, u"GET"_s, url, u"--timeout"_s, u"1s"_s}
                                  << u"--timeout: \"1s\""_s;
    QTest::newRow("bad number of threads")
        << QStringList{request, u"GET"_s, url, u"--threads"_s, u"65"_s} << u"--threads"_s;
    QTest::newRow("unknown method") << QStringList{request, u"PATCH"_s, url} << u"\"PATCH\""_s;
    QTest::newRow("header without colon")
        << QStringList{request, u"GET"_s, url, u"-H"_s, u"X"_s} << u"-H: \"X\""_s;
    QTest::newRow("no address") << QStringList{request, u"GET"_s, u"photos"_s} << u"\"photos\""_s;
    QTest::newRow("body file that is missing")
        << QStringList{request, u"POST"_s, url, u"-d"_s, u"@/nowhere/body"_s}
        << u"\"/nowhere/body\""_s;
    QTest::newRow("upload file that is missing")
        << QStringList{u"upload"_s, url, u"/nowhere/photo"_s} << u"\"/nowhere/photo\""_s;
    QTest::newRow("upload of a folder") << QStringList{u"upload"_s, url, u"/"_s} << u"\"/\""_s;
    QTest::newRow("unknown proxy choice")
        << QStringList{u"proxy"_s, u"set"_s, u"often"_s} << u"\"often\""_s;
    QTest::newRow("proxy port out of range")
        << QStringList{u"proxy"_s, u"set"_s, u"my"_s, u"--port"_s, u"65536"_s} << u"--port"_s;
    QTest::newRow("unknown proxy type")
        << QStringList{u"proxy"_s, u"set"_s, u"my"_s, u"--type"_s, u"ftp"_s} << u"\"ftp\""_s;
    QTest::newRow("unknown proxy verb") << QStringList{u"proxy"_s, u"hide"_s} << u"proxy: use"_s;
    QTest::newRow("deployment file that is missing")
        << QStringList{u"--config"_s, u"/nowhere/x.ini"_s, message, u"1"_s}
        << u"\"/nowhere/x.ini\""_s;
    QTest::newRow("deployment file that is a folder")
        << QStringList{u"--config"_s, u"/"_s, message, u"1"_s} << u"it is a folder"_s;
    QTest::newRow("assets that are missing")
        << QStringList{u"--assets"_s, u"/nowhere"_s, message, u"1"_s} << u"\"/nowhere\""_s;
    QTest::newRow("answers that are missing")
        << QStringList{u"--answers"_s, u"/nowhere/a"_s, message, u"1"_s} << u"\"/nowhere/a\""_s;
    QTest::newRow("answers that are no list")
        << QStringList{u"--answers"_s, answers, message, u"1"_s} << u"must be a list"_s;
    QTest::newRow("answers that are no JSON")
        << QStringList{u"--answers"_s, badJson, message, u"1"_s} << u"at offset"_s;
    QTest::newRow("answer of an unknown kind")
        << QStringList{u"--answers"_s, badKind, message, u"1"_s} << u"entry 2: \"kind\""_s;
    QTest::newRow("ready file that is none")
        << QStringList{u"--simulator"_s, answers, message, u"1"_s} << u"--simulator"_s;
}

void tst_sample::wrongUsageEndsWithStatus2()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);

    const VXSampleRun wrong(arguments);
    QCOMPARE(wrong.exitCode(), 2);
    QVERIFY2(wrong.standardError().contains(text), qPrintable(wrong.standardError()));
    QCOMPARE(wrong.standardOutput(), QByteArray());
}

void tst_sample::unusableDeploymentValueIsNamedWithFileAndKey_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QString>("key");

    QTest::newRow("number") << QByteArray("[Program]\nid=eight\n") << u"Program/id"_s;
    QTest::newRow("yes or no") << QByteArray("[Platform]\nforceHttps=perhaps\n")
                               << u"Platform/forceHttps"_s;
    QTest::newRow("unknown key") << QByteArray("[Program]\ncolour=red\n") << u"Program/colour"_s;
}

void tst_sample::unusableDeploymentValueIsNamedWithFileAndKey()
{
    QFETCH(QByteArray, ini);
    QFETCH(QString, key);

    const QString file = write(u"deployment.ini"_s, ini);
    const VXSampleRun shown({u"--config"_s, file, u"config"_s, u"show"_s});
    QCOMPARE(shown.exitCode(), 0); // the value is left out, the rest works
    const QStringList lines = shown.standardError().split(u'\n').filter(file);
    QVERIFY2(!lines.filter(key).isEmpty(), qPrintable(shown.standardError()));
}

void tst_sample::missingSimulatorIsAnEnvironmentError()
{
    const VXSampleRun order({u"--simulator"_s, u"none"_s, u"order"_s, u"cart"_s});
    QCOMPARE(order.exitCode(), 3);
    QVERIFY(order.standardError().contains(u"--simulator is none"_s));
}

void tst_sample::requestSendsMethodHeadersAndBody()
{
    const VXSampleRun put = run({u"request"_s, u"put"_s, u"/echo?x=1"_s, u"--json"_s, u"-d"_s,
                                 u"{\"a\":\"ü\"}"_s, u"-H"_s, u"X-Photo: 7"_s});
    QCOMPARE(put.exitCode(), 0);
    QVERIFY(put.isJson());
    QCOMPARE(put.result().value(u"http"_s).toInt(), 200);
    QCOMPARE(put.result().value(u"code"_s).toInt(), 0);
    QCOMPARE(put.result().value(u"severity"_s).toInt(), 0);
    const QByteArray body = put.result().value(u"body"_s).toString().toUtf8();
    QCOMPARE(put.result().value(u"bytes"_s).toInt(), body.size());

    const QJsonObject echo = QJsonDocument::fromJson(body).object();
    QCOMPARE(echo.value(u"method"_s).toString(), u"PUT"_s);
    QCOMPARE(echo.value(u"target"_s).toString(), u"/echo?x=1"_s);
    QCOMPARE(QByteArray::fromBase64(echo.value(u"body"_s).toString().toLatin1()),
             QByteArray("{\"a\":\"\xC3\xBC\"}"));
    const QJsonArray headers = echo.value(u"headers"_s).toArray();
    QVERIFY(headers.contains(QJsonArray{u"X-Photo"_s, u"7"_s}));
    QVERIFY(headers.contains(QJsonArray{u"Content-Type"_s, u"application/json"_s}));
}

void tst_sample::requestReadsItsBodyFromAFile()
{
    const QByteArray bytes = QByteArray("\x00\xFF\x80 bytes", 9);
    const VXSampleRun post =
        run({u"request"_s, u"POST"_s, u"/echo"_s, u"-d"_s, u'@' + write(u"body.bin"_s, bytes)});
    QCOMPARE(post.exitCode(), 0);
    const QJsonObject echo =
        QJsonDocument::fromJson(post.result().value(u"body"_s).toString().toUtf8()).object();
    QCOMPARE(QByteArray::fromBase64(echo.value(u"body"_s).toString().toLatin1()), bytes);
}

void tst_sample::requestSaysWhatItsBodyIs_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("type");

    QTest::newRow("JSON") << u"--json"_s << u"application/json"_s;
    QTest::newRow("XML") << u"--xml"_s << u"text/xml"_s;
    QTest::newRow("form") << u"--form"_s << u"application/x-www-form-urlencoded"_s;
}

void tst_sample::requestSaysWhatItsBodyIs()
{
    QFETCH(QString, option);
    QFETCH(QString, type);
    const VXSampleRun post =
        run({u"request"_s, u"POST"_s, u"/echo"_s, option, u"-d"_s, u"photo=1"_s});
    QCOMPARE(post.exitCode(), 0);
    const QString echo = post.result().value(u"body"_s).toString();
    const QJsonArray headers =
        QJsonDocument::fromJson(echo.toUtf8()).object().value(u"headers"_s).toArray();
    QVERIFY2(headers.contains(QJsonArray{u"Content-Type"_s, type}), qPrintable(echo));
}

void tst_sample::certificatesCountUnlessTheOptionSaysOtherwise_data()
{
    QTest::addColumn<QStringList>("option");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("checked") << QStringList() << 1;
    QTest::newRow("y") << QStringList{u"-y"_s} << 0;
    QTest::newRow("Y") << QStringList{u"-Y"_s} << 0;
    QTest::newRow("whole") << QStringList{u"--acceptallcertificates"_s} << 0;
}

void tst_sample::certificatesCountUnlessTheOptionSaysOtherwise()
{
    QFETCH(QStringList, option);
    QFETCH(int, exitCode);
    const int port = mySimulator->ready().value(u"https"_s).toObject()[u"expired"_s].toInt();
    const VXSampleRun get =
        run(option + QStringList{u"request"_s, u"GET"_s, u"https://127.0.0.1:%1/echo"_s.arg(port)});
    QVERIFY2(get.exitCode() == exitCode, qPrintable(get.standardError()));
    QCOMPARE(get.result().value(u"code"_s).toInt(), exitCode == 0 ? 0 : 3506);
}

void tst_sample::requestRunsInSeveralThreads()
{
    const VXSampleRun get =
        run({u"request"_s, u"GET"_s, u"/slow?ms=300"_s, u"--threads"_s, u"4"_s});
    QCOMPARE(get.exitCode(), 0);
    QCOMPARE(get.result().value(u"threads"_s).toInt(), 4);
    QCOMPARE(get.result().value(u"failed"_s).toInt(), 0);
    QCOMPARE(get.result().value(u"exchanges"_s).toArray().size(), 4);
}

void tst_sample::failedRequestKeepsTheServersBody()
{
    const VXSampleRun get = run({u"request"_s, u"GET"_s, u"/status/404?body=weg"_s});
    QCOMPARE(get.exitCode(), 1);
    QCOMPARE(get.result().value(u"http"_s).toInt(), 404);
    QCOMPARE(get.result().value(u"code"_s).toInt(), 3703);
    QCOMPARE(get.result().value(u"severity"_s).toInt(), 1);
    QCOMPARE(get.result().value(u"body"_s).toString(), u"weg"_s);
    QCOMPARE(get.result().value(u"details"_s).toString(), u"Fehlercode: 3703"_s);
}

void tst_sample::timedOutRequestEndsWithStatus4()
{
    const VXSampleRun get = run({u"request"_s, u"GET"_s, u"/never"_s, u"--timeout"_s, u"1"_s});
    QCOMPARE(get.exitCode(), 4);
    QCOMPARE(get.result().value(u"code"_s).toInt(), 3505);
}

void tst_sample::exitAfterEndsAWaitingCommand_data()
{
    QTest::addColumn<QString>("threads");
    QTest::newRow("main thread") << u"0"_s;
    QTest::newRow("worker threads") << u"3"_s;
}

void tst_sample::exitAfterEndsAWaitingCommand()
{
    QFETCH(QString, threads);

    QElapsedTimer timer;
    timer.start();
    const VXSampleRun get = run({u"--exit-after"_s, u"1"_s, u"request"_s, u"GET"_s, u"/never"_s,
                                 u"--threads"_s, threads, u"--timeout"_s, u"60"_s});
    QCOMPARE(get.exitCode(), 4);
    QVERIFY(timer.elapsed() < 30'000); // not the exchange's own limit
    QCOMPARE(get.result().value(u"code"_s).toInt(), 3505);
}

void tst_sample::refusedConnectionIsALibraryError()
{
    const VXSampleRun get({u"request"_s, u"GET"_s, u"http://127.0.0.1:1/"_s});
    QCOMPARE(get.exitCode(), 1);
    QCOMPARE(get.result().value(u"code"_s).toInt(), 3501);
}

void tst_sample::orderSavesItsContent()
{
    const QString path = myFolder.filePath(u"order.xml"_s);
    const VXSampleRun order = run({u"order"_s, u"cart"_s, u"--save"_s, path});
    QCOMPARE(order.exitCode(), 0);
    QCOMPARE(order.result().value(u"success"_s).toBool(), true);
    QCOMPARE(order.result().value(u"abort"_s).toBool(), false);
    QVERIFY(order.result().value(u"serverTimeStamp"_s).toString().startsWith(u"20"_s));
    QVERIFY(order.result().value(u"content"_s).toString().contains(u"<name>cart</name>"_s));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n <content>\n  <name>cart</name>\n"));
}

void tst_sample::orderTellsTheRejectedCoupon()
{
    const QString path = myFolder.filePath(u"rejected.xml"_s);
    const VXSampleRun order =
        run({u"order"_s, u"cart"_s, u"--errorcode"_s, u"70"_s, u"--coupon"_s, u"X 1&2"_s,
             u"--wait"_s, u"5"_s, u"--text"_s, u"ungültig"_s, u"--save"_s, path});
    QCOMPARE(order.exitCode(), 1);
    QCOMPARE(order.result().value(u"code"_s).toInt(), 70);
    QCOMPARE(order.result().value(u"coupon"_s).toString(), u"X 1&2"_s);
    QCOMPARE(order.result().value(u"waitTime"_s).toInt(), 5);
    QCOMPARE(order.result().value(u"abort"_s).toBool(), true);
    QCOMPARE(order.result().value(u"details"_s).toString(), u"Fehlercode: 70\nDetail: ungültig"_s);
    QVERIFY(!QFile::exists(path));
}

void tst_sample::informationalOrderIsSuccess()
{
    const VXSampleRun order = run({u"order"_s, u"update"_s, u"--errorcode"_s, u"85"_s});
    QCOMPARE(order.exitCode(), 0);
    QCOMPARE(order.result().value(u"code"_s).toInt(), 85);
    QCOMPARE(order.result().value(u"success"_s).toBool(), true);
}

void tst_sample::downloadWritesTheFileWithProgress()
{
    const QString path = myFolder.filePath(u"download.bin"_s);
    const VXSampleRun download = run({u"download"_s, u"/bytes/300000?seed=3"_s, u"--to"_s, path});
    QCOMPARE(download.exitCode(), 0);
    QCOMPARE(download.result().value(u"path"_s).toString(), path);
    QCOMPARE(download.result().value(u"size"_s).toInt(), 300000);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(download.result().value(u"sha256"_s).toString().toLatin1(),
             QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex());
    QCOMPARE(download.events(u"progress"_s).constLast().value(u"done"_s).toInt(), 300000);
}

void tst_sample::downloadWithoutTargetKeepsATemporaryFile()
{
    const VXSampleRun download = run({u"download"_s, u"/bytes/1000"_s});
    QCOMPARE(download.exitCode(), 0);
    QFile file(download.result().value(u"path"_s).toString());
    QVERIFY(file.fileName().contains(u"TOV_TEMPORARY_DOWNLOAD"_s));
    QCOMPARE(file.size(), 1000);
    QVERIFY(file.remove());
}

void tst_sample::downloadIntoMissingFolderIsALibraryError()
{
    const VXSampleRun download =
        run({u"download"_s, u"/bytes/1000"_s, u"--to"_s, myFolder.filePath(u"missing/file"_s)});
    QCOMPARE(download.exitCode(), 1);
    QCOMPARE(download.result().value(u"code"_s).toInt(), 2000);
    QVERIFY(!download.result().contains(u"path"_s));
}

void tst_sample::uploadSendsEachFileWithItsFields()
{
    const QString first = write(u"a.txt"_s, "first");
    const QString second = write(u"b.txt"_s, "second photo");
    const VXSampleRun upload = run({u"upload"_s, u"/multipart"_s, first, second, u"--field"_s,
                                    u"album=Köln"_s, u"--part"_s, u"photo"_s});
    QCOMPARE(upload.exitCode(), 0);
    const QJsonArray uploads = upload.result().value(u"uploads"_s).toArray();
    QCOMPARE(uploads.size(), 2);
    QCOMPARE(uploads.at(1).toObject().value(u"path"_s).toString(), second);
    QCOMPARE(uploads.at(1).toObject().value(u"size"_s).toInt(), 12);

    const QJsonArray parts =
        QJsonDocument::fromJson(uploads.at(1).toObject().value(u"body"_s).toString().toUtf8())
            .object()
            .value(u"parts"_s)
            .toArray();
    QCOMPARE(parts.size(), 2);
    QCOMPARE(parts.at(0).toObject().value(u"name"_s).toString(), u"album"_s);
    QCOMPARE(parts.at(1).toObject().value(u"name"_s).toString(), u"photo"_s);
    QCOMPARE(parts.at(1).toObject().value(u"fileName"_s).toString(), u"b.txt"_s);
    QCOMPARE(parts.at(1).toObject().value(u"sha256"_s),
             uploads.at(1).toObject().value(u"sha256"_s));
}

void tst_sample::probeTellsReachability_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("reachable") << u"/echo"_s << 0;
    QTest::newRow("error status") << u"/status/500"_s << 1;
    QTest::newRow("nobody there") << u"http://127.0.0.1:1/"_s << 1;
}

void tst_sample::probeTellsReachability()
{
    QFETCH(QString, address);
    QFETCH(int, exitCode);

    const VXSampleRun probe = run({u"probe"_s, address});
    QCOMPARE(probe.exitCode(), exitCode);
    QCOMPARE(probe.result().value(u"reachable"_s).toBool(), exitCode == 0);
}

void tst_sample::messageShowsTheGermanText_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("severity");
    QTest::addColumn<QString>("message");

    QTest::newRow("order protocol") << 70 << 3 << u"Der Gutscheincode ist nicht gültig.<br>"_s;
    QTest::newRow("informational")
        << 85 << 0 << u"Die Software befindet sich auf dem neuesten Stand.<br>"_s;
    QTest::newRow("connection")
        << 3503 << 6
        << u"Der Servername konnte nicht gefunden werden (ungültiger Servername).<br>"_s;
    QTest::newRow("cloud") << 20017 << 2
                           << u"Programmfehler! Bitte wenden Sie sich an den Kundendienst!<br>"_s;
}

void tst_sample::messageShowsTheGermanText()
{
    QFETCH(int, code);
    QFETCH(int, severity);
    QFETCH(QString, message);

    const VXSampleRun shown({u"message"_s, QString::number(code)});
    QCOMPARE(shown.exitCode(), 0);
    const QJsonObject entry = shown.result().value(u"messages"_s).toArray().at(0).toObject();
    QCOMPARE(entry.value(u"code"_s).toInt(), code);
    QCOMPARE(entry.value(u"severity"_s).toInt(), severity);
    QCOMPARE(entry.value(u"message"_s).toString(), message);
    QVERIFY(shown.standardError().contains(message));
}

void tst_sample::messageSpeaksTheChosenLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");

    const QString english = u"The server name could not be found (invalid server name)."_s;
    const QString german =
        u"Der Servername konnte nicht gefunden werden (ungültiger Servername)."_s;
    QTest::newRow("English") << u"en"_s << english;
    QTest::newRow("British English") << u"en-GB"_s << english;
    QTest::newRow("German") << u"de"_s << german;
    QTest::newRow("without a catalogue") << u"gsw"_s << german;
}

void tst_sample::messageSpeaksTheChosenLanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, text);
    const VXSampleRun run({u"--language"_s, language, u"message"_s, u"3503"_s});
    QCOMPARE(run.exitCode(), 0);
    const QJsonObject message = run.result().value(u"messages"_s).toArray().at(0).toObject();
    QVERIFY2(message.value(u"message"_s).toString().startsWith(text), run.standardOutput());
}

void tst_sample::messagesShowsTheWholeTable()
{
    const VXSampleRun shown({u"messages"_s});
    QCOMPARE(shown.exitCode(), 0);
    const QJsonArray messages = shown.result().value(u"messages"_s).toArray();
    QVERIFY(messages.size() > 100);
    QCOMPARE(messages.first().toObject().value(u"code"_s).toInt(), 0);
    QCOMPARE(messages.last().toObject().value(u"code"_s).toInt(), 5011);
}

void tst_sample::loginTextNamesThePartnerOfTheDeployment()
{
    QImage logo(2, 2, QImage::Format_RGB32);
    logo.fill(Qt::red);
    QVERIFY(logo.save(myFolder.filePath(u"logo.png"_s)));
    const QString file = write(u"partner.ini"_s, "[KeyAccount]\nname=Fotohaus\nlogo=logo.png\n");

    const VXSampleRun shown({u"--config"_s, file, u"message"_s, u"2"_s});
    QCOMPARE(shown.exitCode(), 0);
    const QString text = shown.result()
                             .value(u"messages"_s)
                             .toArray()
                             .at(0)
                             .toObject()
                             .value(u"message"_s)
                             .toString();
    QVERIFY2(text.contains(u"Fotohaus <img src=\"data:image/PNG;base64,iVBOR"_s), qPrintable(text));
}

void tst_sample::proxyIsKeptBetweenRunsWithoutShowingThePassword()
{
    const QString settings = myFolder.filePath(u"settings.ini"_s);
    const VXSampleRun set({u"--settings"_s, settings, u"proxy"_s, u"set"_s, u"my"_s, u"--host"_s,
                           u"proxy.test"_s, u"--port"_s, u"3128"_s, u"--user"_s, u"kunde"_s,
                           u"--password-stdin"_s},
                          "s3cr3t-Wort\nmore\n");
    QCOMPARE(set.exitCode(), 0);

    const VXSampleRun show({u"--settings"_s, settings, u"proxy"_s, u"show"_s});
    QCOMPARE(show.exitCode(), 0);
    QCOMPARE(show.result().value(u"choice"_s).toString(), u"my"_s);
    QCOMPARE(show.result().value(u"type"_s).toString(), u"http"_s);
    QCOMPARE(show.result().value(u"host"_s).toString(), u"proxy.test"_s);
    QCOMPARE(show.result().value(u"port"_s).toInt(), 3128);
    QCOMPARE(show.result().value(u"user"_s).toString(), u"kunde"_s);
    QCOMPARE(show.result().value(u"hasPassword"_s).toBool(), true);

    const VXSampleRun forUrl(
        {u"--settings"_s, settings, u"proxy"_s, u"for"_s, u"http://photos.test/"_s});
    QVERIFY(forUrl.result()
                .value(u"description"_s)
                .toArray()
                .at(0)
                .toString()
                .startsWith(u"kunde:[PWD]@proxy.test:3128 (HTTP Proxy)"_s));

    for (const VXSampleRun& each : {set, show, forUrl})
        QVERIFY(!(each.standardOutput() + each.standardError().toUtf8()).contains("s3cr3t-Wort"));
    QFile file(settings);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(!file.readAll().contains("s3cr3t-Wort"));
}

void tst_sample::proxyForLoopbackIsDirect()
{
    const VXSampleRun forUrl({u"proxy"_s, u"for"_s, u"http://127.0.0.1:8080/"_s});
    QCOMPARE(forUrl.exitCode(), 0);
    const QJsonArray description = forUrl.result().value(u"description"_s).toArray();
    QCOMPARE(description.size(), 2);
    QVERIFY(description.at(0).toString().contains(u"(Default Proxy)"_s));
}

void tst_sample::configShowNamesValueAndOrigin()
{
    const QString file = write(u"good.ini"_s, "[Program]\ndisplayName=\"Fotowelt, groß\"\n");
    const VXSampleRun shown(
        {u"--config"_s, file, u"--program-id"_s, u"8"_s, u"config"_s, u"show"_s});
    QCOMPARE(shown.exitCode(), 0);
    const QJsonArray config = shown.result().value(u"config"_s).toArray();
    QVERIFY(config.contains(QJsonObject{{u"key"_s, u"Program/displayName"_s},
                                        {u"value"_s, u"Fotowelt, groß"_s},
                                        {u"origin"_s, file}}));
    QVERIFY(config.contains(QJsonObject{
        {u"key"_s, u"Program/id"_s}, {u"value"_s, u"8"_s}, {u"origin"_s, u"setter"_s}}));
    QVERIFY(config.contains(QJsonObject{{u"key"_s, u"Platform/allowHttp2"_s},
                                        {u"value"_s, u"false"_s},
                                        {u"origin"_s, u"built-in"_s}}));
}

void tst_sample::masterModeIsADeploymentValue()
{
    const VXSampleRun shown({u"--master"_s, u"config"_s, u"show"_s});
    QCOMPARE(shown.exitCode(), 0);
    QVERIFY(shown.result()
                .value(u"config"_s)
                .toArray()
                .contains(QJsonObject{{u"key"_s, u"Program/masterMode"_s},
                                      {u"value"_s, u"true"_s},
                                      {u"origin"_s, u"setter"_s}}));
}

void tst_sample::configShowHidesSecrets()
{
    const QString file = write(u"secret.ini"_s, "[Crypto]\nlegacyDesKey=0123456789abcdef\n"
                                                "[Cloud]\ndemo\\clientSecret=geheimnis\n");
    const VXSampleRun shown({u"--config"_s, file, u"config"_s, u"show"_s});
    QCOMPARE(shown.exitCode(), 0);
    const QByteArray text = shown.standardOutput() + shown.standardError().toUtf8();
    QVERIFY(text.contains("Crypto/legacyDesKey"));
    QVERIFY(text.contains("Cloud/demo/clientSecret"));
    QVERIFY(!text.contains("0123456789abcdef"));
    QVERIFY(!text.contains("geheimnis"));
}

void tst_sample::serverLoginIsAnsweredFromTheFile()
{
    const QString answers = write(
        u"login.json"_s,
        R"([{"kind":"password","text":"*URL \"http://127.*","user":"anna","password":"w0rt-x"}])");
    const VXSampleRun get =
        run({u"--answers"_s, answers, u"request"_s, u"GET"_s, u"/auth/basic/anna/w0rt-x"_s});
    QCOMPARE(get.exitCode(), 0);
    const QList<QJsonObject> dialogs = get.events(u"dialog"_s);
    QCOMPARE(dialogs.size(), 1);
    QCOMPARE(
        dialogs.at(0),
        (QJsonObject{
            {u"event"_s, u"dialog"_s},
            {u"kind"_s, u"password"_s},
            {u"objectName"_s, u"passwordDialog"_s},
            {u"title"_s, u"Anmeldung erforderlich"_s},
            {u"text"_s,
             u"Für die URL \"http://127.0.0.1:%1/auth/basic/anna/w0rt-x\" wird eine Authentifizierung benötigt.<br>Bitte gebe Sie Ihren Benutzernamen und Ihr Passwort ein."_s
                 .arg(mySimulator->port(u"http"_s))},
            {u"user"_s, u"anna"_s},
            {u"answer"_s, u"Ok"_s},
            {u"matched"_s, true}}));
}

void tst_sample::proxyLoginIsAnsweredFromTheFile()
{
    const QString settings = myFolder.filePath(u"proxy-settings.ini"_s);
    const QString answers = write(
        u"proxy.json"_s, R"([{"text":"*Proxy \"127.0.0.1\"*","user":"kunde","password":"s3"}])");
    const VXSampleRun set({u"--settings"_s, settings, u"proxy"_s, u"set"_s, u"my"_s, u"--host"_s,
                           u"127.0.0.1"_s, u"--port"_s,
                           QString::number(mySimulator->port(u"proxy"_s))});
    QCOMPARE(set.exitCode(), 0);

    // In a worker, whose question is answered in the main thread.
    const VXSampleRun get = run({u"--settings"_s, settings, u"--answers"_s, answers, u"request"_s,
                                 u"GET"_s, u"http://service.test/echo"_s, u"--threads"_s, u"1"_s});
    QCOMPARE(get.exitCode(), 0);
    QCOMPARE(get.result().value(u"http"_s).toInt(), 200);
    QCOMPARE(get.events(u"dialog"_s).size(), 1);
    QCOMPARE(get.events(u"dialog"_s).at(0).value(u"kind"_s).toString(), u"password"_s);
    QVERIFY(!get.events(u"dialog"_s).at(0).contains(u"password"_s));
}

void tst_sample::tlsQuestionIsAnsweredFromTheFile_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("code");

    QTest::newRow("accepted") << QByteArray("true") << 0 << 0;
    QTest::newRow("declined") << QByteArray("false") << 1 << 3506;
    QTest::newRow("accepted by button") << QByteArray("\"Yes\"") << 0 << 0;
    QTest::newRow("declined by button") << QByteArray("\"No\"") << 1 << 3506;
}

void tst_sample::tlsQuestionIsAnsweredFromTheFile()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, exitCode);
    QFETCH(int, code);

    const QString answers = write(
        u"tls.json"_s, R"([{"title":"SSL*","text":"*<b>127.0.0.1:*","answer":)" + answer + "}]");
    const int port = mySimulator->ready().value(u"https"_s).toObject().value(u"expired"_s).toInt();
    const VXSampleRun get = run({u"--answers"_s, answers, u"request"_s, u"GET"_s,
                                 u"https://127.0.0.1:%1/echo"_s.arg(port)});
    QCOMPARE(get.exitCode(), exitCode);
    QCOMPARE(get.result().value(u"code"_s).toInt(), code);
    QCOMPARE(get.events(u"dialog"_s).size(), 1);
    QVERIFY(get.events(u"dialog"_s).at(0).value(u"text"_s).toString().contains(u"<li>"_s));
}

void tst_sample::questionWithoutAnswerIsRefusedAndSaysSo()
{
    const VXSampleRun get = run({u"request"_s, u"GET"_s, u"/auth/basic/anna/other"_s});
    QCOMPARE(get.exitCode(), 1);
    QCOMPARE(get.result().value(u"code"_s).toInt(), 3704);
    QCOMPARE(get.events(u"dialog"_s).size(), 1);
    QCOMPARE(get.events(u"dialog"_s).at(0).value(u"answer"_s).toString(), u"Cancel"_s);
    QCOMPARE(get.events(u"dialog"_s).at(0).value(u"matched"_s).toBool(), false);
    QVERIFY(get.standardError().contains(
        u"no answer for the dialog \"Anmeldung erforderlich\": Cancel"_s));
}

void tst_sample::handleTellsTheDialogAndTheAnswer_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("pressed");
    QTest::addColumn<bool>("retry");

    QTest::newRow("critical box") << QStringList{u"4"_s} << QByteArray("true") << u"message"_s
                                  << u"Cancel"_s << false;
    QTest::newRow("warning") << QStringList{u"5"_s} << QByteArray("true") << u"message"_s << u"Ok"_s
                             << false;
    QTest::newRow("once more") << QStringList{u"1000"_s} << QByteArray("1") << u"choice"_s << u"1"_s
                               << true;
    QTest::newRow("network settings")
        << QStringList{u"3503"_s} << QByteArray("1") << u"choice"_s << u"1"_s << true;
    QTest::newRow("connection, again")
        << QStringList{u"3503"_s} << QByteArray("2") << u"choice"_s << u"2"_s << true;
    QTest::newRow("cancelled") << QStringList{u"3503"_s} << QByteArray("false") << u"choice"_s
                               << u"Cancel"_s << false;
    QTest::newRow("countdown, again") << QStringList{u"1005"_s} << QByteArray("\"Retry\"")
                                      << u"autoClose"_s << u"Retry"_s << true;
    QTest::newRow("login") << QStringList{u"2"_s} << QByteArray("true") << u"autoClose"_s << u"Ok"_s
                           << false;
}

void tst_sample::handleTellsTheDialogAndTheAnswer()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, answer);
    QFETCH(QString, kind);
    QFETCH(QString, pressed);
    QFETCH(bool, retry);

    const QString answers = write(u"handle.json"_s, "[{\"answer\":" + answer + "}]");
    const VXSampleRun handled =
        run(QStringList{u"--offscreen"_s, u"--answers"_s, answers, u"handle"_s} + arguments);
    QCOMPARE(handled.exitCode(), 0);
    QCOMPARE(handled.events(u"dialog"_s).size(), 1);
    QCOMPARE(handled.events(u"dialog"_s).at(0).value(u"kind"_s).toString(), kind);
    QCOMPARE(handled.events(u"dialog"_s).at(0).value(u"answer"_s).toString(), pressed);
    QCOMPARE(handled.result().value(u"retry"_s).toBool(), retry);
    const bool isSettings = arguments == QStringList{u"3503"_s} && answer == "1";
    QCOMPARE(handled.events(u"editProxyPreferences"_s).size(), isSettings ? 1 : 0);
}

void tst_sample::dialogsSpeakTheChosenLanguage()
{
    const QString answers = write(u"english.json"_s, R"([{"answer":2}])");
    const VXSampleRun handled = run({u"--offscreen"_s, u"--language"_s, u"en"_s, u"--answers"_s,
                                     answers, u"handle"_s, u"3503"_s});
    QCOMPARE(handled.exitCode(), 0);
    QCOMPARE(handled.events(u"dialog"_s).size(), 1);
    const QJsonObject dialog = handled.events(u"dialog"_s).at(0);
    const QString title = dialog.value(u"title"_s).toString();
    QVERIFY2(title.startsWith("An error has occurred ("_L1), qPrintable(title));
    QCOMPARE(dialog.value(u"text"_s).toString(),
             u"The server name could not be found (invalid server name).<br>"
             "<p>Would you like to try again?"_s);
    const QJsonArray choices = dialog.value(u"choices"_s).toArray();
    QCOMPARE(choices.size(), 2);
    QCOMPARE(choices.at(0).toObject().value(u"title"_s).toString(),
             u"Change network settings..."_s);
    QCOMPARE(choices.at(1).toObject().value(u"title"_s).toString(), u"Try again"_s);
}

void tst_sample::handleKeepsTheLoginButtonDisabledForTheWait()
{
    const QString answers =
        write(u"wait.json"_s, R"([{"objectName":"loginErrorMessageBox","answer":"Ok"}])");
    const VXSampleRun handled =
        run({u"--offscreen"_s, u"--answers"_s, answers, u"handle"_s, u"2"_s, u"--wait"_s, u"1"_s});
    QCOMPARE(handled.exitCode(), 0);
    QCOMPARE(handled.events(u"dialog"_s).at(0).value(u"seconds"_s).toInt(), 1);
    const QList<QJsonObject> enabled = handled.events(u"enableLoginButton"_s);
    QCOMPARE(enabled.size(), 2);
    QCOMPARE(enabled.at(0).value(u"enable"_s).toBool(), false);
    QCOMPARE(enabled.at(1).value(u"enable"_s).toBool(), true);
}

void tst_sample::unansweredDialogCountsAsFailure()
{
    const QString answers = write(u"none.json"_s, R"([{"objectName":"otherBox"}])");
    const VXSampleRun handled =
        run({u"--offscreen"_s, u"--answers"_s, answers, u"handle"_s, u"1000"_s});
    QCOMPARE(handled.exitCode(), 1);
    QCOMPARE(handled.events(u"dialog"_s).at(0).value(u"answer"_s).toString(), u"Cancel"_s);
    QCOMPARE(handled.result().value(u"retry"_s).toBool(), false);
}

void tst_sample::problemsComeFromRealErrors_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("title");

    const QString error = u"Ein Fehler ist aufgetreten*"_s;
    QTest::newRow("dead port") << u"connection"_s << 3501 << u"choice"_s << error;
    QTest::newRow("server") << u"remote-system"_s << 1000 << u"choice"_s << error;
    QTest::newRow("overload") << u"auto-recover"_s << 1005 << u"autoClose"_s
                              << u"Einen Moment bitte"_s;
    QTest::newRow("session") << u"unspecific"_s << 4 << u"message"_s << error;
    QTest::newRow("input") << u"user-input"_s << 5 << u"message"_s << error;
    QTest::newRow("payment") << u"payment"_s << 655 << u"message"_s << error;
    QTest::newRow("login") << u"login-refused"_s << 2 << u"autoClose"_s << error;
    QTest::newRow("certificate") << u"tls-question"_s << 3506 << u"question"_s << u"SSL Fehler"_s;
    QTest::newRow("server login") << u"server-login"_s << 3704 << u"password"_s
                                  << u"Anmeldung erforderlich"_s;
    QTest::newRow("proxy login") << u"proxy-login"_s << 3605 << u"password"_s
                                 << u"Anmeldung erforderlich"_s;
    QTest::newRow("no update") << u"up-to-date"_s << 85 << u"message"_s << u"Fertig"_s;
    QTest::newRow("update failed") << u"update-failed"_s << 3502 << u"message"_s << u"Achtung"_s;
    QTest::newRow("update ready") << u"update-ready"_s << 0 << u"question"_s
                                  << u"Aktualisierung wurde erfolgreich heruntergeladen."_s;
    QTest::newRow("phase-out") << u"phase-out"_s << 3707 << u"message"_s
                               << u"Diese Software wird nicht mehr unterstützt."_s;
    QTest::newRow("prices") << u"prices-updated"_s << 0 << u"message"_s << u"Hinweis"_s;
    QTest::newRow("no prices") << u"prices-failed"_s << 3501 << u"message"_s << u"Hinweis"_s;
    QTest::newRow("restart") << u"restart"_s << 0 << u"message"_s
                             << u"Die Software muss neu gestartet werden. "_s;
}

void tst_sample::problemsComeFromRealErrors()
{
    QFETCH(QString, name);
    QFETCH(int, code);
    QFETCH(QString, kind);
    QFETCH(QString, title);

    const QString answers = write(u"problem.json"_s, R"([{"answer":false}])");
    const VXSampleRun caused = run({u"--offscreen"_s, u"--answers"_s, answers, u"problem"_s, name});
    QCOMPARE(caused.exitCode(), 0);
    QCOMPARE(caused.events(u"problem"_s).size(), 1);
    QCOMPARE(caused.events(u"problem"_s).at(0).value(u"code"_s).toInt(), code);
    QCOMPARE(caused.events(u"dialog"_s).size(), 1);
    const QJsonObject dialog = caused.events(u"dialog"_s).at(0);
    QCOMPARE(dialog.value(u"kind"_s).toString(), kind);
    QVERIFY2(QRegularExpression::fromWildcard(title)
                 .match(dialog.value(u"title"_s).toString())
                 .hasMatch(),
             qPrintable(dialog.value(u"title"_s).toString()));
}

void tst_sample::refusedCertificateIsExplained()
{
    const QString answers = write(u"refuse.json"_s, R"([{"answer":false}])");
    const VXSampleRun caused =
        run({u"--offscreen"_s, u"--answers"_s, answers, u"problem"_s, u"tls-warning"_s});
    const QList<QJsonObject> dialogs = caused.events(u"dialog"_s);
    QCOMPARE(dialogs.size(), 2);
    QCOMPARE(dialogs.at(0).value(u"kind"_s).toString(), u"question"_s);
    QCOMPARE(dialogs.at(1).value(u"kind"_s).toString(), u"message"_s);
    QVERIFY(dialogs.at(1).value(u"text"_s).toString().contains(u"kann nicht ignoriert werden"_s));
}

void tst_sample::mainWindowAppearsWithoutADisplay()
{
    const VXSampleRun shown = run({u"--offscreen"_s, u"--exit-after"_s, u"1"_s, u"gui"_s});
    QCOMPARE(shown.exitCode(), 0);
    QCOMPARE(shown.events(u"shown"_s).size(), 1);
}

/// The one that the web engine and the application's pages use.
void tst_sample::temporaryFolderIsTheUsersAlone()
{
    const QString folder = myFolder.filePath(u"temporary"_s);
    const VXSampleRun shown =
        run({u"--offscreen"_s, u"--temp"_s, folder, u"--exit-after"_s, u"1"_s, u"gui"_s});
    QCOMPARE(shown.exitCode(), 0);
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(QFile::permissions(folder) &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
             QFile::Permissions());
}

/// With the same settings, log and temporary folder.
void tst_sample::twoWindowsDoNotDisturbEachOther()
{
    const QStringList arguments{u"--offscreen"_s, u"--exit-after"_s, u"2"_s, u"gui"_s};
    int first = -1;
    std::thread other([&arguments, &first] { first = VXSampleRun(arguments).exitCode(); });
    const VXSampleRun second(arguments);
    other.join();
    QCOMPARE(first, 0);
    QVERIFY2(second.exitCode() == 0, qPrintable(second.standardError()));
    QCOMPARE(second.events(u"shown"_s).size(), 1);
}

/// One shows a page that talks to it; the other, with the same folders, exchanges, stores settings
/// and starts the web engine, which clears the engine's storage of the first.
void tst_sample::workOfAnotherProcessDoesNotDisturbAPage()
{
    const QStringList folders{u"--settings"_s, myFolder.filePath(u"shared.ini"_s),
                              u"--log-dir"_s,  myFolder.filePath(u"shared-log"_s),
                              u"--temp"_s,     myFolder.filePath(u"shared-temp"_s)};
    QProcess first;
    first.start(QStringLiteral(VX_BINARY_DIR) + u"/bin/vx-sample"_s,
                folders +
                    QStringList{u"--offscreen"_s, u"channel"_s, u"--page"_s, u"ordersummary"_s});
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += first.readAllStandardOutput()).contains("pageReady"),
                             30'000);

    const VXSampleRun get = run(folders + QStringList{u"request"_s, u"GET"_s, u"/echo"_s});
    QVERIFY2(get.exitCode() == 0, qPrintable(get.standardError()));
    const VXSampleRun set = run(folders + QStringList{u"proxy"_s, u"set"_s, u"my"_s, u"--host"_s,
                                                      u"proxy.test"_s, u"--port"_s, u"3128"_s});
    QVERIFY2(set.exitCode() == 0, qPrintable(set.standardError()));
    const VXSampleRun page =
        run(folders + QStringList{u"--offscreen"_s, u"web"_s, u"tov://localhost/index.html"_s,
                                  u"--script"_s, u"6 * 7"_s});
    QVERIFY2(page.exitCode() == 0, qPrintable(page.standardError()));
    QCOMPARE(page.result().value(u"results"_s).toArray(), QJsonArray{42});

    QCOMPARE(first.state(), QProcess::Running);
    const QUrl channel(QJsonDocument::fromJson(output.first(output.indexOf('\n')))
                           .object()
                           .value(u"baseUrl"_s)
                           .toString());
    QTcpSocket socket;
    socket.connectToHost(channel.host(), static_cast<quint16>(channel.port()));
    QVERIFY(socket.waitForConnected());
    first.terminate();
    QVERIFY(first.waitForFinished());
    QCOMPARE(first.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.exitCode(), 0);
    QByteArrayList errors = first.readAllStandardError().split('\n');
    errors.removeIf([](const QByteArray& theLine) {
        return theLine.isEmpty() || theLine.startsWith("Failed to parse text message"); // the token
    });
    QCOMPARE(errors, QByteArrayList());
    // The settings of the other have outlived the end of the first.
    const VXSampleRun show = run(folders + QStringList{u"proxy"_s, u"show"_s});
    QCOMPARE(show.result().value(u"host"_s).toString(), u"proxy.test"_s);
}

void tst_sample::windowIsWhatNoCommandMeans()
{
    const VXSampleRun shown = run({u"--offscreen"_s, u"--exit-after"_s, u"1"_s});
    QCOMPARE(shown.exitCode(), 0);
    QCOMPARE(shown.events(u"shown"_s).size(), 1);
}

void tst_sample::onlyCommandsWithWindowsStartTheWebEngine()
{
    const auto logged = [this](const QStringList& theArguments) {
        const QTemporaryDir folder;
        const VXSampleRun done = run(QStringList{u"--log-dir"_s, folder.path()} + theArguments);
        QString text = QString::number(done.exitCode());
        for (const QFileInfo& info : QDir(folder.path()).entryInfoList(QDir::Files)) {
            QFile file(info.filePath());
            if (file.open(QFile::ReadOnly))
                text += QString::fromUtf8(file.readAll());
        }
        return text;
    };
    const QString line = u"Starting QtWebEngine with GPU accel."_s;
    const QString plain = logged({u"request"_s, u"GET"_s, u"/echo"_s});
    QVERIFY(plain.startsWith(u'0'));
    QVERIFY(!plain.contains(line));
    const QString window = logged({u"--offscreen"_s, u"--exit-after"_s, u"1"_s, u"gui"_s});
    QVERIFY(window.startsWith(u'0'));
    QCOMPARE(window.count(line), 1);
}

VX_TEST_MAIN(QCoreApplication, tst_sample)
#include "tst_sample.moc"
