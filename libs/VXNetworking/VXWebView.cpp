#include "VXWebView.h"

#include "VXQWebEngineWebView.h"
#include "VXWebSocketCommunication.h"

#include <VXGUIWidgets/VXCSSSkinManager.h>

#include <QtCore/QEventLoop>
#include <QtCore/QFuture>
#include <QtCore/QPointer>
#include <QtCore/QPromise>
#include <QtCore/QThread>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Both scripts are agreed on with the makers of the pages: keep them byte for byte.
const QString colorSchemeScript =
    u"style = document.createElement('style');style.textContent = '@media print {:root { "
    "color-scheme: light only;}}@media screen{:root { color-scheme: dark only;}}';"
    "document.head.append(style);"_s;

const QString linkScript =
    u"anchors = document.getElementsByTagName('a');const schemes = new "
    "Set(['https:','http:','mailto:']);for (let i = 0; i < anchors.length; ++i ) {"
    "\tconst urlObj = new URL(anchors[i].href);   if (schemes.has(urlObj.protocol)) {"
    "\t\tlet encodedUrl = encodeURIComponent(anchors[i].href);"
    "\t\tanchors[i].addEventListener('click', function(e) { "
    "\t\t\t"
    "e.preventDefault();\t\t\t"
    "e.stopPropagation();\t\t\tvar img = new Image();"
    "\t\t\timg.src = 'tov://localhost/openUrl?url=' + encodedUrl;\t\t});"
    "\t\tanchors[i].href = '#';\t}}"_s;

/// What the injected scripts return: nobody reads it, and answers may come at any time, so it is
/// never destroyed.
QHash<QString, QVariant>* injectionResults()
{
    static auto* const ourResults = new QHash<QString, QVariant>;
    return ourResults;
}

/// Pages of the web and of the application's own scheme are theirs to design, and so is the start
/// screen.
bool isAdapted(const QUrl& theUrl)
{
    const QString scheme = theUrl.scheme();
    return scheme != u"http" && scheme != u"https" && scheme != u"tov" &&
           !theUrl.path(QUrl::FullyDecoded).contains("/startscreen/html/"_L1);
}

/// What a local event loop waits for. The engine may answer when nobody waits any more.
struct Answer
{
    QPointer<QEventLoop> loop;
    QVariant value;
    bool isThere = false;
};

QVariant runWithEventLoop(VXWebView& theView, const QString& theScript)
{
    QEventLoop loop;
    const auto answer = std::make_shared<Answer>();
    answer->loop = &loop;
    QObject::connect(&theView, &QObject::destroyed, &loop, &QEventLoop::quit);
    theView.runJavascriptAsync(theScript, [answer](const QVariant& theValue) {
        if (answer->isThere)
            return;
        answer->value = theValue;
        answer->isThere = true;
        if (answer->loop)
            answer->loop->quit();
    });
    if (!answer->isThere) {
        // In a slot that is called by an event, the engine's next one may be posted already; glib's
        // dispatcher sleeps on it unless it is woken.
        loop.wakeUp();
        loop.exec();
    }
    return answer->value;
}

QVariant runFromOtherThread(VXWebView& theView, const QString& theScript)
{
    // Started, because Qt waits for nothing else. It ends without a result when the last owner, be
    // it a call that never ran, gives it up.
    auto promise = std::make_shared<QPromise<QVariant>>();
    promise->start();
    QFuture<QVariant> future = promise->future();
    QMetaObject::invokeMethod(
        &theView,
        [view = &theView, theScript, promise = std::move(promise)] {
            view->runJavascriptAsync(theScript, [promise](const QVariant& theValue) {
                promise->addResult(theValue); // only the first: a finished promise takes no more
                promise->finish();
            });
        },
        Qt::QueuedConnection);
    future.waitForFinished();
    return future.resultCount() > 0 ? future.result() : QVariant();
}

} // namespace

VXWebView::VXWebView(QWidget* theParentWidget)
    : myParentWidget(theParentWidget)
{
}

VXWebView::~VXWebView() = default;

VXWebView* VXWebView::createWebView(QWidget* theParent, bool injectCustom)
{
    auto* const view = new VXQWebEngineWebView(theParent); // the caller's
    if (injectCustom) {
        connect(view, &VXWebView::loadFinished, view, &VXWebView::injectCustomHtml,
                Qt::QueuedConnection);
    }
    return view;
}

void VXWebView::updateNativeWidget(QWidget*) {}

VXAbstractCommunication* VXWebView::createCommunication(const QString& theName)
{
    return new VXWebSocketCommunication(theName); // the caller's
}

QVariant VXWebView::runJavascriptSync(const QString& theScript)
{
    return QThread::currentThread() == thread() ? runWithEventLoop(*this, theScript)
                                                : runFromOtherThread(*this, theScript);
}

void VXWebView::injectCustomHtml()
{
    if (!isAdapted(url()))
        return;
    const bool isDark = VXCSSSkinManager::instance()->currentMode() == VXCSSSkinManager::Dark;
    runJavaScript(isDark ? colorSchemeScript + linkScript : linkScript, injectionResults());
}
