#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEngineCertificateError>
#include <QtWebEngineCore/QWebEnginePage>

class QAuthenticator;
class QWebEngineDownloadRequest;
class VXWebView;

/// The page inside a web view: it brings the engine's questions to VXRequestNetwork, opens pop-up
/// windows in browser dialogs, writes the page's console to the log and refuses downloads, with a
/// warning.
///
/// A page of the default profile, owned by the view's widget. GUI thread only.
class VXNETWORKING_EXPORT VXQWebPage : public QWebEnginePage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXQWebPage)

public:
    /// theView must have its widget already.
    explicit VXQWebPage(VXWebView* theView);
    ~VXQWebPage() override;

    /// The view it was made for; null after that died.
    [[nodiscard]] VXWebView* webView() const;

public Q_SLOTS:
    /// Asks the user, or tells him when there is no choice. The engine refuses the certificate
    /// whatever he answers: the error is neither accepted nor deferred.
    void handleCertificateError(const QWebEngineCertificateError& theCertificateError);

protected:
    /// The page of a new browser dialog, which belongs to itself and goes when it is closed. Null
    /// refuses the window.
    QWebEnginePage* createWindow(QWebEnginePage::WebWindowType theType) override;

    /// One line of the log for each message, at the level of information whatever theLevel is.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel theLevel, const QString& theMessage,
                                  int theLineNumber, const QString& theSourceId) override;

private:
    void connectAuthentication();
    void refuseDownload(QWebEngineDownloadRequest* theDownload);

    QPointer<VXWebView> myWebView;
};
