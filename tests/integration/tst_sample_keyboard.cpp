// The sample's window without a mouse: letters, Tab, Return and Escape, and whether one sees where
// the keyboard is.

#include "VXDialogVisitor.h"
#include "VXSampleWindowTest.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <QtCore/QTranslator>
#include <QtGui/QImage>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int pageCount = 6;

/// The letter after "&" in lower case, and nothing without one.
QString letterOf(const QString& theText)
{
    const QKeySequence sequence = QKeySequence::mnemonic(theText);
    return sequence.isEmpty() ? QString() : theText.mid(theText.indexOf(u'&') + 1, 1).toLower();
}

/// The letters that Alt makes a shortcut of, with the text that has it.
QStringList lettersOf(const QList<QAction*>& theActions)
{
    QStringList letters;
    for (const QAction* action : theActions)
        letters << letterOf(action->text());
    letters.removeAll(QString());
    return letters;
}

QStringList twice(QStringList theLetters)
{
    theLetters.sort();
    QStringList doubles;
    for (qsizetype i = 1; i < theLetters.size(); ++i)
        if (theLetters.at(i) == theLetters.at(i - 1))
            doubles << theLetters.at(i);
    return doubles;
}

} // namespace

class tst_sample_keyboard : public VXSampleWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void noLetterIsGivenTwice_data();
    void noLetterIsGivenTwice();
    void everyInputHasALetter_data();
    void everyInputHasALetter();
    void menusOpenByTheirLetters();
    void tabGoesThroughThePageAsOneReads_data();
    void tabGoesThroughThePageAsOneReads();
    void backTabGoesTheWayBack();
    void webViewStandsBetweenAddressAndScript();
    void focusIsSeen_data();
    void focusIsSeen();
    void returnSends();
    void returnOrders();
    void returnLogsIn();
    void escapeLeavesEveryProblem();
    void escapeChangesNoSettings();
    void returnStoresTheSettings();
    void escapeLeavesTheLogin();
    void escapeClosesTheUpdateAndTheAboutBox();

private:
    void showPage(int thePage) const;
    [[nodiscard]] QWidget& page() const;
    [[nodiscard]] QList<QWidget*> stopsOfTab(Qt::KeyboardModifiers theModifiers) const;
    [[nodiscard]] QStringList visibleLetters() const;
};

void tst_sample_keyboard::initTestCase()
{
    // The customer's skin, for it draws where the keyboard is.
    VXDeploymentConfig::instance()->setValue(u"Assets/skin"_s,
                                             QStringLiteral(VX_SOURCE_DIR "/assets/skin.qss"));
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Light);
    VXSampleWindowTest::initTestCase();
}

void tst_sample_keyboard::showPage(int thePage) const
{
    part<QListWidget>(u"navigation"_s).setCurrentRow(thePage);
}

QWidget& tst_sample_keyboard::page() const
{
    return *part<QStackedWidget>(u"pages"_s).currentWidget();
}

/// Where Tab stops, from the list of pages on until it is there again.
QList<QWidget*> tst_sample_keyboard::stopsOfTab(Qt::KeyboardModifiers theModifiers) const
{
    constexpr int most = 60;
    auto& navigation = part<QListWidget>(u"navigation"_s);
    navigation.setFocus();
    QList<QWidget*> stops;
    while (stops.size() < most) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, theModifiers);
        if (QApplication::focusWidget() == &navigation)
            break;
        stops << QApplication::focusWidget();
    }
    return stops;
}

QStringList tst_sample_keyboard::visibleLetters() const
{
    QStringList letters = lettersOf(mySample->window().menuBar()->actions());
    for (const QAbstractButton* button : mySample->window().findChildren<QAbstractButton*>())
        if (!button->isHidden() && button->visibleRegion().isEmpty() == false)
            letters << letterOf(button->text());
    for (const QLabel* label : mySample->window().findChildren<QLabel*>())
        if (label->isVisible() && label->buddy())
            letters << letterOf(label->text());
    letters.removeAll(QString());
    return letters;
}

void tst_sample_keyboard::noLetterIsGivenTwice_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("page");

    for (const QString& language : {u"de"_s, u"en"_s})
        for (int page = 0; page < pageCount; ++page)
            QTest::addRow("%s, page %d", qPrintable(language), page) << language << page;
}

void tst_sample_keyboard::noLetterIsGivenTwice()
{
    QFETCH(QString, language);
    QFETCH(int, page);
    QTranslator translator;
    if (language == "en"_L1) {
        QVERIFY(translator.load(
            QStringLiteral(VX_BINARY_DIR "/share/VXNetworking/translations/VXNetworking_en.qm")));
        QCoreApplication::installTranslator(&translator);
        QVERIFY(mySample->open()); // the texts are those of the time when the window was made
    }
    showPage(page);
    // What appears only while something runs or after something went wrong counts, too.
    for (const QString& name : {u"cancelButton"_s, u"crashNotice"_s})
        for (QWidget* hidden : this->page().findChildren<QWidget*>(name))
            hidden->show();
    QCoreApplication::processEvents();

    const QStringList letters = visibleLetters();
    QVERIFY(letters.size() > 4);
    QCOMPARE(twice(letters), QStringList());
    for (const QMenu* menu : mySample->window().menuBar()->findChildren<QMenu*>())
        QCOMPARE(twice(lettersOf(menu->actions())), QStringList());
}

void tst_sample_keyboard::everyInputHasALetter_data()
{
    QTest::addColumn<int>("page");

    for (int page = 0; page < pageCount; ++page)
        QTest::addRow("page %d", page) << page;
}

/// A button has one of its own, a field one in its label or a name that is read out.
void tst_sample_keyboard::everyInputHasALetter()
{
    QFETCH(int, page);
    showPage(page);
    QList<QWidget*> named;
    for (const QLabel* label : this->page().findChildren<QLabel*>())
        if (label->buddy() && !letterOf(label->text()).isEmpty())
            named << label->buddy();
    for (QWidget* stop : stopsOfTab(Qt::NoModifier)) {
        if (!this->page().isAncestorOf(stop) ||
            stop->inherits("QtWebEngineCore::RenderWidgetHostViewQtDelegateWidget"))
            continue;
        const auto* button = qobject_cast<QAbstractButton*>(stop);
        const bool hasLetter = named.contains(stop) || !stop->accessibleName().isEmpty() ||
                               (button && !letterOf(button->text()).isEmpty());
        QVERIFY2(hasLetter, qPrintable(stop->objectName() + u' ' +
                                       QString::fromLatin1(stop->metaObject()->className())));
    }
}

void tst_sample_keyboard::menusOpenByTheirLetters()
{
    for (const QAction* action : mySample->window().menuBar()->actions()) {
        const QString letter = letterOf(action->text());
        QVERIFY2(!letter.isEmpty(), qPrintable(action->text()));
        QTest::keyClick(&mySample->window(), letter.at(0).toLatin1(), Qt::AltModifier);
        QTRY_VERIFY(action->menu()->isVisible());
        QTest::keyClick(action->menu(), Qt::Key_Escape);
        QTRY_VERIFY(!action->menu()->isVisible());
    }
}

void tst_sample_keyboard::tabGoesThroughThePageAsOneReads_data()
{
    everyInputHasALetter_data();
}

/// From the list through the page, never upwards, to the records and back.
void tst_sample_keyboard::tabGoesThroughThePageAsOneReads()
{
    QFETCH(int, page);
    showPage(page);
    const QList<QWidget*> stops = stopsOfTab(Qt::NoModifier);
    QVERIFY(stops.size() < 60);
    QList<QWidget*> onThePage;
    int lastRow = 0;
    for (QWidget* stop : stops) {
        if (!this->page().isAncestorOf(stop))
            continue;
        onThePage << stop;
        const int middle = stop->mapTo(&mySample->window(), stop->rect().center()).y();
        QVERIFY2(middle >= lastRow - stop->fontMetrics().height(), qPrintable(stop->objectName()));
        lastRow = middle;
    }
    // All of it, and the records after it.
    for (QWidget* widget : this->page().findChildren<QWidget*>()) {
        const bool isStop = widget->isVisible() && widget->isEnabled() && !widget->focusProxy() &&
                            (widget->focusPolicy() & Qt::TabFocus) != 0;
        QVERIFY2(!isStop || onThePage.contains(widget), qPrintable(widget->objectName()));
    }
    QVERIFY(!stops.isEmpty());
    QVERIFY(part<QTabWidget>(u"recordTabs"_s).isAncestorOf(stops.constLast()));
}

void tst_sample_keyboard::backTabGoesTheWayBack()
{
    QList<QWidget*> back = stopsOfTab(Qt::ShiftModifier);
    std::reverse(back.begin(), back.end());
    QCOMPARE(back, stopsOfTab(Qt::NoModifier));
}

/// The view is made later than the parts around it. In it, Tab goes from link to link first.
void tst_sample_keyboard::webViewStandsBetweenAddressAndScript()
{
    mySample->openPage(u"Webinhalte"_s);
    auto* const view = mySample->window().findChild<QWebEngineView*>();
    QVERIFY(QSignalSpy(view, &QWebEngineView::loadFinished).wait(20'000));
    const QWidget* const script = &part<QLineEdit>(u"scriptEdit"_s);
    QList<const QWidget*> chain;
    for (const QWidget* widget = &part<QLineEdit>(u"webAddressEdit"_s);
         widget != script && chain.size() < 1000; widget = widget->nextInFocusChain())
        chain << widget;
    QVERIFY(std::ranges::any_of(chain, [view](const QWidget* theWidget) {
        return theWidget == view || view->isAncestorOf(theWidget);
    }));
}

void tst_sample_keyboard::focusIsSeen_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("skin");

    for (int page = 0; page < pageCount; ++page) {
        QTest::addRow("page %d, light", page) << page << int{VXCSSSkinManager::Light};
        QTest::addRow("page %d, dark", page) << page << int{VXCSSSkinManager::Dark};
    }
}

void tst_sample_keyboard::focusIsSeen()
{
    QFETCH(int, page);
    QFETCH(int, skin);
    VXCSSSkinManager::instance()->setMode(skin);
    showPage(page);
    const QList<QWidget*> stops = stopsOfTab(Qt::NoModifier);
    for (QWidget* stop : stops) {
        if (stop->metaObject()->className() ==
            QByteArrayView("QtWebEngineCore::RenderWidgetHostViewQtDelegateWidget"))
            continue; // the page's own matter
        QWidget* const seen =
            qobject_cast<QLineEdit*>(stop) && stop->parentWidget() != &this->page()
                ? stop->parentWidget()
                : stop;
        stop->setFocus(Qt::TabFocusReason);
        QCoreApplication::processEvents();
        const QImage with = seen->grab().toImage();
        stop->clearFocus();
        QCoreApplication::processEvents();
        QVERIFY2(with != seen->grab().toImage(),
                 qPrintable(stop->objectName() + u' ' +
                            QString::fromLatin1(stop->metaObject()->className())));
    }
}

void tst_sample_keyboard::returnSends()
{
    QTest::keyClick(&part<QLineEdit>(u"addressEdit"_s), Qt::Key_Return);
    QVERIFY(mySample->shown(u"outcomeHeadline"_s).startsWith(u"Erfolgreich: Status 200, "_s));
}

void tst_sample_keyboard::returnOrders()
{
    mySample->openPage(u"Bestellung"_s);
    QTest::keyClick(&part<QLineEdit>(u"couponEdit"_s), Qt::Key_Return);
    QVERIFY(mySample->shown(u"outcomeHeadline"_s).startsWith(u"Die Bestellung ist angekommen"_s));
}

void tst_sample_keyboard::returnLogsIn()
{
    mySample->openPage(u"Anmeldung"_s);
    auto& password = part<QLineEdit>(u"passwordEdit"_s);
    QTest::keyClicks(&password, u"demo"_s);
    QTest::keyClick(&password, Qt::Key_Return);
    QCOMPARE(mySample->shown(u"sessionState"_s), u"Sitzung: offen"_s);
}

void tst_sample_keyboard::escapeLeavesEveryProblem()
{
    mySample->openPage(u"Netzwerkprobleme"_s);
    auto& list = part<QListWidget>(u"problemList"_s);
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        // While a countdown keeps its button, Escape waits with it.
        QTRY_VERIFY(
            theDialog->findChildren<QPushButton*>().isEmpty() ||
            std::ranges::any_of(theDialog->findChildren<QPushButton*>(), &QWidget::isEnabled));
        QTest::keyClick(theDialog, Qt::Key_Escape);
    });
    for (int row = 0; row < list.count(); ++row) {
        list.setCurrentRow(row);
        const int before = visitor.count();
        QTest::keyClick(&part<QPushButton>(u"causeButton"_s), Qt::Key_Space);
        QVERIFY2(visitor.count() > before, qPrintable(list.item(row)->text()));
    }
}

void tst_sample_keyboard::escapeChangesNoSettings()
{
    VXNetworkSettings& settings = *VXNetworkSettings::instance();
    const VXProxyChoice before = settings.proxyChoice();
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        for (QRadioButton* choice : theDialog->findChildren<QRadioButton*>())
            if (!choice->isChecked())
                QTest::keyClick(choice, Qt::Key_Space);
        QTest::keyClick(theDialog, Qt::Key_Escape);
    });
    QTest::keyClick(&mySample->window(), Qt::Key_Comma, Qt::ControlModifier);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(settings.proxyChoice(), before);
}

void tst_sample_keyboard::returnStoresTheSettings()
{
    VXNetworkSettings& settings = *VXNetworkSettings::instance();
    const VXProxyChoice before = settings.proxyChoice();
    const VXProxyChoice wanted = before == ProxyChoiceSystem ? ProxyChoiceNone : ProxyChoiceSystem;
    const QString label =
        wanted == ProxyChoiceSystem ? u"System-Proxy benutzen"_s : u"Keinen Proxy benutzen"_s;
    const VXDialogVisitor visitor([&label](QDialog* theDialog) {
        for (QRadioButton* choice : theDialog->findChildren<QRadioButton*>())
            if (choice->text() == label)
                QTest::keyClick(choice, Qt::Key_Space);
        QTest::keyClick(theDialog, Qt::Key_Return);
    });
    QTest::keyClick(&mySample->window(), Qt::Key_Comma, Qt::ControlModifier);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(settings.proxyChoice(), wanted);
    settings.setProxyChoice(before);
}

void tst_sample_keyboard::escapeLeavesTheLogin()
{
    mySample->openPage(u"Anmeldung"_s);
    const VXDialogVisitor visitor(
        [](QDialog* theDialog) { QTest::keyClick(theDialog, Qt::Key_Escape); });
    QTest::keyClick(&part<QPushButton>(u"embeddedButton"_s), Qt::Key_Space);
    QCOMPARE(visitor.count(), 1);
    QCOMPARE(mySample->shown(u"outcomeHeadline"_s), u"Die Anmeldung wurde nicht abgeschlossen."_s);
}

void tst_sample_keyboard::escapeClosesTheUpdateAndTheAboutBox()
{
    const VXDialogVisitor visitor(
        [](QDialog* theDialog) { QTest::keyClick(theDialog, Qt::Key_Escape); });
    QVERIFY(mySample->chooseFromMenu(u"about"_s));
    QVERIFY(mySample->chooseFromMenu(u"update"_s));
    QCOMPARE(visitor.count(), 2);
}

VX_TEST_MAIN(QApplication, tst_sample_keyboard)
#include "tst_sample_keyboard.moc"
