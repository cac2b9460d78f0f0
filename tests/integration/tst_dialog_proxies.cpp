// Proxies that ask for a password, answered in the real password dialog. The origin has a name that
// only the proxy resolves.

#include "VXDialogVisitor.h"
#include "VXMicrosocksServer.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXTinyproxyServer.h"
#include "VXWorker.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkProxy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

using namespace Qt::StringLiterals;

namespace {

struct Outcome
{
    int code = -1;
    QByteArray body;
};

Outcome get(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    operation.setTimeout(60);
    Outcome outcome;
    outcome.body = operation.exec();
    outcome.code = operation.errorStatus().errorCode();
    VXNetworkAccessManager::releaseThreadInstance(); // with the passwords that it remembers
    return outcome;
}

void logIn(QDialog* theDialog, const QString& thePassword)
{
    const auto* buttons = theDialog->findChild<QDialogButtonBox*>();
    if (thePassword.isEmpty()) {
        buttons->button(QDialogButtonBox::Cancel)->click();
        return;
    }
    QTest::keyClicks(theDialog->findChild<QLineEdit*>(u"userNameEdit"_s), u"karin"_s);
    QTest::keyClicks(theDialog->findChild<QLineEdit*>(u"passwordEdit"_s), thePassword);
    buttons->button(QDialogButtonBox::Ok)->click();
}

} // namespace

class tst_dialog_proxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { VXNetworkSettings::instance()->setProxyChoice(ProxyChoiceNone); }

    void thePasswordDialogDecides_data();
    void thePasswordDialogDecides();
};

void tst_dialog_proxies::initTestCase()
{
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    connect(Dispatcher::instance(), &Dispatcher::authenticationRequired,
            VXRequestNetwork::instance(), &VXRequestNetwork::handleAuthenticationRequest);
    connect(Dispatcher::instance(), &Dispatcher::proxyAuthenticationRequired,
            VXRequestNetwork::instance(), &VXRequestNetwork::handleProxyAuthenticationRequest);
}

void tst_dialog_proxies::thePasswordDialogDecides_data()
{
    QTest::addColumn<bool>("isSocks");
    QTest::addColumn<bool>("isWorker");
    QTest::addColumn<QStringList>("passwords"); // one for each dialog; empty = cancelled
    QTest::addColumn<int>("code");

    const QString right = u"geheim"_s;
    const QString wrong = u"falsch"_s;
    for (bool isWorker : {false, true}) {
        const auto row = [isWorker](const char* theName, bool theIsSocks,
                                    const QStringList& thePasswords, int theCode) {
            QTest::addRow("%s, %s", theName, isWorker ? "worker" : "GUI thread")
                << theIsSocks << isWorker << thePasswords << theCode;
        };
        row("tinyproxy, right", false, {right}, 0);
        // tinyproxy answers a wrong password with 401, as if it were the server: the dialogs after
        // the first ask for the server's password.
        row("tinyproxy, wrong twice, cancelled", false, {wrong, wrong, QString()}, 3704);
        row("tinyproxy, cancelled", false, {QString()}, 3605);
        row("microsocks, right", true, {right}, 0);
        row("microsocks, right at the second try", true, {wrong, right}, 0);
        row("microsocks, wrong twice, cancelled", true, {wrong, wrong, QString()}, 3605);
        row("microsocks, cancelled", true, {QString()}, 3605);
    }
}

void tst_dialog_proxies::thePasswordDialogDecides()
{
    QFETCH(bool, isSocks);
    QFETCH(bool, isWorker);
    QFETCH(QStringList, passwords);
    QFETCH(int, code);

    VXRawPeer origin;
    origin.setAnswer(VXRawAnswer::http(200, "Inhalt"));
    VXTinyproxyServer tinyproxy;
    VXMicrosocksServer microsocks;
    tinyproxy.setCredentials(u"karin"_s, u"geheim"_s);
    microsocks.setCredentials(u"karin"_s, u"geheim"_s);
    VXForeignServer& proxy = isSocks ? static_cast<VXForeignServer&>(microsocks) : tinyproxy;
    proxy.setHostNames({u"origin.test"_s});
    QVERIFY2(proxy.start(), qPrintable(proxy.errorString()));

    auto* settings = VXNetworkSettings::instance();
    settings->setProxyType(isSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy);
    settings->setProxyHostName(u"127.0.0.1"_s);
    settings->setProxyPort(proxy.port());
    settings->setProxyChoice(ProxyChoiceManual);

    QStringList texts;
    VXDialogVisitor user([&](QDialog* theDialog) {
        texts << theDialog->findChild<QLabel*>(u"messageLabel"_s)->text();
        logIn(theDialog, passwords.value(texts.size() - 1));
    });
    const QUrl url(u"http://origin.test:%1/"_s.arg(origin.port()));
    const Outcome outcome =
        vxRun(isWorker ? VXWhere::Worker : VXWhere::ApplicationThread, [&] { return get(url); });

    QCOMPARE(outcome.code, code);
    QCOMPARE(user.count(), passwords.size());
    QVERIFY(texts.constFirst().startsWith(u"Für den Proxy \"127.0.0.1\""));
    if (code == 0)
        QCOMPARE(outcome.body, QByteArray("Inhalt"));
    QCOMPARE(origin.requests().size(), code == 0 ? 1 : 0);
}

VX_TEST_MAIN(QApplication, tst_dialog_proxies)

#include "tst_dialog_proxies.moc"
