// The network page in a window on a real X server, worked by keyboard, with the settings read in a
// second process.

#include "VXProbe.h"

#include <VXGUIWidgets/VXDialogBase.h>
#include <VXGUIWidgets/VXDialogConfig.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXPreferencesProxy.h>

#include <QtNetwork/QNetworkProxy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// The preferences dialog of an application, with this page only.
class Window : public VXDialogBase
{
public:
    Window()
    {
        VXDialogConfig config;
        config.standardButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
        config.defaultButton = QDialogButtonBox::Ok;
        setupDialog(config);
        page = new VXPreferencesProxy(usableWidget());
        auto* layout = new QVBoxLayout(usableWidget());
        layout->addWidget(page);
        page->readFromConfig();
    }

    void accept() override
    {
        page->writeToConfig();
        VXDialogBase::accept();
    }

    VXPreferencesProxy* page = nullptr; // child of this
};

/// Shows the window with the keyboard's focus, which no window manager gives it here.
bool activate(QWidget& theWindow)
{
    theWindow.show();
    if (!QTest::qWaitForWindowExposed(&theWindow))
        return false;
    theWindow.activateWindow();
    return QTest::qWaitForWindowActive(&theWindow);
}

QString focusName()
{
    const QWidget* widget = QApplication::focusWidget();
    if (widget == nullptr)
        return {};
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button != nullptr ? button->text() : widget->objectName();
}

/// The names of what the Tab key reaches, from the widget that has the focus, until it is back.
QStringList walk(int theMost = 20)
{
    QStringList names;
    const QWidget* first = QApplication::focusWidget();
    for (int i = 0; i < theMost; ++i) {
        names << focusName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget() == first)
            break;
    }
    return names;
}

int printSettings()
{
    const auto* settings = VXNetworkSettings::instance();
    VXProbe::print(settings->proxyChoice().encode());
    VXProbe::print(settings->proxyHostName());
    VXProbe::print(QString::number(settings->proxyPort()));
    VXProbe::print(QString::number(settings->proxyType()));
    VXProbe::print(settings->proxyUser());
    VXProbe::print(settings->proxyPassword());
    return 0;
}

} // namespace

class tst_dialog_preferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void tabReachesEveryEnabledControlInOrder();
    void arrowsMoveBetweenTheChoices();
    void portsAboveTheLimitCannotBeTyped();
    void whatIsTypedReachesTheNextProcess();
    void escapeChangesNothing();
};

void tst_dialog_preferences::initTestCase()
{
    QCOMPARE(QApplication::platformName(), u"xcb"_s);
}

void tst_dialog_preferences::tabReachesEveryEnabledControlInOrder()
{
    Window window;
    QVERIFY(activate(window));
    window.page->setChoice(ProxyChoiceNone);
    auto* none = window.page->findChildren<QRadioButton*>().at(0);
    none->setFocus();
    QCOMPARE(walk(), (QStringList{u"Keinen Proxy benutzen"_s, u"OK"_s, u"Abbrechen"_s}));

    window.page->setChoice(ProxyChoiceManual);
    window.page->findChildren<QRadioButton*>().at(2)->setFocus();
    QCOMPARE(walk(),
             (QStringList{u"Eigenen Proxy benutzen"_s, u"proxyEdit"_s, u"portBox"_s, u"typeBox"_s,
                          u"loginEdit"_s, u"passwordEdit"_s, u"OK"_s, u"Abbrechen"_s}));
}

void tst_dialog_preferences::arrowsMoveBetweenTheChoices()
{
    Window window;
    QVERIFY(activate(window));
    window.page->setChoice(ProxyChoiceNone);
    auto* own = window.page->findChild<QWidget*>(u"myProxyWidget"_s);
    window.page->findChildren<QRadioButton*>().at(0)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(window.page->choice().value(), ProxyChoiceSystem);
    QVERIFY(!own->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(window.page->choice().value(), ProxyChoiceManual);
    QVERIFY(own->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QVERIFY(!own->isEnabled());
}

void tst_dialog_preferences::portsAboveTheLimitCannotBeTyped()
{
    Window window;
    QVERIFY(activate(window));
    window.page->setChoice(ProxyChoiceManual);
    auto* port = window.page->findChild<QSpinBox*>(u"portBox"_s);
    port->setFocus();
    port->selectAll();
    QTest::keyClicks(port, u"65535"_s);
    QCOMPARE(window.page->port(), 65535);
    QTest::keyClick(port, Qt::Key_Up);
    QCOMPARE(window.page->port(), 65535);
    port->selectAll();
    QTest::keyClicks(port, u"65536"_s); // the last digit is refused
    QCOMPARE(window.page->port(), 6553);
}

void tst_dialog_preferences::whatIsTypedReachesTheNextProcess()
{
    Window window;
    QVERIFY(activate(window));
    window.page->findChildren<QRadioButton*>().at(2)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    const auto type = [&](const QString& theName, const QString& theText) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(focusName(), theName);
        QTest::keyClicks(QApplication::focusWidget(), theText);
    };
    type(u"proxyEdit"_s, u"proxy.test"_s);
    type(u"portBox"_s, u"3128"_s);
    type(u"typeBox"_s, u"S"_s); // Socks5
    type(u"loginEdit"_s, u"karin"_s);
    type(u"passwordEdit"_s, u"geheim;,"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!window.isVisible());
    QCOMPARE(VXProbe::run(u"settings"_s),
             (QStringList{u"my"_s, u"proxy.test"_s, u"3128"_s, u"1"_s, u"karin"_s, u"geheim;,"_s}));
}

void tst_dialog_preferences::escapeChangesNothing()
{
    const QStringList before = VXProbe::run(u"settings"_s);
    Window window;
    QVERIFY(activate(window));
    QCOMPARE(window.page->proxy(), u"proxy.test"_s); // read from the settings
    window.page->setProxy(u"anders.test"_s);
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(VXProbe::run(u"settings"_s), before);
}

VX_PROBE_TEST_MAIN(QApplication, tst_dialog_preferences, {u"settings"_s, printSettings})

#include "tst_dialog_preferences.moc"
