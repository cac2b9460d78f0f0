#include "VXChannelPage.h"
#include "VXHoldings.h"
#include "VXTestMain.h"
#include "VXWizardScreen.h"

#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;
constexpr int patience = 60'000; // milliseconds

} // namespace

/// A page that is loaded again and again must not leave anything behind.
class tst_web_channel_memory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reloadsLeaveNothingBehind();
};

void tst_web_channel_memory::reloadsLeaveNothingBehind()
{
    VXWebSocketCommunication communication(u"order"_s);
    VXWizardScreen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    VXChannelPage page;
    QVERIFY(page.open(VXChannelPage::orderUrl(communication.addServerParameter({}))));
    QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);

    const auto reloadUntil = [&](int theCount) {
        while (screen.readyCount < theCount) {
            const int before = screen.readyCount;
            page.triggerAction(QWebEnginePage::Reload);
            QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, before + 1, patience);
        }
    };
    reloadUntil(100);
    const VXHoldings before = VXHoldings::now();
    reloadUntil(300);
    const VXHoldings growth = VXHoldings::now().since(before);

    qInfo() << "200 loads after 100:" << growth.memory / 1024 << "KiB," << growth.descriptors
            << "descriptors," << growth.sockets << "sockets";
    QCOMPARE_LE(growth.sockets, 0);
    QCOMPARE_LE(growth.descriptors, 0);
    if (VXHoldings::isMemoryMeasurable)
        QCOMPARE_LE(growth.memory, 2 * mebibyte);
}

static const bool isPrepared = VXChannelPage::prepare();

VX_TEST_MAIN(QApplication, tst_web_channel_memory)
#include "tst_web_channel_memory.moc"
