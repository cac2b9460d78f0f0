#include <VXCore/VXSettings.h>
#include <VXCore/VXSettingsLock.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <atomic>
#include <future>
#include <thread>

using namespace Qt::StringLiterals;

class tst_VXSettingsLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void isRecursive();
    void keepsOtherThreadsOut();
    void outermostLockWritesTheFile();

private:
    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXSettingsLock::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    VXSettings::setStoreFile(myFolder->filePath(u"settings.ini"_s));
}

void tst_VXSettingsLock::isRecursive()
{
    const VXSettingsLock outer;
    const VXSettingsLock inner;
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, 1));
    QCOMPARE(settings.value(u"key"_s).toInt(), 1);
}

void tst_VXSettingsLock::keepsOtherThreadsOut()
{
    std::atomic<bool> isReleased = false;
    std::promise<void> isAboutToAsk;
    std::future<bool> wasReleased;
    {
        const VXSettingsLock lock;
        wasReleased = std::async(std::launch::async, [&isReleased, &isAboutToAsk] {
            isAboutToAsk.set_value();
            const VXSettingsLock inner;
            return isReleased.load();
        });
        isAboutToAsk.get_future().wait();
        VXSettings settings;
        for (int number = 0; number < 50; ++number) // time enough for a thread that does not wait
            QVERIFY(settings.writeEntry(u"key%1"_s.arg(number), number));
        isReleased = true;
    }
    QVERIFY(wasReleased.get());
}

void tst_VXSettingsLock::outermostLockWritesTheFile()
{
    const auto content = [] {
        QFile file(VXSettings::storeFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    };
    VXSettings settings;
    {
        const VXSettingsLock outer;
        {
            const VXSettingsLock inner;
            QVERIFY(settings.writeEntry(u"key"_s, u"value"_s));
        }
        QVERIFY(!content().contains("key=value"));
    }
    QVERIFY(content().contains("key=value"));
}

VX_TEST_MAIN(QCoreApplication, tst_VXSettingsLock)

#include "tst_VXSettingsLock.moc"
