#include <VXNetworking/VXQWebEngineWebView.h>

#include "VXDialogVisitor.h"
#include "VXProbe.h"
#include "VXRawPeer.h"
#include "VXRenderer.h"
#include "VXWebTest.h"

#include <VXCore/VXCrashDetector.h>

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineUrlRequestJob>
#include <QtWebEngineCore/QWebEngineUrlSchemeHandler>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

const QString receipt =
    u"<html><head><meta charset='utf-8'><title>Beleg</title></head><body><h1>Beleg für Größe</h1>"
    "<p style='page-break-before:always'>Zweite Seite</p></body></html>"_s;

bool isRecorded(bool theGpuWasOn)
{
    const VXCrashDetector nextRun;
    return theGpuWasOn ? nextRun.qtWebEngineDidCrashWithGpuOn()
                       : nextRun.qtWebEngineDidCrashWithGpuOff();
}

/// What a tool of poppler says about a file.
QString outputOf(const QString& theProgram, const QStringList& theArguments)
{
    QProcess process;
    process.start(theProgram, theArguments);
    if (!process.waitForFinished(20000) || process.exitCode() != 0)
        return u"FAILED"_s;
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList wordsOf(const QString& thePdf)
{
    return outputOf(u"pdftotext"_s, {thePdf, u"-"_s})
        .split(QRegularExpression(u"\\s+"_s), Qt::SkipEmptyParts);
}

bool isWholePdf(const QString& thePdf)
{
    QFile file(thePdf);
    return file.open(QFile::ReadOnly) && file.readAll().trimmed().endsWith("%%EOF");
}

/// Prints the receipt through the real dialog, which is cancelled so often before; tells how often
/// the engine has printed, and fails when it did not manage.
int print(int theCancelledCount)
{
    VXWebTest::Page page;
    if (!page.load(receipt))
        return 1;
    QSignalSpy printed(VXRenderer::engineOf(page), &QWebEngineView::printFinished);
    int dialogs = 0;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (++dialogs <= theCancelledCount) {
            theDialog->reject();
            return;
        }
        const auto edits = theDialog->findChildren<QLineEdit*>(u"filename"_s);
        for (auto* const edit : edits)
            edit->setText(qEnvironmentVariable("VX_PRINT_FILE"));
        theDialog->accept();
    });
    for (int i = 0; i <= theCancelledCount; ++i)
        page.view->printContent();
    if (user.count() != theCancelledCount + 1)
        return 2;
    if (!printed.wait(60000) || !printed.constFirst().constFirst().toBool())
        return 3;
    VXProbe::print(u"printed %1"_s.arg(printed.count()));
    return 0;
}

/// Closes the window as soon as the print dialog is answered.
int printAndCloseAtOnce()
{
    VXWebTest::Page page;
    if (!page.load(receipt))
        return 1;
    const QPointer<QWebEnginePage> inner = VXRenderer::engineOf(page)->page();
    const VXDialogVisitor user([](QDialog* theDialog) {
        const auto edits = theDialog->findChildren<QLineEdit*>(u"filename"_s);
        for (auto* const edit : edits)
            edit->setText(qEnvironmentVariable("VX_PRINT_FILE"));
        theDialog->accept();
    });
    page.view->printContent();
    page.view.reset();
    page.window.reset();
    const bool isGone = QTest::qWaitFor([&] { return inner.isNull(); }, 60000);
    VXProbe::print(isGone ? u"page is gone"_s : u"page is still there"_s);
    return 0;
}

/// Leaves the event loop while a page whose window is closed is being saved.
int quitWhileSaving()
{
    QPointer<QWebEnginePage> inner;
    QTimer::singleShot(0, [&inner] {
        VXWebTest::Page page;
        if (page.load(receipt)) {
            inner = VXRenderer::engineOf(page)->page();
            page.view->saveContent(qEnvironmentVariable("VX_PRINT_FILE"));
        }
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    VXProbe::print(inner.isNull() ? u"page is gone"_s : u"page is still there"_s);
    return 0;
}

int printToFile()
{
    return print(0);
}

/// The engine refuses a print while another goes on, so the second one would fail.
int printAfterCancelling()
{
    return print(1);
}

int printAndCloseMeanwhile()
{
    auto page = std::make_unique<VXWebTest::Page>();
    if (!page->load(receipt))
        return 1;
    const VXDialogVisitor user([&page](QDialog* theDialog) {
        page->window.reset();
        theDialog->accept();
    });
    page->view->printContent();
    VXProbe::print(u"alive"_s);
    return 0;
}

class SilentHandler : public QWebEngineUrlSchemeHandler
{
public:
    SilentHandler()
    {
        QWebEngineProfile::defaultProfile()->installUrlSchemeHandler("vxtest", this);
    }
    ~SilentHandler() override { QWebEngineProfile::defaultProfile()->removeUrlSchemeHandler(this); }
    void requestStarted(QWebEngineUrlRequestJob* theJob) override
    {
        theJob->fail(QWebEngineUrlRequestJob::RequestAborted);
    }
};

} // namespace

class tst_VXQWebEngineWebView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theWidgetBelongsToTheParent();
    void aWidgetWithoutParentDiesWithItsView();
    void theWidgetOutlivesItsView();
    void signalsOfTheEngineAreForwarded();
    void aPageThatClosesItselfIsAnnounced();
    void resultsAreStoredUnderTheirScripts();
    void resultsReachTheirCallback();
    void aCallbackMayBeMissing();
    void schemesWithHandlerAreKnown();
    void aTextHasNoBaseAddress();
    void aHangingLoadIsStopped();
    void thePageIsReloaded();
    void theSizeIsThatOfThePage();
    void cookiesAreDeleted();
    void aPageIsSavedAsA4();
    void withoutANameNothingIsSaved();
    void aFileThatCannotBeWrittenIsIgnored();
    void aWindowMayBeClosedRightAfterSaving();
    void aWindowMayBeClosedWhenTheFileIsThere();
    void theViewOwnsItsPageAgainAfterSaving();
    void aStopWaitsForTheFile();
    void theProgramEndsWhenTheFileIsWritten();
    void aPageIsPrinted();
    void aWindowMayBeClosedRightAfterPrinting();
    void aDeadPageIsNeitherSavedNorPrinted();
    void anEmptyPageIsSaved();
    void aCancelledPrintDialogPrintsNothing();
    void aViewThatDiesWhileAskingPrintsNothing();

    void aKilledRenderProcessIsRecorded_data();
    void aKilledRenderProcessIsRecorded();
    void aProcessThatEndsByItselfIsNotRecorded();
    void aKilledPageIsNotReloaded();
    void scriptsOfAKilledProcessEndWithoutResult();
    void navigatingIsNoCrash();

    void withoutWidgetNothingHappens();
    void aWidgetThatDiesAfterTheLoadIsHarmless();
};

void tst_VXQWebEngineWebView::init()
{
    VXQWebEngineWebView::haveGpuEnabled = true;
    VXCrashDetector::instance()->setDidCrash(true, false);
    VXCrashDetector::instance()->setDidCrash(false, false);
}

void tst_VXQWebEngineWebView::theWidgetBelongsToTheParent()
{
    auto parent = std::make_unique<QWidget>();
    VXQWebEngineWebView view(parent.get());
    const QPointer<QWidget> widget = view.nativeWidget();
    QVERIFY(qobject_cast<QWebEngineView*>(widget) != nullptr);
    QCOMPARE(widget->parentWidget(), parent.get());
    QCOMPARE(view.parentWidget(), parent.get());
    parent.reset();
    QVERIFY(widget.isNull());
    QCOMPARE(view.nativeWidget(), nullptr);
}

void tst_VXQWebEngineWebView::aWidgetWithoutParentDiesWithItsView()
{
    auto view = std::make_unique<VXQWebEngineWebView>(nullptr);
    const QPointer<QWidget> widget = view->nativeWidget();
    view.reset();
    QVERIFY(widget.isNull());
}

void tst_VXQWebEngineWebView::theWidgetOutlivesItsView()
{
    VXWebTest::Page page;
    const QPointer<QWebEngineView> widget = VXRenderer::engineOf(page);
    page.view.reset();
    QVERIFY(!widget.isNull());
    QSignalSpy finished(widget, &QWebEngineView::loadFinished);
    widget->setHtml(receipt);
    QVERIFY(finished.wait(20000));
}

void tst_VXQWebEngineWebView::signalsOfTheEngineAreForwarded()
{
    VXWebTest::Page page;
    const VXWebView* const view = page.view.get();
    const QSignalSpy started(view, &VXWebView::loadStarted);
    const QSignalSpy progress(view, &VXWebView::loadProgress);
    const QSignalSpy titles(view, &VXWebView::titleChanged);
    const QSignalSpy urls(view, &VXWebView::urlChanged);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, receipt.toUtf8(), {"Content-Type: text/html"}));
    QSignalSpy finished(view, &VXWebView::loadFinished);
    page.view->setUrl(peer.url());
    QVERIFY(finished.wait(20000));
    QCOMPARE(started.count(), 1);
    QCOMPARE(finished.constFirst().constFirst().toBool(), true);
    QCOMPARE(progress.constLast().constFirst().toInt(), 100);
    QCOMPARE(titles.constLast().constFirst().toString(), u"Beleg"_s);
    QCOMPARE(urls.constLast().constFirst().toUrl(), peer.url());
    QCOMPARE(view->title(), u"Beleg"_s);
    QCOMPARE(view->url(), peer.url());
}

void tst_VXQWebEngineWebView::aPageThatClosesItselfIsAnnounced()
{
    VXWebTest::Page page;
    const QSignalSpy closed(page.view.get(), &VXWebView::windowCloseRequested);
    page.view->setHtml(u"<script>window.close()</script>"_s);
    QTRY_COMPARE_WITH_TIMEOUT(closed.count(), 1, 20000);
}

void tst_VXQWebEngineWebView::resultsAreStoredUnderTheirScripts()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QHash<QString, QVariant> results;
    page.view->runJavaScript(u"1 + 1"_s, &results);
    page.view->runJavaScript(u"document.title"_s, &results);
    page.view->runJavaScript(u"undefined"_s, &results);
    QVERIFY(results.isEmpty()); // not before the event loop runs
    QTRY_COMPARE(results.size(), 3);
    QCOMPARE(results.value(u"1 + 1"_s), QVariant(2));
    QCOMPARE(results.value(u"document.title"_s), QVariant(u"Beleg"_s));
    QVERIFY(!results.value(u"undefined"_s).isValid());
}

void tst_VXQWebEngineWebView::resultsReachTheirCallback()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QVariantList results;
    for (int i = 0; i < 5; ++i) {
        page.view->runJavascriptAsync(u"%1 + 0"_s.arg(i),
                                      [&](const QVariant& theValue) { results.append(theValue); });
    }
    QTRY_COMPARE(results, (QVariantList{0, 1, 2, 3, 4}));
}

void tst_VXQWebEngineWebView::aCallbackMayBeMissing()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    page.view->runJavascriptAsync(u"document.title = 'Neu'"_s, {});
    QTRY_COMPARE(page.view->title(), u"Neu"_s);
}

void tst_VXQWebEngineWebView::schemesWithHandlerAreKnown()
{
    VXWebTest::Page page;
    QVERIFY(!page.view->handlesURLScheme(u"vxtest"_s));
    const SilentHandler handler;
    QVERIFY(page.view->handlesURLScheme(u"vxtest"_s));
    QVERIFY(page.view->handlesURLScheme(u"VXTEST"_s));
    QVERIFY(!page.view->handlesURLScheme(u"http"_s));
    QVERIFY(!page.view->handlesURLScheme(u"unknown"_s));
    QVERIFY(!page.view->handlesURLScheme(QString()));
}

void tst_VXQWebEngineWebView::aTextHasNoBaseAddress()
{
    VXWebTest::Page page;
    QVERIFY(page.load(u"<a id='a' href='other.html'>"_s));
    QVERIFY(page.view->url().toString().startsWith("data:text/html;charset=UTF-8,"_L1));
    QCOMPARE(page.view->runJavascriptSync(u"document.getElementById('a').href"_s).toString(),
             QString());
}

void tst_VXQWebEngineWebView::aHangingLoadIsStopped()
{
    VXRawPeer peer;
    VXRawAnswer half; // enough for the engine to begin with
    half.send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 50000\r\n\r\n<p>half" +
              QByteArray(8000, ' '))
        .stall();
    peer.setAnswer(half);
    VXWebTest::Page page;
    const QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
    page.view->setUrl(peer.url());
    QTRY_VERIFY_WITH_TIMEOUT(
        page.view->runJavascriptSync(u"document.body ? document.body.innerText : ''"_s)
            .toString()
            .contains(u"half"_s),
        20000);
    QCOMPARE(finished.count(), 0);
    page.view->stop();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.constFirst().constFirst().toBool(), false);
}

void tst_VXQWebEngineWebView::thePageIsReloaded()
{
    VXRawPeer peer;
    VXWebTest::Page page;
    QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
    page.view->setUrl(peer.url());
    QVERIFY(finished.wait(20000));
    const auto before = peer.requests().size();
    QVERIFY(QMetaObject::invokeMethod(page.view.get(), "reload"));
    QVERIFY(finished.wait(20000));
    QVERIFY(peer.requests().size() > before);
}

void tst_VXQWebEngineWebView::theSizeIsThatOfThePage()
{
    VXWebTest::Page page;
    QVERIFY(page.view->contentsSize().isEmpty()); // nothing was loaded
    page.window->resize(400, 300);
    page.view->nativeWidget()->resize(400, 300);
    page.window->show();
    QVERIFY(page.load(u"<body style='margin:0'><div style='width:700px;height:900px'>"_s));
    QTRY_COMPARE(page.view->contentsSize(), QSizeF(700, 900));
}

void tst_VXQWebEngineWebView::cookiesAreDeleted()
{
    VXRawPeer peer; // the engine asks for an icon too, which must not set the cookie again
    peer.setHandler([](const VXRawRequest& theRequest) {
        QList<QByteArray> headers{"Content-Type: text/html"};
        if (theRequest.target() == "/login")
            headers.append("Set-Cookie: session=geheim");
        return VXRawAnswer::http(200, "<p>", headers);
    });
    VXWebTest::Page page;
    QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
    page.view->setUrl(peer.url(u"/login"_s));
    QVERIFY(finished.wait(20000));
    QCOMPARE(page.view->runJavascriptSync(u"document.cookie"_s).toString(), u"session=geheim"_s);
    page.view->deleteAllCookies();
    QTRY_COMPARE(page.view->runJavascriptSync(u"document.cookie"_s).toString(), QString());
}

void tst_VXQWebEngineWebView::aPageIsSavedAsA4()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Beleg.pdf"_s);
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QVERIFY(QMetaObject::invokeMethod(page.view.get(), "saveContent", Q_ARG(QString, file)));
    QTRY_VERIFY_WITH_TIMEOUT(isWholePdf(file), 30000);
    QCOMPARE(wordsOf(file),
             (QStringList{u"Beleg"_s, u"für"_s, u"Größe"_s, u"Zweite"_s, u"Seite"_s}));
    const QString info = outputOf(u"pdfinfo"_s, {file});
    QVERIFY2(
        info.contains(QRegularExpression(u"Page size:\\s+59[45][.0-9]* x 84[12][.0-9]* pts"_s)),
        qPrintable(info));
    QVERIFY(info.contains(QRegularExpression(u"Pages:\\s+2\\n"_s)));

    // The text begins at the margins of 20 points, or right of them.
    const QString boxes = outputOf(u"pdftotext"_s, {u"-bbox"_s, file, u"-"_s});
    const auto first =
        QRegularExpression(u"<word xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\""_s).match(boxes);
    QVERIFY(first.hasMatch());
    QVERIFY(first.captured(1).toDouble() >= 20);
    QVERIFY(first.captured(2).toDouble() >= 20);
    QVERIFY(first.captured(1).toDouble() < 40);
}

void tst_VXQWebEngineWebView::withoutANameNothingIsSaved()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    const QSignalSpy saved(VXRenderer::engineOf(page), &QWebEngineView::pdfPrintingFinished);
    page.view->saveContent(QString());
    const QTemporaryDir folder;
    page.view->saveContent(folder.filePath(u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(saved.count(), 1, 30000); // only the second
    QCOMPARE(saved.constFirst().constFirst().toString(), folder.filePath(u"a.pdf"_s));
}

void tst_VXQWebEngineWebView::aFileThatCannotBeWrittenIsIgnored()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    const QSignalSpy saved(VXRenderer::engineOf(page), &QWebEngineView::pdfPrintingFinished);
    page.view->saveContent(u"/nowhere/at/all/a.pdf"_s);
    QTRY_COMPARE_WITH_TIMEOUT(saved.count(), 1, 30000);
    QCOMPARE(saved.constFirst().at(1).toBool(), false);
    QCOMPARE(page.view->title(), u"Beleg"_s);
}

void tst_VXQWebEngineWebView::aWindowMayBeClosedRightAfterSaving()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Beleg.pdf"_s);
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    const QPointer<QWebEnginePage> inner = VXRenderer::engineOf(page)->page();
    page.view->saveContent(file);
    page.view.reset();
    page.window.reset();
    QTRY_VERIFY_WITH_TIMEOUT(inner.isNull(), 30000); // nobody's, it goes by itself
    QVERIFY(isWholePdf(file));
}

void tst_VXQWebEngineWebView::aWindowMayBeClosedWhenTheFileIsThere()
{
    const QTemporaryDir folder;
    for (int i = 0; i < 20; ++i) { // the engine's next word to the page comes a moment later
        const QString file = folder.filePath(u"%1.pdf"_s.arg(i));
        VXWebTest::Page page;
        QVERIFY(page.load(receipt));
        const QPointer<QWebEnginePage> inner = VXRenderer::engineOf(page)->page();
        page.view->saveContent(file);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(file), 30000);
        page.view.reset();
        page.window.reset();
        QTRY_VERIFY_WITH_TIMEOUT(inner.isNull(), 30000);
        QVERIFY(isWholePdf(file));
    }
}

void tst_VXQWebEngineWebView::theViewOwnsItsPageAgainAfterSaving()
{
    const QTemporaryDir folder;
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    const QPointer<QWebEnginePage> inner = VXRenderer::engineOf(page)->page();
    const QSignalSpy saved(VXRenderer::engineOf(page), &QWebEngineView::pdfPrintingFinished);
    page.view->saveContent(folder.filePath(u"a.pdf"_s));
    page.view->saveContent(folder.filePath(u"b.pdf"_s)); // the engine prints one at a time
    QTRY_COMPARE_WITH_TIMEOUT(saved.count(), 2, 30000);
    QCOMPARE(inner->parent(), page.view->nativeWidget());
    page.window.reset();
    QVERIFY(inner.isNull());
}

void tst_VXQWebEngineWebView::aStopWaitsForTheFile()
{
    const QTemporaryDir folder;
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QSignalSpy saved(VXRenderer::engineOf(page), &QWebEngineView::pdfPrintingFinished);
    page.view->saveContent(folder.filePath(u"a.pdf"_s));
    page.view->stop();
    QVERIFY(saved.wait(30000));
    QCOMPARE(saved.constFirst().at(1).toBool(), true);
}

void tst_VXQWebEngineWebView::theProgramEndsWhenTheFileIsWritten()
{
    const QTemporaryDir folder;
    qputenv("VX_PRINT_FILE", folder.filePath(u"a.pdf"_s).toUtf8());
    QCOMPARE(VXProbe::run(u"quitWhileSaving"_s, std::chrono::seconds(100)),
             QStringList(u"page is gone"_s));
    QVERIFY(isWholePdf(folder.filePath(u"a.pdf"_s)));
}

void tst_VXQWebEngineWebView::aPageIsPrinted()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"print.pdf"_s);
    qputenv("VX_PRINT_FILE", file.toUtf8());
    QCOMPARE(VXProbe::run(u"printToFile"_s, std::chrono::seconds(100)),
             QStringList(u"printed 1"_s));
    QVERIFY(isWholePdf(file));
    QVERIFY(outputOf(u"pdfinfo"_s, {file}).contains(QRegularExpression(u"Pages:\\s+2\\n"_s)));
}

void tst_VXQWebEngineWebView::aWindowMayBeClosedRightAfterPrinting()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"print.pdf"_s);
    qputenv("VX_PRINT_FILE", file.toUtf8());
    QCOMPARE(VXProbe::run(u"printAndCloseAtOnce"_s, std::chrono::seconds(100)),
             QStringList(u"page is gone"_s));
    QVERIFY(isWholePdf(file));
}

void tst_VXQWebEngineWebView::aDeadPageIsNeitherSavedNorPrinted()
{
    const QTemporaryDir folder;
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QVERIFY(VXRenderer::kill(page));
    const QSignalSpy saved(VXRenderer::engineOf(page), &QWebEngineView::pdfPrintingFinished);
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->reject(); });
    page.view->saveContent(folder.filePath(u"a.pdf"_s));
    page.view->printContent();
    QCOMPARE(user.count(), 0);

    QVERIFY(page.load(receipt)); // in a new process
    page.view->saveContent(folder.filePath(u"b.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(saved.count(), 1, 30000);
    QCOMPARE(saved.constFirst().constFirst().toString(), folder.filePath(u"b.pdf"_s));
}

void tst_VXQWebEngineWebView::anEmptyPageIsSaved()
{
    const QTemporaryDir folder;
    const VXWebTest::Page page;
    page.view->saveContent(folder.filePath(u"a.pdf"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isWholePdf(folder.filePath(u"a.pdf"_s)), 30000);
}

void tst_VXQWebEngineWebView::aCancelledPrintDialogPrintsNothing()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"print.pdf"_s);
    qputenv("VX_PRINT_FILE", file.toUtf8());
    QCOMPARE(VXProbe::run(u"printAfterCancelling"_s, std::chrono::seconds(100)),
             QStringList(u"printed 1"_s));
    QVERIFY(isWholePdf(file));
}

void tst_VXQWebEngineWebView::aViewThatDiesWhileAskingPrintsNothing()
{
    QCOMPARE(VXProbe::run(u"printAndCloseMeanwhile"_s, std::chrono::seconds(100)),
             QStringList(u"alive"_s));
}

void tst_VXQWebEngineWebView::aKilledRenderProcessIsRecorded_data()
{
    QTest::addColumn<bool>("gpu");
    QTest::addColumn<int>("signal");

    QTest::newRow("crashed, acceleration on") << true << SIGSEGV;
    QTest::newRow("crashed, acceleration off") << false << SIGSEGV;
    QTest::newRow("killed") << true << SIGKILL;
    QTest::newRow("ended") << false << SIGTERM;
}

void tst_VXQWebEngineWebView::aKilledRenderProcessIsRecorded()
{
    QFETCH(bool, gpu);
    QFETCH(int, signal);

    VXQWebEngineWebView::haveGpuEnabled = gpu;
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QVERIFY(!isRecorded(gpu));
    QVERIFY(VXRenderer::kill(page, signal));
    QVERIFY(isRecorded(gpu));
    QVERIFY(!isRecorded(!gpu));
}

void tst_VXQWebEngineWebView::aProcessThatEndsByItselfIsNotRecorded()
{
    VXWebTest::Page page;
    for (const auto status :
         {QWebEnginePage::NormalTerminationStatus, QWebEnginePage::AbnormalTerminationStatus}) {
        Q_EMIT VXRenderer::engineOf(page)->renderProcessTerminated(status, 0);
        QCOMPARE(isRecorded(true), status != QWebEnginePage::NormalTerminationStatus);
    }
}

void tst_VXQWebEngineWebView::aKilledPageIsNotReloaded()
{
    VXRawPeer peer;
    VXWebTest::Page page;
    QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
    page.view->setUrl(peer.url());
    QVERIFY(finished.wait(20000));
    const QSignalSpy started(page.view.get(), &VXWebView::loadStarted);
    QVERIFY(VXRenderer::kill(page));
    QCOMPARE(page.view->url(), peer.url());

    page.view->reload(); // works again
    QVERIFY(finished.wait(20000));
    QCOMPARE(started.count(), 1); // the one that was asked for
    QCOMPARE(page.view->runJavascriptSync(u"1 + 1"_s), QVariant(2));
}

void tst_VXQWebEngineWebView::scriptsOfAKilledProcessEndWithoutResult()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    QVariantList results;
    const auto store = [&results](const QVariant& theValue) { results.append(theValue); };
    page.view->runJavascriptAsync(u"for (;;) {}"_s, store);
    page.view->runJavascriptAsync(u"1"_s, store);
    QVERIFY(VXRenderer::kill(page));
    QTRY_COMPARE(results, (QVariantList{QVariant(), QVariant()}));
    page.view->runJavascriptAsync(u"2"_s, store);
    QCOMPARE(results.size(), 3);
    QVERIFY(!page.view->runJavascriptSync(u"3"_s).isValid());
    page.view.reset();
    page.window.reset();
    QCOMPARE(results.size(), 3); // the engine's own late answers change nothing
}

void tst_VXQWebEngineWebView::navigatingIsNoCrash()
{
    VXRawPeer first;
    VXRawPeer second;
    VXWebTest::Page page;
    QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
    for (const QUrl& url : {first.url(), QUrl(u"about:blank"_s), second.url()}) {
        page.view->setUrl(url);
        QVERIFY(finished.wait(20000));
    }
    QVERIFY(!isRecorded(true));
    QVERIFY(!isRecorded(false));
}

void tst_VXQWebEngineWebView::withoutWidgetNothingHappens()
{
    VXWebTest::Page page;
    QVERIFY(page.load(receipt));
    page.window.reset();
    VXWebView& view = *page.view;
    QHash<QString, QVariant> results;
    int answers = 0;

    QCOMPARE(view.nativeWidget(), nullptr);
    view.setUrl(QUrl(u"about:blank"_s));
    view.setHtml(receipt);
    view.runJavaScript(u"1"_s, &results);
    view.runJavascriptAsync(
        u"1"_s, [&](const QVariant& theValue) { answers += theValue.isValid() ? 10 : 1; });
    view.runJavascriptAsync(u"1"_s, {});
    QVERIFY(!view.handlesURLScheme(u"qrc"_s));
    QCOMPARE(view.title(), QString());
    QCOMPARE(view.url(), QUrl());
    view.stop();
    QCOMPARE(view.contentsSize(), QSizeF());
    view.deleteAllCookies();
    view.reload();
    view.printContent();
    view.saveContent(u"/tmp/never.pdf"_s);
    view.injectCustomHtml();
    QVERIFY(!view.runJavascriptSync(u"1"_s).isValid());
    QCOMPARE(answers, 1);
    QVERIFY(results.isEmpty());
    QVERIFY(!QFile::exists(u"/tmp/never.pdf"_s));
}

void tst_VXQWebEngineWebView::aWidgetThatDiesAfterTheLoadIsHarmless()
{
    auto window = std::make_unique<QWidget>();
    const std::unique_ptr<VXWebView> view(VXWebView::createWebView(window.get(), true));
    QSignalSpy finished(view.get(), &VXWebView::loadFinished);
    connect(view.get(), &VXWebView::loadFinished, this,
            [&window] { window.release()->deleteLater(); });
    view->setHtml(receipt);
    QVERIFY(finished.wait(20000));
    QTRY_COMPARE(view->nativeWidget(), nullptr); // the injection was queued meanwhile
}

VX_PROBE_TEST_MAIN(QApplication, tst_VXQWebEngineWebView, {u"printToFile"_s, printToFile},
                   {u"printAfterCancelling"_s, printAfterCancelling},
                   {u"printAndCloseMeanwhile"_s, printAndCloseMeanwhile},
                   {u"printAndCloseAtOnce"_s, printAndCloseAtOnce},
                   {u"quitWhileSaving"_s, quitWhileSaving})

#include "tst_VXQWebEngineWebView.moc"
