#include "VXQWebEngineWebView.h"

#include "VXQWebPage.h"

#include <VXCore/VXCrashDetector.h>

#include <QtCore/QMarginsF>
#include <QtGui/QPageLayout>
#include <QtGui/QPageSize>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWebEngineCore/QWebEngineCookieStore>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal pdfMargin = 20; // points

/// Calls back at most once.
void answer(std::function<void(QVariant)>& theCallback, const QVariant& theValue)
{
    if (const auto callback = std::exchange(theCallback, {}))
        callback(theValue);
}

/// A printer that is never destroyed: printing goes on after everybody forgot about it.
QPrinter* createPrinter()
{
    static auto* const ourPrinters = new QList<QPrinter*>;
    ourPrinters->append(new QPrinter(QPrinter::HighResolution));
    return ourPrinters->constLast();
}

} // namespace

bool VXQWebEngineWebView::haveGpuEnabled = true;

VXQWebEngineWebView::VXQWebEngineWebView(QWidget* theParentWidget)
    : VXWebView(theParentWidget)
    , myView(new QWebEngineView(theParentWidget))
{
    myView->setPage(new VXQWebPage(this)); // child of the widget
    forwardSignals();
}

VXQWebEngineWebView::~VXQWebEngineWebView()
{
    if (myView && myView->parent() == nullptr)
        delete myView;
}

void VXQWebEngineWebView::forwardSignals()
{
    connect(myView, &QWebEngineView::loadStarted, this, &VXWebView::loadStarted);
    connect(myView, &QWebEngineView::loadFinished, this, &VXWebView::loadFinished);
    connect(myView, &QWebEngineView::titleChanged, this, &VXWebView::titleChanged);
    connect(myView, &QWebEngineView::loadProgress, this, &VXWebView::loadProgress);
    connect(myView, &QWebEngineView::urlChanged, this, &VXWebView::urlChanged);
    connect(myView->page(), &QWebEnginePage::windowCloseRequested, this,
            &VXWebView::windowCloseRequested);
    connect(myView, &QWebEngineView::loadStarted, this, [this] { myHasRenderProcess = true; });
    connect(myView, &QWebEngineView::renderProcessTerminated, this,
            &VXQWebEngineWebView::recordTermination);
}

void VXQWebEngineWebView::recordTermination(
    QWebEnginePage::RenderProcessTerminationStatus theStatus)
{
    if (theStatus != QWebEnginePage::NormalTerminationStatus)
        VXCrashDetector::instance()->recordCrashedQtWebEngineProcess(haveGpuEnabled);
    myHasRenderProcess = false;
    answerPendingScripts();
}

/// Null when there is nothing to print. Qt 6.4 crashes on a page whose render process is gone.
VXQWebPage* VXQWebEngineWebView::printablePage() const
{
    return myView && myHasRenderProcess ? qobject_cast<VXQWebPage*>(myView->page()) : nullptr;
}

QWidget* VXQWebEngineWebView::nativeWidget()
{
    return myView;
}

void VXQWebEngineWebView::setUrl(const QUrl& theUrl)
{
    if (myView)
        myView->setUrl(theUrl);
}

void VXQWebEngineWebView::runJavaScript(const QString& theScript,
                                        QHash<QString, QVariant>* theResults)
{
    if (!myView)
        return;
    myView->page()->runJavaScript(theScript, [theScript, theResults](const QVariant& theValue) {
        theResults->insert(theScript, theValue);
    });
}

void VXQWebEngineWebView::runJavascriptAsync(const QString& theScript,
                                             std::function<void(QVariant)> theCallback)
{
    const auto pending = std::make_shared<Callback>(std::move(theCallback)); // the engine's
    if (!myView || !myHasRenderProcess) {
        answer(*pending, {});
        return;
    }
    myPendingCallbacks.removeIf(
        [](const std::weak_ptr<Callback>& theOther) { return theOther.expired(); });
    myPendingCallbacks.append(pending);
    myView->page()->runJavaScript(
        theScript, [pending](const QVariant& theValue) { answer(*pending, theValue); });
}

/// The engine itself never answers for a dead process.
void VXQWebEngineWebView::answerPendingScripts()
{
    const auto callbacks = std::exchange(myPendingCallbacks, {});
    for (const std::weak_ptr<Callback>& callback : callbacks) {
        if (const auto pending = callback.lock())
            answer(*pending, {});
    }
}

bool VXQWebEngineWebView::handlesURLScheme(const QString& theScheme) const
{
    return myView &&
           QWebEngineProfile::defaultProfile()->urlSchemeHandler(theScheme.toUtf8()) != nullptr;
}

void VXQWebEngineWebView::setHtml(const QString& theHtml)
{
    if (myView)
        myView->page()->setHtml(theHtml, QUrl());
}

QString VXQWebEngineWebView::title() const
{
    return myView ? myView->title() : QString();
}

QUrl VXQWebEngineWebView::url() const
{
    return myView ? myView->url() : QUrl();
}

void VXQWebEngineWebView::stop() const
{
    if (myView)
        myView->stop();
}

QSizeF VXQWebEngineWebView::contentsSize() const
{
    return myView ? myView->page()->contentsSize() : QSizeF();
}

void VXQWebEngineWebView::deleteAllCookies()
{
    if (myView)
        QWebEngineProfile::defaultProfile()->cookieStore()->deleteAllCookies();
}

void VXQWebEngineWebView::reload() const
{
    if (myView)
        myView->reload();
}

void VXQWebEngineWebView::printContent()
{
    if (!printablePage())
        return;
    QPrinter* const printer = createPrinter();
    QPrintDialog dialog(printer);
    const QPointer<VXQWebEngineWebView> guard(this);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    auto* const page = guard ? printablePage() : nullptr; // the dialog ran an event loop
    if (isAccepted && page)
        page->print(printer);
}

void VXQWebEngineWebView::saveContent(const QString& theFileName)
{
    auto* const page = printablePage();
    if (!page || theFileName.isEmpty())
        return;
    const QPageLayout layout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                             QMarginsF(pdfMargin, pdfMargin, pdfMargin, pdfMargin));
    page->savePdf(theFileName, layout);
}
