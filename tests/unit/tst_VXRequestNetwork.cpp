#include <VXNetworking/VXRequestNetwork.h>

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXLogger.h>
#include <VXCore/VXMath.h>

#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkingError.h>

#include "VXDialogVisitor.h"
#include "VXInputWindow.h"
#include "VXTestMain.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTranslator>
#include <QtNetwork/QAuthenticator>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCommandLinkButton>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// What a person sees of a dialog.
struct Seen
{
    bool isMessageBox = false;
    int icon = 0;
    QString title;
    QString text;
    QString details;
    QStringList buttons;
    QString defaultButton;
    QStringList choices; ///< "title|description"
    QString objectName;
    int seconds = 0;
};

Seen see(QDialog* theDialog)
{
    Seen seen;
    seen.title = theDialog->windowTitle();
    seen.objectName = theDialog->objectName();
    seen.seconds = theDialog->property("remainingSeconds").toInt();
    if (auto* box = qobject_cast<QMessageBox*>(theDialog)) {
        seen.isMessageBox = true;
        seen.icon = box->icon();
        seen.text = box->text();
        seen.details = box->detailedText();
        if (box->defaultButton() != nullptr)
            seen.defaultButton = box->defaultButton()->text();
        const auto buttons = box->buttons();
        for (const auto* button : buttons)
            seen.buttons << button->text();
        seen.buttons.sort();
        return seen;
    }
    if (const auto* label = theDialog->findChild<QLabel*>(u"messageLabel"_s))
        seen.text = label->text();
    const auto links = theDialog->findChildren<QCommandLinkButton*>();
    for (const auto* link : links)
        seen.choices << link->text() + u'|' + link->description();
    return seen;
}

void press(QDialog* theDialog, QMessageBox::StandardButton theButton)
{
    qobject_cast<QMessageBox*>(theDialog)->button(theButton)->click();
}

void cancel(QDialog* theDialog)
{
    theDialog->reject();
}

VXNetworkingError error(int theCode, int theWaitTime = 0)
{
    VXNetworkingError error;
    error.raise(static_cast<VXNetworkingErrorCode>(theCode), u"vom Server"_s, {}, theWaitTime);
    return error;
}

/// A click that waits in the queue of the window system, as a real one.
void clickAsAUser(QWidget& theWidget)
{
    using Delivery = QWindowSystemInterface::AsynchronousDelivery;
    const QPoint local = theWidget.rect().center();
    const QPoint global = theWidget.mapToGlobal(local);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QWindowSystemInterface::handleMouseEvent<Delivery>(
            theWidget.windowHandle(), local, global,
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton, type,
            Qt::NoModifier, Qt::MouseEventNotSynthesized);
    }
}

constexpr auto tryAgain = "Noch einmal versuchen|Führt die Aktion noch einmal durch";
constexpr auto settings =
    "Netzwerkeinstellungen ändern...|Startet den Dialog \"Netzwerkeinstellungen\"";

} // namespace

class tst_VXRequestNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theTitleNamesTheVersion();
    void severitiesSelectTheirMessageBox_data();
    void severitiesSelectTheirMessageBox();
    void severitiesSelectTheirChoices_data();
    void severitiesSelectTheirChoices();
    void noErrorOpensTheConnectionDialog();
    void whatTheCallerShowsIsNotShownTwice_data();
    void whatTheCallerShowsIsNotShownTwice();
    void outsideTheMainThreadNothingIsShown();
    void anOverloadedServerIsCountedDown();
    void retryAndCancelOfTheCountdown_data();
    void retryAndCancelOfTheCountdown();
    void theCountdownLiesBetween180And300Seconds();
    void aRemoteErrorIsTriedAgainUnlessCancelled();
    void theSettingsChoiceAsksForTheSettingsAndCountsAsRetry();
    void tryingAgainDoesNotAskForTheSettings();
    void aCancelledConnectionDialogIsNoRetry();
    void aRefusedLoginWithoutWaitTimeHasNoCountdown();
    void aRefusedLoginWithWaitTimeKeepsTheButtonDisabled();
    void aLoginBoxThatExpiresWaitsNoLonger();
    void clicksDuringTheLoginWaitMeetTheDisabledButton();
    void otherLoginErrorsGoTheirOwnWay();
    void anAuthenticationQuestionNamesTheUrl();
    void aProxyQuestionNamesTheProxy();
    void aCancelledPasswordLeavesTheAuthenticatorUntouched();
    void certificateErrorsAreLoggedAndListed();
    void certificateErrorsAreNotIgnoredByDefault();
    void anErrorThatCannotBeIgnoredIsShown();
    void updateMessages_data();
    void updateMessages();
    void finishingForTheUpdateWritesTheAnswer();
    void questionsFromWorkersAreAnsweredInTheMainThread();
    void choicesTellTranslatorsWhatTheyAre();
    void closingIsNeverAnotherTry_data();
    void closingIsNeverAnotherTry();
    void theDialogDiesWithItsParent();
};

void tst_VXRequestNetwork::init()
{
    VXDeploymentConfig::instance()->setValue(u"Program/version"_s, u"7.4.1"_s);
}

void tst_VXRequestNetwork::theTitleNamesTheVersion()
{
    QCOMPARE(VXRequestNetwork::instance()->windowTitle(), u"Ein Fehler ist aufgetreten (7.4.1)"_s);
}

void tst_VXRequestNetwork::severitiesSelectTheirMessageBox_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("buttons");

    const int critical = QMessageBox::Critical;
    const int warning = QMessageBox::Warning;
    const int information = QMessageBox::Information;
    const QStringList cancelOnly{u"Abbrechen"_s, u"Details anzeigen"_s};
    const QStringList okOnly{u"Details anzeigen"_s, u"OK"_s};
    QTest::newRow("informational number")
        << 85 << critical << u"Die Software befindet sich auf dem neuesten Stand.<br>"_s
        << cancelOnly;
    QTest::newRow("unrecoverable")
        << 2001 << critical << u"Die Datei ist leer.<br>"_s << cancelOnly;
    QTest::newRow("program error") << 4 << critical << u"Ungültige Session ID.<br>"_s << cancelOnly;
    QTest::newRow("order declaration")
        << 510 << critical << u"Inkonsistente Discount-Daten<br>"_s << cancelOnly;
    QTest::newRow("user input") << 5 << warning << u"Ihre E-Mail-Adresse ist nicht korrekt.<br>"_s
                                << okOnly;
    QTest::newRow("payment")
        << 655 << information
        << u"Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Bitte wählen Sie ein anderes Zahlungsverfahren aus.<br>"_s
        << okOnly;
}

void tst_VXRequestNetwork::severitiesSelectTheirMessageBox()
{
    QFETCH(int, code);
    QFETCH(int, icon);
    QFETCH(QString, text);
    QFETCH(QStringList, buttons);

    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        QTest::keyClick(theDialog, Qt::Key_Escape);
    });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(code)));
    QCOMPARE(user.count(), 1);
    QVERIFY(seen.isMessageBox);
    QCOMPARE(seen.title, u"Ein Fehler ist aufgetreten (7.4.1)"_s);
    QCOMPARE(seen.icon, icon);
    QCOMPARE(seen.text, text);
    QCOMPARE(seen.details, u"Fehlercode: %1\nDetail: vom Server"_s.arg(code));
    QCOMPARE(seen.buttons, buttons);
}

void tst_VXRequestNetwork::severitiesSelectTheirChoices_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("choices");

    const QString again = QString::fromUtf8(tryAgain);
    const QString proxy = QString::fromUtf8(settings);
    QTest::newRow("remote system")
        << 1000
        << u"Der Server kann derzeit die Anfrage nicht beantworten.<br><p>Wollen Sie es noch einmal versuchen?"_s
        << QStringList{again};
    QTest::newRow("no network")
        << 5005
        << u"Es ist keine Netzwerkverbindung vorhanden.<br><p>Wollen Sie es noch einmal versuchen?"_s
        << QStringList{proxy, again};
    QTest::newRow("temporary")
        << 3502
        << u"Der Server hat die Verbindung vorzeitig unterbrochen.<br><p>Wollen Sie es noch einmal versuchen?"_s
        << QStringList{proxy, again};
}

void tst_VXRequestNetwork::severitiesSelectTheirChoices()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QFETCH(QStringList, choices);

    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        cancel(theDialog);
    });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(code)));
    QCOMPARE(seen.title, u"Ein Fehler ist aufgetreten (7.4.1)"_s);
    QCOMPARE(seen.text, text);
    QCOMPARE(seen.choices, choices);
}

void tst_VXRequestNetwork::noErrorOpensTheConnectionDialog()
{
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        cancel(theDialog);
    });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(VXNetworkingError(NoError)));
    QCOMPARE(seen.choices, (QStringList{QString::fromUtf8(settings), QString::fromUtf8(tryAgain)}));
    QCOMPARE(seen.text, u"Kein Fehler.<br><p>Wollen Sie es noch einmal versuchen?"_s);
}

void tst_VXRequestNetwork::whatTheCallerShowsIsNotShownTwice_data()
{
    QTest::addColumn<int>("code");

    QTest::newRow("login") << 2;
    QTest::newRow("address") << 95;
    for (int code : {63, 64, 65, 66, 67, 70, 71, 72, 73, 74, 75, 77, 78, 79})
        QTest::addRow("coupon %d", code) << code;
}

void tst_VXRequestNetwork::whatTheCallerShowsIsNotShownTwice()
{
    QFETCH(int, code);

    VXDialogVisitor user([](QDialog* theDialog) { cancel(theDialog); });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(code)));
    QCOMPARE(user.count(), 0);
}

void tst_VXRequestNetwork::outsideTheMainThreadNothingIsShown()
{
    VXDialogVisitor user([](QDialog* theDialog) { cancel(theDialog); });
    auto* mediator = VXRequestNetwork::instance();
    bool retry = true;
    std::thread worker([&] { retry = mediator->handleNetworkError(error(3502)); });
    worker.join();
    QCoreApplication::processEvents();
    QVERIFY(!retry);
    QCOMPARE(user.count(), 0);
}

void tst_VXRequestNetwork::anOverloadedServerIsCountedDown()
{
    Seen seen;
    QWidget parent;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        QCOMPARE(theDialog->parentWidget(), &parent);
        QCOMPARE(
            theDialog->property("messageTemplate").toString(),
            u"Unsere Services sind im Moment voll ausgelastet.<br>Das Programm wird in %2 Minuten die Verbindung erneut aufbauen.<br>"_s);
        cancel(theDialog);
    });
    // The server's own wait time is not used.
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(1005, 7), &parent));
    QCOMPARE(seen.title, u"Einen Moment bitte"_s);
    QCOMPARE(seen.icon, static_cast<int>(QMessageBox::Warning));
    QCOMPARE(seen.details, u"Fehlercode: 1005\nDetail: vom Server"_s);
    QCOMPARE(seen.buttons, (QStringList{u"Abbrechen"_s, u"Details anzeigen"_s, u"Wiederholen"_s}));
    QCOMPARE(seen.defaultButton, u"Wiederholen"_s);
    QVERIFY2(seen.seconds >= 179 && seen.seconds <= 300, qPrintable(QString::number(seen.seconds)));
    QVERIFY(!seen.text.contains(u'%'));
}

void tst_VXRequestNetwork::retryAndCancelOfTheCountdown_data()
{
    QTest::addColumn<bool>("expected");

    QTest::newRow("retry") << true;
    QTest::newRow("Escape") << false;
}

void tst_VXRequestNetwork::retryAndCancelOfTheCountdown()
{
    QFETCH(bool, expected);

    VXDialogVisitor user([&](QDialog* theDialog) {
        if (expected)
            press(theDialog, QMessageBox::Retry);
        else
            QTest::keyClick(theDialog, Qt::Key_Escape);
    });
    QCOMPARE(VXRequestNetwork::instance()->handleNetworkError(error(5002)), expected);
}

void tst_VXRequestNetwork::theCountdownLiesBetween180And300Seconds()
{
    int drawn = 0;
    VXMath::setRandomSource([&](int theMinimum, int theMaximum) {
        [&] {
            QCOMPARE(theMinimum, 0);
            QCOMPARE(theMaximum, 120);
        }();
        return drawn;
    });
    int seconds = 0;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seconds = theDialog->property("remainingSeconds").toInt();
        cancel(theDialog);
    });
    (void)VXRequestNetwork::instance()->handleNetworkError(error(1005));
    QCOMPARE(seconds, 180);
    drawn = 120;
    (void)VXRequestNetwork::instance()->handleNetworkError(error(1005));
    QCOMPARE(seconds, 300);
    VXMath::setRandomSource({});
}

void tst_VXRequestNetwork::aRemoteErrorIsTriedAgainUnlessCancelled()
{
    VXDialogVisitor user(
        [](QDialog* theDialog) { theDialog->findChild<QCommandLinkButton*>()->click(); });
    QVERIFY(VXRequestNetwork::instance()->handleNetworkError(error(1004)));
}

void tst_VXRequestNetwork::theSettingsChoiceAsksForTheSettingsAndCountsAsRetry()
{
    auto* mediator = VXRequestNetwork::instance();
    QSignalSpy asked(mediator, &VXRequestNetwork::pleaseStartSomeDialogToEditTheProxyPreferences);
    VXDialogVisitor user(
        [](QDialog* theDialog) { theDialog->findChildren<QCommandLinkButton*>().at(0)->click(); });
    QVERIFY(mediator->handleNetworkError(error(3503)));
    QCOMPARE(asked.count(), 1);
}

void tst_VXRequestNetwork::tryingAgainDoesNotAskForTheSettings()
{
    auto* mediator = VXRequestNetwork::instance();
    QSignalSpy asked(mediator, &VXRequestNetwork::pleaseStartSomeDialogToEditTheProxyPreferences);
    VXDialogVisitor user(
        [](QDialog* theDialog) { theDialog->findChildren<QCommandLinkButton*>().at(1)->click(); });
    QVERIFY(mediator->handleNetworkError(error(3503)));
    QCOMPARE(asked.count(), 0);
}

void tst_VXRequestNetwork::aCancelledConnectionDialogIsNoRetry()
{
    VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(3601)));
}

void tst_VXRequestNetwork::aRefusedLoginWithoutWaitTimeHasNoCountdown()
{
    auto* mediator = VXRequestNetwork::instance();
    QSignalSpy enabled(mediator, &VXRequestNetwork::enableLoginButton);
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        QCOMPARE(theDialog->findChild<QWidget*>(u"countdownLabel"_s), nullptr);
        press(theDialog, QMessageBox::Ok);
    });
    mediator->handleInvalidLoginError(error(2));
    QCOMPARE(user.count(), 1);
    QCOMPARE(seen.title, u"Ein Fehler ist aufgetreten (7.4.1)"_s);
    QCOMPARE(seen.icon, static_cast<int>(QMessageBox::Warning));
    QCOMPARE(seen.objectName, u"loginErrorMessageBox"_s);
    QCOMPARE(seen.buttons, (QStringList{u"Details anzeigen"_s, u"OK"_s}));
    QCOMPARE(
        seen.text,
        u"Sie konnten sich nicht anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login und Passwort vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li></ul><br>"_s);
    QCOMPARE(enabled.count(), 0);
}

void tst_VXRequestNetwork::aRefusedLoginWithWaitTimeKeepsTheButtonDisabled()
{
    auto* mediator = VXRequestNetwork::instance();
    QList<bool> enabled;
    QList<bool> isCursorWaiting;
    const auto connection =
        connect(mediator, &VXRequestNetwork::enableLoginButton, this, [&](bool theEnable) {
            const QCursor* const cursor = QApplication::overrideCursor();
            enabled << theEnable;
            isCursorWaiting << (cursor != nullptr && cursor->shape() == Qt::WaitCursor);
        });
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        press(theDialog, QMessageBox::Ok);
    });
    QElapsedTimer clock;
    clock.start();
    mediator->handleInvalidLoginError(error(2, 1));
    disconnect(connection);

    QVERIFY2(clock.elapsed() >= 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(enabled, (QList<bool>{false, true}));
    QCOMPARE(isCursorWaiting, (QList<bool>{true, false}));
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    QCOMPARE(seen.seconds, 1);
    QVERIFY(seen.text.endsWith(
        u"</ul><br>Sie haben mehrfach falsche Login-Daten eingegeben. Bitte warten Sie einen Moment."_s));
}

void tst_VXRequestNetwork::aLoginBoxThatExpiresWaitsNoLonger()
{
    auto* mediator = VXRequestNetwork::instance();
    QSignalSpy enabled(mediator, &VXRequestNetwork::enableLoginButton);
    VXDialogVisitor user([](QDialog*) {}); // nobody presses OK
    QElapsedTimer clock;
    clock.start();
    mediator->handleInvalidLoginError(error(2, 1));
    QVERIFY(clock.elapsed() >= 1000);
    QCOMPARE(enabled.count(), 0);
}

void tst_VXRequestNetwork::clicksDuringTheLoginWaitMeetTheDisabledButton()
{
    auto* mediator = VXRequestNetwork::instance();
    QPushButton login;
    login.show();
    QVERIFY(QTest::qWaitForWindowExposed(&login));
    QSignalSpy clicked(&login, &QAbstractButton::clicked);
    QObject context;
    connect(mediator, &VXRequestNetwork::enableLoginButton, &context, [&](bool theEnable) {
        login.setEnabled(theEnable);
        // An impatient user clicks while the button is disabled.
        if (!theEnable)
            QMetaObject::invokeMethod(
                &login, [&] { clickAsAUser(login); }, Qt::QueuedConnection);
    });
    VXDialogVisitor user([](QDialog* theDialog) { press(theDialog, QMessageBox::Ok); });
    mediator->handleInvalidLoginError(error(2, 1));
    QVERIFY(login.isEnabled());
    QCoreApplication::processEvents();
    QCOMPARE(clicked.count(), 0);

    clickAsAUser(login); // such clicks do arrive
    QTRY_COMPARE(clicked.count(), 1);
}

void tst_VXRequestNetwork::otherLoginErrorsGoTheirOwnWay()
{
    auto* mediator = VXRequestNetwork::instance();
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        cancel(theDialog);
    });
    mediator->handleInvalidLoginError(error(50, 5));
    QCOMPARE(user.count(), 1);
    QCOMPARE(seen.icon, static_cast<int>(QMessageBox::Critical));

    mediator->handleInvalidLoginError(VXNetworkingError(NoError));
    mediator->handleInvalidLoginError(error(85));
    QCOMPARE(user.count(), 1);
}

void tst_VXRequestNetwork::anAuthenticationQuestionNamesTheUrl()
{
    QAuthenticator authenticator;
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        theDialog->findChild<QLineEdit*>(u"userNameEdit"_s)->setText(u"karl"_s);
        theDialog->findChild<QLineEdit*>(u"passwordEdit"_s)->setText(u"geheim"_s);
        theDialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    VXRequestNetwork::instance()->handleAuthenticationRequest(
        QUrl(u"http://127.0.0.1/a?x=1&y='2'"_s), &authenticator);
    QCOMPARE(
        seen.text,
        u"Für die URL \"http://127.0.0.1/a?x=1&amp;y='2'\" wird eine Authentifizierung benötigt.<br>Bitte gebe Sie Ihren Benutzernamen und Ihr Passwort ein."_s);
    QCOMPARE(authenticator.user(), u"karl"_s);
    QCOMPARE(authenticator.password(), u"geheim"_s);
}

void tst_VXRequestNetwork::aProxyQuestionNamesTheProxy()
{
    QAuthenticator authenticator;
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        cancel(theDialog);
    });
    VXRequestNetwork::instance()->handleProxyAuthenticationRequest(QUrl(), &authenticator,
                                                                   u"proxy<b>.test"_s);
    QCOMPARE(
        seen.text,
        u"Für den Proxy \"proxy<b>.test\" wird eine Authentifizierung benötigt.<br>Bitte geben Sie Ihren Benutzernamen und Ihr Passwort ein."_s);
}

void tst_VXRequestNetwork::aCancelledPasswordLeavesTheAuthenticatorUntouched()
{
    QAuthenticator authenticator;
    VXDialogVisitor user([](QDialog* theDialog) {
        theDialog->findChild<QLineEdit*>(u"userNameEdit"_s)->setText(u"karl"_s);
        cancel(theDialog);
    });
    VXRequestNetwork::instance()->handleAuthenticationRequest(QUrl(u"http://127.0.0.1/"_s),
                                                              &authenticator);
    QCOMPARE(user.count(), 1);
    QVERIFY(authenticator.isNull());
}

void tst_VXRequestNetwork::certificateErrorsAreLoggedAndListed()
{
    QStringList records;
    VXLogger::instance()->setSink(
        [&](const QString&, const QString& theText) { records << theText; });
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        press(theDialog, QMessageBox::Yes);
    });
    QVERIFY(VXRequestNetwork::instance()->askIgnoreSSLErrors(u"127.0.0.1:8443"_s,
                                                             {u"Erster %2"_s, u"Zweiter"_s}));
    VXLogger::instance()->setSink({});

    QCOMPARE(seen.title, u"SSL Fehler"_s);
    QCOMPARE(
        seen.text,
        u"<html>Bei der Daten&uuml;bertragung mit dem Server<br><b>127.0.0.1:8443</b><br>sind die folgenden Fehler aufgetreten:<ul><li>Erster %2</li><li>Zweiter</li></ul>M&ouml;chten Sie diese Fehler <b>ignorieren</b>?</html>"_s);
    QCOMPARE(records, (QStringList{u"TOV SSLERROR:Erster %2"_s, u"TOV SSLERROR:Zweiter"_s}));
}

void tst_VXRequestNetwork::certificateErrorsAreNotIgnoredByDefault()
{
    QString defaultButton;
    VXDialogVisitor user([&](QDialog* theDialog) {
        defaultButton = see(theDialog).defaultButton;
        QTest::keyClick(theDialog, Qt::Key_Escape);
    });
    QVERIFY(!VXRequestNetwork::instance()->askIgnoreSSLErrors(u"host"_s, {u"Fehler"_s}));
    QCOMPARE(defaultButton, u"Nein"_s);
}

void tst_VXRequestNetwork::anErrorThatCannotBeIgnoredIsShown()
{
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        press(theDialog, QMessageBox::Ok);
    });
    VXRequestNetwork::instance()->showSSLErrorWarning(u"host"_s, u"abgelaufen"_s);
    QCOMPARE(seen.title, u"SSL Fehler"_s);
    QCOMPARE(seen.icon, static_cast<int>(QMessageBox::Warning));
    QCOMPARE(
        seen.text,
        u"<html>Bei der Daten&uuml;bertragung mit dem Server<br><b>host</b><br>ist folgender Fehler aufgetreten:<ul><li>abgelaufen</li></ul>Dieser Fehler kann nicht ignoriert werden. Die Daten&uuml;bertragung wird abgebrochen.</html>"_s);
}

void tst_VXRequestNetwork::updateMessages_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");

    const int information = QMessageBox::Information;
    const int warning = QMessageBox::Warning;
    QTest::newRow("up to date") << u"updateNotNecessary"_s << information << u"Fertig"_s
                                << u"Die Software befindet sich auf dem neuesten Stand."_s;
    QTest::newRow("update failed")
        << u"warnUpdateError"_s << warning << u"Achtung"_s
        << u"Das Update konnte nicht durchgeführt werden.\nStellen Sie sicher, dass das dazu benötigte Programm \"perl\" sowie eines der Terminals \"konsole\", \"gnome-terminal\", \"xfce4-terminal\", \"lxterminal\" oder \"xterm\" auf Ihrem System installiert ist."_s;
    QTest::newRow("phase-out") << u"showPhaseOutMessage"_s << warning
                               << u"Diese Software wird nicht mehr unterstützt."_s
                               << u"Bis Ende des Jahres"_s;
    QTest::newRow("price list updated") << u"success"_s << information << u"Hinweis"_s
                                        << u"Die Preisliste wurde erfolgreich aktualisiert."_s;
    QTest::newRow("price list not updated")
        << u"failure"_s << information << u"Hinweis"_s
        << u"Das Programm konnte die Preisliste nicht updaten."_s;
    QTest::newRow("restart")
        << u"restart"_s << information << u"Die Software muss neu gestartet werden. "_s
        << u"Die Größe der Seitenpakete hat sich geändert. Die Software muss leider neu gestartet werden."_s;
}

void tst_VXRequestNetwork::updateMessages()
{
    QFETCH(QString, operation);
    QFETCH(int, icon);
    QFETCH(QString, title);
    QFETCH(QString, text);

    auto* mediator = VXRequestNetwork::instance();
    Seen seen;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        press(theDialog, QMessageBox::Ok);
    });
    if (operation == u"updateNotNecessary"_s)
        mediator->updateNotNecessary();
    else if (operation == u"warnUpdateError"_s)
        mediator->warnUpdateError();
    else if (operation == u"showPhaseOutMessage"_s)
        mediator->showPhaseOutMessage(u"Bis Ende des Jahres"_s);
    else if (operation == u"restart"_s)
        mediator->softwareMustBeRestarted();
    else
        mediator->productListUpdateFinished(operation == u"success"_s);
    QCOMPARE(seen.icon, icon);
    QCOMPARE(seen.title, title);
    QCOMPARE(seen.text, text);
    QVERIFY(seen.details.isEmpty());
}

void tst_VXRequestNetwork::finishingForTheUpdateWritesTheAnswer()
{
    Seen seen;
    QMessageBox::StandardButton answer = QMessageBox::Yes;
    VXDialogVisitor user([&](QDialog* theDialog) {
        seen = see(theDialog);
        press(theDialog, answer);
    });
    bool quit = false;
    VXRequestNetwork::instance()->finishProgramForUpdate(&quit);
    QVERIFY(quit);
    QCOMPARE(seen.title, u"Aktualisierung wurde erfolgreich heruntergeladen."_s);
    QCOMPARE(
        seen.text,
        u"Um das Update zu starten, muss das Programm beendet werden. Der Installationsprozess wird dann automatisch gestartet. Wollen Sie das Programm jetzt beenden?"_s);
    QCOMPARE(seen.defaultButton, u"Ja"_s);

    answer = QMessageBox::No;
    VXRequestNetwork::instance()->finishProgramForUpdate(&quit);
    QVERIFY(!quit);
}

void tst_VXRequestNetwork::questionsFromWorkersAreAnsweredInTheMainThread()
{
    auto* dispatcher = VXNetworkAccessManagerSignalDispatcher::instance();
    auto* mediator = VXRequestNetwork::instance();
    QCOMPARE(mediator->thread(), qApp->thread());
    QObject context;
    connect(dispatcher, &VXNetworkAccessManagerSignalDispatcher::askIgnoreSSLErrors, &context,
            [mediator](const QString& theHost, const QStringList& theErrors, bool* theResult) {
                *theResult = mediator->askIgnoreSSLErrors(theHost, theErrors);
            });
    VXDialogVisitor user([](QDialog* theDialog) {
        QCOMPARE(QThread::currentThread(), qApp->thread());
        press(theDialog, QMessageBox::Yes);
    });

    bool isIgnored = false;
    QAtomicInt isDone;
    std::thread worker([&] {
        QMetaObject::invokeMethod(
            dispatcher,
            [&] { Q_EMIT dispatcher->askIgnoreSSLErrors(u"host"_s, {u"Fehler"_s}, &isIgnored); },
            Qt::BlockingQueuedConnection);
        isDone.storeRelease(1);
    });
    QTRY_COMPARE(isDone.loadAcquire(), 1);
    worker.join();
    QVERIFY(isIgnored);
}

namespace {

/// Remembers what is looked up as "context|text|disambiguation" and translates nothing.
class TranslatorProbe : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    QString translate(const char* theContext, const char* theText, const char* theDisambiguation,
                      int theNumber) const override
    {
        Q_UNUSED(theNumber)
        asked << QString::fromUtf8(theContext) + u'|' + QString::fromUtf8(theText) + u'|' +
                     QString::fromUtf8(theDisambiguation);
        return {};
    }

    mutable QStringList asked;
};

} // namespace

void tst_VXRequestNetwork::choicesTellTranslatorsWhatTheyAre()
{
    TranslatorProbe probe;
    QVERIFY(QCoreApplication::installTranslator(&probe));
    probe.asked.clear();
    VXDialogVisitor user([](QDialog* theDialog) { cancel(theDialog); });
    (void)VXRequestNetwork::instance()->handleNetworkError(error(3503));
    QCoreApplication::removeTranslator(&probe);

    for (const QString& wanted :
         {u"VXRequestNetwork|Netzwerkeinstellungen ändern...|CMDLNKTITLE"_s,
          u"VXRequestNetwork|Startet den Dialog \"Netzwerkeinstellungen\"|CMDLINKTEXT"_s,
          u"VXRequestNetwork|Noch einmal versuchen|CMDLNKTITLE"_s,
          u"VXRequestNetwork|Führt die Aktion noch einmal durch|CMDLINKTEXT"_s,
          u"VXRequestNetwork|<p>Wollen Sie es noch einmal versuchen?|"_s,
          u"VXRequestNetwork|Ein Fehler ist aufgetreten (%1)|"_s})
        QVERIFY2(probe.asked.contains(wanted), qPrintable(wanted));
}

void tst_VXRequestNetwork::closingIsNeverAnotherTry_data()
{
    QTest::addColumn<int>("code");

    QTest::newRow("countdown") << 1005;
    QTest::newRow("remote system") << 1000;
    QTest::newRow("connection") << 3503;
    QTest::newRow("critical") << 4;
    QTest::newRow("warning") << 5;
    QTest::newRow("payment") << 655;
}

void tst_VXRequestNetwork::closingIsNeverAnotherTry()
{
    QFETCH(int, code);
    VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(code)));
    QCOMPARE(user.count(), 1);
}

void tst_VXRequestNetwork::theDialogDiesWithItsParent()
{
    auto parent = std::make_unique<QWidget>();
    VXDialogVisitor user([&](QDialog*) { parent.reset(); });
    QVERIFY(!VXRequestNetwork::instance()->handleNetworkError(error(1005), parent.get()));
    QCOMPARE(parent.get(), nullptr);
}

VX_TEST_MAIN(QApplication, tst_VXRequestNetwork)

#include "tst_VXRequestNetwork.moc"
