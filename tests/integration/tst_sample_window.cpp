#include "VXDialogVisitor.h"
#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSampleMainWindow.h"
#include "VXSampleOutput.h"
#include "VXSampleQuestions.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <VXCore/VXInitializer.h>
#include <VXCore/VXInitializerOption.h>
#include <VXGUIWidgets/VXRequest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTableView>

#include <memory>

using namespace Qt::StringLiterals;

/// The main window as a person uses it, against a real simulator.
class tst_sample_window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

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

private:
    template <typename Widget>
    Widget& part(const QString& theName) const;
    [[nodiscard]] QString shown(const QString& theName) const;
    void openPage(const QString& theTitle);

    std::unique_ptr<VXSimulatorProcess> mySimulatorProcess;
    VXSampleOptions myOptions;
    VXSampleOutput myOutput;
    std::unique_ptr<VXSampleSimulator> mySimulator;
    std::unique_ptr<VXSampleAnswers> myAnswers;
    std::unique_ptr<VXSampleQuestions> myQuestions;
    std::unique_ptr<VXSampleContext> myContext;
    std::unique_ptr<VXSampleMainWindow> myWindow;
};

void tst_sample_window::initTestCase()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless); // the engine's, as a host
    mySimulatorProcess = std::make_unique<VXSimulatorProcess>();
    QVERIFY2(mySimulatorProcess->errorText().isEmpty(),
             qPrintable(mySimulatorProcess->errorText()));
    mySimulator = std::make_unique<VXSampleSimulator>(mySimulatorProcess->readyFile());
    QVERIFY2(mySimulator->open(), qPrintable(mySimulator->errorText()));
    myAnswers = std::make_unique<VXSampleAnswers>(myOutput);
    myAnswers->setUserIsThere(true);
    VXRequest::setDialogDriver(myAnswers.get());
    myQuestions = std::make_unique<VXSampleQuestions>();
    myContext = std::make_unique<VXSampleContext>(
        VXSampleContext{myOptions, myOutput, *mySimulator, *myAnswers});
}

void tst_sample_window::init()
{
    myWindow = std::make_unique<VXSampleMainWindow>(*myContext);
    myWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(myWindow.get()));
}

void tst_sample_window::cleanup()
{
    myWindow.reset();
}

template <typename Widget>
Widget& tst_sample_window::part(const QString& theName) const
{
    // The same part may be on several pages; the one in view is meant.
    const auto parts = myWindow->findChildren<Widget*>(theName);
    for (Widget* widget : parts)
        if (widget->isVisible())
            return *widget;
    return *parts.constFirst();
}

QString tst_sample_window::shown(const QString& theName) const
{
    return part<QLabel>(theName).text();
}

void tst_sample_window::openPage(const QString& theTitle)
{
    auto& navigation = part<QListWidget>(u"navigation"_s);
    const auto items = navigation.findItems(theTitle, Qt::MatchExactly);
    QCOMPARE(items.size(), 1);
    navigation.setCurrentItem(items.constFirst());
}

void tst_sample_window::everyPageIsReachedByKeyboard()
{
    auto& navigation = part<QListWidget>(u"navigation"_s);
    navigation.setFocus();
    const auto* const pages = myWindow->findChild<QStackedWidget*>(u"pages"_s);
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
    const QSize least = myWindow->minimumSizeHint();
    QVERIFY2(least.width() <= 1366, qPrintable(QString::number(least.width())));
    QVERIFY2(least.height() <= 728, qPrintable(QString::number(least.height()))); // with a task bar
    QVERIFY(myWindow->height() <= 728);
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

    auto* const bar = myWindow->findChild<QProgressBar*>(u"exchangeProgress"_s);
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
    openPage(u"Bestellung"_s);
    part<QSpinBox>(u"errorCodeBox"_s).setValue(70);
    part<QLineEdit>(u"couponEdit"_s).setText(u"X1"_s);
    part<QPushButton>(u"orderButton"_s).click();
    QVERIFY(shown(u"outcomeHeadline"_s).contains(u"Gutscheincode"_s));
    QVERIFY(shown(u"outcomeDetails"_s).contains(u"Fehlercode: 70"_s));
}

void tst_sample_window::successfulOrderIsConfirmed()
{
    openPage(u"Bestellung"_s);
    part<QPushButton>(u"orderButton"_s).click();
    QVERIFY(shown(u"outcomeHeadline"_s).startsWith(u"Die Bestellung ist angekommen"_s));
}

void tst_sample_window::textOfACodeIsLookedUp()
{
    openPage(u"Netzwerkprobleme"_s);
    part<QSpinBox>(u"codeBox"_s).setValue(3503);
    part<QPushButton>(u"codeButton"_s).click();
    QCOMPARE(shown(u"outcomeHeadline"_s),
             u"Der Servername konnte nicht gefunden werden (ungültiger Servername).<br>"_s);
}

void tst_sample_window::problemBringsItsDialog()
{
    openPage(u"Netzwerkprobleme"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->reject(); });
    part<QListWidget>(u"problemList"_s).setCurrentRow(0); // no connection
    part<QPushButton>(u"causeButton"_s).click();
    QCOMPARE(visitor.count(), 1);
}

void tst_sample_window::sessionIsOpenedRenewedAndClosed()
{
    openPage(u"Anmeldung"_s);
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
    openPage(u"Anmeldung"_s);
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
    openPage(u"Fotos vom Telefon"_s);
    QVERIFY(!myWindow->findChild<QListWidget*>(u"photoList"_s)->isVisible());
}

void tst_sample_window::closingEndsTheExchange()
{
    part<QLineEdit>(u"addressEdit"_s).setText(u"/never"_s);
    auto& cancel = part<QPushButton>(u"cancelButton"_s);
    QTimer user;
    connect(&user, &QTimer::timeout, &cancel, [this, &cancel] {
        if (cancel.isVisible())
            myWindow->close();
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
    auto* const german = myWindow->findChild<QAction*>(u"language-de"_s);
    auto* const english = myWindow->findChild<QAction*>(u"language-en"_s);
    (english->isChecked() ? german : english)->trigger();
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(question, u"Die Sprache wechselt mit einem Neustart. Jetzt neu starten?"_s);
}

VX_TEST_MAIN(QApplication, tst_sample_window)
#include "tst_sample_window.moc"
