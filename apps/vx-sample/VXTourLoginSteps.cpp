#include "VXTourLoginSteps.h"

#include "VXRecordedRequest.h"
#include "VXSampleAnswers.h"
#include "VXSampleForm.h"
#include "VXSampleFormTypist.h"
#include "VXSampleLogin.h"
#include "VXSampleRedirectWatch.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorControl.h"
#include "VXTourRun.h"
#include "VXTourVisitor.h"
#include "VXTourWebPage.h"

#include <VXCore/VXKeyAccountTexts.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>
#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds.
constexpr int loginPatience = 20'000;
constexpr qint64 progressBegins = 4'000;
constexpr qint64 progressIsLate = 10'000;
constexpr qint64 boxBegins = 60'000;
constexpr int boxIsLate = 80'000;

constexpr int displayName = 1; // number of the text

const QString service = u"VX Simulator"_s;
const QString redirectUri = u"http://127.0.0.1:1031/"_s;
const QString state = u"tour"_s;

QUrl loginPage(const VXTourRun& theRun)
{
    QUrl url = theRun.world.simulator.http(u"/oauth2/authorize"_s);
    url.setQuery(QString::fromLatin1(VXSampleForm::encode({{"response_type", u"code"_s},
                                                           {"client_id", u"vx-sample"_s},
                                                           {"redirect_uri", redirectUri},
                                                           {"state", state}})));
    return url;
}

/// How many requests of that method and path came since and were answered so.
qint64 answered(VXTourRun& theRun, int theSince, const QString& theMethod, const QString& thePath,
                int theStatus)
{
    const QList<VXRecordedRequest> requests = theRun.world.control.requestsSince(theSince);
    return std::ranges::count_if(requests, [&](const VXRecordedRequest& theRequest) {
        return theRequest.method() == theMethod && theRequest.target() == thePath &&
               theRequest.status() == theStatus;
    });
}

/// The code is worth something: the provider gives tokens for it.
void exchangeCode(VXTourRun& theRun, const QString& theCode)
{
    const QByteArray form = VXSampleForm::encode({{"grant_type", u"authorization_code"_s},
                                                  {"code", theCode},
                                                  {"redirect_uri", redirectUri},
                                                  {"client_id", u"vx-sample"_s}});
    VXHttpOperation operation =
        VXHttpOperation::create(theRun.world.simulator.http(u"/oauth2/token"_s), form,
                                ContentFormUrlEncoded, QNetworkAccessManager::PostOperation);
    const QJsonObject reply = operation.receiveJsonObject();
    theRun.expectSuccess(operation);
    theRun.expect(reply.contains("access_token"_L1), u"the code brings no tokens"_s);
}

/// The provider's own page; the tour leaves it as it is.
void showEmbeddedLogin(VXTourRun& theRun)
{
    VXOAuth2LoginDialog dialog(loginPage(theRun), service,
                               VXOAuth2LoginDialog::SaveLoginDataOption |
                                   VXOAuth2LoginDialog::CancelButtonOption);
    dialog.show();
    theRun.expect(VXTourWebPage::waitUntilDrawn(*dialog.findChild<QWebEngineView*>()),
                  u"the login page is not drawn"_s);
    theRun.photograph(&dialog, u"20-login-page.png"_s);
    theRun.came(u"\"%1\""_s.arg(dialog.windowTitle()));
}

/// A silent provider: after four seconds the customer sees that something goes on, and gives up.
void cancelSlowLogin(VXTourRun& theRun)
{
    VXOAuth2LoginDialog dialog(theRun.world.simulator.http(u"/never"_s), service,
                               VXOAuth2LoginDialog::CancelButtonOption);
    QElapsedTimer clock;
    qint64 shownAfter = 0;
    const VXTourVisitor visitor([&](QDialog* theDialog) {
        auto* const progress = qobject_cast<QProgressDialog*>(theDialog);
        if (!progress)
            return; // the login itself
        shownAfter = clock.elapsed();
        theRun.photograph(progress, u"21-login-progress.png"_s);
        progress->findChild<QPushButton*>()->click();
    });
    QTimer::singleShot(loginPatience, &dialog, &QDialog::reject);
    clock.start();
    const int result = dialog.exec();

    theRun.expectEqual<qint64>(u"result"_s, result, QDialog::Rejected);
    theRun.expect(shownAfter > progressBegins && shownAfter < progressIsLate,
                  u"the progress appeared after %1 ms"_s.arg(shownAfter));
    theRun.expect(clock.elapsed() < loginPatience, u"the button did not cancel the login"_s);
    theRun.came(u"progress after %1 s, cancelled"_s.arg(shownAfter / 1000));
}

/// The same, but the customer waits: after a minute the program gives up and says so.
void waitForSilentProvider(VXTourRun& theRun)
{
    if (!theRun.world.isSlow) {
        theRun.came(u"left out: takes a minute, only with --slow"_s);
        return;
    }
    const bool before = theRun.world.answers.userIsThere();
    theRun.world.answers.setUserIsThere(true);
    VXOAuth2LoginDialog dialog(theRun.world.simulator.http(u"/never"_s), service,
                               VXOAuth2LoginDialog::CancelButtonOption);
    QElapsedTimer clock;
    qint64 shownAfter = 0;
    const VXTourVisitor visitor([&](QDialog* theDialog) {
        auto* const box = qobject_cast<QMessageBox*>(theDialog);
        if (!box)
            return; // the login and its progress
        shownAfter = clock.elapsed();
        theRun.photograph(box, u"22-login-unreachable.png"_s);
        VXTourVisitor::leave(box);
    });
    QTimer::singleShot(boxIsLate, &dialog, &QDialog::reject);
    clock.start();
    const int result = dialog.exec();
    theRun.world.answers.setUserIsThere(before);

    theRun.expectEqual<qint64>(u"result"_s, result, QDialog::Rejected);
    theRun.expect(shownAfter >= boxBegins, u"the box appeared after %1 ms"_s.arg(shownAfter));
    theRun.came(visitor.titles().join(u", "_s));
}

/// From the page to the tokens, typed by a program instead of hands.
void logInOnThePage(VXTourRun& theRun)
{
    const int before = theRun.world.control.lastNumber();
    VXOAuth2LoginDialog dialog(loginPage(theRun), service, VXOAuth2LoginDialog::CancelButtonOption);
    const VXSampleRedirectWatch watch(dialog, QUrl(redirectUri), state);
    const VXSampleFormTypist typist(dialog, loginPage(theRun), u"demo"_s, u"demo"_s);
    QTimer::singleShot(loginPatience, &dialog, &QDialog::reject);
    theRun.expectEqual<qint64>(u"result"_s, dialog.exec(), QDialog::Accepted);
    exchangeCode(theRun, dialog.accessCode());
    theRun.expectEqual<qint64>(u"forms sent"_s,
                               answered(theRun, before, u"POST"_s, u"/oauth2/authorize"_s, 302), 1);
    theRun.expectEqual<qint64>(u"codes exchanged"_s,
                               answered(theRun, before, u"POST"_s, u"/oauth2/token"_s, 200), 1);
    theRun.came(u"code caught and exchanged for tokens"_s);
}

void showExternalLogin(VXTourRun& theRun)
{
    VXOAuth2ExternalLoginDialogBase dialog(QUrl(u"https://login.test/"_s), service);
    dialog.show();
    theRun.photograph(&dialog, u"23-login-in-browser.png"_s);
    theRun.came(u"\"%1\""_s.arg(dialog.windowTitle()));
}

/// What the user's browser shows when the provider has sent it back to this computer.
void showSupportPage(VXTourRun& theRun)
{
    if (!VXSampleLogin::isRedirectPortFree()) {
        theRun.came(u"left out: port 1031 is in use"_s);
        return;
    }
    VXOAuth2ExternalLoginDialog dialog(loginPage(theRun), service);
    dialog.show(); // and not exec(), which would open the desktop's browser
    QWebEngineView browser;
    browser.resize(800, 520);
    browser.show();
    browser.setUrl(dialog.loginUrl());
    theRun.expect(VXTourWebPage::waitUntilTrue(browser, u"document.forms.length == 1"_s),
                  u"the provider's page did not come"_s);
    VXTourWebPage::run(browser, u"var form = document.forms[0]; form.username.value = 'demo'; "
                                "form.password.value = 'demo'; form.requestSubmit()"_s);
    const QString text = u"Sie können diese Seite jetzt schließen und zu %1 zurückkehren."_s.arg(
        VXKeyAccountTexts::instance()->text(displayName));
    theRun.expect(
        VXTourWebPage::waitUntilTrue(
            browser,
            u"location.port == '1031' && document.body?.innerText.trim() == '%1'"_s.arg(text)),
        u"the browser does not show the support page"_s);
    theRun.expect(VXTourWebPage::waitUntilDrawn(browser), u"the page is not drawn"_s);
    theRun.photograph(&browser, u"24-support-page.png"_s);
    theRun.expectEqual<qint64>(u"result"_s, dialog.result(), QDialog::Accepted);
    exchangeCode(theRun, dialog.accessCode());
    theRun.came(
        u"\"%1\"; code caught on port 1031 and exchanged for tokens"_s.arg(browser.title()));
}

} // namespace

QList<VXTourStep> VXTourLoginSteps::steps()
{
    return {
        {u"login"_s, u"Login on the provider's page"_s, showEmbeddedLogin},
        {u"login"_s, u"Login page that does not come, cancelled"_s, cancelSlowLogin},
        {u"login"_s, u"Login page that never comes"_s, waitForSilentProvider},
        {u"login"_s, u"Login on the provider's page, to its end"_s, logInOnThePage},
        {u"login"_s, u"Login in the user's own browser"_s, showExternalLogin},
        {u"login"_s, u"Support page in the user's browser"_s, showSupportPage},
    };
}
