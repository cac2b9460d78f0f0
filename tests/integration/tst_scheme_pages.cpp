// The pages of the folder assets, as the application shows them: over the scheme "tov" and, the
// receipt and the release notes, from their files. Each leaves pictures in the folder
// scheme-pages of the build.

#include "VXLogCapture.h"
#include "VXOpenedUrls.h"
#include "VXProbe.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXQWebEngineWebView.h>
#include <VXNetworking/VXWebEngineSettings.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineUrlRequestInterceptor>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int engineTime = 20000; // milliseconds

QString htmlFile(const QString& theName)
{
    return VXDirectoryConfig::instance()->root(VXDirectoryConfig::Root::Html) + u'/' + theName;
}

QString scenePicture()
{
    return u"%1/scene-%2.png"_s.arg(VXBasisSettings::instance()->temporaryDirectory(),
                                    QString::number(QCoreApplication::applicationPid()));
}

// Notes what leaves the machine's files. Engine's thread or GUI thread, so it only collects.
class Watch : public QWebEngineUrlRequestInterceptor
{
public:
    void interceptRequest(QWebEngineUrlRequestInfo& theInfo) override
    {
        const QUrl url = theInfo.requestUrl();
        if (url.scheme() != "tov"_L1 && url.scheme() != "file"_L1 && url.scheme() != "data"_L1)
            foreign << url.toString();
    }

    QStringList foreign;
};

struct Shown
{
    QWidget window;
    VXQWebEngineWebView view{&window};

    explicit Shown(const QUrl& theUrl)
    {
        window.resize(1024, 768);
        view.nativeWidget()->resize(window.size());
        window.show();
        QSignalSpy finished(&view, &VXWebView::loadFinished);
        view.setUrl(theUrl);
        isLoaded = finished.wait(engineTime) && finished.constFirst().constFirst().toBool();
    }

    QVariant run(const QString& theScript) { return view.runJavascriptSync(theScript); }

    // The engine paints a little after it has loaded.
    bool takePicture(const QString& theName)
    {
        const QString folder = QStringLiteral(VX_BINARY_DIR "/scheme-pages");
        QDir().mkpath(folder);
        const bool isPainted = QTest::qWaitFor(
            [this] {
                const QImage image = window.grab().toImage();
                const QRgb first = image.pixel(10, 10);
                for (int y = 10; y < image.height(); y += 7)
                    for (int x = 10; x < image.width(); x += 7)
                        if (image.pixel(x, y) != first)
                            return true;
                return false;
            },
            engineTime);
        QTest::qWait(300); // pictures of the page
        return isPainted && window.grab().save(folder + u'/' + theName + ".png"_L1);
    }

    bool isLoaded = false;
};

QStringList consoleErrors(const VXLogCapture& theLog)
{
    return theLog.textsWith(u"level="_s);
}

// The engine follows the desktop's theme, of which there is none off screen, hence the flag.
void startEngine()
{
    if (qEnvironmentVariableIsEmpty("VX_TEST_DARK")) {
        VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
        return;
    }
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox --force-dark-mode");
    static_cast<void>(VXWebEngineSettings::instance());
}

// One page, printed for the test: loaded, its title, what went wrong.
int show(const QString& theName, const QUrl& theUrl)
{
    const VXLogCapture log;
    Watch watch;
    startEngine();
    QWebEngineProfile::defaultProfile()->setUrlRequestInterceptor(&watch);
    Shown page(theUrl);
    VXProbe::print(page.isLoaded ? page.view.title() : u"not loaded"_s);
    const bool isDark = page.run(u"matchMedia('(prefers-color-scheme: dark)').matches"_s).toBool();
    VXProbe::print(page.takePicture(theName + (isDark ? "-dark"_L1 : "-light"_L1)) ? u"painted"_s
                                                                                   : u"blank"_s);
    VXProbe::print(
        page.run(u"getComputedStyle(document.documentElement).backgroundColor"_s).toString());
    VXProbe::print(page.run(u"document.documentElement.lang"_s).toString());
    VXProbe::print(page.run(u"[...document.images].every(i => i.complete && i.naturalWidth > 0)"_s)
                       .toString());
    VXProbe::print((consoleErrors(log) + watch.foreign).join(u'|'));
    QWebEngineProfile::defaultProfile()->setUrlRequestInterceptor(nullptr);
    return 0;
}

void paintScene()
{
    QImage picture(480, 640, QImage::Format_RGB32);
    picture.fill(QColor(23, 70, 106));
    QPainter painter(&picture);
    painter.setPen(Qt::white);
    painter.setFont(QFont(u"DejaVu Sans"_s, 36));
    painter.drawText(picture.rect(), Qt::AlignCenter | Qt::TextWordWrap, u"Sommer am Meer"_s);
    painter.end();
    picture.save(scenePicture());
}

int startScreen()
{
    return show(u"start-screen"_s, QUrl(u"tov://localhost/index.html"_s));
}

int help()
{
    return show(u"help"_s, QUrl(u"tov://localhost/help.html"_s));
}

int scene()
{
    paintScene();
    return show(u"scene"_s, QUrl(u"tov://localhost/threejs/index.html"_s));
}

int proposal()
{
    return show(u"proposal"_s, QUrl(u"tov://localhost/x/autoBookProposal/y/proposal.html"_s));
}

int receipt()
{
    return show(u"receipt"_s, QUrl::fromLocalFile(htmlFile(u"receipt.html"_s)));
}

int releaseNotes()
{
    return show(u"release-notes"_s, QUrl::fromLocalFile(htmlFile(u"release-notes.html"_s)));
}

} // namespace

class tst_scheme_pages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VXInitializer::instance()->runSetup(VXInitializerOption::Headless); }
    void cleanup() { QFile::remove(scenePicture()); }
    void cleanupTestCase() { VXInitializer::instance()->runTeardown(); }

    void pageIsWhole_data();
    void pageIsWhole();
    void linkOfTheStartScreenOpensOutsideOnce_data();
    void linkOfTheStartScreenOpensOutsideOnce();
    void linkOfTheStartScreenLeadsInside_data();
    void linkOfTheStartScreenLeadsInside();
    void sceneShowsTheRenderedPicture();
    void sceneWithoutPictureSaysSo();
    void sceneTurns();
};

void tst_scheme_pages::pageIsWhole_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("startScreen") << u"Startseite"_s;
    QTest::newRow("help") << u"Hilfe"_s;
    QTest::newRow("scene") << u"Vorschau in 3D"_s;
    QTest::newRow("proposal") << u"Buchvorschlag"_s;
    QTest::newRow("receipt") << u"Beleg 2026-004711"_s;
    QTest::newRow("releaseNotes") << u"Neuerungen"_s;
}

// Each in both schemes, each in a process of its own.
void tst_scheme_pages::pageIsWhole()
{
    QFETCH(QString, title);
    QStringList backgrounds;
    for (const bool isDark : {false, true}) {
        qputenv("VX_TEST_DARK", isDark ? "1" : "");
        const QStringList lines = VXProbe::run(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(lines.size(), 6);
        QCOMPARE(lines.at(0), title);
        QCOMPARE(lines.at(1), u"painted"_s);
        backgrounds << lines.at(2);
        QCOMPARE(lines.at(3), u"de"_s);
        QCOMPARE(lines.at(4), u"true"_s);
        QCOMPARE(lines.at(5), QString());
    }
    QVERIFY(backgrounds.at(0) != backgrounds.at(1));
}

void tst_scheme_pages::linkOfTheStartScreenOpensOutsideOnce_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QUrl>("target");

    QTest::newRow("https") << 0
                           << QUrl(u"https://www.example/fotobuch?von=start&stil=modern#preise"_s);
    QTest::newRow("http") << 1 << QUrl(u"http://www.example/ideen"_s);
    QTest::newRow("mailto") << 2
                            << QUrl(u"mailto:service@example?subject=Frage%20zum%20Fotobuch"_s);
}

void tst_scheme_pages::linkOfTheStartScreenOpensOutsideOnce()
{
    QFETCH(int, number);
    QFETCH(QUrl, target);
    const VXOpenedUrls opened({u"http"_s, u"https"_s, u"mailto"_s});
    Shown page(QUrl(u"tov://localhost/index.html"_s));
    QVERIFY(page.isLoaded);
    page.run(u"document.querySelectorAll('a[data-outside]')[%1].click()"_s.arg(number));
    QTRY_VERIFY_WITH_TIMEOUT(!opened.urls().isEmpty(), engineTime);
    page.run(u"0"_s); // whatever else the click did has reached us by now
    QCOMPARE(opened.urls(), QList<QUrl>{target});
    QCOMPARE(page.view.url(), QUrl(u"tov://localhost/index.html"_s));
    QVERIFY(page.run(u"document.getElementById('status').textContent"_s)
                .toString()
                .endsWith(u"wird geöffnet."_s));
}

void tst_scheme_pages::linkOfTheStartScreenLeadsInside_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("title");

    QTest::newRow("book proposal") << 0 << u"Buchvorschlag"_s;
    QTest::newRow("scene") << 1 << u"Vorschau in 3D"_s;
    QTest::newRow("help") << 2 << u"Hilfe"_s;
}

void tst_scheme_pages::linkOfTheStartScreenLeadsInside()
{
    QFETCH(int, number);
    QFETCH(QString, title);
    Shown page(QUrl(u"tov://localhost/index.html"_s));
    QVERIFY(page.isLoaded);
    page.run(u"document.querySelectorAll('nav a')[%1].click()"_s.arg(number));
    QTRY_COMPARE_WITH_TIMEOUT(page.view.title(), title, engineTime);
}

void tst_scheme_pages::sceneShowsTheRenderedPicture()
{
    paintScene();
    Shown page(QUrl(u"tov://localhost/threejs/index.html"_s));
    QVERIFY(page.isLoaded);
    QCOMPARE(page.run(u"document.getElementById('front').naturalWidth"_s).toInt(), 480);
    QVERIFY(page.run(u"document.getElementById('missing').hidden"_s).toBool());
}

void tst_scheme_pages::sceneWithoutPictureSaysSo()
{
    Shown page(QUrl(u"tov://localhost/threejs/index.html"_s));
    QVERIFY(page.isLoaded);
    QTRY_VERIFY(!page.run(u"document.getElementById('missing').hidden"_s).toBool());
    QVERIFY(page.run(u"document.getElementById('stage').hidden"_s).toBool());
    QVERIFY(page.takePicture(u"scene-missing"_s));
}

void tst_scheme_pages::sceneTurns()
{
    paintScene();
    Shown page(QUrl(u"tov://localhost/threejs/index.html"_s));
    QVERIFY(page.isLoaded);
    page.run(u"const a = document.getElementById('angle'); a.value = 45;"
             "a.dispatchEvent(new Event('input'))"_s);
    QCOMPARE(page.run(u"document.getElementById('degrees').textContent"_s).toString(), u"45°"_s);
    QCOMPARE(
        page.run(u"document.getElementById('book').style.getPropertyValue('--angle')"_s).toString(),
        u"45deg"_s);
}

VX_PROBE_TEST_MAIN(QApplication, tst_scheme_pages, {u"startScreen"_s, startScreen},
                   {u"help"_s, help}, {u"scene"_s, scene}, {u"proposal"_s, proposal},
                   {u"receipt"_s, receipt}, {u"releaseNotes"_s, releaseNotes})

#include "tst_scheme_pages.moc"
