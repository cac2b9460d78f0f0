#include "VXQWebPage.h"

#include "VXBrowserDialog.h"
#include "VXRequestNetwork.h"
#include "VXWebView.h"

#include <QtCore/QDebug>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize popUpSize(600, 480);

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
{
    connectAuthentication();
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
