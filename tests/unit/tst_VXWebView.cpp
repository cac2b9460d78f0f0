#include <VXNetworking/VXWebView.h>

#include "VXLogCapture.h"
#include "VXOpenedUrls.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXWebTest.h"

#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXAbstractCommunication.h>
#include <VXNetworking/VXWebEngineSettings.h>

#include <QtCore/QFile>
#include <QtCore/QMetaMethod>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString colorSchemeScript =
    u"style = document.createElement('style');style.textContent = '@media print {:root { c"
    "olor-scheme: light only;}}@media screen{:root { color-scheme: dark only;}}';document"
    ".head.append(style);"_s;

const QString linkScript =
    u"anchors = document.getElementsByTagName('a');const schemes = new Set(['https:','http"
    ":','mailto:']);for (let i = 0; i < anchors.length; ++i ) {\tconst urlObj = new URL(a"
    "nchors[i].href);   if (schemes.has(urlObj.protocol)) {\t\tlet encodedUrl = encodeURI"
    "Component(anchors[i].href);\t\tanchors[i].addEventListener('click', function(e) { \t"
    "\t\t"
    "e.preventDefault();\t\t\t"
    "e.stopPropagation();\t\t\tvar img = new Image();\t\t\ti"
    "mg.src = 'tov://localhost/openUrl?url=' + encodedUrl;\t\t});\t\tanchors[i].href = '#"
    "';\t}}"_s;

const QString pageWithLinks =
    u"<!DOCTYPE html><html><head><meta charset='utf-8'><title>Links</title></head><body>"
    "<a id='http' href='http://example.test/a?b=c&amp;d=%C3%A4'>1</a>"
    "<a id='https' href='https://example.test/x y'>2</a>"
    "<a id='mailto' href='mailto:shop@example.test?subject=A%26B'>3</a>"
    "<a id='file' href='file:///nowhere'>4</a></body></html>"_s;

/// A view without an engine, which writes down what it is asked to run.
class RecordingView : public VXWebView
{
public:
    explicit RecordingView(const QUrl& theUrl)
        : VXWebView(nullptr)
        , myUrl(theUrl)
    {
    }

    QWidget* nativeWidget() override { return nullptr; }
    void setUrl(const QUrl&) override {}
    void runJavaScript(const QString& theScript, QHash<QString, QVariant>* theResults) override
    {
        scripts.append(theScript);
        results = theResults;
    }
    void runJavascriptAsync(const QString&, std::function<void(QVariant)> theCallback) override
    {
        callback = std::move(theCallback);
        if (answersAtOnce)
            callback(u"answer"_s);
    }
    bool handlesURLScheme(const QString&) const override { return false; }
    void setHtml(const QString&) override {}
    QString title() const override { return {}; }
    QUrl url() const override { return myUrl; }
    void stop() const override {}
    QSizeF contentsSize() const override { return {}; }
    void deleteAllCookies() override {}
    void reload() const override {}
    void printContent() override {}
    void saveContent(const QString&) override {}

    QStringList scripts;
    QHash<QString, QVariant>* results = nullptr;
    std::function<void(QVariant)> callback;
    bool answersAtOnce = false;

private:
    QUrl myUrl;
};

QStringList scriptsFor(const QString& theUrl)
{
    RecordingView view((QUrl(theUrl)));
    view.injectCustomHtml();
    return view.scripts;
}

/// The page as a window shows it, with the application's scripts injected.
struct InjectingPage
{
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::unique_ptr<VXWebView> view{VXWebView::createWebView(window.get(), true)};

    QVariant run(const QString& theScript) const { return view->runJavascriptSync(theScript); }
    bool isInjected() const { return run(u"typeof anchors"_s).toString() == u"object"_s; }
    bool load(const QUrl& theUrl)
    {
        QSignalSpy finished(view.get(), &VXWebView::loadFinished);
        view->setUrl(theUrl);
        return finished.wait(20000) && finished.constFirst().constFirst().toBool();
    }
    bool loadHtml(const QString& theHtml)
    {
        QSignalSpy finished(view.get(), &VXWebView::loadFinished);
        view->setHtml(theHtml);
        return finished.wait(20000) && finished.constFirst().constFirst().toBool();
    }
};

QUrl fileWith(const QTemporaryDir& theFolder, const QString& theName, const QString& theHtml)
{
    QDir(theFolder.path()).mkpath(QFileInfo(theName).path());
    QFile file(theFolder.filePath(theName));
    if (!file.open(QFile::WriteOnly) || file.write(theHtml.toUtf8()) < 0)
        qFatal("cannot write the page");
    return QUrl::fromLocalFile(file.fileName());
}

} // namespace

class tst_VXWebView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theMetaObjectListsSignalsAndSlotsInOrder();
    void theParentIsKept();
    void pagesOfTheProgramGetTheLinkScript_data();
    void pagesOfTheProgramGetTheLinkScript();
    void otherPagesGetNothing_data();
    void otherPagesGetNothing();
    void theDarkSkinPutsItsScriptFirst();
    void theOtherSkinsHaveNoScript();
    void resultsOfInjectionsShareOneHash();
    void theDefaultForAnotherWidgetDoesNothing();
    void anAnswerAtOnceNeedsNoWait();
    void aSecondAnswerChangesNothing();
    void anAnswerForADeadViewIsHarmless();
    void waitingEndsWithTheView();

    void loadedFilesAreInjected();
    void textsAreInjected();
    void pagesOfTheWebAreLeftAlone();
    void theStartScreenIsLeftAlone();
    void injectionComesBehindTheSignal();
    void injectionIsACallersChoice();
    void aFailedLoadIsInjectedAsWell();
    void aClickedLinkIsOpenedOutsideOnce_data();
    void aClickedLinkIsOpenedOutsideOnce();
    void otherLinksStayAsTheyAre();
    void theColourSchemeFollowsTheSkin();
    void aScriptIsWaitedForInTheViewsThread_data();
    void aScriptIsWaitedForInTheViewsThread();
    void aScriptIsWaitedForInASlot_data();
    void aScriptIsWaitedForInASlot();
    void aScriptIsWaitedForInOtherThreads();
    void aViewWithoutWidgetAnswersOtherThreads();
    void aViewThatDiesAnswersOtherThreads();
    void theChannelBearsTheNameOfItsServer();
};

void tst_VXWebView::init()
{
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Light);
}

void tst_VXWebView::theMetaObjectListsSignalsAndSlotsInOrder()
{
    QStringList names;
    const QMetaObject& meta = VXWebView::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    QCOMPARE(names,
             (QStringList{u"loadStarted()"_s, u"loadFinished(bool)"_s, u"windowCloseRequested()"_s,
                          u"titleChanged(QString)"_s, u"loadProgress(int)"_s, u"urlChanged(QUrl)"_s,
                          u"contentsSizeChanged(QSizeF)"_s, u"reload()"_s, u"printContent()"_s,
                          u"saveContent(QString)"_s, u"injectCustomHtml()"_s}));
}

void tst_VXWebView::theParentIsKept()
{
    QWidget parent;
    const std::unique_ptr<VXWebView> view(VXWebView::createWebView(&parent, false));
    QCOMPARE(view->parentWidget(), &parent);
    QCOMPARE(view->parent(), nullptr);
    QCOMPARE(view->nativeWidget()->parentWidget(), &parent);
}

void tst_VXWebView::pagesOfTheProgramGetTheLinkScript_data()
{
    QTest::addColumn<QString>("url");

    QTest::newRow("file") << u"file:///a/b.html"_s;
    QTest::newRow("resource") << u"qrc:/page.html"_s;
    QTest::newRow("text") << u"data:text/html;charset=UTF-8,<p>"_s;
    QTest::newRow("empty page") << u"about:blank"_s;
    QTest::newRow("nothing loaded") << QString();
    QTest::newRow("start screen without the folder") << u"file:///startscreen/html"_s;
}

void tst_VXWebView::pagesOfTheProgramGetTheLinkScript()
{
    QFETCH(QString, url);
    QCOMPARE(scriptsFor(url), QStringList(linkScript));
}

void tst_VXWebView::otherPagesGetNothing_data()
{
    QTest::addColumn<QString>("url");

    QTest::newRow("http") << u"http://example.test/"_s;
    QTest::newRow("https") << u"https://example.test/"_s;
    QTest::newRow("upper case") << u"HTTPS://example.test/"_s;
    QTest::newRow("own scheme") << u"tov://localhost/a.html"_s;
    QTest::newRow("start screen") << u"file:///opt/startscreen/html/index.html"_s;
    QTest::newRow("start screen, encoded") << u"file:///opt/start%73creen%2Fhtml/index.html"_s;
    QTest::newRow("start screen as resource") << u"qrc:/startscreen/html/index.html"_s;
    QTest::newRow("text that mentions it") << u"data:text/html,%2Fstartscreen%2Fhtml%2F"_s;
}

void tst_VXWebView::otherPagesGetNothing()
{
    QFETCH(QString, url);
    QCOMPARE(scriptsFor(url), QStringList());
}

void tst_VXWebView::theDarkSkinPutsItsScriptFirst()
{
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Dark);
    QCOMPARE(scriptsFor(u"file:///a.html"_s), QStringList(colorSchemeScript + linkScript));
    QCOMPARE(scriptsFor(u"https://example.test/"_s), QStringList());
}

void tst_VXWebView::theOtherSkinsHaveNoScript()
{
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Unset);
    QCOMPARE(scriptsFor(u"file:///a.html"_s), QStringList(linkScript));
}

void tst_VXWebView::resultsOfInjectionsShareOneHash()
{
    RecordingView first(QUrl(u"file:///a.html"_s));
    RecordingView second(QUrl(u"file:///b.html"_s));
    first.injectCustomHtml();
    second.injectCustomHtml();
    QVERIFY(first.results != nullptr);
    QCOMPARE(first.results, second.results);
}

void tst_VXWebView::theDefaultForAnotherWidgetDoesNothing()
{
    QWidget widget;
    RecordingView view((QUrl()));
    view.updateNativeWidget(&widget);
    QCOMPARE(widget.children().size(), 0);
    QCOMPARE(view.scripts, QStringList());
}

void tst_VXWebView::anAnswerAtOnceNeedsNoWait()
{
    RecordingView view((QUrl()));
    view.answersAtOnce = true;
    QCOMPARE(view.runJavascriptSync(u"1"_s), QVariant(u"answer"_s));
}

void tst_VXWebView::aSecondAnswerChangesNothing()
{
    RecordingView view((QUrl()));
    QMetaObject::invokeMethod(
        &view,
        [&view] {
            view.callback(1);
            view.callback(2);
        },
        Qt::QueuedConnection);
    QCOMPARE(view.runJavascriptSync(u"1"_s), QVariant(1));
}

void tst_VXWebView::anAnswerForADeadViewIsHarmless()
{
    std::function<void(QVariant)> late;
    {
        RecordingView view((QUrl()));
        view.answersAtOnce = true;
        std::ignore = view.runJavascriptSync(u"1"_s);
        late = view.callback;
    }
    late(3); // nothing waits any more
}

void tst_VXWebView::waitingEndsWithTheView()
{
    auto* const view = new RecordingView((QUrl()));
    view->deleteLater();
    QVERIFY(!view->runJavascriptSync(u"1"_s).isValid());
}

void tst_VXWebView::loadedFilesAreInjected()
{
    const QTemporaryDir folder;
    InjectingPage page;
    QVERIFY(page.load(fileWith(folder, u"a.html"_s, pageWithLinks)));
    QTRY_VERIFY(page.isInjected());
}

void tst_VXWebView::textsAreInjected()
{
    InjectingPage page;
    QVERIFY(page.loadHtml(pageWithLinks));
    QTRY_VERIFY(page.isInjected());
}

void tst_VXWebView::pagesOfTheWebAreLeftAlone()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, pageWithLinks.toUtf8(), {"Content-Type: text/html"}));
    InjectingPage page;
    QVERIFY(page.load(peer.url()));
    QCoreApplication::processEvents(); // where the injection would happen
    QVERIFY(!page.isInjected());
    QCOMPARE(page.run(u"document.getElementById('file').href"_s).toString(), u"file:///nowhere"_s);
}

void tst_VXWebView::theStartScreenIsLeftAlone()
{
    const QTemporaryDir folder;
    InjectingPage page;
    QVERIFY(page.load(fileWith(folder, u"startscreen/html/index.html"_s, pageWithLinks)));
    QCoreApplication::processEvents();
    QVERIFY(!page.isInjected());
}

void tst_VXWebView::injectionComesBehindTheSignal()
{
    InjectingPage page;
    QString during;
    connect(page.view.get(), &VXWebView::loadFinished, this, [&] {
        page.view->runJavascriptAsync(
            u"typeof anchors"_s, [&](const QVariant& theValue) { during = theValue.toString(); });
    });
    QVERIFY(page.loadHtml(pageWithLinks));
    QTRY_COMPARE(during, u"undefined"_s); // whoever hears the signal comes first
    QTRY_VERIFY(page.isInjected());
}

void tst_VXWebView::injectionIsACallersChoice()
{
    VXWebTest::Page page;
    QVERIFY(page.load(pageWithLinks));
    QCoreApplication::processEvents();
    QCOMPARE(page.view->runJavascriptSync(u"typeof anchors"_s).toString(), u"undefined"_s);
}

void tst_VXWebView::aFailedLoadIsInjectedAsWell()
{
    const QTemporaryDir folder;
    InjectingPage page;
    QVERIFY(!page.load(QUrl::fromLocalFile(folder.filePath(u"missing.html"_s))));
    QTRY_VERIFY(page.isInjected());
}

void tst_VXWebView::aClickedLinkIsOpenedOutsideOnce_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("target");

    QTest::newRow("http") << u"http"_s << u"http://example.test/a?b=c&d=%C3%A4"_s;
    QTest::newRow("https") << u"https"_s << u"https://example.test/x%20y"_s;
    QTest::newRow("mail") << u"mailto"_s << u"mailto:shop@example.test?subject=A%26B"_s;
}

void tst_VXWebView::aClickedLinkIsOpenedOutsideOnce()
{
    QFETCH(QString, id);
    QFETCH(QString, target);

    VXWebEngineSettings::instance()->loadSettings(); // lets files reach the program's scheme
    const VXOpenedUrls opened({u"http"_s, u"https"_s, u"mailto"_s});
    const QTemporaryDir folder;
    const QUrl address = fileWith(folder, u"a.html"_s, pageWithLinks);
    InjectingPage page;
    QVERIFY(page.load(address));
    QTRY_VERIFY(page.isInjected());

    std::ignore = page.run(u"document.getElementById('%1').click()"_s.arg(id));
    QTRY_VERIFY_WITH_TIMEOUT(!opened.urls().isEmpty(), 20000);
    QCOMPARE(page.run(u"document.title"_s).toString(), u"Links"_s); // later than the click
    QCOMPARE(opened.urls(), QList<QUrl>{QUrl(target)});
    QCOMPARE(page.view->url(), address);
}

void tst_VXWebView::otherLinksStayAsTheyAre()
{
    InjectingPage page;
    QVERIFY(page.loadHtml(pageWithLinks));
    QTRY_VERIFY(page.isInjected());
    QCOMPARE(page.run(u"document.getElementById('file').getAttribute('href')"_s).toString(),
             u"file:///nowhere"_s);
    QCOMPARE(page.run(u"document.getElementById('http').getAttribute('href')"_s).toString(),
             u"#"_s);
}

void tst_VXWebView::theColourSchemeFollowsTheSkin()
{
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Dark);
    InjectingPage page;
    QVERIFY(page.loadHtml(pageWithLinks));
    QTRY_VERIFY(page.isInjected());
    QCOMPARE(page.run(u"getComputedStyle(document.documentElement).colorScheme"_s).toString(),
             u"dark only"_s);
}

void tst_VXWebView::aScriptIsWaitedForInTheViewsThread_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QVariant>("result");

    QTest::newRow("number") << u"40 + 2"_s << QVariant(42);
    QTest::newRow("text") << u"'\\u00e4' + 'b'"_s << QVariant(u"äb"_s);
    QTest::newRow("list") << u"[1, 'a']"_s << QVariant(QVariantList{1, u"a"_s});
    QTest::newRow("nothing") << u"undefined"_s << QVariant();
    QTest::newRow("error") << u"throw 1"_s << QVariant();
    QTest::newRow("no script") << QString() << QVariant();
}

void tst_VXWebView::aScriptIsWaitedForInTheViewsThread()
{
    QFETCH(QString, script);
    QFETCH(QVariant, result);

    VXWebTest::Page page;
    QVERIFY(page.load(pageWithLinks));
    QCOMPARE(page.view->runJavascriptSync(script), result);
}

void tst_VXWebView::aScriptIsWaitedForInASlot_data()
{
    QTest::addColumn<Qt::ConnectionType>("type");

    QTest::newRow("directly") << Qt::DirectConnection;
    QTest::newRow("behind the signal") << Qt::QueuedConnection;
}

/// The engine's events that were posted before the slot was called have to go on as well.
void tst_VXWebView::aScriptIsWaitedForInASlot()
{
    QFETCH(Qt::ConnectionType, type);

    VXWebTest::Page page;
    QVariant title;
    connect(
        page.view.get(), &VXWebView::loadFinished, this,
        [&] { title = page.view->runJavascriptSync(u"document.title"_s); }, type);
    page.view->setHtml(pageWithLinks);
    QTRY_COMPARE(title, QVariant(u"Links"_s));
}

void tst_VXWebView::aScriptIsWaitedForInOtherThreads()
{
    VXWebTest::Page page;
    QVERIFY(page.load(pageWithLinks));
    QList<QVariant> results;
    std::atomic<bool> isDone = false;
    std::thread worker([&] {
        for (int i = 0; i < 20; ++i)
            results.append(page.view->runJavascriptSync(u"%1 * 2"_s.arg(i)));
        isDone = true;
    });
    const bool isInTime = QTest::qWaitFor([&isDone] { return isDone.load(); }, 30000);
    if (!isInTime)
        qFatal("the worker waits for ever");
    worker.join();
    for (int i = 0; i < 20; ++i)
        QCOMPARE(results.at(i), QVariant(i * 2));
}

void tst_VXWebView::aViewWithoutWidgetAnswersOtherThreads()
{
    VXWebTest::Page page;
    page.window.reset();
    std::atomic<bool> isDone = false;
    QVariant result(1);
    std::thread worker([&] {
        result = page.view->runJavascriptSync(u"1"_s);
        isDone = true;
    });
    if (!QTest::qWaitFor([&isDone] { return isDone.load(); }, 30000))
        qFatal("the worker waits for ever");
    worker.join();
    QVERIFY(!result.isValid());
}

void tst_VXWebView::aViewThatDiesAnswersOtherThreads()
{
    auto view = std::make_unique<RecordingView>(QUrl());
    std::atomic<bool> isDone = false;
    std::thread worker([&] {
        std::ignore = view->runJavascriptSync(u"1"_s);
        isDone = true;
    });
    QTRY_VERIFY(view->callback); // the call has come; nobody will answer it
    view.reset();
    if (!QTest::qWaitFor([&isDone] { return isDone.load(); }, 30000))
        qFatal("the worker waits for ever");
    worker.join();
}

void tst_VXWebView::theChannelBearsTheNameOfItsServer()
{
    const VXLogCapture log;
    RecordingView view((QUrl()));
    const std::unique_ptr<VXAbstractCommunication> channel(view.createCommunication(u"server"_s));
    QVERIFY(channel != nullptr);
    QCOMPARE(channel->serverUrl().scheme(), u"ws"_s);
    QCOMPARE(log.textsWith(u"opened web socket server \"server\""_s).size(), 1);
}

VX_TEST_MAIN(QApplication, tst_VXWebView)

#include "tst_VXWebView.moc"
