#include "VXBrowserDialog.h"

#include "VXWebView.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXRequestDiskAccess.h>
#include <VXGUIWidgets/VXDialogConfig.h>
#include <VXGUIWidgets/VXIconRegistry.h>

#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtGui/QScreen>
#include <QtGui/QShortcut>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QFrame>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int dialogKind = 8;       // the application's number for browser dialogs
constexpr int saveDocumentMode = 3; // the same for saving a document
constexpr int progressHeight = 7;   // pixels
constexpr int progressStretch = 10;
constexpr int pageAreaSpacing = 2;
constexpr int taskBarHeight = 80; // pixels that a tall dialog leaves free
constexpr int contentMargin = 20; // pixels, for scroll bars
constexpr QSize fallbackSize(1024, 768);
constexpr qreal zoomStep = 0.1;
constexpr qreal smallestZoom = 0.25; // both limits are the engine's
constexpr qreal largestZoom = 5;

QToolButton* createToolButton(const QString& theText, QWidget* theParent)
{
    auto* const button = new QToolButton(theParent);
    button->setText(theText);
    button->setToolTip(theText);
    return button;
}

} // namespace

VXBrowserDialog::VXBrowserDialog(QWidget* theParent, bool thePrintButton, bool theSaveButton)
    : VXDialog(theParent)
{
    setupDialog(createConfig());
    setupUi(mainArea());
    initWebView(); // before the progress bar: fitting has to see the bar still there
    initPrintButton(thePrintButton);
    initSaveButton(theSaveButton);
    initUrlControls();
    initProgressBar();
    initKeys();
}

VXBrowserDialog::~VXBrowserDialog()
{
    delete myWebView;
}

VXDialogConfig VXBrowserDialog::createConfig() const
{
    VXDialogConfig config;
    config.kind = dialogKind;
    config.standardButtons = QDialogButtonBox::Ok;
    config.defaultButton = QDialogButtonBox::Ok;
    return config;
}

void VXBrowserDialog::setupUi(QWidget* theMainArea)
{
    auto* const grid = new QGridLayout(theMainArea);
    grid->addLayout(createControls(theMainArea), 0, 0);
    grid->addLayout(createPageArea(theMainArea), 1, 0);
    grid->setRowStretch(1, 1);
    setWindowTitle(tr("VXBrowserDialog"));
}

QBoxLayout* VXBrowserDialog::createControls(QWidget* theMainArea)
{
    auto* const row = new QHBoxLayout;
    myUrlEdit = new QLineEdit(theMainArea);
    myUrlEdit->setReadOnly(true);
    myLoadButton = new QPushButton(tr("URL laden"), theMainArea);
    myLoadButton->setAutoDefault(false);
    myPrintButton = createToolButton(tr("Drucken"), theMainArea);
    mySaveButton = createToolButton(tr("Speichern"), theMainArea);
    row->addStretch(); // takes the room only while the address line is hidden
    row->addWidget(myUrlEdit, 1);
    row->addWidget(myLoadButton);
    row->addWidget(myPrintButton);
    row->addWidget(mySaveButton);
    return row;
}

QBoxLayout* VXBrowserDialog::createPageArea(QWidget* theMainArea)
{
    auto* const progressRow = new QHBoxLayout;
    progressRow->setSpacing(0);
    myProgressBar = new QProgressBar(theMainArea);
    myProgressBar->setTextVisible(false);
    myProgressBar->setMaximumHeight(progressHeight);
    progressRow->addWidget(myProgressBar, progressStretch);

    auto* const frame = new QFrame(theMainArea);
    auto* const frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    myWebView = VXWebView::createWebView(frame, true);
    QWidget* const page = myWebView->nativeWidget();
    page->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    myWebView->setUrl(QUrl(u"about:blank"_s));
    frameLayout->addWidget(page);

    auto* const column = new QVBoxLayout;
    column->setSpacing(pageAreaSpacing);
    column->addLayout(progressRow);
    column->addWidget(frame);
    return column;
}

void VXBrowserDialog::initWebView()
{
    myWebView->setObjectName(u"BrowserDialogWebView"_s);
    connect(myWebView, &VXWebView::windowCloseRequested, this, &QDialog::accept);
    connect(myWebView, &VXWebView::loadStarted, this, &VXBrowserDialog::loadingStarted);
    connect(myWebView, &VXWebView::loadFinished, this, &VXBrowserDialog::loadingFinished);
    connect(myWebView, &VXWebView::titleChanged, this, &QWidget::setWindowTitle);
    connect(this, &VXBrowserDialog::printContent, myWebView, &VXWebView::printContent);
    connect(this, &VXBrowserDialog::saveContent, myWebView, &VXWebView::saveContent);
}

void VXBrowserDialog::initPrintButton(bool theIsVisible)
{
    VXIconRegistry::setIcon(myPrintButton, u"ico_print"_s);
    myPrintButton->setShortcut(Qt::CTRL | Qt::Key_P); // works while the button is visible
    myPrintButton->setVisible(theIsVisible);
    connect(myPrintButton, &QToolButton::clicked, this, &VXBrowserDialog::printContent);
}

void VXBrowserDialog::initSaveButton(bool theIsVisible)
{
    VXIconRegistry::setIcon(mySaveButton, u"ico_save"_s);
    mySaveButton->setShortcut(Qt::CTRL | Qt::Key_S);
    mySaveButton->setVisible(theIsVisible);
    connect(mySaveButton, &QToolButton::clicked, this, &VXBrowserDialog::save);
}

void VXBrowserDialog::initUrlControls()
{
    const bool isVisible = VXBasisSettings::instance()->runsInMasterMode();
    myUrlEdit->setVisible(isVisible);
    myLoadButton->setVisible(isVisible);
    if (!isVisible)
        return;
    myUrlEdit->setReadOnly(false);
    connect(myLoadButton, &QPushButton::clicked, this, &VXBrowserDialog::loadUrl);
}

void VXBrowserDialog::initProgressBar()
{
    myProgressBar->hide();
    connect(myWebView, &VXWebView::loadProgress, myProgressBar, &QProgressBar::setValue);
    connect(myWebView, &VXWebView::loadStarted, myProgressBar, &QProgressBar::reset);
    connect(myWebView, &VXWebView::loadStarted, myProgressBar, &QWidget::show);
    connect(myWebView, &VXWebView::loadFinished, myProgressBar, &QWidget::hide);
}

void VXBrowserDialog::initKeys()
{
    connect(new QShortcut(Qt::CTRL | Qt::Key_Plus, this), &QShortcut::activated, this,
            [this] { zoomTo(zoom() + zoomStep); });
    connect(new QShortcut(Qt::CTRL | Qt::Key_Minus, this), &QShortcut::activated, this,
            [this] { zoomTo(zoom() - zoomStep); });
    connect(new QShortcut(Qt::CTRL | Qt::Key_0, this), &QShortcut::activated, this,
            [this] { zoomTo(1); });
    // The engine keeps the key for itself while the page has the focus.
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QDialog::reject);
}

qreal VXBrowserDialog::zoom() const
{
    const auto* const page = qobject_cast<QWebEngineView*>(myWebView->nativeWidget());
    return page ? page->zoomFactor() : 1;
}

void VXBrowserDialog::zoomTo(qreal theFactor)
{
    if (auto* const page = qobject_cast<QWebEngineView*>(myWebView->nativeWidget()))
        page->setZoomFactor(qBound(smallestZoom, theFactor, largestZoom));
}

VXWebView* VXBrowserDialog::webView() const
{
    return myWebView;
}

void VXBrowserDialog::setHtml(const QString& theHtml)
{
    myWebView->setHtml(theHtml);
}

void VXBrowserDialog::setUrl(const QUrl& theUrl)
{
    myWebView->setUrl(theUrl);
}

void VXBrowserDialog::setAdjustSizeEnabled(bool theIsEnabled)
{
    myIsAdjustSizeEnabled = theIsEnabled;
}

void VXBrowserDialog::loadingStarted()
{
    if (QWidget* const page = myWebView->nativeWidget())
        page->setCursor(Qt::WaitCursor);
    myUrlEdit->setText(myWebView->url().toString(QUrl::RemoveUserInfo));
}

void VXBrowserDialog::loadingFinished(bool theIsOk)
{
    if (theIsOk)
        adjustSize();
    if (QWidget* const page = myWebView->nativeWidget())
        page->unsetCursor();
}

void VXBrowserDialog::loadUrl()
{
    QUrl url(myUrlEdit->text(), QUrl::TolerantMode);
    if (url.scheme().isEmpty())
        url.setScheme(u"http"_s);
    setUrl(url);
}

void VXBrowserDialog::save()
{
    constexpr auto ending = ".pdf"_L1;
    QString name = windowTitle();
    if (!name.endsWith(ending))
        name += ending;
    const QPointer<VXBrowserDialog> guard(this);
    const QString file = VXRequestDiskAccess::instance()->getSaveFileName(
        saveDocumentMode, this, tr("Sichern als..."), tr("PDF-Files (*.pdf)"), name);
    if (guard) // else somebody closed us while the user was choosing
        Q_EMIT saveContent(file);
}

void VXBrowserDialog::adjustSize()
{
    const QWidget* const page = myWebView->nativeWidget();
    if (!myIsAdjustSizeEnabled || page == nullptr)
        return;
    myIsAdjustSizeEnabled = false;
    const QRect available = screen()->availableGeometry();
    const QSize change = roundedContentsSize() - page->size();
    if (!change.isNull() || isTooLargeFor(available))
        fitFrame(change, available);
}

QSize VXBrowserDialog::roundedContentsSize() const
{
    const QSize size = myWebView->contentsSize().toSize();
    const bool isUsable = size.width() >= 0 && size.height() >= 0 && !size.isNull();
    return isUsable ? size : fallbackSize;
}

bool VXBrowserDialog::isTooLargeFor(const QRect& theScreen) const
{
    return width() > theScreen.width() || height() > theScreen.height() - taskBarHeight;
}

/// Changes the size of the window with its frame, and centres it.
void VXBrowserDialog::fitFrame(const QSize& theChange, const QRect& theScreen)
{
    const QRect frame = frameGeometry();
    const QSize extra = frame.size() - size();
    const QPoint offset = geometry().topLeft() - frame.topLeft();

    QSize target = frame.size() + theChange + QSize(contentMargin, contentMargin);
    target.setWidth(qMin(target.width(), theScreen.width()));
    target.setHeight(qMin(target.height(), theScreen.height() - taskBarHeight));

    const QPoint corner(theScreen.x() + (theScreen.width() - target.width()) / 2,
                        theScreen.y() + (theScreen.height() - target.height()) / 2);
    setGeometry(QRect(corner + offset, target - extra));
}
