#include <VXNetworking/VXQWebEngineUrlSchemeHandler.h>

#include "VXAssetFolders.h"
#include "VXLogCapture.h"
#include "VXOpenedUrls.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"

#include <VXCore/VXInitializer.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QSignalSpy>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWidgets/QApplication>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int loadTime = 20000; // milliseconds
constexpr int notFound = -6;    // the engine's number for a file that is not there

// A page of the default profile, which has the handler.
class Page : public QWebEnginePage
{
public:
    Page()
    {
        connect(this, &QWebEnginePage::loadingChanged, this,
                [this](const QWebEngineLoadingInfo& theInfo) { error = theInfo.errorCode(); });
    }

    int error = 0; // of the last load, the engine's number

    bool open(const QUrl& theUrl)
    {
        QSignalSpy finished(this, &QWebEnginePage::loadFinished);
        load(theUrl);
        return finished.wait(loadTime) && finished.constFirst().constFirst().toBool();
    }

    bool show(const QString& theHtml, const QUrl& theBase = {})
    {
        QSignalSpy finished(this, &QWebEnginePage::loadFinished);
        setHtml(theHtml, theBase);
        return finished.wait(loadTime) && finished.constFirst().constFirst().toBool();
    }

    QVariant run(const QString& theScript)
    {
        bool isDone = false;
        QVariant answer;
        runJavaScript(theScript, [&](const QVariant& theAnswer) {
            answer = theAnswer;
            isDone = true;
        });
        return QTest::qWaitFor([&isDone] { return isDone; }, loadTime) ? answer : u"no answer"_s;
    }
};

QUrl tov(const QString& thePath)
{
    return QUrl(u"tov://localhost"_s + thePath);
}

// An image that tells in the title how it went.
QString imagePage(const QString& theSource)
{
    return u"<title>open</title><script>const i = new Image();"
           "i.onload = () => document.title = 'loaded';"
           "i.onerror = () => document.title = 'failed';"
           "i.src = '%1';</script>"_s.arg(theSource);
}

} // namespace

class tst_VXQWebEngineUrlSchemeHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VXInitializer::instance()->runSetup(VXInitializerOption::Headless); }
    void init() { myFolders = std::make_unique<VXAssetFolders>(); }
    void cleanup() { myFolders.reset(); }
    void cleanupTestCase() { VXInitializer::instance()->runTeardown(); }

    void castAnswersToBothNames();
    void fileIsDeliveredWithItsType_data();
    void fileIsDeliveredWithItsType();
    void largeFileIsDeliveredWhole();
    void emptyFileIsDelivered();
    void fileIsClosedAfterwards();
    void missingFileIsNotFound();
    void folderIsNotFound();
    void pathIsDecoded();
    void renderedPictureIsFound();
    void commandOpensAndIsNotFound();
    void commandAsAPageIsNotFound();
    void commandCanBeAFileToo();
    void commandOfAWebPageWritesOneWarning();
    void commandOfOtherPagesIsSilent();
    void otherTargetOfAWebPageWritesTwoWarnings();
    void jobMayDieWhileTheAddressIsOpened();
    void pagesReachNothingOutside();
    void pagesReachNothingThroughPlantedLinks();

private:
    QStringList answers(const QStringList& thePaths);

    std::unique_ptr<VXAssetFolders> myFolders;
};

void tst_VXQWebEngineUrlSchemeHandler::castAnswersToBothNames()
{
    VXQWebEngineUrlSchemeHandler handler;
    QCOMPARE(handler.parent(), nullptr);
    QCOMPARE(handler.qt_metacast("VXQWebEngineUrlSchemeHandler"), static_cast<void*>(&handler));
    QCOMPARE(handler.qt_metacast("VXUrlSchemeHandler"),
             static_cast<void*>(static_cast<VXUrlSchemeHandler*>(&handler)));
    QObject parent;
    QCOMPARE((new VXQWebEngineUrlSchemeHandler(&parent))->parent(), &parent);
}

void tst_VXQWebEngineUrlSchemeHandler::fileIsDeliveredWithItsType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");

    QTest::newRow("html") << u"page.html"_s << u"text/html"_s;
    QTest::newRow("htm") << u"page.htm"_s << u"text/plain"_s;
    QTest::newRow("jpeg") << u"page.jpeg"_s << u"text/plain"_s;
    QTest::newRow("upper case") << u"page.HTML"_s << u"text/plain"_s;
}

void tst_VXQWebEngineUrlSchemeHandler::fileIsDeliveredWithItsType()
{
    QFETCH(QString, name);
    QVERIFY(myFolders->write(u"start/html/"_s + name, "Hallo"));
    Page page;
    QVERIFY(page.open(tov(u'/' + name)));
    QTEST(page.run(u"document.contentType"_s).toString(), "type");
    QCOMPARE(page.run(u"document.body.innerText"_s).toString(), u"Hallo"_s);
}

void tst_VXQWebEngineUrlSchemeHandler::largeFileIsDeliveredWhole()
{
    QVERIFY(myFolders->write(u"start/html/large.css"_s, QByteArray(3'000'000, 'x')));
    QCOMPARE(answers({u"/large.css"_s}), QStringList{u"200 3000000"_s});
}

void tst_VXQWebEngineUrlSchemeHandler::emptyFileIsDelivered()
{
    QVERIFY(myFolders->write(u"start/html/empty.css"_s, {}));
    QCOMPARE(answers({u"/empty.css"_s}), QStringList{u"200 0"_s});
}

void tst_VXQWebEngineUrlSchemeHandler::fileIsClosedAfterwards()
{
    QVERIFY(myFolders->write(u"start/html/a.css"_s, "x"));
    const auto isOpen = [this] {
        const QDir descriptors(u"/proc/self/fd"_s);
        for (const QFileInfo& file : descriptors.entryInfoList(QDir::Files | QDir::System))
            if (file.symLinkTarget() == myFolders->path(u"start/html/a.css"_s))
                return true;
        return false;
    };
    QCOMPARE(answers(QStringList(20, u"/a.css"_s)), QStringList(20, u"200 1"_s));
    QTRY_VERIFY(!isOpen());
}

void tst_VXQWebEngineUrlSchemeHandler::missingFileIsNotFound()
{
    Page page;
    QVERIFY(!page.open(tov(u"/missing.html"_s)));
    QCOMPARE(page.error, notFound);
}

void tst_VXQWebEngineUrlSchemeHandler::folderIsNotFound()
{
    QVERIFY(myFolders->write(u"start/html/folder/a.html"_s, "x"));
    Page page;
    QVERIFY(!page.open(tov(u"/folder"_s)));
    QCOMPARE(page.error, notFound);
    QVERIFY(!page.open(tov(u"/"_s)));
    QCOMPARE(page.error, notFound);
}

void tst_VXQWebEngineUrlSchemeHandler::pathIsDecoded()
{
    QVERIFY(myFolders->write(u"start/html/Grüße 1.html"_s, "Hallo"));
    Page page;
    QVERIFY(page.open(QUrl(u"tov://localhost/Gr%C3%BC%C3%9Fe%201.html?a=b#c"_s)));
    QCOMPARE(page.run(u"document.body.innerText"_s).toString(), u"Hallo"_s);
}

void tst_VXQWebEngineUrlSchemeHandler::renderedPictureIsFound()
{
    const QString picture = u"temp/scene-%1.png"_s.arg(QCoreApplication::applicationPid());
    QFile icon(QStringLiteral(VX_SOURCE_DIR "/assets/icons/ico_save.png"));
    QVERIFY(icon.open(QFile::ReadOnly));
    QVERIFY(myFolders->write(picture, icon.readAll()));
    QVERIFY(myFolders->write(u"html/threejs/scene.html"_s, imagePage(u"picture.png"_s).toUtf8()));
    Page page;
    QVERIFY(page.open(tov(u"/threejs/scene.html"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"loaded"_s, loadTime);
}

void tst_VXQWebEngineUrlSchemeHandler::commandOpensAndIsNotFound()
{
    const VXOpenedUrls opened({u"https"_s});
    Page page;
    QVERIFY(page.show(imagePage(u"tov://localhost/openUrl?url=https%3A%2F%2Fh.example%2F"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QCOMPARE(opened.urls(), QList<QUrl>{QUrl(u"https://h.example/"_s)});
}

void tst_VXQWebEngineUrlSchemeHandler::commandAsAPageIsNotFound()
{
    const VXOpenedUrls opened({u"https"_s});
    Page page;
    QVERIFY(!page.open(tov(u"/openUrl?url=https%3A%2F%2Fh.example%2F"_s)));
    QCOMPARE(page.error, notFound);
    QCOMPARE(opened.urls(), QList<QUrl>{QUrl(u"https://h.example/"_s)});
}

// The answer is the one of any other address.
void tst_VXQWebEngineUrlSchemeHandler::commandCanBeAFileToo()
{
    const VXOpenedUrls opened({u"https"_s});
    QVERIFY(myFolders->write(u"start/html/openUrl"_s, "Hallo"));
    QCOMPARE(answers({u"/openUrl?url=https%3A%2F%2Fh.example%2F"_s}), QStringList{u"200 5"_s});
    QCOMPARE(opened.urls().size(), 1);
}

void tst_VXQWebEngineUrlSchemeHandler::commandOfAWebPageWritesOneWarning()
{
    VXRawPeer peer;
    peer.setAnswer(
        VXRawAnswer::http(200, imagePage(u"tov://localhost/openUrl?url=mailto%3Aa%40b"_s).toUtf8(),
                          {"Content-Type: text/html"}));
    const VXOpenedUrls opened({u"mailto"_s});
    Page page;
    const VXLogCapture log;
    QVERIFY(page.open(peer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QCOMPARE(opened.urls(), QList<QUrl>{QUrl(u"mailto:a@b"_s)});
    QCOMPARE(
        log.texts(QtWarningMsg),
        QStringList{u"a page of http://127.0.0.1:%1 let an address be opened"_s.arg(peer.port())});
}

void tst_VXQWebEngineUrlSchemeHandler::commandOfOtherPagesIsSilent()
{
    const QString html = imagePage(u"tov://localhost/openUrl?url=mailto%3Aa%40b"_s);
    QVERIFY(myFolders->write(u"start/html/page.html"_s, html.toUtf8()));
    const VXOpenedUrls opened({u"mailto"_s});
    Page page;
    const VXLogCapture log;
    QVERIFY(page.open(tov(u"/page.html"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QVERIFY(page.open(QUrl::fromLocalFile(myFolders->path(u"start/html/page.html"_s))));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QVERIFY(page.show(html));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QVERIFY(page.show(html, QUrl(u"qrc:/page"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QCOMPARE(opened.urls().size(), 4);
    QCOMPARE(log.texts(QtWarningMsg), QStringList());
}

void tst_VXQWebEngineUrlSchemeHandler::otherTargetOfAWebPageWritesTwoWarnings()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(
        200, imagePage(u"tov://localhost/openUrl?url=smb%3A%2F%2Fh%2Fx"_s).toUtf8(),
        {"Content-Type: text/html"}));
    const VXOpenedUrls opened({u"smb"_s});
    Page page;
    const VXLogCapture log;
    QVERIFY(page.open(peer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(page.title(), u"failed"_s, loadTime);
    QCOMPARE(opened.urls().size(), 1);
    QCOMPARE(log.texts(QtWarningMsg).size(), 2);
}

void tst_VXQWebEngineUrlSchemeHandler::jobMayDieWhileTheAddressIsOpened()
{
    auto page = std::make_unique<Page>();
    QVERIFY(page->open(QUrl(u"about:blank"_s)));

    // A desktop that asks the user first: the page is closed meanwhile.
    bool isAsked = false;
    const VXOpenedUrls desktop({u"http"_s});
    connect(&desktop, &VXOpenedUrls::opening, this, [&] {
        page.reset();
        QTest::qWait(200); // the engine's deferred deletions
        isAsked = true;
    });
    page->runJavaScript(u"new Image().src = 'tov://localhost/openUrl?url=http%3A%2F%2Fa'"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isAsked, loadTime);
}

// Asks for each path, a few at a time, from a page of the scheme; "<status> <size>", with the
// text when it is one of the secrets.
QStringList tst_VXQWebEngineUrlSchemeHandler::answers(const QStringList& thePaths)
{
    if (!myFolders->write(u"start/html/ask.html"_s, "<title>ask</title>"))
        return {u"not written"_s};
    Page page;
    if (!page.open(tov(u"/ask.html"_s)))
        return {u"not loaded"_s};

    const QByteArray paths = QJsonDocument(QJsonArray::fromStringList(thePaths)).toJson();
    const QString script = u"window.answers = []; window.paths = %1;"
                           "let next = 0, busy = 8;"
                           "function ask() {"
                           "const i = next++;"
                           "if (i >= paths.length) {"
                           "if (--busy == 0) document.title = 'done'; return; }"
                           "const x = new XMLHttpRequest();"
                           "x.onloadend = () => { const t = x.responseText;"
                           "answers[i] = x.status + ' ' + t.length +"
                           "(/GEHEIM|root:/.test(t) ? ' ' + t : ''); ask(); };"
                           "try { x.open('GET', 'tov://localhost' + paths[i]); x.send(); }"
                           "catch (e) { answers[i] = 'thrown'; ask(); } }"
                           "for (let k = 0; k < 8; ++k) ask();"_s;
    page.run(script.arg(QString::fromUtf8(paths)));
    if (!QTest::qWaitFor([&page] { return page.title() == u"done"_s; }, 3 * loadTime))
        return {u"no answer to "_s + thePaths.value(page.run(u"answers.length"_s).toInt())};
    return page.run(u"answers"_s).toStringList();
}

void tst_VXQWebEngineUrlSchemeHandler::pagesReachNothingOutside()
{
    QStringList paths = myFolders->traversals();
    QVERIFY(paths.size() > 200);
    QVERIFY(myFolders->write(u"start/html/good.html"_s, "x"));
    paths << u"/good.html"_s; // the questions do arrive

    const VXLogCapture log;
    const QStringList found = answers(paths);
    QVERIFY2(found.size() == paths.size(), qPrintable(found.constFirst()));
    QCOMPARE(found.constLast(), u"200 1"_s);
    for (qsizetype i = 0; i + 1 < paths.size(); ++i)
        QVERIFY2(found.at(i) == u"0 0"_s, qPrintable(paths.at(i) + " -> "_L1 + found.at(i)));
    QCOMPARE(log.textsWith(u"file name"_s), QStringList());
}

void tst_VXQWebEngineUrlSchemeHandler::pagesReachNothingThroughPlantedLinks()
{
    QStringList paths;
    const std::array folders{std::pair{u"start/html/"_s, u"/"_s},
                             std::pair{u"html/threejs/"_s, u"/threejs/"_s},
                             std::pair{u"books/"_s, u"/autoBookProposal/"_s}};
    for (const auto& [folder, prefix] : folders) {
        QVERIFY(QFile::link(myFolders->path(u"secret.html"_s),
                            myFolders->path(folder + u"file.html"_s)));
        QVERIFY(QFile::link(myFolders->path(QString()), myFolders->path(folder + u"up"_s)));
        QVERIFY(QFile::link(u"/etc/passwd"_s, myFolders->path(folder + u"passwd.html"_s)));
        for (const auto& name : {u"file.html"_s, u"up/secret.html"_s, u"up"_s, u"passwd.html"_s})
            paths << prefix + name;
    }
    const QStringList found = answers(paths);
    QCOMPARE(found, QStringList(paths.size(), u"0 0"_s));
}

VX_TEST_MAIN(QApplication, tst_VXQWebEngineUrlSchemeHandler)

#include "tst_VXQWebEngineUrlSchemeHandler.moc"
