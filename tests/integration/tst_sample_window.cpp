#include "VXDialogVisitor.h"
#include "VXOpenedUrls.h"
#include "VXRenderer.h"
#include "VXSampleWindowTest.h"
#include "VXTestMain.h"

#include <VXGUIWidgets/VXCSSSkinManager.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtCore/QScopeGuard>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFrame>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTableView>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

/// The main window as a person uses it, against a real simulator.
class tst_sample_window : public VXSampleWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void everyPageIsReachedByKeyboard();
    void windowFitsOnASmallScreen();
    void answerOfTheServiceIsShown();
    void whatTheServiceReceivedIsShown();
    void requestIsRecorded();
    void exchangeIsCancelled();
    void progressOfADownloadIsShown();
    void addressThatIsNoneIsExplained();
    void workersSend();
    void refusedCouponIsExplained();
    void successfulOrderIsConfirmed();
    void textOfACodeIsLookedUp();
    void problemBringsItsDialog();
    void sessionIsOpenedRenewedAndClosed();
    void refusedLoginIsExplained();
    void emptyPagesSayHowToBegin();
    void closingEndsTheExchange();
    void otherLanguageNeedsARestart();

    void loginOnThePageOfTheProviderIsConfirmed();
    void loginOnThePageMayBeGivenUp();
    void loginInTheBrowserIsConfirmed();
    void loginInTheBrowserMayBeGivenUp();
    void loginWithoutItsPortIsExplained();
    void crashOfThePageIsToldAndReloaded();
    void ownPagesFollowTheSkin_data();
    void ownPagesFollowTheSkin();

    void menuBringsEachProblem_data();
    void menuBringsEachProblem();
    void everyProblemHasATestOfItsEntry();
    void menuOpensTheNetworkSettings();
    void shortcutOpensTheNetworkSettings();
    void menuLogsInOnAPage();
    void menuLogsInInTheBrowser();
    void menuAnnouncesAnUpdate_data();
    void menuAnnouncesAnUpdate();
    void menuReceivesPhotos();
    void menuChangesTheSkin();
    void menuAsksBeforeItChangesTheLanguage();
    void menuTellsAboutTheProgram();
    void menuEndsTheProgram();
    void shortcutEndsTheProgram();
    void noEntryOfTheMenusIsWithoutATest();

private:
    [[nodiscard]] QString shown(const QString& theName) const { return mySample->shown(theName); }
    void click(const QString& theButton) const;
    void logInAsBrowser(const QUrl& theLoginPage);
    [[nodiscard]] QStringList titlesAfterChoosing(const QString& theActionName) const;

    QNetworkAccessManager myBrowser;
};

void tst_sample_window::click(const QString& theButton) const
{
    QTest::mouseClick(&part<QPushButton>(theButton), Qt::LeftButton);
}

/// The titles of the dialogs that an entry of the menus brings; the user leaves each at once.
QStringList tst_sample_window::titlesAfterChoosing(const QString& theActionName) const
{
    QStringList titles;
    const VXDialogVisitor visitor([&titles](QDialog* theDialog) {
        titles << theDialog->windowTitle();
        theDialog->reject();
    });
    return mySample->chooseFromMenu(theActionName) ? titles : QStringList{u"no such entry"_s};
}

void tst_sample_window::everyPageIsReachedByKeyboard()
{
    auto& navigation = part<QListWidget>(u"navigation"_s);
    navigation.setFocus();
    const auto* const pages = mySample->window().findChild<QStackedWidget*>(u"pages"_s);
    for (int page = 1; page < navigation.count(); ++page) {
        QTest::keyClick(&navigation, Qt::Key_Down);
        QCOMPARE(pages->currentIndex(), page);
    }
    // From the list on, the keyboard reaches the page.
    QTest::keyClick(&navigation, Qt::Key_Tab);
    QVERIFY(pages->currentWidget()->isAncestorOf(QApplication::focusWidget()));
}

void tst_sample_window::windowFitsOnASmallScreen()
{
    const QSize least = mySample->window().minimumSizeHint();
    QVERIFY2(least.width() <= 1366, qPrintable(QString::number(least.width())));
    QVERIFY2(least.height() <= 728, qPrintable(QString::number(least.height()))); // with a task bar
    QVERIFY(mySample->window().height() <= 728);
}

void tst_sample_window::answerOfTheServiceIsShown()
{
    QTest::mouseClick(&part<QPushButton>(u"sendButton"_s), Qt::LeftButton);
    QVERIFY(shown(u"outcomeHeadline"_s).startsWith(u"Erfolgreich: Status 200, "_s));
    QVERIFY(part<QPlainTextEdit>(u"outcomeBody"_s).toPlainText().contains(u"\"/echo\""_s));
}

void tst_sample_window::whatTheServiceReceivedIsShown()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"/echo?seen=by-the-service"_s);
    part<QPushButton>(u"sendButton"_s).click();
    const QAbstractItemModel& model = *part<QTableView>(u"serviceView"_s).model();
    constexpr int target = 3;
    QTRY_VERIFY(model.rowCount() > 0);
    QCOMPARE(model.index(model.rowCount() - 1, target).data().toString(),
             u"/echo?seen=by-the-service"_s);
    QCOMPARE(model.headerData(target, Qt::Horizontal).toString(), u"Adresse"_s);
}

void tst_sample_window::requestIsRecorded()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"/date?offset=0"_s); // recorded with its date
    part<QPushButton>(u"sendButton"_s).click();
    const auto& records = part<QPlainTextEdit>(u"requestView"_s);
    QTRY_VERIFY(records.toPlainText().contains(u"TOV NETREQUEST OFFBYMS:"_s));
    QVERIFY(records.toPlainText().contains(u"/date?offset=0"_s));
}

void tst_sample_window::exchangeIsCancelled()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"/never"_s);
    auto& cancel = part<QPushButton>(u"cancelButton"_s);
    QVERIFY(!cancel.isVisible());
    QTimer user;
    connect(&user, &QTimer::timeout, &cancel, [&cancel] {
        if (cancel.isVisible())
            cancel.click();
    });
    user.start(20);
    QElapsedTimer clock;
    clock.start();
    part<QPushButton>(u"sendButton"_s).click();
    QVERIFY(clock.elapsed() < 60'000); // the time limit is 120 s
    QVERIFY(shown(u"outcomeDetails"_s).contains(u"3505"_s));
    QVERIFY(!cancel.isVisible());
    QVERIFY(part<QPushButton>(u"sendButton"_s).isEnabled());
}

void tst_sample_window::progressOfADownloadIsShown()
{
    auto& examples = part<QComboBox>(u"exampleBox"_s);
    examples.setCurrentIndex(examples.findText(u"Langsamer Download mit Fortschritt"_s));
    Q_EMIT examples.activated(examples.currentIndex());
    QCOMPARE(part<QLineEdit>(u"addressEdit"_s).text(), u"/bytes/20000000?seed=7&rate=4000000"_s);
    part<QLineEdit>(u"addressEdit"_s).setText(u"/bytes/2000000?seed=7&rate=2000000"_s);

    auto* const bar = mySample->window().findChild<QProgressBar*>(u"exchangeProgress"_s);
    int most = 0;
    connect(bar, &QProgressBar::valueChanged, this,
            [bar, &most](int theValue) { most = bar->isVisible() ? qMax(most, theValue) : most; });
    part<QPushButton>(u"sendButton"_s).click();
    QVERIFY(most > 0);
    QVERIFY(!bar->isVisible());
}

void tst_sample_window::addressThatIsNoneIsExplained()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"nowhere"_s);
    part<QPushButton>(u"sendButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s), u"\"nowhere\" ist keine Adresse."_s);
}

void tst_sample_window::workersSend()
{
    part<QSpinBox>(u"threadBox"_s).setValue(4);
    part<QPushButton>(u"sendButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Alle 4 Arbeitsthreads hatten Erfolg."_s);
}

void tst_sample_window::refusedCouponIsExplained()
{
    mySample->openPage(u"Bestellung"_s);
    part<QSpinBox>(u"errorCodeBox"_s).setValue(70);
    part<QLineEdit>(u"couponEdit"_s).setText(u"X1"_s);
    part<QPushButton>(u"orderButton"_s).click();
    QVERIFY(shown(u"outcomeHeadline"_s).contains(u"Gutscheincode"_s));
    QVERIFY(shown(u"outcomeDetails"_s).contains(u"Fehlercode: 70"_s));
}

void tst_sample_window::successfulOrderIsConfirmed()
{
    mySample->openPage(u"Bestellung"_s);
    part<QPushButton>(u"orderButton"_s).click();
    QVERIFY(shown(u"outcomeHeadline"_s).startsWith(u"Die Bestellung ist angekommen"_s));
}

void tst_sample_window::textOfACodeIsLookedUp()
{
    mySample->openPage(u"Netzwerkprobleme"_s);
    part<QSpinBox>(u"codeBox"_s).setValue(3503);
    part<QPushButton>(u"codeButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s),
             u"Der Servername konnte nicht gefunden werden (ungültiger Servername).<br>"_s);
}

void tst_sample_window::problemBringsItsDialog()
{
    mySample->openPage(u"Netzwerkprobleme"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->reject(); });
    part<QListWidget>(u"problemList"_s).setCurrentRow(0); // no connection
    part<QPushButton>(u"causeButton"_s).click();
    QCOMPARE(visitor.count(), 1);
}

void tst_sample_window::sessionIsOpenedRenewedAndClosed()
{
    mySample->openPage(u"Anmeldung"_s);
    QCOMPARE(shown(u"sessionState"_s), u"Sitzung: keine"_s);
    QVERIFY(!part<QPushButton>(u"renewButton"_s).isEnabled());
    part<QLineEdit>(u"passwordEdit"_s).setText(u"demo"_s);
    part<QPushButton>(u"loginButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Angemeldet als demo."_s);
    QCOMPARE(shown(u"sessionState"_s), u"Sitzung: offen"_s);
    part<QPushButton>(u"renewButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Die Sitzung wurde erneuert."_s);
    part<QPushButton>(u"logoutButton"_s).click();
    QCOMPARE(shown(u"sessionState"_s), u"Sitzung: keine"_s);
}

void tst_sample_window::refusedLoginIsExplained()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->accept(); });
    part<QLineEdit>(u"passwordEdit"_s).setText(u"wrong"_s);
    part<QPushButton>(u"loginButton"_s).click();
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(shown(u"sessionState"_s), u"Sitzung: keine"_s);
    QVERIFY(!shown(u"outcomeHeadline"_s).contains(u"wrong"_s));
}

void tst_sample_window::emptyPagesSayHowToBegin()
{
    QCOMPARE(part<QPlainTextEdit>(u"outcomeBody"_s).placeholderText(), u"Noch nichts gesendet."_s);
    QCOMPARE(part<QPlainTextEdit>(u"requestView"_s).placeholderText(), u"Noch keine Anfrage."_s);
    mySample->openPage(u"Fotos vom Telefon"_s);
    QVERIFY(!mySample->window().findChild<QListWidget*>(u"photoList"_s)->isVisible());
}

void tst_sample_window::closingEndsTheExchange()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"/never"_s);
    auto& cancel = part<QPushButton>(u"cancelButton"_s);
    QTimer user;
    connect(&user, &QTimer::timeout, &cancel, [this, &cancel] {
        if (cancel.isVisible())
            mySample->window().close();
    });
    user.start(20);
    QElapsedTimer clock;
    clock.start();
    part<QPushButton>(u"sendButton"_s).click();
    QVERIFY(clock.elapsed() < 60'000);
}

void tst_sample_window::otherLanguageNeedsARestart()
{
    QString question;
    const VXDialogVisitor visitor([&question](QDialog* theDialog) {
        question = qobject_cast<QMessageBox*>(theDialog)->text();
        theDialog->reject();
    });
    auto* const german = mySample->window().findChild<QAction*>(u"language-de"_s);
    auto* const english = mySample->window().findChild<QAction*>(u"language-en"_s);
    (english->isChecked() ? german : english)->trigger();
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(question, u"Die Sprache wechselt mit einem Neustart. Jetzt neu starten?"_s);
}

/// Plays the user's browser: sends the login form of the address that was to be opened, and follows
/// the provider back to this computer.
void tst_sample_window::logInAsBrowser(const QUrl& theLoginPage)
{
    const QUrlQuery asked(theLoginPage);
    QUrlQuery form;
    form.addQueryItem(u"username"_s, u"demo"_s);
    form.addQueryItem(u"password"_s, u"demo"_s);
    for (const QString& name : {u"redirect_uri"_s, u"state"_s, u"code_challenge"_s})
        form.addQueryItem(name, asked.queryItemValue(name, QUrl::FullyEncoded));
    QNetworkRequest request(theLoginPage.adjusted(QUrl::RemoveQuery));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/x-www-form-urlencoded"_s);
    QNetworkReply* const reply =
        myBrowser.post(request, form.toString(QUrl::FullyEncoded).toLatin1());
    connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
}

void tst_sample_window::loginOnThePageOfTheProviderIsConfirmed()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        auto* const view = theDialog->findChild<QWebEngineView*>();
        connect(view, &QWebEngineView::loadFinished, theDialog, [view] {
            view->page()->runJavaScript(u"const form = document.getElementById('login');"
                                        "if (form) { form.username.value = 'demo';"
                                        "form.password.value = 'demo'; form.requestSubmit(); }"_s);
        });
    });
    click(u"embeddedButton"_s);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Der Anbieter hat die Anmeldung bestätigt."_s);
    QVERIFY(part<QPlainTextEdit>(u"outcomeBody"_s).toPlainText().contains(u"\"accepted\": true"_s));
    QVERIFY(!part<QPlainTextEdit>(u"outcomeBody"_s).toPlainText().contains(u"access-0"_s));
}

void tst_sample_window::loginOnThePageMayBeGivenUp()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        QTest::mouseClick(theDialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    click(u"embeddedButton"_s);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Die Anmeldung wurde nicht abgeschlossen."_s);
}

void tst_sample_window::loginInTheBrowserIsConfirmed()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXOpenedUrls desktop({u"http"_s});
    connect(&desktop, &VXOpenedUrls::opening, this, &tst_sample_window::logInAsBrowser);
    click(u"externalButton"_s);
    QCOMPARE(desktop.urls().size(), 1);
    QCOMPARE(desktop.urls().at(0).path(), u"/oauth2/authorize"_s);
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Der Anbieter hat die Anmeldung bestätigt."_s);
    QVERIFY(part<QPlainTextEdit>(u"outcomeBody"_s).toPlainText().contains(u"\"accepted\": true"_s));
}

void tst_sample_window::loginInTheBrowserMayBeGivenUp()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXOpenedUrls desktop({u"http"_s});
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        QTest::mouseClick(theDialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    click(u"externalButton"_s);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(desktop.urls().size(), 1);
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Die Anmeldung wurde nicht abgeschlossen."_s);
}

void tst_sample_window::loginWithoutItsPortIsExplained()
{
    QTcpServer other; // the ordered port, in this test's own network
    QVERIFY(other.listen(QHostAddress::Any, 1031));
    mySample->openPage(u"Anmeldung"_s);
    click(u"externalButton"_s);
    QCOMPARE(shown(u"outcomeHeadline"_s), u"Die Anmeldung konnte nicht beginnen. Der Port 1031 ist "
                                          "belegt, oder der eingebaute Dienst fehlt."_s);
}

void tst_sample_window::crashOfThePageIsToldAndReloaded()
{
    mySample->openPage(u"Webinhalte"_s);
    auto* const view = mySample->window().findChild<QWebEngineView*>();
    QVERIFY(QSignalSpy(view, &QWebEngineView::loadFinished).wait(20'000));
    const auto& notice = part<QFrame>(u"crashNotice"_s);
    QVERIFY(!notice.isVisible());

    QVERIFY(VXRenderer::kill(view));
    QTRY_VERIFY(notice.isVisible());
    QCOMPARE(shown(u"crashText"_s),
             u"Die Webansicht ist abgestürzt. Laden Sie die Seite neu. Hilft "
             "das nicht, starten Sie das Programm neu."_s);

    QSignalSpy finished(view, &QWebEngineView::loadFinished);
    click(u"reloadButton"_s);
    QVERIFY(finished.wait(20'000));
    QCOMPARE(finished.at(0).at(0).toBool(), true);
    QVERIFY(!notice.isVisible());
}

void tst_sample_window::ownPagesFollowTheSkin_data()
{
    QTest::addColumn<QString>("button");

    for (const char* button : {"startButton", "sceneButton", "proposalButton"})
        QTest::newRow(button) << QString::fromLatin1(button);
}

void tst_sample_window::ownPagesFollowTheSkin()
{
    QFETCH(QString, button);
    const auto background = [this] {
        click(u"scriptButton"_s); // runs after what the page was told before
        return shown(u"scriptResult"_s);
    };
    const QString light = u"Ergebnis: rgb(243, 245, 248)"_s;
    const QString dark = u"Ergebnis: rgb(16, 21, 27)"_s;
    const auto restore =
        qScopeGuard([] { VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Light); });

    mySample->openPage(u"Webinhalte"_s);
    auto* const view = mySample->window().findChild<QWebEngineView*>();
    QSignalSpy finished(view, &QWebEngineView::loadFinished);
    QVERIFY(finished.wait(20'000));
    click(button);
    QVERIFY(finished.wait(20'000));
    part<QLineEdit>(u"scriptEdit"_s)
        .setText(u"getComputedStyle(document.documentElement).backgroundColor"_s);
    QCOMPARE(background(), light);

    QVERIFY(mySample->chooseFromMenu(u"skin-dark"_s));
    QCOMPARE(background(), dark);
    click(button); // loaded in the dark skin
    QVERIFY(finished.wait(20'000));
    QCOMPARE(background(), dark);
    QVERIFY(mySample->chooseFromMenu(u"skin-light"_s));
    QCOMPARE(background(), light);
}

void tst_sample_window::menuBringsEachProblem_data()
{
    QTest::addColumn<QStringList>("titles");

    const QString error = u"Ein Fehler ist aufgetreten (0.1.0)"_s;
    const QString hint = u"Hinweis"_s;
    QTest::newRow("connection") << QStringList{error};
    QTest::newRow("remote-system") << QStringList{error};
    QTest::newRow("auto-recover") << QStringList{u"Einen Moment bitte"_s};
    QTest::newRow("unspecific") << QStringList{error};
    QTest::newRow("user-input") << QStringList{error};
    QTest::newRow("payment") << QStringList{error};
    QTest::newRow("login-refused") << QStringList{error};
    QTest::newRow("login-wait") << QStringList{error};
    QTest::newRow("tls-question") << QStringList{u"SSL Fehler"_s};
    QTest::newRow("tls-warning") << QStringList{u"SSL Fehler"_s, u"SSL Fehler"_s};
    QTest::newRow("server-login") << QStringList{u"Anmeldung erforderlich"_s};
    QTest::newRow("proxy-login") << QStringList{u"Anmeldung erforderlich"_s};
    QTest::newRow("up-to-date") << QStringList{u"Fertig"_s};
    QTest::newRow("update-failed") << QStringList{u"Achtung"_s};
    QTest::newRow("update-ready") << QStringList{
        u"Aktualisierung wurde erfolgreich heruntergeladen."_s};
    QTest::newRow("phase-out") << QStringList{u"Diese Software wird nicht mehr unterstützt."_s};
    QTest::newRow("prices-updated") << QStringList{hint};
    QTest::newRow("prices-failed") << QStringList{hint};
    QTest::newRow("restart") << QStringList{u"Die Software muss neu gestartet werden. "_s};
}

void tst_sample_window::menuBringsEachProblem()
{
    QFETCH(QStringList, titles);
    QCOMPARE(titlesAfterChoosing(QString::fromLatin1(QTest::currentDataTag())), titles);
}

void tst_sample_window::everyProblemHasATestOfItsEntry()
{
    // The rows above; a new problem has to get one.
    QCOMPARE(mySample->window().findChild<QMenu*>(u"problemMenu"_s)->actions().size(), 19);
}

void tst_sample_window::menuOpensTheNetworkSettings()
{
    QCOMPARE(titlesAfterChoosing(u"networkPreferences"_s), QStringList{u"Netzwerkeinstellungen"_s});
}

void tst_sample_window::shortcutOpensTheNetworkSettings()
{
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->reject(); });
    QTest::keyClick(&mySample->window(), Qt::Key_Comma, Qt::ControlModifier);
    QCOMPARE(visitor.count(), 1);
}

void tst_sample_window::menuLogsInOnAPage()
{
    QCOMPARE(titlesAfterChoosing(u"loginEmbedded"_s).size(), 1);
}

void tst_sample_window::menuLogsInInTheBrowser()
{
    const VXOpenedUrls desktop({u"http"_s});
    QCOMPARE(titlesAfterChoosing(u"loginExternal"_s), QStringList{u"VX Simulator"_s});
    QCOMPARE(desktop.urls().size(), 1);
}

void tst_sample_window::menuAnnouncesAnUpdate_data()
{
    QTest::addColumn<bool>("hasLater");

    QTest::newRow("update") << true;
    QTest::newRow("updateMandatory") << false;
}

void tst_sample_window::menuAnnouncesAnUpdate()
{
    QFETCH(bool, hasLater);
    bool isLaterSeen = false;
    const VXDialogVisitor visitor([&isLaterSeen](QDialog* theDialog) {
        const auto buttons = theDialog->findChildren<QPushButton*>();
        isLaterSeen = std::ranges::any_of(buttons, [](const QPushButton* theButton) {
            return theButton->isVisible() && theButton->text() == u"Später erinnern"_s;
        });
        theDialog->reject();
    });
    QVERIFY(mySample->chooseFromMenu(QString::fromLatin1(QTest::currentDataTag())));
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(isLaterSeen, hasLater);
}

void tst_sample_window::menuReceivesPhotos()
{
    QStringList shownDialogs;
    const VXDialogVisitor visitor([&shownDialogs](QDialog* theDialog) {
        shownDialogs << theDialog->windowTitle();
        theDialog->close();
    });
    QVERIFY(mySample->chooseFromMenu(u"receivePhotos"_s));
    QTRY_COMPARE(shownDialogs.size(), 1);
    QVERIFY(part<QPushButton>(u"receiveButton"_s).isVisible());
}

void tst_sample_window::menuChangesTheSkin()
{
    const VXCSSSkinManager& skins = *VXCSSSkinManager::instance();
    QVERIFY(mySample->chooseFromMenu(u"skin-dark"_s));
    QCOMPARE(skins.currentMode(), VXCSSSkinManager::Dark);
    QVERIFY(mySample->window().palette().color(QPalette::Window).lightness() < 128);
    QVERIFY(mySample->window().findChild<QAction*>(u"skin-dark"_s)->isChecked());
    QVERIFY(mySample->chooseFromMenu(u"skin-light"_s));
    QCOMPARE(skins.currentMode(), VXCSSSkinManager::Light);
    QVERIFY(mySample->window().palette().color(QPalette::Window).lightness() > 128);
}

void tst_sample_window::menuAsksBeforeItChangesTheLanguage()
{
    const bool isEnglish = mySample->window().findChild<QAction*>(u"language-en"_s)->isChecked();
    const QString other = isEnglish ? u"language-de"_s : u"language-en"_s;
    QCOMPARE(titlesAfterChoosing(other), QStringList{u"Sprache"_s});
    // The one that is chosen already changes nothing.
    QCOMPARE(titlesAfterChoosing(isEnglish ? u"language-en"_s : u"language-de"_s), QStringList());
}

void tst_sample_window::menuTellsAboutTheProgram()
{
    QCOMPARE(titlesAfterChoosing(u"about"_s), QStringList{u"Über dieses Programm"_s});
}

void tst_sample_window::menuEndsTheProgram()
{
    QVERIFY(mySample->chooseFromMenu(u"quit"_s));
    QVERIFY(!mySample->window().isVisible());
}

void tst_sample_window::shortcutEndsTheProgram()
{
    QTest::keyClick(&mySample->window(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!mySample->window().isVisible());
}

void tst_sample_window::noEntryOfTheMenusIsWithoutATest()
{
    QStringList names;
    for (const QAction* action : mySample->window().menuBar()->findChildren<QAction*>())
        if (!action->menu() && !action->isSeparator())
            names << action->objectName();
    const QStringList problems =
        names.filter(QRegularExpression(u"^(?!quit|about|receive|login(Em|Ex)|update(Ma|$)|network|"
                                        "skin|language)"_s));
    QCOMPARE(problems.size(), 19); // menuBringsEachProblem()
    QCOMPARE(names.size() - problems.size(), 12);
}

VX_TEST_MAIN(QApplication, tst_sample_window)
#include "tst_sample_window.moc"
