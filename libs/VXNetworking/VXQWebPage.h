#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWebEngineCore/QWebEngineCertificateError>
#include <QtWebEngineCore/QWebEnginePage>

class QAuthenticator;
class QPrinter;
class QWebEngineDownloadRequest;
class VXWebView;

/// The page inside a web view: it brings the engine's questions to VXRequestNetwork, opens pop-up
/// windows in browser dialogs, writes the page's console to the log and refuses downloads, with a
/// warning.
///
/// A page of the default profile, owned by the view's widget, see savePdf(). GUI thread only.
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

    /// Prints to a PDF file, in the background; a failure is not told. Until the file is written
    /// the page outlives its view's widget: whoever closes the window at once still gets the file.
    /// The end of the application's event loop waits for it, up to ten seconds.
    void savePdf(const QString& theFileName, const QPageLayout& theLayout);

    /// The same on thePrinter, which must live as long as that takes. Does nothing while the page
    /// is being printed on paper already.
    void print(QPrinter* thePrinter);

    /// As the engine does it, but to stop a load waits until nothing is printed.
    void triggerAction(WebAction theAction, bool theIsChecked = false) override;

public Q_SLOTS:
    /// Asks the user, or tells them when there is no choice. The engine refuses the certificate
    /// whatever they answer: the error is neither accepted nor deferred.
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
    [[nodiscard]] bool isPrinting() const;
    void becomeOrphan();
    void finishPdf(const QString& theFileName);
    void finishPrint();
    void outliveView();
    void awaitPaper();
    void waitForPrints();

    QPointer<VXWebView> myWebView;
    QPointer<QWidget> myOwner; // the parent, but for the time of printing
    QStringList myPdfs;        // that are not written yet
    bool myIsOnPaper = false;  // is being printed, or will be
    bool myIsToStop = false;   // when all is printed
};
