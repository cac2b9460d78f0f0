#include <VXNetworking/VXWebEngineSettings.h>

#include "VXLogCapture.h"
#include "VXProbe.h"
#include "VXRawPeer.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtWebEngineCore/QWebEngineCookieStore>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>
#include <QtWebEngineCore/QWebEngineUrlScheme>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int engineTime = 20000; // milliseconds

VXWebEngineSettings* settings()
{
    return VXWebEngineSettings::instance();
}

QWebEngineProfile* profile()
{
    return QWebEngineProfile::defaultProfile();
}

QString cachePath()
{
    return VXBasisSettings::instance()->temporaryDirectory() + "/QtWebEngine/Cache"_L1;
}

bool putIntoCache()
{
    QDir().mkpath(cachePath() + "/deep"_L1);
    QFile file(cachePath() + "/deep/file"_L1);
    return file.open(QFile::WriteOnly);
}

// Each probe is the start of a program.
int startIsSilent()
{
    putIntoCache();
    const VXLogCapture log;
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    VXProbe::print(log.texts(QtWarningMsg).filter(u"scheme"_s, Qt::CaseInsensitive).join(u'|'));
    VXProbe::print(QString::fromLatin1(QWebEngineUrlScheme::schemeByName("tov").name()));
    VXProbe::print(profile()->urlSchemeHandler("tov") ? u"handler"_s : u"no handler"_s);
    VXProbe::print(QFileInfo::exists(cachePath()) ? u"old cache"_s : u"no cache"_s);
    VXProbe::print(profile()->httpUserAgent());
    VXProbe::print(QWebEngineProfile().httpUserAgent());
    return 0;
}

int engineCameFirst()
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");
    profile();
    const VXLogCapture log;
    static_cast<void>(settings());
    VXProbe::print(profile()->urlSchemeHandler("tov") ? u"handler"_s : u"no handler"_s);
    return 0;
}

int viewAsksForTheScheme()
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");
    QWidget window;
    const std::unique_ptr<VXWebView> view(VXWebView::createWebView(&window, false));
    const auto answer = [&view](const QString& theScheme) {
        VXProbe::print(view->handlesURLScheme(theScheme) ? u"yes"_s : u"no"_s);
    };
    answer(u"tov"_s);
    static_cast<void>(settings());
    answer(u"tov"_s);
    answer(u"tovx"_s);
    return 0;
}

int schemeHasDefaults()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    const QWebEngineUrlScheme scheme = QWebEngineUrlScheme::schemeByName("tov");
    VXProbe::print(u"%1 %2 %3"_s.arg(int(scheme.syntax()))
                       .arg(scheme.flags().toInt())
                       .arg(scheme.defaultPort()));
    return 0;
}

int secondLoadAppendsAgain()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    settings()->loadSettings();
    VXProbe::print(profile()->httpUserAgent().right(24));
    return 0;
}

int secondInstallKeepsTheFirst()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    const QWebEngineUrlSchemeHandler* first = profile()->urlSchemeHandler("tov");
    const VXLogCapture log;
    settings()->installUrlSchemeHandler();
    VXProbe::print(first == profile()->urlSchemeHandler("tov") ? u"same"_s : u"other"_s);
    VXProbe::print(log.texts().join(u'|'));
    return 0;
}

/// A program that has shown a page: until then the engine is still making its folders.
void runSetupAndShowPage()
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    QWebEnginePage page;
    QSignalSpy finished(&page, &QWebEnginePage::loadFinished);
    page.setHtml(u"<p>page</p>"_s);
    if (!finished.wait(engineTime))
        VXProbe::print(u"no page"_s);
}

int clearingDeletes()
{
    runSetupAndShowPage();
    const bool isPut = putIntoCache();
    settings()->clearChromiumCache();
    VXProbe::print(isPut && !QFileInfo::exists(cachePath()) ? u"gone"_s : u"there"_s);
    VXProbe::print(QFileInfo(VXBasisSettings::instance()->temporaryDirectory()).isDir()
                       ? u"folder"_s
                       : u"no folder"_s);
    return 0;
}

int cleanupDeletes()
{
    runSetupAndShowPage();
    const bool isPut = putIntoCache();
    settings()->cleanup();
    VXProbe::print(isPut && !QFileInfo::exists(cachePath()) ? u"gone"_s : u"there"_s);
    return 0;
}

/// Says what became of a file behind a link that somebody planted in our folder.
int clearBehind(const QString& theLink)
{
    runSetupAndShowPage();
    const QTemporaryDir elsewhere;
    QDir().mkpath(elsewhere.filePath(u"Cache"_s));
    QFile kept(elsewhere.filePath(u"Cache/kept"_s));
    const bool isOpen = kept.open(QFile::WriteOnly);
    const QString folder = VXBasisSettings::instance()->temporaryDirectory();
    QDir(folder + "/QtWebEngine"_L1).removeRecursively();
    QDir().mkpath(QFileInfo(folder + theLink).path());
    const bool isPlanted = QFile::link(elsewhere.path(), folder + theLink);
    const VXLogCapture log;
    settings()->clearChromiumCache();
    VXProbe::print(isOpen && isPlanted && QFile::exists(kept.fileName()) ? u"kept"_s : u"lost"_s);
    VXProbe::print(QString::number(log.textsWith(u"not deleted"_s).size()));
    return 0;
}

int clearBehindCache()
{
    return clearBehind(u"/QtWebEngine/Cache"_s);
}

int clearBehindFolder()
{
    return clearBehind(u"/QtWebEngine"_s);
}

QNetworkCookie cookie(const QByteArray& theName, const QString& theDomain)
{
    QNetworkCookie made(theName, "v");
    made.setDomain(theDomain);
    made.setPath(u"/"_s);
    return made;
}

} // namespace

class tst_VXWebEngineSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void startIsSilentAndClean();
    void schemeIsAsMadeByQt();
    void engineMayHaveBeenUsedBefore();
    void viewsKnowTheScheme();
    void userAgentGrowsWithEachLoad();
    void secondHandlerIsNotInstalled();
    void pageFeaturesAreOn();
    void nothingIsCached();
    void storageLiesInTheTemporaryFolder();
    void serverSeesProductAndLanguage();
    void groupIsClosedAgain();
    void savingKeepsNothing();
    void clearingDeletesTheFolder();
    void cleanupLeavesNoFolder();
    void plantedLinkIsNotFollowed_data();
    void plantedLinkIsNotFollowed();
    void cookiesGoByTheirDomain_data();
    void cookiesGoByTheirDomain();
    void deletedCookieIsForgottenAtOnce();
    void cookieDeletedByOthersIsForgotten();

private:
    std::unique_ptr<QWebEnginePage> myPage;
};

void tst_VXWebEngineSettings::initTestCase()
{
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Program/language"_s, u"de-AT"_s));
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    // The engine deletes cookies, and tells of it, only while it has a page from a server.
    VXRawPeer peer;
    myPage = std::make_unique<QWebEnginePage>();
    QSignalSpy finished(myPage.get(), &QWebEnginePage::loadFinished);
    myPage->load(peer.url());
    QVERIFY(finished.wait(engineTime));
}

void tst_VXWebEngineSettings::cleanupTestCase()
{
    myPage.reset(); // before the profile
    VXInitializer::instance()->runTeardown();
}

void tst_VXWebEngineSettings::startIsSilentAndClean()
{
    const QStringList lines = VXProbe::run(u"startIsSilent"_s);
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.at(0), QString());
    QCOMPARE(lines.at(1), u"tov"_s);
    QCOMPARE(lines.at(2), u"handler"_s);
    QCOMPARE(lines.at(3), u"no cache"_s);
    QCOMPARE(lines.at(4), lines.at(5) + " Orvelo Desk"_L1);
}

void tst_VXWebEngineSettings::schemeIsAsMadeByQt()
{
    QCOMPARE(VXProbe::run(u"schemeHasDefaults"_s), QStringList{u"3 0 -1"_s});
}

void tst_VXWebEngineSettings::engineMayHaveBeenUsedBefore()
{
    QCOMPARE(VXProbe::run(u"engineCameFirst"_s), QStringList{u"handler"_s});
}

void tst_VXWebEngineSettings::viewsKnowTheScheme()
{
    QCOMPARE(VXProbe::run(u"viewAsksForTheScheme"_s), (QStringList{u"no"_s, u"yes"_s, u"no"_s}));
}

void tst_VXWebEngineSettings::userAgentGrowsWithEachLoad()
{
    QCOMPARE(VXProbe::run(u"secondLoadAppendsAgain"_s), QStringList{u" Orvelo Desk Orvelo Desk"_s});
}

void tst_VXWebEngineSettings::secondHandlerIsNotInstalled()
{
    QCOMPARE(VXProbe::run(u"secondInstallKeepsTheFirst"_s), QStringList({u"same"_s, u""_s}));
}

void tst_VXWebEngineSettings::pageFeaturesAreOn()
{
    const QWebEngineSettings* features = profile()->settings();
    QVERIFY(features->testAttribute(QWebEngineSettings::JavascriptCanOpenWindows));
    QVERIFY(features->testAttribute(QWebEngineSettings::JavascriptEnabled));
    QVERIFY(features->testAttribute(QWebEngineSettings::PluginsEnabled));
    QVERIFY(features->testAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls));
}

void tst_VXWebEngineSettings::nothingIsCached()
{
    QCOMPARE(profile()->httpCacheType(), QWebEngineProfile::NoCache);
}

void tst_VXWebEngineSettings::storageLiesInTheTemporaryFolder()
{
    QCOMPARE(settings()->chromiumCachePath(), cachePath());
    QCOMPARE(profile()->persistentStoragePath(), cachePath());
}

void tst_VXWebEngineSettings::serverSeesProductAndLanguage()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "<title>x</title>", {"Content-Type: text/html"}));
    QWebEnginePage page;
    QSignalSpy finished(&page, &QWebEnginePage::loadFinished);
    page.load(peer.url());
    QVERIFY(finished.wait(engineTime));
    const VXRawRequest request = peer.requests().constFirst();
    QCOMPARE(request.header("User-Agent"),
             (QWebEngineProfile().httpUserAgent() + " Orvelo Desk"_L1).toUtf8());
    QCOMPARE(request.header("User-Agent").count("Orvelo Desk"), 1);
    QCOMPARE(request.header("Accept-Language"), QByteArray("de-AT"));
}

void tst_VXWebEngineSettings::groupIsClosedAgain()
{
    QVERIFY(settings()->writeEntry(u"probe"_s, u"here"_s));
    QCOMPARE(VXSettings().value(u"probe"_s).toString(), u"here"_s);
    settings()->deleteEntry(u"probe"_s);
}

void tst_VXWebEngineSettings::savingKeepsNothing()
{
    const auto stored = [] {
        QFile file(VXSettings::storeFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray before = stored();
    settings()->saveSettings();
    QCOMPARE(stored(), before);
}

// In processes of their own, as a program begins and ends.
void tst_VXWebEngineSettings::clearingDeletesTheFolder()
{
    QCOMPARE(VXProbe::run(u"clearingDeletes"_s), (QStringList{u"gone"_s, u"folder"_s}));
}

void tst_VXWebEngineSettings::cleanupLeavesNoFolder()
{
    QCOMPARE(VXProbe::run(u"cleanupDeletes"_s), QStringList{u"gone"_s});
}

void tst_VXWebEngineSettings::plantedLinkIsNotFollowed_data()
{
    QTest::addColumn<QString>("probe");

    QTest::newRow("the cache") << u"clearBehindCache"_s;
    QTest::newRow("its folder") << u"clearBehindFolder"_s;
}

void tst_VXWebEngineSettings::plantedLinkIsNotFollowed()
{
    QFETCH(QString, probe);
    QCOMPARE(VXProbe::run(probe), (QStringList{u"kept"_s, u"1"_s}));
}

void tst_VXWebEngineSettings::cookiesGoByTheirDomain_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArrayList>("gone");

    QTest::newRow("in the middle and at the end") << u"shop"_s << QByteArrayList{"a", "b"};
    QTest::newRow("whole domain") << u"other.test"_s << QByteArrayList{"c"};
    QTest::newRow("upper case") << u"SHOP"_s << QByteArrayList{};
    QTest::newRow("unknown") << u"nowhere"_s << QByteArrayList{};
    QTest::newRow("empty: all") << u""_s << QByteArrayList{"a", "b", "c"};
}

void tst_VXWebEngineSettings::cookiesGoByTheirDomain()
{
    QFETCH(QString, text);
    QFETCH(QByteArrayList, gone);
    QWebEngineCookieStore* store = profile()->cookieStore();
    QSignalSpy added(store, &QWebEngineCookieStore::cookieAdded);
    QSignalSpy removed(store, &QWebEngineCookieStore::cookieRemoved);
    store->setCookie(cookie("a", u"www.shop.test"_s));
    store->setCookie(cookie("b", u"my.bookshop"_s));
    store->setCookie(cookie("c", u"other.test"_s));
    QTRY_COMPARE_WITH_TIMEOUT(added.count(), 3, engineTime);

    settings()->deleteCookies(text);
    // One more, to know that the engine has done what was asked before.
    store->setCookie(cookie("last", u"last.test"_s));
    QTRY_COMPARE_WITH_TIMEOUT(added.count(), 4, engineTime);
    QTRY_COMPARE_WITH_TIMEOUT(removed.count(), gone.size(), engineTime);
    QByteArrayList names;
    for (const QList<QVariant>& arguments : removed)
        names << arguments.constFirst().value<QNetworkCookie>().name();
    std::ranges::sort(names);
    QCOMPARE(names, gone);

    settings()->deleteCookies(QString());
    QTRY_COMPARE_WITH_TIMEOUT(removed.count(), 4, engineTime);
}

void tst_VXWebEngineSettings::deletedCookieIsForgottenAtOnce()
{
    QWebEngineCookieStore* store = profile()->cookieStore();
    QSignalSpy added(store, &QWebEngineCookieStore::cookieAdded);
    QSignalSpy removed(store, &QWebEngineCookieStore::cookieRemoved);
    store->setCookie(cookie("a", u"www.shop.test"_s));
    QTRY_COMPARE_WITH_TIMEOUT(added.count(), 1, engineTime);
    settings()->deleteCookies(u"shop"_s);
    settings()->deleteCookies(u"shop"_s);
    QTRY_COMPARE_WITH_TIMEOUT(removed.count(), 1, engineTime);
}

void tst_VXWebEngineSettings::cookieDeletedByOthersIsForgotten()
{
    // Told by hand, the engine knows nothing of this one and would not announce it.
    VXWebEngineSettings* mirror = settings();
    const QNetworkCookie known = cookie("known", u".shop.test"_s);
    mirror->cookieAdded(known);
    mirror->cookieAdded(known);
    mirror->cookieRemoved(known); // every equal one

    QWebEngineCookieStore* store = profile()->cookieStore();
    QSignalSpy added(store, &QWebEngineCookieStore::cookieAdded);
    QSignalSpy removed(store, &QWebEngineCookieStore::cookieRemoved);
    disconnect(store, nullptr, mirror, nullptr);
    const auto follow = qScopeGuard([store, mirror] {
        connect(store, &QWebEngineCookieStore::cookieAdded, mirror,
                &VXWebEngineSettings::cookieAdded);
        connect(store, &QWebEngineCookieStore::cookieRemoved, mirror,
                &VXWebEngineSettings::cookieRemoved);
    });
    store->setCookie(known);
    QTRY_COMPARE_WITH_TIMEOUT(added.count(), 1, engineTime);
    mirror->deleteCookies(QString());
    store->setCookie(cookie("last", u"last.test"_s));
    QTRY_COMPARE_WITH_TIMEOUT(added.count(), 2, engineTime);
    QCOMPARE(removed.count(), 0);
    store->deleteAllCookies();
}

VX_PROBE_TEST_MAIN(QApplication, tst_VXWebEngineSettings, {u"startIsSilent"_s, startIsSilent},
                   {u"engineCameFirst"_s, engineCameFirst},
                   {u"viewAsksForTheScheme"_s, viewAsksForTheScheme},
                   {u"schemeHasDefaults"_s, schemeHasDefaults},
                   {u"secondLoadAppendsAgain"_s, secondLoadAppendsAgain},
                   {u"secondInstallKeepsTheFirst"_s, secondInstallKeepsTheFirst},
                   {u"clearingDeletes"_s, clearingDeletes}, {u"cleanupDeletes"_s, cleanupDeletes},
                   {u"clearBehindCache"_s, clearBehindCache},
                   {u"clearBehindFolder"_s, clearBehindFolder})

#include "tst_VXWebEngineSettings.moc"
