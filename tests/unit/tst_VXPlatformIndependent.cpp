#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXPlatformIndependent.h>

#include "VXInputWindow.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

VXPlatformIndependent* platform()
{
    return VXPlatformIndependent::instance();
}

void configure(const QString& theKey, const QString& theValue)
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(theKey, theValue));
}

class Recorder : public VXPlatformIndependent
{
public:
    void fileWritten(const QFileInfo& theFile) override { written += theFile.fileName(); }

    QStringList written;
};

} // namespace

class tst_VXPlatformIndependent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAreNoUnlessTheDeploymentSaysYes_data();
    void answersAreNoUnlessTheDeploymentSaysYes();
    void hostValuesAreEmptyUnlessDeployed();
    void wifiNameIsThatOfTheDeployment();
    void openerGetsTheEncodedAddress();
    void openerThatCannotBeStartedIsReported();
    void sleepInTheApplicationThreadLetsEventsRun();
    void sleepInTheApplicationThreadHoldsInputBack();
    void sleepInAnotherThreadWaits();
    void noTimeIsNoWait();
    void sleepIsCutShortByTheEndOfTheApplication();
    void hostMayInstallItsOwn();
};

void tst_VXPlatformIndependent::answersAreNoUnlessTheDeploymentSaysYes_data()
{
    using Question = bool (VXPlatformIndependent::*)() const;
    QTest::addColumn<QString>("key");
    QTest::addColumn<Question>("question");

    QTest::newRow("certificates") << u"Platform/platformCertificatesOnly"_s
                                  << &VXPlatformIndependent::usesPlatformCertificatesOnly;
    QTest::newRow("https") << u"Platform/forceHttps"_s << &VXPlatformIndependent::forcesHttps;
    QTest::newRow("HTTP/2") << u"Platform/allowHttp2"_s << &VXPlatformIndependent::allowsHttp2;
}

void tst_VXPlatformIndependent::answersAreNoUnlessTheDeploymentSaysYes()
{
    using Question = bool (VXPlatformIndependent::*)() const;
    QFETCH(QString, key);
    QFETCH(Question, question);
    QVERIFY(!(platform()->*question)());
    configure(key, u"true"_s);
    QVERIFY((platform()->*question)());
    configure(key, u"false"_s);
    QVERIFY(!(platform()->*question)());
}

void tst_VXPlatformIndependent::hostValuesAreEmptyUnlessDeployed()
{
    QCOMPARE(platform()->mapTileHostFragment(), QString());
    QCOMPARE(platform()->analyticsHostFragment(), QString());
    QCOMPARE(platform()->downloadServerUrl(), QUrl());
    configure(u"Hosts/mapTileHostFragment"_s, u"tiles.example"_s);
    configure(u"Hosts/analyticsHostFragment"_s, u"stats.example"_s);
    configure(u"Hosts/downloadServerUrl"_s, u"https://dl.example/"_s);
    QCOMPARE(platform()->mapTileHostFragment(), u"tiles.example"_s);
    QCOMPARE(platform()->analyticsHostFragment(), u"stats.example"_s);
    QCOMPARE(platform()->downloadServerUrl(), QUrl(u"https://dl.example/"_s));
}

void tst_VXPlatformIndependent::wifiNameIsThatOfTheDeployment()
{
    QVERIFY(VXDeploymentConfig::instance()->setList(
        u"Platform/wifiNames"_s, {u"vxtest0=Heim=oben, 1"_s, u"vxtest01=Gast"_s}));
    QCOMPARE(platform()->wifiNameForInterface(u"vxtest0"_s), u"Heim=oben, 1"_s);
    QCOMPARE(platform()->wifiNameForInterface(u"vxtest01"_s), u"Gast"_s);
    QCOMPARE(platform()->wifiNameForInterface(u"vxtest2"_s), QString());
    QCOMPARE(platform()->wifiNameForInterface(QString()), QString());
}

void tst_VXPlatformIndependent::openerGetsTheEncodedAddress()
{
    const QTemporaryDir folder;
    const QString answer = folder.filePath(u"answer"_s);
    QFile script(folder.filePath(u"opener"_s));
    QVERIFY(script.open(QFile::WriteOnly));
    script.write("#!/bin/sh\nprintf '%s|%s' \"$#\" \"$1\" > \"$0.tmp\"\nmv \"$0.tmp\" " +
                 answer.toLocal8Bit() + "\n");
    script.close();
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    configure(u"Platform/urlOpener"_s, script.fileName());

    QVERIFY(platform()->openUrl(QUrl(u"https://h.example/ä b?x=$(id)&y='"_s)));
    QTRY_VERIFY(QFile::exists(answer));
    QFile file(answer);
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(file.readAll(), "1|https://h.example/%C3%A4%20b?x=$(id)&y='");
}

void tst_VXPlatformIndependent::openerThatCannotBeStartedIsReported()
{
    configure(u"Platform/urlOpener"_s, u"/nowhere/opener"_s);
    QVERIFY(!platform()->openUrl(QUrl(u"https://h.example/"_s)));
}

void tst_VXPlatformIndependent::sleepInTheApplicationThreadLetsEventsRun()
{
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(10);
    QElapsedTimer clock;
    clock.start();
    platform()->sleep(300);
    QVERIFY2(clock.elapsed() >= 299, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(ticks > 0);
}

void tst_VXPlatformIndependent::sleepInTheApplicationThreadHoldsInputBack()
{
    VXInputWindow window;
    QVERIFY(window.open());
    QTimer::singleShot(0, &window, &VXInputWindow::sendInput);
    platform()->sleep(200);
    QCOMPARE(window.keys + window.clicks, 0);
    QTRY_COMPARE(window.keys, 1);
    QTRY_COMPARE(window.clicks, 1);
}

void tst_VXPlatformIndependent::sleepInAnotherThreadWaits()
{
    std::atomic<qint64> elapsed = 0;
    std::thread thread([&elapsed] {
        QElapsedTimer clock;
        clock.start();
        platform()->sleep(100);
        elapsed = clock.elapsed();
    });
    thread.join();
    QVERIFY(elapsed >= 99);
}

void tst_VXPlatformIndependent::noTimeIsNoWait()
{
    bool didRun = false;
    QTimer::singleShot(0, this, [&didRun] { didRun = true; });
    platform()->sleep(0);
    platform()->sleep(-1000);
    QVERIFY(!didRun);
    QTRY_VERIFY(didRun);
}

void tst_VXPlatformIndependent::sleepIsCutShortByTheEndOfTheApplication()
{
    qint64 elapsed = -1;
    QTimer::singleShot(0, this, [&elapsed] {
        QTimer::singleShot(20, QCoreApplication::instance(), &QCoreApplication::quit);
        QElapsedTimer clock;
        clock.start();
        platform()->sleep(60000);
        elapsed = clock.elapsed();
    });
    QCoreApplication::exec();
    QVERIFY2(elapsed >= 0 && elapsed < 30000, qPrintable(QString::number(elapsed)));
}

// The last one: it leaves another instance behind.
void tst_VXPlatformIndependent::hostMayInstallItsOwn()
{
    auto own = std::make_unique<Recorder>();
    const Recorder* recorder = own.get();
    const auto former = VXPlatformIndependent::setInstance(std::move(own));
    platform()->fileWritten(QFileInfo(u"/a/b.txt"_s));
    platform()->fileWriteFailed(QFileInfo(u"/a/c.txt"_s));
    QCOMPARE(recorder->written, QStringList(u"b.txt"_s));
}

VX_TEST_MAIN(QGuiApplication, tst_VXPlatformIndependent)

#include "tst_VXPlatformIndependent.moc"
