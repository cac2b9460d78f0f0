#include "VXTourWebSteps.h"

#include "VXSampleContext.h"
#include "VXSampleOrderWindow.h"
#include "VXSampleWizardScreen.h"
#include "VXTourRun.h"
#include "VXTourWebPage.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXBrowserDialog.h>
#include <VXNetworking/VXJavaScriptExecutor.h>
#include <VXNetworking/VXProgramUpdateDescriptionDialog.h>
#include <VXNetworking/VXWebSocketCommunication.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtGui/QDesktopServices>
#include <QtGui/QImage>
#include <QtWebEngineWidgets/QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

constexpr int loadMilliseconds = 20'000;
constexpr int sceneBlue = 200;

const QString linkPage =
    u"<html lang=\"de\"><title>Fotos</title><body style=\"font-family: sans-serif; margin: 2em\">"
    "<h1>Ihre Fotos</h1><p>Alle Preise stehen auf <a id=\"a\" href=\"https://photos.test/\">"
    "photos.test</a>; die Seite öffnet sich in Ihrem Browser.</p></body></html>"_s;

bool load(VXWebView& theView, const std::function<void()>& theStart)
{
    QEventLoop loop;
    bool isLoaded = false;
    QObject::connect(&theView, &VXWebView::loadFinished, &loop, [&](bool theIsOk) {
        isLoaded = theIsOk;
        loop.quit();
    });
    QTimer::singleShot(loadMilliseconds, &loop, &QEventLoop::quit);
    theStart();
    loop.exec();
    QCoreApplication::sendPostedEvents(); // the view adapts the page after the signal
    return isLoaded;
}

QVariant run(VXWebView& theView, const QString& theScript)
{
    VXJavaScriptExecutor executor(&theView);
    executor.addScriptSource(theScript);
    executor.execute();
    return executor.result(theScript);
}

QWebEngineView& engineView(const VXBrowserDialog& theDialog)
{
    return *qobject_cast<QWebEngineView*>(theDialog.webView()->nativeWidget());
}

/// The dialog around a page, loaded, drawn and photographed.
void showPage(VXTourRun& theRun, const QUrl& theUrl, const QString& thePicture,
              const std::function<void(VXBrowserDialog&)>& theFurther)
{
    VXBrowserDialog dialog(nullptr, true, true);
    dialog.resize(900, 680);
    dialog.show();
    theRun.expect(load(*dialog.webView(), [&] { dialog.setUrl(theUrl); }),
                  u"%1 did not load"_s.arg(theUrl.toString()));
    theRun.expect(VXTourWebPage::waitUntilDrawn(engineView(dialog)), u"the page is not drawn"_s);
    if (VXCSSSkinManager::instance()->currentMode() == VXCSSSkinManager::Dark)
        theRun.expect(VXTourWebPage::waitUntilDark(engineView(dialog)), u"the page is light"_s);
    theRun.photograph(&dialog, thePicture);
    theRun.came(u"\"%1\""_s.arg(dialog.webView()->title()));
    if (theFurther)
        theFurther(dialog);
}

void showStartScreen(VXTourRun& theRun)
{
    showPage(theRun, QUrl(u"tov://localhost/index.html"_s), u"31-start-screen.png"_s, {});
}

/// The page asks for the picture that the application has rendered for it.
void showScene(VXTourRun& theRun)
{
    const QString scene = VXBasisSettings::instance()->temporaryDirectory() +
                          u"/scene-%1.png"_s.arg(QCoreApplication::applicationPid());
    QImage image(640, 360, QImage::Format_RGB32);
    image.fill(QColor(40, 90, sceneBlue));
    theRun.expect(image.save(scene), u"cannot write the scene"_s);
    showPage(theRun, QUrl(u"tov://localhost/threejs/index.html"_s), u"31-scene.png"_s,
             [&theRun](VXBrowserDialog& theDialog) {
                 const QVariant width =
                     run(*theDialog.webView(),
                         u"Math.max(0, ...Array.from(document.images, i => i.naturalWidth))"_s);
                 theRun.expectEqual<qint64>(u"width of the scene"_s, width.toLongLong(), 640);
             });
    QFile::remove(scene);
}

void showProposal(VXTourRun& theRun)
{
    showPage(theRun, QUrl(u"tov://localhost/autoBookProposal/proposal.html"_s),
             u"31-book-proposal.png"_s, {});
}

QUrl receipt()
{
    return QUrl::fromLocalFile(VXDirectoryConfig::instance()->htmlPath(u"/receipt.html"_s));
}

void saveReceipt(VXTourRun& theRun)
{
    const QString path = theRun.world.folder.filePath(u"28-receipt.pdf"_s);
    showPage(theRun, receipt(), u"26-receipt.png"_s, [&](VXBrowserDialog& theDialog) {
        QEventLoop loop;
        QObject::connect(&engineView(theDialog), &QWebEngineView::pdfPrintingFinished, &loop,
                         &QEventLoop::quit);
        QTimer::singleShot(loadMilliseconds, &loop, &QEventLoop::quit);
        Q_EMIT theDialog.saveContent(path);
        loop.exec();
    });
    QFile file(path);
    theRun.expect(file.open(QIODevice::ReadOnly) && file.read(4) == "%PDF", u"there is no PDF"_s);
    theRun.came(u"PDF of %1 bytes"_s.arg(file.size()));
}

void showDarkPage(VXTourRun& theRun)
{
    const int before = VXCSSSkinManager::instance()->currentMode();
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Dark);
    showPage(theRun, receipt(), u"30-receipt-dark.png"_s, {});
    VXCSSSkinManager::instance()->setMode(before);
}

/// Takes the addresses that would open in the desktop's browser.
class Desktop : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Desktop)

public:
    Desktop() { QDesktopServices::setUrlHandler(u"https"_s, this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"https"_s); }

    [[nodiscard]] QStringList opened() const { return myOpened; }

    Q_INVOKABLE void open(const QUrl& theUrl)
    {
        myOpened << theUrl.toString();
        Q_EMIT isOpened();
    }

    Q_SIGNAL void isOpened();

private:
    QStringList myOpened;
};

void clickLink(VXTourRun& theRun)
{
    const Desktop desktop;
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.resize(560, 300);
    dialog.show();
    theRun.expect(load(*dialog.webView(), [&dialog] { dialog.setHtml(linkPage); }),
                  u"the page did not load"_s);
    theRun.expect(VXTourWebPage::waitUntilDrawn(engineView(dialog)), u"the page is not drawn"_s);
    QEventLoop loop;
    QObject::connect(&desktop, &Desktop::isOpened, &loop, &QEventLoop::quit);
    QTimer::singleShot(loadMilliseconds, &loop, &QEventLoop::quit);
    run(*dialog.webView(), u"document.getElementById('a').click()"_s);
    if (desktop.opened().isEmpty())
        loop.exec();
    theRun.expectEqual<QString>(u"opened outside"_s, desktop.opened().join(u' '),
                                u"https://photos.test/"_s);
    theRun.photograph(&dialog, u"29-link.png"_s);
    theRun.came(u"opened outside: %1"_s.arg(desktop.opened().join(u' ')));
}

void runScripts(VXTourRun& theRun)
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    load(*dialog.webView(), [&] { dialog.setUrl(QUrl(u"tov://localhost/index.html"_s)); });
    VXJavaScriptExecutor executor(dialog.webView());
    const QStringList scripts{u"6 * 7"_s, u"document.title"_s, u"navigator.language"_s};
    for (const QString& script : scripts)
        executor.addScriptSource(script);
    executor.execute();
    theRun.expectEqual<qint64>(u"6 * 7"_s, executor.result(scripts.at(0)).toLongLong(), 42);
    theRun.expectEqual<QString>(u"title"_s, executor.result(scripts.at(1)).toString(),
                                dialog.webView()->title());
    for (const QString& script : scripts)
        theRun.came(u"%1 = %2"_s.arg(script, executor.result(script).toString()));
}

void showUpdate(VXTourRun& theRun, bool theIsMandatory)
{
    QFile notes(VXDirectoryConfig::instance()->htmlPath(u"/release-notes.html"_s));
    theRun.expect(notes.open(QIODevice::ReadOnly), u"there are no release notes"_s);
    VXProgramUpdateDescriptionDialog dialog(nullptr, QString::fromUtf8(notes.readAll()),
                                            theIsMandatory);
    dialog.show();
    theRun.expect(VXTourWebPage::waitUntilDrawn(*dialog.findChild<QWebEngineView*>()),
                  u"the release notes are not drawn"_s);
    theRun.photograph(&dialog, theIsMandatory ? u"25-update-mandatory.png"_s : u"25-update.png"_s);
    theRun.came(dialog.windowTitle());
}

/// The customer enters a coupon in the page; the native half takes it and lowers the price.
void showOrderSummary(VXTourRun& theRun)
{
    VXSampleWizardScreen screen(theRun.world.context.output);
    VXWebSocketCommunication communication(u"tour"_s);
    communication.registerObject(u"wizardScreen"_s, &screen);
    VXSampleOrderWindow window(screen, communication);
    window.show();
    auto& view = *window.findChild<QWebEngineView*>();
    theRun.expect(VXTourWebPage::waitUntilDrawn(view), u"the page is not drawn"_s);
    theRun.expect(VXTourWebPage::waitUntilTrue(view, u"!!window.wizardScreen"_s),
                  u"the page did not reach the native object"_s);

    QJsonObject summary;
    QObject::connect(&screen, &VXSampleWizardScreen::summaryChanged, &window,
                     [&summary](const QJsonObject& theSummary) { summary = theSummary; });
    const QImage before = view.grab().toImage();
    VXTourWebPage::run(view, u"document.getElementById('couponCodeEdit').value = 'SOMMER10';"
                             "document.getElementById('applyCouponButton').click()"_s);
    theRun.expect(
        VXTourWebPage::waitUntilTrue(view, u"document.body.innerText.includes('SOMMER10')"_s),
        u"the page does not show the coupon"_s);
    theRun.expect(!summary.isEmpty(), u"the native object was not called"_s);
    theRun.expect(VXTourWebPage::waitUntilChanged(view, before), u"the coupon is not drawn"_s);
    theRun.photograph(&window, u"33-order-summary.png"_s);
    theRun.came(u"coupon SOMMER10 reached the native object"_s);
}

/// A socket whose first message is not the token gets nothing, ever.
void refuseWrongToken(VXTourRun& theRun)
{
    VXSampleWizardScreen screen(theRun.world.context.output);
    VXWebSocketCommunication communication(u"tour"_s);
    communication.registerObject(u"wizardScreen"_s, &screen);
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    load(*dialog.webView(), [&] { dialog.setHtml(u"<p>Falsches Token</p>"_s); });
    auto& view = engineView(dialog);
    VXTourWebPage::run(view, u"vxMessages = 0; vxSocket = new WebSocket('%1');"
                             "vxSocket.onmessage = () => { ++vxMessages; };"
                             "vxSocket.onopen = () => { vxSocket.send('VXSecToken:wrong');"
                             "vxSocket.send('{\"type\":3,\"id\":1}'); vxSocket.close(); };"
                             "vxSocket.onclose = () => { vxIsClosed = true; }"_s.arg(
                                 communication.serverUrl().toString()));
    theRun.expect(VXTourWebPage::waitUntilTrue(view, u"!!window.vxIsClosed"_s),
                  u"the socket stayed open"_s);
    theRun.expectEqual<qint64>(u"messages"_s,
                               VXTourWebPage::run(view, u"vxMessages"_s).toLongLong(), 0);
    theRun.came(u"no message for a page without the token"_s);
}

} // namespace

QList<VXTourStep> VXTourWebSteps::steps()
{
    return {
        {u"web"_s, u"Update dialog"_s, [](VXTourRun& theRun) { showUpdate(theRun, false); }},
        {u"web"_s, u"Mandatory update"_s, [](VXTourRun& theRun) { showUpdate(theRun, true); }},
        {u"web"_s, u"Receipt in the browser dialog, saved as PDF"_s, saveReceipt},
        {u"web"_s, u"Link of a page opens outside"_s, clickLink},
        {u"web"_s, u"Receipt in the dark skin"_s, showDarkPage},
        {u"web"_s, u"Start screen by the own scheme"_s, showStartScreen},
        {u"web"_s, u"3D scene with the rendered picture"_s, showScene},
        {u"web"_s, u"Book proposal"_s, showProposal},
        {u"web"_s, u"Three scripts in one step"_s, runScripts},
        {u"channel"_s, u"Order summary over the web channel"_s, showOrderSummary},
        {u"channel"_s, u"Wrong token is refused"_s, refuseWrongToken},
    };
}

#include "VXTourWebSteps.moc"
