#include "VXChannelPage.h"
#include "VXTestMain.h"
#include "VXWizardScreen.h"

#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtWidgets/QApplication>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;
constexpr int patience = 60'000; // milliseconds

#ifdef __SANITIZE_ADDRESS__
constexpr bool isMeasurable = false; // what was freed stays in quarantine
#else
constexpr bool isMeasurable = true;
#endif

/// What this process holds.
struct Usage
{
    qint64 bytes = 0; // in memory
    int descriptors = 0;
    int sockets = 0;
};

qint64 bytesInMemory()
{
    malloc_trim(0); // freed but not yet returned memory is no growth
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').value(1).toLongLong() * 4096;
}

Usage usage()
{
    Usage found{.bytes = bytesInMemory()};
    const QDir folder(u"/proc/self/fd"_s);
    for (const QString& name : folder.entryList(QDir::AllEntries | QDir::System)) {
        const QString target = QFile::symLinkTarget(folder.filePath(name));
        ++found.descriptors;
        found.sockets += target.contains("socket:"_L1) ? 1 : 0;
    }
    return found;
}

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
    const Usage before = usage();
    reloadUntil(300);
    const Usage after = usage();

    qInfo() << "after 100 loads:" << before.bytes / 1024 << "KiB," << before.descriptors
            << "descriptors," << before.sockets << "sockets; after 300:" << after.bytes / 1024
            << "KiB," << after.descriptors << "descriptors," << after.sockets << "sockets";
    QCOMPARE_LE(after.sockets, before.sockets);
    QCOMPARE_LE(after.descriptors, before.descriptors);
    if (isMeasurable)
        QCOMPARE_LE(after.bytes - before.bytes, 2 * mebibyte);
}

static const bool isPrepared = VXChannelPage::prepare();

VX_TEST_MAIN(QApplication, tst_web_channel_memory)
#include "tst_web_channel_memory.moc"
