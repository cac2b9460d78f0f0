#pragma once

#include "VXNetworkingExport.h"

#include <VXGUIWidgets/VXDialog.h>

#include <QtCore/QSize>

class QBoxLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;
class QUrl;
class VXWebView;
struct VXDialogConfig;

/// A dialog around a web view, with a progress bar and, where wanted, buttons that print the page
/// or save it as PDF. Its title follows the page's; in developer mode it has an address line.
///
/// Keys: Ctrl+P and Ctrl+S where their button is visible, Ctrl++, Ctrl+- and Ctrl+0 for the size of
/// the page, Escape closes. GUI thread only.
class VXNETWORKING_EXPORT VXBrowserDialog : public VXDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXBrowserDialog)

public:
    /// Shows an empty page. The two flags say which of the buttons, and their keys, there are.
    VXBrowserDialog(QWidget* theParent, bool thePrintButton, bool theSaveButton);

    /// Deletes the view as well.
    ~VXBrowserDialog() override;

    /// Owned by the dialog.
    [[nodiscard]] VXWebView* webView() const;

    /// See VXWebView::setHtml().
    void setHtml(const QString& theHtml);

    /// Begins to load theUrl and returns at once.
    void setUrl(const QUrl& theUrl);

    /// Lets the dialog fit its size to the page once, when the next page has been loaded without an
    /// error; false takes that back.
    void setAdjustSizeEnabled(bool theIsEnabled);

    /// Does what setAdjustSizeEnabled() asked for: gives the page as much room as it needs and the
    /// screen has, leaves room for a task bar, and centres the dialog. The engine may still report
    /// the size of the page before; a page without a size gets 1024 x 768.
    void adjustSize();

    /// Asks for a file and emits saveContent(). The page's title is the proposed name.
    void save();

Q_SIGNALS:
    /// The print button was pressed; the view shows its print dialog then. May be emitted by
    /// others.
    void printContent();

    /// The name is empty when the user cancelled.
    void saveContent(const QString& fileName);

private:
    [[nodiscard]] VXDialogConfig createConfig() const;
    void setupUi(QWidget* theMainArea);
    [[nodiscard]] QBoxLayout* createControls(QWidget* theMainArea);
    [[nodiscard]] QBoxLayout* createPageArea(QWidget* theMainArea);
    void initWebView();
    void initPrintButton(bool theIsVisible);
    void initSaveButton(bool theIsVisible);
    void initUrlControls();
    void initProgressBar();
    void initKeys();
    void zoomTo(qreal theFactor);
    [[nodiscard]] qreal zoom() const;
    void loadingStarted();
    void loadingFinished(bool theIsOk);
    void loadUrl();
    [[nodiscard]] QSize roundedContentsSize() const;
    [[nodiscard]] bool isTooLargeFor(const QRect& theScreen) const;
    void fitFrame(const QSize& theChange, const QRect& theScreen);

    bool myIsAdjustSizeEnabled = false;
    QProgressBar* myProgressBar = nullptr; // widgets: children of the main area
    VXWebView* myWebView = nullptr;        // this dialog's
    QLineEdit* myUrlEdit = nullptr;
    QPushButton* myLoadButton = nullptr;
    QToolButton* myPrintButton = nullptr;
    QToolButton* mySaveButton = nullptr;
};
