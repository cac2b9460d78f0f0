#include <VXNetworking/VXNetworkingInitializer.h>

#include "VXLogCapture.h"
#include "VXProbe.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXCommandLineOptionHandlerAbstract.h>
#include <VXCore/VXCommandLineParser.h>
#include <VXCore/VXCrashDetector.h>
#include <VXCore/VXInitializer.h>
#include <VXCore/VXProgramConfig.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXQWebEngineWebView.h>
#include <VXNetworking/VXWebEngineSettings.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtTest/QSignalSpy>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

constexpr int engineTime = 20000; // milliseconds

QString flags()
{
    return qEnvironmentVariable("QTWEBENGINE_CHROMIUM_FLAGS");
}

void runSetup()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
}

// Each probe is the start of a program with the record that the test left: what was logged, the
// flags, the decision, and whether the engine was prepared.
int start()
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--some-flag=of-the-user");
    VXQWebEngineWebView::haveGpuEnabled = !VXQWebEngineWebView::haveGpuEnabled;
    const VXLogCapture log;
    runSetup();
    VXProbe::print(log.texts(QtInfoMsg).filter(u"GPU accel."_s).join(u'|'));
    VXProbe::print(flags());
    VXProbe::print(VXQWebEngineWebView::haveGpuEnabled ? u"gpu on"_s : u"gpu off"_s);
    VXProbe::print(VXWebEngineSettings::hasInstance() ? u"prepared"_s : u"untouched"_s);
    return 0;
}

int startWithoutWebContent()
{
    VXProgramConfig::setProgramID(8);
    const int status = start();
    VXInitializer::instance()->runTeardown();
    VXProbe::print(VXWebEngineSettings::hasInstance() ? u"prepared"_s : u"untouched"_s);
    return status;
}

int teardownClears()
{
    runSetup();
    const QString cache = VXWebEngineSettings::instance()->chromiumCachePath();
    QDir().mkpath(cache + "/deep"_L1);
    VXProbe::print(QFileInfo::exists(cache) ? u"there"_s : u"not made"_s);
    VXInitializer::instance()->runTeardown();
    VXProbe::print(QFileInfo::exists(cache) ? u"there"_s : u"gone"_s);
    return 0;
}

// The page's process is killed as a crash of it would end.
int crash()
{
    runSetup();
    QWidget window;
    VXQWebEngineWebView view(&window);
    const auto* widget = qobject_cast<QWebEngineView*>(view.nativeWidget());
    QSignalSpy finished(&view, &VXWebView::loadFinished);
    view.setHtml(u"<p>Hallo"_s);
    if (!widget || !finished.wait(engineTime))
        return 1;
    QSignalSpy terminated(widget, &QWebEngineView::renderProcessTerminated);
    const auto pid = static_cast<pid_t>(widget->page()->renderProcessPid());
    if (pid <= 0 || ::kill(pid, SIGKILL) != 0 || !terminated.wait(engineTime))
        return 2;
    VXProbe::print(VXQWebEngineWebView::haveGpuEnabled ? u"gpu was on"_s : u"gpu was off"_s);
    return 0;
}

int pageWorks()
{
    runSetup();
    QWebEnginePage page;
    QSignalSpy finished(&page, &QWebEnginePage::loadFinished);
    page.setHtml(u"<title>Hallo</title>"_s);
    const bool isLoaded = finished.wait(engineTime);
    VXProbe::print(isLoaded ? page.title() : u"not loaded"_s);
    VXProbe::print(VXQWebEngineWebView::haveGpuEnabled ? u"gpu on"_s : u"gpu off"_s);
    return 0;
}

// Takes notes of what is added.
class Parser : public VXCommandLineParserAbstract
{
public:
    void addOption(int theType, VXCommandLineOptionHandlerAbstract* theHandler,
                   const QStringList& theNames, const QString& theHelp, const QString& theValueName,
                   const QString& theDefaultValue) override
    {
        const std::unique_ptr<VXCommandLineOptionHandlerAbstract> handler(theHandler);
        added << u"%1|%2|%3|%4|%5"_s.arg(QString::number(theType), theNames.join(u','), theHelp,
                                         theValueName, theDefaultValue);
        hasHandler = handler != nullptr;
    }

    QStringList added;
    bool hasHandler = false;
};

} // namespace

class tst_VXNetworkingInitializer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { VXNetworkAccessManager::setValidateSslCertificate(true); }

    void libraryRegistersItselfOnce();
    void hostWithoutSymbolsHasItToo();
    void recordDecides_data();
    void recordDecides();
    void programWithoutWebContentIsLeftAlone();
    void teardownClearsWhatWasStored();
    void engineRunsAfterASetup_data();
    void engineRunsAfterASetup();
    void crashSwitchesTheGpuOffNextTime();
    void optionIsAsOrdered();
    void optionSwitchesTheCheckOff_data();
    void optionSwitchesTheCheckOff();
    void withoutTheOptionTheCheckStays();
};

void tst_VXNetworkingInitializer::init()
{
    VXCrashDetector::instance()->setDidCrash(true, false);
    VXCrashDetector::instance()->setDidCrash(false, false);
}

void tst_VXNetworkingInitializer::libraryRegistersItselfOnce()
{
    const QList<VXInitializerAbstract*> all = VXInitializer::instance()->initializers();
    QCOMPARE(all.size(), 1);
    QVERIFY(dynamic_cast<VXNetworkingInitializer*>(all.constFirst()));
}

void tst_VXNetworkingInitializer::hostWithoutSymbolsHasItToo()
{
    QProcess host;
    host.start(QCoreApplication::applicationDirPath() + "/VXNoSymbolHost"_L1, {});
    QVERIFY2(host.waitForFinished(), qPrintable(host.errorString()));
    QCOMPARE(host.readAllStandardOutput(), QByteArray("1\n"));
}

void tst_VXNetworkingInitializer::recordDecides_data()
{
    QTest::addColumn<bool>("crashedOn");
    QTest::addColumn<bool>("crashedOff");
    QTest::addColumn<QStringList>("lines");

    const QStringList on{u"Starting QtWebEngine with GPU accel."_s, u"--no-sandbox"_s, u"gpu on"_s,
                         u"prepared"_s};
    const QStringList off{u"QtWebEngine previously crashed with GPU on and not with GPU off; "
                          "disabling GPU accel."_s,
                          u"--disable-gpu --no-sandbox"_s, u"gpu off"_s, u"prepared"_s};
    QTest::newRow("no record") << false << false << on;
    QTest::newRow("on") << true << false << off;
    QTest::newRow("off") << false << true << on;
    QTest::newRow("both") << true << true << on;
}

void tst_VXNetworkingInitializer::recordDecides()
{
    QFETCH(bool, crashedOn);
    QFETCH(bool, crashedOff);
    VXCrashDetector::instance()->setDidCrash(true, crashedOn);
    VXCrashDetector::instance()->setDidCrash(false, crashedOff);
    QTEST(VXProbe::run(u"start"_s), "lines");
}

void tst_VXNetworkingInitializer::programWithoutWebContentIsLeftAlone()
{
    QCOMPARE(VXProbe::run(u"startWithoutWebContent"_s),
             QStringList({u"Starting QtWebEngine with GPU accel."_s, u"--no-sandbox"_s, u"gpu on"_s,
                          u"untouched"_s, u"untouched"_s}));
}

void tst_VXNetworkingInitializer::teardownClearsWhatWasStored()
{
    QCOMPARE(VXProbe::run(u"teardownClears"_s), QStringList({u"there"_s, u"gone"_s}));
}

void tst_VXNetworkingInitializer::engineRunsAfterASetup_data()
{
    QTest::addColumn<bool>("crashedOn");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("gpu on") << false << QStringList{u"Hallo"_s, u"gpu on"_s};
    QTest::newRow("gpu off") << true << QStringList{u"Hallo"_s, u"gpu off"_s};
}

void tst_VXNetworkingInitializer::engineRunsAfterASetup()
{
    QFETCH(bool, crashedOn);
    VXCrashDetector::instance()->setDidCrash(true, crashedOn);
    QTEST(VXProbe::run(u"pageWorks"_s), "lines");
}

void tst_VXNetworkingInitializer::crashSwitchesTheGpuOffNextTime()
{
    QCOMPARE(VXProbe::run(u"crash"_s), QStringList(u"gpu was on"_s));
    QCOMPARE(VXProbe::run(u"start"_s).value(2), u"gpu off"_s);
    QCOMPARE(VXProbe::run(u"crash"_s), QStringList(u"gpu was off"_s));
    QCOMPARE(VXProbe::run(u"start"_s).value(2), u"gpu on"_s); // it was not the reason
}

void tst_VXNetworkingInitializer::optionIsAsOrdered()
{
    Parser parser;
    VXInitializer::instance()->runCommandLine(&parser);
    QCOMPARE(parser.added,
             QStringList{u"18|y,Y,acceptallcertificates|Do not validate SSL Certificates. Handle "
                         "with care!!||"_s});
    QVERIFY(parser.hasHandler);
    QVERIFY(VXNetworkAccessManager::validateSslCertificate());
}

void tst_VXNetworkingInitializer::optionSwitchesTheCheckOff_data()
{
    QTest::addColumn<QString>("option");

    for (const auto& option : {u"-y"_s, u"-Y"_s, u"--acceptallcertificates"_s})
        QTest::newRow(qPrintable(option)) << option;
}

void tst_VXNetworkingInitializer::optionSwitchesTheCheckOff()
{
    QFETCH(QString, option);
    VXCommandLineParser parser;
    VXInitializer::instance()->runCommandLine(&parser);
    QVERIFY2(parser.process({u"program"_s, option}), qPrintable(parser.errorText()));
    QVERIFY(!VXNetworkAccessManager::validateSslCertificate());
}

void tst_VXNetworkingInitializer::withoutTheOptionTheCheckStays()
{
    VXCommandLineParser parser;
    VXInitializer::instance()->runCommandLine(&parser);
    QVERIFY(parser.process({u"program"_s}));
    QVERIFY(VXNetworkAccessManager::validateSslCertificate());
}

VX_PROBE_TEST_MAIN(QApplication, tst_VXNetworkingInitializer, {u"start"_s, start},
                   {u"startWithoutWebContent"_s, startWithoutWebContent},
                   {u"teardownClears"_s, teardownClears}, {u"crash"_s, crash},
                   {u"pageWorks"_s, pageWorks})

#include "tst_VXNetworkingInitializer.moc"
