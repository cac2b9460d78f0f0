#include "VXOAuth2LoginDialog.h"

#include "VXWebView.h"

#include <VXGUIWidgets/VXMessageBox.h>
#include <VXGUIWidgets/VXRequest.h>
#include <VXGUIWidgets/VXUrlSearchBar.h>

#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QPushButton>

namespace {

constexpr QSize firstSize(1024, 720); // pixels

// Milliseconds.
constexpr int watchInterval = 500;
constexpr qint64 patienceWithoutProgress = 4000;
constexpr qint64 patience = 60000;
constexpr int endDelay = 250;

} // namespace

VXOAuth2LoginDialog::VXOAuth2LoginDialog(const QUrl& theUrl, const QString& theServiceName,
                                         OAuth2LoginDialogOptions theOptions)
    : myServiceName(theServiceName)
    , myOptions(theOptions)
{
    auto* const layout = new QGridLayout(this);
    layout->addWidget(createUrlBar(), 0, 0, 1, 2);
    layout->addWidget(createWebEngineView(theUrl), 1, 0, 1, 2);
    layout->setRowStretch(1, 1);
    if (myOptions.testFlag(SaveLoginDataOption))
        layout->addWidget(createCheckBox(), 2, 1);
    layout->addWidget(createButtonBox(), 3, 1);

    myWatchTimer.setInterval(watchInterval);
    connect(&myWatchTimer, &QTimer::timeout, this, &VXOAuth2LoginDialog::handleTimeout);
    connect(&myProgress, &VXProgressDialogController::processCanceled, this, &QDialog::reject);
    resize(firstSize);
}

VXOAuth2LoginDialog::~VXOAuth2LoginDialog()
{
    delete myWebView;
}

QWidget* VXOAuth2LoginDialog::createUrlBar()
{
    auto* const bar = new VXUrlSearchBar(this);
    connect(this, &VXOAuth2LoginDialog::setUrlBarVisible, bar, &QWidget::setVisible);
    connect(this, &VXOAuth2LoginDialog::urlHasChanged, bar, &VXUrlSearchBar::urlHasChanged);
    return bar;
}

QWidget* VXOAuth2LoginDialog::createWebEngineView(const QUrl& theUrl)
{
    myWebView = VXWebView::createWebView(this, true);
    connect(myWebView, &VXWebView::loadFinished, this, &VXOAuth2LoginDialog::handleLoadFinished);
    connect(myWebView, &VXWebView::urlChanged, this, &VXOAuth2LoginDialog::handleUrlChanged);
    connect(myWebView, &VXWebView::titleChanged, this, &VXOAuth2LoginDialog::handleTitleChanged);
    connect(myWebView, &VXWebView::titleChanged, this, &QWidget::setWindowTitle);
    myWebView->setUrl(theUrl);
    return myWebView->nativeWidget();
}

QWidget* VXOAuth2LoginDialog::createCheckBox()
{
    myCheckBox = new QCheckBox(
        tr("Autorisierung speichern und beim nächsten Mal automatisch anmelden"), this);
    return myCheckBox;
}

QWidget* VXOAuth2LoginDialog::createButtonBox()
{
    auto* const box = new QDialogButtonBox(this);
    if (myOptions.testFlag(CloseButtonOption)) {
        QPushButton* const button = box->addButton(QDialogButtonBox::Close);
        button->setText(VXMessageBox::buttonText(QMessageBox::Close));
        connect(button, &QPushButton::clicked, this, &QDialog::accept);
    }
    if (myOptions.testFlag(CancelButtonOption)) {
        QPushButton* const button = box->addButton(QDialogButtonBox::Cancel);
        button->setText(VXMessageBox::buttonText(QMessageBox::Cancel));
        button->setAutoDefault(false); // Return in the page must not give the login up
        connect(button, &QPushButton::clicked, this, &QDialog::reject);
    }
    return box;
}

int VXOAuth2LoginDialog::exec()
{
    if (!myIsFirstPageLoaded) {
        myWatchTimer.start(watchInterval);
        myStopwatch.start();
    }
    const QPointer<VXOAuth2LoginDialog> self(this); // an owner may delete it meanwhile
    const int result = QDialog::exec();
    if (self)
        stopWatch(); // a closed dialog has nothing more to say
    return result;
}

bool VXOAuth2LoginDialog::saveLoginData() const
{
    return myOptions.testFlag(SaveLoginDataOption) && myCheckBox != nullptr &&
           myCheckBox->isChecked();
}

void VXOAuth2LoginDialog::startAcceptTimer() const
{
    QTimer::singleShot(endDelay, this, SLOT(accept()));
}

void VXOAuth2LoginDialog::startRejectTimer() const
{
    QTimer::singleShot(endDelay, this, SLOT(reject()));
}

QUrl VXOAuth2LoginDialog::url() const
{
    return myWebView->url();
}

QString VXOAuth2LoginDialog::title() const
{
    return myWebView->title();
}

void VXOAuth2LoginDialog::stopLoading()
{
    myWebView->stop();
}

void VXOAuth2LoginDialog::handleLoadFinished(bool theIsOk)
{
    Q_UNUSED(theIsOk)
    myIsFirstPageLoaded = true;
    stopWatch();
}

void VXOAuth2LoginDialog::handleTitleChanged(const QString& theTitle)
{
    Q_UNUSED(theTitle)
}

void VXOAuth2LoginDialog::handleUrlChanged(const QUrl& theUrl)
{
    Q_EMIT urlHasChanged(theUrl);
}

void VXOAuth2LoginDialog::handleTimeout()
{
    const qint64 elapsed = elapsedMilliseconds();
    if (elapsed <= patienceWithoutProgress)
        return;
    if (elapsed >= patience)
        handleServiceUnavailable();
    else
        updateProgress();
}

qint64 VXOAuth2LoginDialog::elapsedMilliseconds() const
{
    return myStopwatch.isValid() ? myStopwatch.elapsed() : 0;
}

void VXOAuth2LoginDialog::updateProgress()
{
    if (myProgress.isOpen())
        myProgress.increaseProgress(1);
    else
        myProgress.openProgress(
            tr("Bitte warten, Verbindung zu %1 wird hergestellt ...").arg(myServiceName), 0, 0,
            this);
}

void VXOAuth2LoginDialog::handleServiceUnavailable()
{
    stopWatch();
    const QPointer<VXOAuth2LoginDialog> self(this); // it may go while the box is there
    VXRequest().information(tr("%1 nicht erreichbar").arg(myServiceName),
                            tr("Leider konnte keine Verbindung zu %1 hergestellt werden.\nBitte "
                               "überprüfen Sie Ihre Netzwerkverbindung.")
                                .arg(myServiceName),
                            {}, this);
    if (self)
        startRejectTimer();
}

void VXOAuth2LoginDialog::stopWatch()
{
    myWatchTimer.stop();
    myProgress.closeProgress(0);
}
