#include "VXQWebPage.h"

#include "VXBrowserDialog.h"
#include "VXRequestNetwork.h"
#include "VXWebView.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>

#include <chrono>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize popUpSize(600, 480);
constexpr std::chrono::seconds longestPrint(10);

/// The engine takes an authenticator without a name as an answer and asks again, over and over;
/// only a null one makes it give up.
void giveUpIfEmpty(QAuthenticator* theAuthenticator)
{
    if (theAuthenticator->user().isEmpty() && theAuthenticator->password().isEmpty())
        *theAuthenticator = QAuthenticator();
}

/// Where a download came from, without what may be secret or endless in it.
QString origin(const QUrl& theUrl)
{
    return theUrl.scheme() + "://"_L1 + theUrl.host();
}

} // namespace

VXQWebPage::VXQWebPage(VXWebView* theView)
    : QWebEnginePage(QWebEngineProfile::defaultProfile(), theView->nativeWidget())
    , myWebView(theView)
    , myOwner(theView->nativeWidget())
{
    connectAuthentication();
    connect(this, &QWebEnginePage::pdfPrintingFinished, this, &VXQWebPage::finishPdf);
    connect(this, &QWebEnginePage::contentsSizeChanged, theView, &VXWebView::contentsSizeChanged);
    connect(this, &QWebEnginePage::certificateError, this, &VXQWebPage::handleCertificateError);
    connect(profile(), &QWebEngineProfile::downloadRequested, this, &VXQWebPage::refuseDownload);
}

VXQWebPage::~VXQWebPage() = default;

/// Direct, because the authenticator has to be filled when the signal returns. The second receiver
/// of each signal runs after the first.
void VXQWebPage::connectAuthentication()
{
    auto* const mediator = VXRequestNetwork::instance();
    connect(this, &QWebEnginePage::authenticationRequired, mediator,
            &VXRequestNetwork::handleAuthenticationRequest, Qt::DirectConnection);
    connect(
        this, &QWebEnginePage::authenticationRequired, this,
        [](const QUrl&, QAuthenticator* theAuthenticator) { giveUpIfEmpty(theAuthenticator); },
        Qt::DirectConnection);
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, mediator,
            &VXRequestNetwork::handleProxyAuthenticationRequest, Qt::DirectConnection);
    connect(
        this, &QWebEnginePage::proxyAuthenticationRequired, this,
        [](const QUrl&, QAuthenticator* theAuthenticator, const QString&) {
            giveUpIfEmpty(theAuthenticator);
        },
        Qt::DirectConnection);
}

VXWebView* VXQWebPage::webView() const
{
    return myWebView;
}

void VXQWebPage::savePdf(const QString& theFileName, const QPageLayout& theLayout)
{
    becomeOrphan();
    myPdfs.append(theFileName);
    printToPdf(theFileName, theLayout);
}

void VXQWebPage::print(QPrinter* thePrinter)
{
    auto* const view = QWebEngineView::forPage(this);
    if (!view || myIsOnPaper)
        return;
    becomeOrphan();
    myIsOnPaper = true;
    awaitPaper();
    view->print(thePrinter);
}

bool VXQWebPage::isPrinting() const
{
    return myIsOnPaper || !myPdfs.isEmpty();
}

/// Qt 6.4 crashes when a page goes while it is printed, and it tells the page that a file is
/// written without looking whether it is still there. So nobody owns the page meanwhile.
void VXQWebPage::becomeOrphan()
{
    if (isPrinting())
        return;
    setParent(nullptr);
    connect(myOwner, &QObject::destroyed, this, &VXQWebPage::outliveView);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &VXQWebPage::waitForPrints);
}

/// A host may print files of its own.
void VXQWebPage::finishPdf(const QString& theFileName)
{
    if (myPdfs.removeOne(theFileName))
        finishPrint();
}

void VXQWebPage::finishPrint()
{
    if (isPrinting())
        return;
    disconnect(QCoreApplication::instance(), nullptr, this, nullptr);
    if (std::exchange(myIsToStop, false))
        QWebEnginePage::triggerAction(Stop);
    if (!myOwner) {
        deleteLater();
        return;
    }
    disconnect(myOwner, &QObject::destroyed, this, &VXQWebPage::outliveView);
    setParent(myOwner);
}

/// It is the view that tells of the end on paper; one that is never shown takes its place.
void VXQWebPage::outliveView()
{
    auto* const view = new QWebEngineView; // goes with the page
    view->setPage(this);
    connect(this, &QObject::destroyed, view, &QObject::deleteLater);
    if (myIsOnPaper)
        awaitPaper();
}

void VXQWebPage::awaitPaper()
{
    connect(
        QWebEngineView::forPage(this), &QWebEngineView::printFinished, this,
        [this] {
            myIsOnPaper = false;
            finishPrint();
        },
        Qt::SingleShotConnection);
}

void VXQWebPage::waitForPrints()
{
    const QPointer<VXQWebPage> guard(this);
    const QDeadlineTimer deadline(longestPrint);
    QTimer::singleShot(longestPrint, this, [] {}); // ends the last wait
    QEventLoop waiting;
    while (guard && isPrinting() && !deadline.hasExpired())
        waiting.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

/// Qt 6.4 crashes when a page is stopped while it is printed.
void VXQWebPage::triggerAction(WebAction theAction, bool theIsChecked)
{
    if (theAction == Stop && isPrinting())
        myIsToStop = true;
    else
        QWebEnginePage::triggerAction(theAction, theIsChecked);
}

void VXQWebPage::handleCertificateError(const QWebEngineCertificateError& theCertificateError)
{
    auto* const mediator = VXRequestNetwork::instance();
    const QString host = theCertificateError.url().host();
    const QString description = theCertificateError.description();
    if (theCertificateError.isOverridable())
        std::ignore = mediator->askIgnoreSSLErrors(host, {description});
    else
        mediator->showSSLErrorWarning(host, description);
}

QWebEnginePage* VXQWebPage::createWindow(QWebEnginePage::WebWindowType theType)
{
    Q_UNUSED(theType)
    auto* const dialog = new VXBrowserDialog(nullptr, false, false); // its own, see below
    dialog->setAdjustSizeEnabled(true);
    dialog->resize(popUpSize);
    dialog->setModal(false);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    const auto* const view = qobject_cast<QWebEngineView*>(dialog->webView()->nativeWidget());
    return view ? view->page() : nullptr;
}

void VXQWebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel theLevel,
                                          const QString& theMessage, int theLineNumber,
                                          const QString& theSourceId)
{
    qInfo() << "level=" << theLevel << "; message=" << theMessage
            << "; lineNumber=" << theLineNumber << "; sourceID=" << theSourceId;
}

/// Pages are here to be read; a file that comes instead would end up where nobody looks for it.
void VXQWebPage::refuseDownload(QWebEngineDownloadRequest* theDownload)
{
    // Each page of the profile is asked, and the first one refuses. The request is not asked for
    // its page: Qt 6.4 crashes there when the page has gone on to another address meanwhile.
    if (theDownload->state() != QWebEngineDownloadRequest::DownloadRequested)
        return;
    theDownload->cancel();
    theDownload->deleteLater(); // the profile would keep it until its own end
    qWarning().noquote() << "Download refused:" << origin(theDownload->url());
}
