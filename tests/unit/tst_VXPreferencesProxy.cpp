#include <VXNetworking/VXPreferencesProxy.h>

#include <VXCore/VXSettings.h>
#include <VXNetworking/VXNetworkSettings.h>

#include "VXTestMain.h"

#include <QtCore/QFile>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSpinBox>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

QRadioButton* buttonOf(const VXPreferencesProxy& thePage, const QString& theText)
{
    const auto buttons = thePage.findChildren<QRadioButton*>();
    for (auto* button : buttons) {
        if (button->text() == theText)
            return button;
    }
    return nullptr;
}

} // namespace

class tst_VXPreferencesProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsStandAsOrdered();
    void typesStandInOrderWithTheirData();
    void labelsAndControlsShareTheirRows();
    void onlyTheOwnProxyEnablesTheControls();
    void theSignalTellsOfTheOwnProxy();
    void anUnknownChoiceChangesNothing();
    void anUnknownTypeLeavesTheBoxAlone();
    void aStoredTypeThatIsNotOfferedLeavesTheBoxAlone();
    void thePortBoxRefusesValuesAbove65535();
    void thePasswordIsHidden();
    void thePageNeverBlocksLeaving();
    void whatIsWrittenIsReadBack();
    void aPasswordNeverMeetsAnotherProxy();
};

void tst_VXPreferencesProxy::textsStandAsOrdered()
{
    const VXPreferencesProxy page;
    QCOMPARE(page.title(), u"Proxy Einstellungen"_s);
    QStringList buttons;
    const auto allButtons = page.findChildren<QRadioButton*>();
    for (const auto* button : allButtons)
        buttons << button->text();
    QCOMPARE(buttons, (QStringList{u"Keinen Proxy benutzen"_s, u"System-Proxy benutzen"_s,
                                   u"Eigenen Proxy benutzen"_s}));
    QStringList labels;
    const auto allLabels = page.findChildren<QLabel*>();
    for (const auto* label : allLabels)
        labels << label->text();
    labels.sort();
    QCOMPARE(labels,
             (QStringList{
                 u"Falls Ihr Provider einen HTTP-Proxy vorsieht, können Sie ihn hier angeben:"_s,
                 u"Login"_s, u"Password"_s, u"Port"_s, u"Proxy"_s, u"Typ"_s}));
}

void tst_VXPreferencesProxy::typesStandInOrderWithTheirData()
{
    const VXPreferencesProxy page;
    QComboBox box;
    box.addItem(u"alt"_s);
    page.fillProxyTypeBox(&box);
    QCOMPARE(box.count(), 3);
    QCOMPARE(box.itemText(0), u"HTTP"_s);
    QCOMPARE(box.itemData(0).toInt(), 3);
    QCOMPARE(box.itemText(1), u"HTTP Caching"_s);
    QCOMPARE(box.itemData(1).toInt(), 4);
    QCOMPARE(box.itemText(2), u"Socks5"_s);
    QCOMPARE(box.itemData(2).toInt(), 1);
}

void tst_VXPreferencesProxy::labelsAndControlsShareTheirRows()
{
    const VXPreferencesProxy page;
    const auto* grid = page.findChild<QWidget*>(u"myProxyWidget"_s)->findChild<QGridLayout*>();
    QCOMPARE(grid->contentsMargins(), QMargins(25, 0, 0, 0));
    QCOMPARE(grid->itemAtPosition(0, 1)->widget()->objectName(), u"proxyEdit"_s);
    QCOMPARE(grid->itemAtPosition(0, 3)->widget()->objectName(), u"portBox"_s);
    QCOMPARE(grid->itemAtPosition(0, 5)->widget()->objectName(), u"typeBox"_s);
    QCOMPARE(grid->itemAtPosition(1, 1)->widget()->objectName(), u"loginEdit"_s);
    QCOMPARE(grid->itemAtPosition(2, 1)->widget()->objectName(), u"passwordEdit"_s);

    struct Place
    {
        int row;
        int column;
        QString text;
    };
    for (const Place& place :
         {Place{0, 0, u"Proxy"_s}, Place{0, 2, u"Port"_s}, Place{0, 4, u"Typ"_s},
          Place{1, 0, u"Login"_s}, Place{2, 0, u"Password"_s}}) {
        const auto* label =
            qobject_cast<QLabel*>(grid->itemAtPosition(place.row, place.column)->widget());
        QCOMPARE(label->text(), place.text);
        QCOMPARE(label->buddy(), grid->itemAtPosition(place.row, place.column + 1)->widget());
    }
}

void tst_VXPreferencesProxy::onlyTheOwnProxyEnablesTheControls()
{
    const VXPreferencesProxy page;
    const QList<QWidget*> controls{
        page.findChild<QWidget*>(u"proxyEdit"_s), page.findChild<QWidget*>(u"portBox"_s),
        page.findChild<QWidget*>(u"typeBox"_s), page.findChild<QWidget*>(u"loginEdit"_s),
        page.findChild<QWidget*>(u"passwordEdit"_s)};
    const auto areEnabled = [&](bool theExpected) {
        return std::all_of(controls.begin(), controls.end(), [theExpected](QWidget* theControl) {
            return theControl->isEnabled() == theExpected;
        });
    };
    QVERIFY(areEnabled(false));
    buttonOf(page, u"Eigenen Proxy benutzen"_s)->click();
    QVERIFY(areEnabled(true));
    buttonOf(page, u"System-Proxy benutzen"_s)->click();
    QVERIFY(areEnabled(false));
    buttonOf(page, u"Eigenen Proxy benutzen"_s)->click();
    buttonOf(page, u"Keinen Proxy benutzen"_s)->click();
    QVERIFY(areEnabled(false));
}

void tst_VXPreferencesProxy::theSignalTellsOfTheOwnProxy()
{
    VXPreferencesProxy page;
    QSignalSpy enabled(&page, &VXPreferencesProxy::enableProxyControlls);
    page.setChoice(ProxyChoiceManual);
    page.setChoice(ProxyChoiceNone);
    QCOMPARE(enabled.count(), 2);
    QCOMPARE(enabled.at(0).at(0).toBool(), true);
    QCOMPARE(enabled.at(1).at(0).toBool(), false);
}

void tst_VXPreferencesProxy::anUnknownChoiceChangesNothing()
{
    VXPreferencesProxy page;
    page.setChoice(ProxyChoiceSystem);
    page.setChoice(static_cast<VXProxyChoiceEnum>(7));
    QCOMPARE(page.choice().value(), 1);
}

void tst_VXPreferencesProxy::anUnknownTypeLeavesTheBoxAlone()
{
    VXPreferencesProxy page;
    page.setProxyType(QNetworkProxy::Socks5Proxy);
    page.setProxyType(QNetworkProxy::NoProxy);
    QCOMPARE(page.proxyType(), QNetworkProxy::Socks5Proxy);
    page.setProxyType(QNetworkProxy::HttpCachingProxy);
    QCOMPARE(page.proxyType(), QNetworkProxy::HttpCachingProxy);
}

void tst_VXPreferencesProxy::aStoredTypeThatIsNotOfferedLeavesTheBoxAlone()
{
    auto* const settings = VXNetworkSettings::instance();
    settings->setProxyHostName(u"stored.test"_s);
    settings->setProxyType(QNetworkProxy::FtpCachingProxy);
    VXPreferencesProxy page;
    page.setProxyType(QNetworkProxy::Socks5Proxy);
    page.readFromConfig();
    QCOMPARE(page.proxy(), u"stored.test"_s); // it was read
    QCOMPARE(page.proxyType(), QNetworkProxy::Socks5Proxy);
}

void tst_VXPreferencesProxy::thePortBoxRefusesValuesAbove65535()
{
    VXPreferencesProxy page;
    page.setPort(65536);
    QCOMPARE(page.port(), 65535);
    page.setPort(-1);
    QCOMPARE(page.port(), 0);
    auto* box = page.findChild<QSpinBox*>(u"portBox"_s);
    box->setEnabled(true);
    box->parentWidget()->setEnabled(true);
    box->setValue(0);
    QTest::keyClicks(box, u"65536"_s);
    QVERIFY(box->value() <= 65535);
}

void tst_VXPreferencesProxy::thePasswordIsHidden()
{
    const VXPreferencesProxy page;
    QCOMPARE(page.findChild<QLineEdit*>(u"passwordEdit"_s)->echoMode(), QLineEdit::Password);
    QCOMPARE(page.findChild<QLineEdit*>(u"loginEdit"_s)->echoMode(), QLineEdit::Normal);
}

void tst_VXPreferencesProxy::thePageNeverBlocksLeaving()
{
    VXPreferencesProxy page;
    QVERIFY(page.checkLeaveCondition());
}

void tst_VXPreferencesProxy::whatIsWrittenIsReadBack()
{
    VXPreferencesProxy page;
    page.setChoice(ProxyChoiceManual);
    page.setProxy(u"proxy.test"_s);
    page.setPort(3128);
    page.setProxyType(QNetworkProxy::Socks5Proxy);
    page.setProxyLogin(u"karl"_s);
    page.setProxyPassword(u"geheim;,\"ä"_s);
    page.writeToConfig();

    QFile file(VXSettings::storeFile());
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QByteArray stored = file.readAll();
    QVERIFY(stored.contains("ProxyChoice=my"));
    QVERIFY(!stored.contains("geheim"));

    VXPreferencesProxy other;
    other.readFromConfig();
    QCOMPARE(other.choice().value(), 2);
    QCOMPARE(other.proxy(), u"proxy.test"_s);
    QCOMPARE(other.port(), 3128);
    QCOMPARE(other.proxyType(), QNetworkProxy::Socks5Proxy);
    QCOMPARE(other.proxyLogin(), u"karl"_s);
    QCOMPARE(other.proxyPassword(), u"geheim;,\"ä"_s);
    QVERIFY(other.findChild<QWidget*>(u"proxyEdit"_s)->isEnabled());
}

void tst_VXPreferencesProxy::aPasswordNeverMeetsAnotherProxy()
{
    VXPreferencesProxy page;
    page.setChoice(ProxyChoiceManual);
    const auto write = [&page](const QString& theName) {
        page.setProxy(theName);
        page.setProxyPassword(theName);
        page.writeToConfig();
    };
    write(u"first.test"_s);

    std::atomic<bool> isDone = false;
    std::atomic<int> mixed = 0;
    std::thread requests([&isDone, &mixed] {
        while (!isDone) {
            const QNetworkProxy proxy = VXNetworkSettings::instance()->proxy();
            if (proxy.hostName() != proxy.password())
                ++mixed;
        }
    });
    for (int round = 0; round < 200; ++round)
        write(round % 2 == 0 ? u"second.test"_s : u"first.test"_s);
    isDone = true;
    requests.join();
    QCOMPARE(mixed.load(), 0);
}

VX_TEST_MAIN(QApplication, tst_VXPreferencesProxy)

#include "tst_VXPreferencesProxy.moc"
