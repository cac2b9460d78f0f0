#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>

#include "VXDialogVisitor.h"
#include "VXFileContent.h"
#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXPlainHttpClient.h"
#include "VXTestMain.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXKeyAccountTexts.h>
#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Dialog = VXOAuth2ExternalLoginDialog;
using Answer = VXPlainHttpClient::Answer;

const QUrl loginUrl(u"https://login.test/authorize?client_id=x%2By&state=z"_s);
const QString assets = u"" VX_SOURCE_DIR "/assets/oauth"_s;

/// A platform whose browser is a function of the test.
class Browser : public VXPlatformIndependent
{
public:
    bool openUrl(const QUrl& theUrl) override
    {
        opened << theUrl;
        return isThere;
    }

    QList<QUrl> opened;
    bool isThere = true;
};

Answer ask(const QByteArray& theTarget)
{
    return VXPlainHttpClient(QHostAddress::LocalHost, 1031).ask("GET " + theTarget);
}

/// Shows the dialog; theVisitor runs inside its event loop.
int execWith(Dialog& theDialog, const std::function<void()>& theVisitor)
{
    VXDialogVisitor visitor([&theVisitor](QDialog*) { theVisitor(); });
    return theDialog.exec();
}

/// curl in a process of its own, since the test's event loop rests while a dialog is destroyed. It
/// writes into a file: nobody empties a pipe meanwhile.
class Curl
{
public:
    explicit Curl(const QString& theTarget, const QStringList& theCommand = {u"curl"_s},
                  const QString& theHost = u"127.0.0.1"_s)
    {
        QStringList command = theCommand;
        command << u"--silent"_s << u"--show-error"_s << u"--max-time"_s << u"20"_s << u"--output"_s
                << myFolder.filePath(u"page"_s) << u"http://%1:1031%2"_s.arg(theHost, theTarget);
        myProcess.start(command.takeFirst(), command);
    }

    /// What it received once it has ended with success, else what it complained about.
    QByteArray result()
    {
        if (!QTest::qWaitFor([this] { return myProcess.state() == QProcess::NotRunning; }, 30'000))
            return "no end";
        return myProcess.exitCode() == 0 ? VXFileContent::of(myFolder.filePath(u"page"_s))
                                         : myProcess.readAllStandardError();
    }

private:
    QTemporaryDir myFolder;
    QProcess myProcess;
};

} // namespace

class tst_VXOAuth2ExternalLoginDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void portIs1031();
    void constructorListensOnEveryAddress_data();
    void constructorListensOnEveryAddress();
    void otherComputerReachesThePort();
    void applicationsProxyDoesNotKeepItFromListening();
    void takenPortIsOneWarningAndTheUserCanCancel_data();
    void takenPortIsOneWarningAndTheUserCanCancel();
    void portIsFreeAgainAfterDestruction();

    void execOpensTheLoginUrlInTheBrowser();
    void missingBrowserIsOneWarning();
    void execIsASlot();
    void redirectWithCodeAccepts();
    void emptyCodeLeavesTheDialogOpen();
    void errorRedirectLeavesTheDialogOpen();
    void codeIsTakenOnAnyPathButTheTranslations();
    void codeIsTakenWithAnyMethod();
    void codeIsReadPrettyDecoded_data();
    void codeIsReadPrettyDecoded();
    void checkAcceptNeedsACode();
    void abortButtonEndsTheLogin();

    void translationsHaveOneKey();
    void translationsTakeTheNameAsItIs_data();
    void translationsTakeTheNameAsItIs();
    void pageIsServedWithItsTypes_data();
    void pageIsServedWithItsTypes();
    void percentEscapedPathIsLookedUpDecoded();
    void unknownAssetIsNotFound();
    void nothingOutsideTheFolderIsServed_data();
    void nothingOutsideTheFolderIsServed();

    void garbageDoesNoHarm_data();
    void garbageDoesNoHarm();
    void tenThousandRequestsWithoutCodeDoNoHarm();

    void requestsAfterAcceptanceAreServed();
    void pageIsWholeWhenTheDialogIsDestroyedRightAfterExec_data();
    void pageIsWholeWhenTheDialogIsDestroyedRightAfterExec();
    void reluctantReaderDelaysTheEndByOneSecondAtMost();
    void parentMayDieDuringExec();

private:
    void useOwnPage(const QByteArray& theIndex);

    QTemporaryDir myFolder;
    Browser* myBrowser = nullptr; // the singleton's
};

void tst_VXOAuth2ExternalLoginDialog::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString()); // the fixed port is ours alone in there
    QVERIFY(myFolder.isValid());
}

void tst_VXOAuth2ExternalLoginDialog::init()
{
    auto browser = std::make_unique<Browser>();
    myBrowser = browser.get();
    VXPlatformIndependent::setInstance(std::move(browser));
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::OAuthSupport, assets);
    VXKeyAccountTexts::instance()->setText(1, u"Fotowelt"_s);
}

void tst_VXOAuth2ExternalLoginDialog::cleanup()
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QLoggingCategory::setFilterRules({});
}

void tst_VXOAuth2ExternalLoginDialog::useOwnPage(const QByteArray& theIndex)
{
    const QString root = myFolder.filePath(u"page"_s);
    QVERIFY(QDir().mkpath(root));
    VXFileContent::write(root + u"/index.html"_s, theIndex);
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::OAuthSupport, root);
}

void tst_VXOAuth2ExternalLoginDialog::portIs1031()
{
    QCOMPARE(Dialog::defaultListeningPort(), 1031);
}

void tst_VXOAuth2ExternalLoginDialog::constructorListensOnEveryAddress_data()
{
    QTest::addColumn<QHostAddress>("address");

    QTest::newRow("IPv4 loopback") << QHostAddress(QHostAddress::LocalHost);
    QTest::newRow("IPv6 loopback") << QHostAddress(QHostAddress::LocalHostIPv6);
    QTest::newRow("LAN") << QHostAddress(u"10.77.0.1"_s);
}

void tst_VXOAuth2ExternalLoginDialog::constructorListensOnEveryAddress()
{
    QFETCH(QHostAddress, address);
    const Dialog dialog(loginUrl, u"My Service"_s);
    const QByteArray text = VXPlainHttpClient(address, 1031).ask("GET /translations.json").body;
    QVERIFY2(text.contains("maintext"), text);
}

void tst_VXOAuth2ExternalLoginDialog::otherComputerReachesThePort()
{
    const Dialog dialog(loginUrl, u"My Service"_s);
    Curl curl(u"/"_s, VXLan::asPhone(1, {u"curl"_s}), u"10.77.0.1"_s);
    QCOMPARE(curl.result(), VXFileContent::of(assets + u"/index.html"_s));
}

void tst_VXOAuth2ExternalLoginDialog::applicationsProxyDoesNotKeepItFromListening()
{
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 9});
    const Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(ask("/").status, 200);
}

void tst_VXOAuth2ExternalLoginDialog::takenPortIsOneWarningAndTheUserCanCancel_data()
{
    QTest::addColumn<QHostAddress>("address");

    QTest::newRow("IPv4 loopback") << QHostAddress(QHostAddress::LocalHost);
    QTest::newRow("IPv6 loopback") << QHostAddress(QHostAddress::LocalHostIPv6);
    QTest::newRow("any") << QHostAddress(QHostAddress::Any);
}

void tst_VXOAuth2ExternalLoginDialog::takenPortIsOneWarningAndTheUserCanCancel()
{
    QFETCH(QHostAddress, address);
    QTcpServer other;
    QVERIFY2(other.listen(address, 1031), qPrintable(other.errorString()));

    const VXLogCapture log;
    Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(log.texts(QtWarningMsg),
             QStringList(u"The login cannot be caught on port 1031: The bound address is already "
                         "in use"_s));
    VXDialogVisitor visitor([](QDialog* theDialog) {
        theDialog->findChild<QPushButton*>()->click(); // the only one
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(log.texts(QtWarningMsg).size(), 1);
}

void tst_VXOAuth2ExternalLoginDialog::portIsFreeAgainAfterDestruction()
{
    for (int i = 0; i < 3; ++i) {
        const VXLogCapture log;
        const auto dialog = std::make_unique<Dialog>(loginUrl, u"My Service"_s);
        QCOMPARE(ask("/").status, 200); // leaves a connection in TIME-WAIT
        QCOMPARE(log.texts(QtWarningMsg), QStringList());
    }
    QVERIFY(!VXPlainHttpClient(QHostAddress::LocalHost, 1031).isConnected());
}

void tst_VXOAuth2ExternalLoginDialog::execOpensTheLoginUrlInTheBrowser()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(myBrowser->opened, QList<QUrl>());
    const int result = execWith(dialog, [&] {
        QCOMPARE(myBrowser->opened, QList<QUrl>{loginUrl}); // before the dialog
        QVERIFY(dialog.isModal());
        dialog.reject();
    });
    QCOMPARE(result, int{QDialog::Rejected});
    QCOMPARE(myBrowser->opened, QList<QUrl>{loginUrl});
    QCOMPARE(dialog.accessCode(), QString());
}

void tst_VXOAuth2ExternalLoginDialog::missingBrowserIsOneWarning()
{
    myBrowser->isThere = false;
    const VXLogCapture log;
    Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(execWith(dialog, [&] { ask("/?code=abc"); }), int{QDialog::Accepted});
    QCOMPARE(log.texts(QtWarningMsg),
             QStringList(u"The browser for the login could not be started"_s));
}

void tst_VXOAuth2ExternalLoginDialog::execIsASlot()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    int result = -1;
    VXDialogVisitor visitor([&](QDialog*) { ask("/?code=abc"); });
    QVERIFY(QMetaObject::invokeMethod(&dialog, "exec", Qt::DirectConnection,
                                      Q_RETURN_ARG(int, result)));
    QCOMPARE(result, int{QDialog::Accepted});
    QCOMPARE(myBrowser->opened.size(), 1);
}

void tst_VXOAuth2ExternalLoginDialog::redirectWithCodeAccepts()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    Answer answer;
    const int result = execWith(dialog, [&] { answer = ask("/?code=abc&state=x"); });
    QCOMPARE(result, int{QDialog::Accepted});
    QCOMPARE(dialog.accessCode(), u"abc"_s);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, VXFileContent::of(assets + u"/index.html"_s));
    QVERIFY(answer.body.startsWith("<!DOCTYPE html>"));
}

void tst_VXOAuth2ExternalLoginDialog::emptyCodeLeavesTheDialogOpen()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    Answer answer;
    bool isOpen = false;
    execWith(dialog, [&] {
        answer = ask("/?code=");
        isOpen = dialog.isVisible();
        dialog.reject();
    });
    QVERIFY(isOpen);
    QCOMPARE(dialog.accessCode(), QString());
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, VXFileContent::of(assets + u"/index.html"_s));
}

void tst_VXOAuth2ExternalLoginDialog::errorRedirectLeavesTheDialogOpen()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    bool isOpen = false;
    const int result = execWith(dialog, [&] {
        QCOMPARE(ask("/?error=access_denied&error_description=code&state=x").status, 200);
        isOpen = dialog.isVisible();
        dialog.reject();
    });
    QVERIFY(isOpen);
    QCOMPARE(result, int{QDialog::Rejected});
    QCOMPARE(dialog.accessCode(), QString());
}

void tst_VXOAuth2ExternalLoginDialog::codeIsTakenOnAnyPathButTheTranslations()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    QVERIFY(ask("/translations.json?code=first").body.contains("maintext"));
    QCOMPARE(dialog.accessCode(), QString());
    QCOMPARE(ask("/no/such/page?code=second").status, 404);
    QCOMPARE(dialog.accessCode(), u"second"_s);
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
}

void tst_VXOAuth2ExternalLoginDialog::codeIsTakenWithAnyMethod()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    VXPlainHttpClient client(QHostAddress::LocalHost, 1031);
    QCOMPARE(client.ask("POST /?code=posted", {}, "a=b").status, 200);
    QCOMPARE(dialog.accessCode(), u"posted"_s);
}

void tst_VXOAuth2ExternalLoginDialog::codeIsReadPrettyDecoded_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QString>("code");

    QTest::newRow("reserved characters")
        << QByteArray("code=4%2F0Ab%2Bc%3D%26d%20e+f") << u"4%2F0Ab%2Bc=&d e+f"_s;
    QTest::newRow("letter") << QByteArray("code=%C3%BC") << u"ü"_s;
    QTest::newRow("percent") << QByteArray("code=100%25") << u"100%25"_s;
    QTest::newRow("the first of two") << QByteArray("code=one&code=two") << u"one"_s;
    QTest::newRow("behind others") << QByteArray("a=b&c&code=x") << u"x"_s;
}

void tst_VXOAuth2ExternalLoginDialog::codeIsReadPrettyDecoded()
{
    QFETCH(QByteArray, query);
    QFETCH(QString, code);
    const Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(ask("/?" + query).status, 200);
    QCOMPARE(dialog.accessCode(), code);
}

void tst_VXOAuth2ExternalLoginDialog::checkAcceptNeedsACode()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    const QSignalSpy accepted(&dialog, &QDialog::accepted);
    dialog.checkAccept();
    QCOMPARE(accepted.count(), 0);
    dialog.setAccessCode(u"abc"_s);
    dialog.checkAccept();
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
}

void tst_VXOAuth2ExternalLoginDialog::abortButtonEndsTheLogin()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    const int result = execWith(dialog, [&] { dialog.findChild<QPushButton*>()->click(); });
    QCOMPARE(result, int{QDialog::Rejected});
}

void tst_VXOAuth2ExternalLoginDialog::translationsHaveOneKey()
{
    const Dialog dialog(loginUrl, u"My Service"_s);
    const QJsonObject expected{
        {u"maintext"_s,
         u"Sie können diese Seite jetzt schließen und zu <strong>Fotowelt</strong> zurückkehren."_s}};
    QCOMPARE(dialog.translations(), expected);

    const Answer answer = ask("/translations.json");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.header("Content-Type"), "application/json");
    const QJsonObject object = QJsonDocument::fromJson(answer.body).object();
    QCOMPARE(object.keys(), QStringList(u"maintext"_s));
    QCOMPARE(object, expected);
}

void tst_VXOAuth2ExternalLoginDialog::translationsTakeTheNameAsItIs_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("placeholder") << u"50%1 %3"_s;
    QTest::newRow("markup") << u"<b>A & B</b>"_s;
}

void tst_VXOAuth2ExternalLoginDialog::translationsTakeTheNameAsItIs()
{
    QFETCH(QString, name);
    VXKeyAccountTexts::instance()->setText(1, name);
    const Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(dialog.translations()[u"maintext"_s].toString(),
             u"Sie können diese Seite jetzt schließen und zu <strong>"_s + name +
                 u"</strong> zurückkehren."_s);
}

void tst_VXOAuth2ExternalLoginDialog::pageIsServedWithItsTypes_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("type");

    QTest::newRow("root") << QByteArray("/") << u"index.html"_s << QByteArray("text/html");
    QTest::newRow("page") << QByteArray("/index.html") << u"index.html"_s
                          << QByteArray("text/html");
    QTest::newRow("style") << QByteArray("/style.css") << u"style.css"_s << QByteArray("text/css");
    QTest::newRow("script") << QByteArray("/script.js") << u"script.js"_s
                            << QByteArray("application/javascript");
    QTest::newRow("with a query") << QByteArray("/style.css?v=1") << u"style.css"_s
                                  << QByteArray("text/css");
}

void tst_VXOAuth2ExternalLoginDialog::pageIsServedWithItsTypes()
{
    QFETCH(QByteArray, target);
    QFETCH(QString, file);
    QFETCH(QByteArray, type);
    const Dialog dialog(loginUrl, u"My Service"_s);
    const Answer answer = ask(target);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.header("Content-Type"), type);
    QVERIFY(!answer.body.isEmpty());
    QCOMPARE(answer.body, VXFileContent::of(assets + u'/' + file));
}

void tst_VXOAuth2ExternalLoginDialog::percentEscapedPathIsLookedUpDecoded()
{
    useOwnPage("index");
    VXFileContent::write(myFolder.filePath(u"page/schöne Seite+100%.txt"_s), "found");
    const Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(ask("/sch%C3%B6ne%20Seite+100%25%2Etxt").body, "found");
    QCOMPARE(ask("/%69ndex.html").body, "index");
}

void tst_VXOAuth2ExternalLoginDialog::unknownAssetIsNotFound()
{
    const Dialog dialog(loginUrl, u"My Service"_s);
    const VXLogCapture log;
    const Answer answer = ask("/nothing.png");
    QCOMPARE(answer.status, 404);
    QCOMPARE(answer.body, "");
    QCOMPARE(log.texts(QtDebugMsg), QStringList(u"!!! 404: Resource not found"_s));
}

void tst_VXOAuth2ExternalLoginDialog::nothingOutsideTheFolderIsServed_data()
{
    QTest::addColumn<QByteArray>("target");

    for (const char* target : {"/../secret.txt",
                               "/%2e%2e/secret.txt",
                               "/..%2fsecret.txt",
                               "/..%2Fsecret.txt",
                               "/%2e%2e%2fsecret.txt",
                               "/sub/../../secret.txt",
                               "/sub%2f..%2f..%2fsecret.txt",
                               "/..%5csecret.txt",
                               "/index.html%00.txt",
                               "/%00",
                               "/link.txt",
                               "/folder-link/secret.txt",
                               "/sub",
                               "/sub/",
                               "/.",
                               "/.hidden",
                               "//etc/passwd",
                               "/%2Fetc%2Fpasswd",
                               "/%2F%2Fetc/passwd",
                               "/file:%2F%2F/etc/passwd",
                               "/:%2Fqt-project.org%2Fimports",
                               "/index.html%0A",
                               "/index.html%20",
                               "/%ff%fe",
                               "/index.html/"})
        QTest::newRow(target) << QByteArray(target);
}

void tst_VXOAuth2ExternalLoginDialog::nothingOutsideTheFolderIsServed()
{
    QFETCH(QByteArray, target);
    useOwnPage("index");
    const QString root = myFolder.filePath(u"page"_s);
    QVERIFY(QDir(root).mkpath(u"sub"_s));
    VXFileContent::write(myFolder.filePath(u"secret.txt"_s), "secret");
    VXFileContent::write(root + u"/.hidden"_s, "secret");
    QFile::link(myFolder.filePath(u"secret.txt"_s), root + u"/link.txt"_s);
    QFile::link(myFolder.path(), root + u"/folder-link"_s);

    const Dialog dialog(loginUrl, u"My Service"_s);
    const Answer answer = ask(target);
    QCOMPARE(answer.status, 404);
    QVERIFY2(answer.body.isEmpty(), answer.body);
}

void tst_VXOAuth2ExternalLoginDialog::garbageDoesNoHarm_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("no HTTP") << QByteArray("code=abc\r\n\r\n");
    QTest::newRow("TLS") << QByteArray::fromHex("16030100c8010000c40303") + QByteArray(200, '\x5a');
    QTest::newRow("NUL") << QByteArray(4096, '\0') + "\r\n\r\n";
    QTest::newRow("8 bit") << QByteArray(4096, '\xe4') + "\r\n\r\n";
    QTest::newRow("NUL in the target") << "GET /\0?code\0=a HTTP/1.1\r\n\r\n"_ba;
    QTest::newRow("8 bit in the target")
        << QByteArray("GET /\xff\xfe\x80?cod\xe9=abc HTTP/1.1\r\nHost: a\r\n\r\n");
    QTest::newRow("broken percent escapes")
        << QByteArray("GET /%?%zz=%&code%=abc HTTP/1.1\r\nHost: a\r\n\r\n");
    QTest::newRow("no target") << QByteArray("GET HTTP/1.1\r\n\r\n");
    QTest::newRow("no host") << QByteArray("GET http:///x HTTP/1.1\r\n\r\n");
    QTest::newRow("bad header") << QByteArray("GET / HTTP/1.1\r\nno colon\r\n\r\n");
    QTest::newRow("two lengths") << QByteArray(
        "POST / HTTP/1.1\r\nContent-Length: 5\r\nContent-Length: 7\r\n\r\nabcde");
    QTest::newRow("negative length")
        << QByteArray("POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\nabcde");
    QTest::newRow("half a request") << QByteArray("GET /?code=ab");
    QTest::newRow("long header") << "GET / HTTP/1.1\r\nA: " + QByteArray(1'000'000, 'a') +
                                        "\r\n\r\n";
    QTest::newRow("long query") << "GET /?" + QByteArray(200'000, '&') +
                                       " HTTP/1.1\r\nHost: a\r\n\r\n";
    QTest::newRow("nothing") << QByteArray();
}

void tst_VXOAuth2ExternalLoginDialog::garbageDoesNoHarm()
{
    QFETCH(QByteArray, bytes);
    Dialog dialog(loginUrl, u"My Service"_s);
    const int result = execWith(dialog, [&] {
        {
            VXPlainHttpClient stranger(QHostAddress::LocalHost, 1031);
            stranger.socket().write(bytes);
            QTRY_VERIFY(stranger.socket().bytesToWrite() == 0 ||
                        stranger.socket().state() == QAbstractSocket::UnconnectedState);
            QCOMPARE(ask("/").status, 200); // the dialog has seen the garbage by now, and goes on
            QVERIFY(dialog.isVisible());
            QCOMPARE(dialog.accessCode(), QString());
        } // hangs up
        ask("/?code=right");
    });
    QCOMPARE(result, int{QDialog::Accepted});
    QCOMPARE(dialog.accessCode(), u"right"_s);
}

void tst_VXOAuth2ExternalLoginDialog::tenThousandRequestsWithoutCodeDoNoHarm()
{
    useOwnPage("index");
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    Dialog dialog(loginUrl, u"My Service"_s);
    int served = 0;
    const int result = execWith(dialog, [&] {
        // Pipelined by hundreds over one connection.
        QTcpSocket client;
        client.connectToHost(QHostAddress::LocalHost, 1031);
        QByteArray received;
        for (int batch = 1; batch <= 100; ++batch) {
            for (int i = 0; i < 100; ++i)
                client.write("GET /?state=x HTTP/1.1\r\nHost: a\r\n\r\n");
            QTRY_COMPARE_WITH_TIMEOUT((received += client.readAll()).count("HTTP/1.1 200"),
                                      qsizetype{batch * 100}, 30'000);
        }
        served = static_cast<int>(received.count("\r\n\r\nindex"));
        ask("/?code=abc");
    });
    QCOMPARE(served, 10'000);
    QCOMPARE(result, int{QDialog::Accepted});
    QCOMPARE(dialog.accessCode(), u"abc"_s);
}

void tst_VXOAuth2ExternalLoginDialog::requestsAfterAcceptanceAreServed()
{
    Dialog dialog(loginUrl, u"My Service"_s);
    QCOMPARE(execWith(dialog, [&] { ask("/?code=abc"); }), int{QDialog::Accepted});
    QVERIFY(dialog.isHidden());
    QCOMPARE(ask("/style.css").body, VXFileContent::of(assets + u"/style.css"_s));
    QVERIFY(ask("/translations.json").body.contains("Fotowelt"));
}

void tst_VXOAuth2ExternalLoginDialog::pageIsWholeWhenTheDialogIsDestroyedRightAfterExec_data()
{
    QTest::addColumn<QByteArray>("page");

    QTest::newRow("the page") << VXFileContent::of(assets + u"/index.html"_s);
    QTest::newRow("4 MB") << QByteArray(4'000'000, 'x');
}

void tst_VXOAuth2ExternalLoginDialog::pageIsWholeWhenTheDialogIsDestroyedRightAfterExec()
{
    QFETCH(QByteArray, page);
    useOwnPage(page);
    auto dialog = std::make_unique<Dialog>(loginUrl, u"My Service"_s);
    std::unique_ptr<Curl> curl;
    const int result =
        execWith(*dialog, [&] { curl = std::make_unique<Curl>(u"/?code=abc&state=x"_s); });
    dialog.reset(); // before the event loop runs again
    QCOMPARE(result, int{QDialog::Accepted});

    const QByteArray received = curl->result();
    QCOMPARE(received.size(), page.size());
    QVERIFY(received == page);
}

void tst_VXOAuth2ExternalLoginDialog::reluctantReaderDelaysTheEndByOneSecondAtMost()
{
    const QByteArray page(40'000'000, 'x'); // more than the kernel's buffers take
    useOwnPage(page);
    auto dialog = std::make_unique<Dialog>(loginUrl, u"My Service"_s);
    VXPlainHttpClient stranger(QHostAddress::LocalHost, 1031);
    stranger.socket().setReadBufferSize(1);
    stranger.socket().write("GET / HTTP/1.1\r\nHost: a\r\n\r\n");
    QTRY_VERIFY(stranger.socket().bytesAvailable() > 0);

    QElapsedTimer sinceAccept;
    connect(dialog.get(), &QDialog::accepted, this, [&] { sinceAccept.start(); });
    std::unique_ptr<Curl> curl;
    execWith(*dialog, [&] { curl = std::make_unique<Curl>(u"/index.html?code=abc"_s); });
    const qint64 delay = sinceAccept.elapsed();
    dialog.reset();

    QVERIFY2(delay >= 900, QByteArray::number(delay));  // or the stranger was no burden
    QVERIFY2(delay < 15000, QByteArray::number(delay)); // or it waits for the stranger
    QCOMPARE(curl->result().size(), page.size());       // who does read is not kept waiting
}

void tst_VXOAuth2ExternalLoginDialog::parentMayDieDuringExec()
{
    auto window = std::make_unique<QWidget>();
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    auto* const dialog = new Dialog(loginUrl, u"My Service"_s); // the window's
    QCOMPARE(dialog->parentWidget(), window.get());
    QCOMPARE(execWith(*dialog, [&] { window.reset(); }), int{QDialog::Rejected});
}

VX_TEST_MAIN(QApplication, tst_VXOAuth2ExternalLoginDialog)

#include "tst_VXOAuth2ExternalLoginDialog.moc"
