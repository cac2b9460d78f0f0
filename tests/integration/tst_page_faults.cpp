#include "VXDialogVisitor.h"
#include "VXProbe.h"
#include "VXRawPeer.h"
#include "VXReliabilityDocument.h"
#include "VXRenderer.h"
#include "VXTlsPeer.h"
#include "VXWebTest.h"

#include <VXCore/VXCrashDetector.h>
#include <VXNetworking/VXJavaScriptExecutor.h>
#include <VXNetworking/VXQWebEngineWebView.h>

#include <QtCore/QTimer>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <csignal>
#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Begins to load and says whether that succeeded.
QString load(const VXWebTest::Page& thePage, const QUrl& theUrl)
{
    QSignalSpy finished(thePage.view.get(), &VXWebView::loadFinished);
    thePage.view->setUrl(theUrl);
    if (!finished.wait(30000))
        return u"no end"_s;
    return finished.constFirst().constFirst().toBool() ? u"shown"_s : u"refused"_s;
}

/// In a process of its own: a batch of scripts in a page whose process was killed. Nothing but the
/// end of the process ends the wait.
int executor()
{
    VXWebTest::Page page;
    if (!page.load(u"<p>Text"_s) || !VXRenderer::kill(page, SIGKILL))
        return 1;
    VXJavaScriptExecutor executor(page.view.get());
    executor.addScriptSource(u"1 + 1"_s);
    QTimer::singleShot(5000, [] {
        VXProbe::print(u"waits"_s);
        std::fflush(stdout);
        ::_exit(0);
    });
    executor.execute();
    VXProbe::print(u"returns"_s);
    return 0;
}

} // namespace

/// Faults around embedded pages; the outcomes stand in docs/reliability.md.
class tst_page_faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aKilledPage_data();
    void aKilledPage();
    void aBatchInAKilledPage();
    void aBadCertificate_data();
    void aBadCertificate();
    void theDocumentHasNoOtherRows();

private:
    static void compare(const QString& theRow, const QStringList& theMeasured);
};

void tst_page_faults::init()
{
    VXCrashDetector::instance()->setDidCrash(true, false);
    VXCrashDetector::instance()->setDidCrash(false, false);
}

void tst_page_faults::compare(const QString& theRow, const QStringList& theMeasured)
{
    QCOMPARE(theMeasured, VXReliabilityDocument::rows(u"Web pages"_s).value(theRow));
}

void tst_page_faults::aKilledPage_data()
{
    QTest::addColumn<bool>("isAccelerated");
    QTest::addColumn<int>("signal");

    QTest::newRow("killed, acceleration on") << true << SIGKILL;
    QTest::newRow("killed, acceleration off") << false << SIGKILL;
    QTest::newRow("crashed, acceleration on") << true << SIGSEGV;
    QTest::newRow("crashed, acceleration off") << false << SIGSEGV;
}

void tst_page_faults::aKilledPage()
{
    QFETCH(bool, isAccelerated);
    QFETCH(int, signal);
    VXQWebEngineWebView::haveGpuEnabled = isAccelerated;
    VXRawPeer peer;
    VXWebTest::Page page;
    QCOMPARE(load(page, peer.url()), u"shown"_s);
    const QSignalSpy started(page.view.get(), &VXWebView::loadStarted);
    QVERIFY(VXRenderer::kill(page, signal));
    const VXCrashDetector nextRun;
    const QString record =
        u"%1%2"_s.arg(nextRun.qtWebEngineDidCrashWithGpuOn() ? u"on"_s : u""_s,
                      nextRun.qtWebEngineDidCrashWithGpuOff() ? u"off"_s : u""_s);
    const QVariant result = page.view->runJavascriptSync(u"1 + 1"_s);
    const QString script = result.isValid() ? result.toString() : u"no result"_s;
    // A load that the library began would have begun by the end of the next one.
    compare(QString::fromUtf8(QTest::currentDataTag()),
            {record, script, QString::number(started.count()), load(page, peer.url())});
}

void tst_page_faults::aBatchInAKilledPage()
{
    const QStringList lines = VXProbe::run(u"executor"_s, std::chrono::seconds(60));
    compare(u"batch of scripts in a killed page"_s, {u"-"_s, lines.value(0), u"-"_s, u"-"_s});
}

void tst_page_faults::aBadCertificate_data()
{
    QTest::addColumn<int>("answer");

    QTest::newRow("bad certificate, accepted") << int(QMessageBox::Yes);
    QTest::newRow("bad certificate, refused") << int(QMessageBox::No);
}

void tst_page_faults::aBadCertificate()
{
    QFETCH(int, answer);
    VXTestCertificates certificates;
    VXTlsPeer peer(certificates.selfSigned());
    const VXDialogVisitor user([&](QDialog* theDialog) {
        auto* const box = qobject_cast<QMessageBox*>(theDialog);
        box->button(static_cast<QMessageBox::StandardButton>(answer))->click();
    });
    VXWebTest::Page page;
    const QString outcome = load(page, peer.url());
    compare(QString::fromUtf8(QTest::currentDataTag()),
            {u"-"_s, u"asked %1"_s.arg(user.count()), u"-"_s, outcome});
    QCOMPARE(peer.requests().size(), 0);
}

void tst_page_faults::theDocumentHasNoOtherRows()
{
    QCOMPARE(VXReliabilityDocument::rows(u"Web pages"_s).size(), 4 + 1 + 2);
}

VX_PROBE_TEST_MAIN(QApplication, tst_page_faults, {u"executor"_s, executor})

#include "tst_page_faults.moc"
