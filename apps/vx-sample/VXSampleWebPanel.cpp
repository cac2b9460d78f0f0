#include "VXSampleWebPanel.h"

#include "VXSampleCommandRun.h"
#include "VXSampleContext.h"
#include "VXSampleSimulator.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXBrowserDialog.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QEvent>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonValue>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QFrame>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QString shown(const QVariant& theValue)
{
    const QJsonValue value = QJsonValue::fromVariant(theValue);
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    return theValue.toString();
}

} // namespace

VXSampleWebPanel::VXSampleWebPanel(VXSampleContext& theContext, QWidget* theParent)
    : VXSamplePanel(tr("Webinhalte"),
                    tr("Seiten der Anwendung in einer Webansicht. Links ins Netz öffnen sich "
                       "draußen, im Browser des Kunden."),
                    theParent)
    , myContext(theContext)
{
    addPageButtons();
    addAddressLine();
    addNotice();
    myViewPlace = new QVBoxLayout;
    content()->addLayout(myViewPlace, 1);
    addScriptLine();
}

VXSampleWebPanel::~VXSampleWebPanel() = default;

void VXSampleWebPanel::addPageButtons()
{
    auto* row = new QHBoxLayout;
    const auto add = [this, row](const QString& theText, const QString& theName, auto theAction) {
        auto* button = new QPushButton(theText, this);
        button->setObjectName(theName);
        connect(button, &QPushButton::clicked, this, theAction);
        row->addWidget(button);
    };
    add(tr("&Startbildschirm"), u"startButton"_s,
        [this] { open(u"tov://localhost/index.html"_s); });
    add(tr("&3D-Szene"), u"sceneButton"_s,
        [this] { open(u"tov://localhost/threejs/index.html"_s); });
    add(tr("&Buchvorschlag"), u"proposalButton"_s,
        [this] { open(u"tov://localhost/autoBookProposal/proposal.html"_s); });
    add(tr("&Quittung ..."), u"receiptButton"_s, [this] { openReceipt(); });
    add(tr("Beste&llübersicht ..."), u"summaryButton"_s, [this] { openOrderSummary(); });
    row->addStretch(1);
    content()->addLayout(row);
}

void VXSampleWebPanel::addAddressLine()
{
    myAddress = new QLineEdit(this);
    myAddress->setObjectName(u"webAddressEdit"_s);
    myAddress->setAccessibleName(tr("Adresse der Seite"));
    myAddress->setPlaceholderText(tr("Adresse der Seite"));
    connect(myAddress, &QLineEdit::returnPressed, this, [this] { open(myAddress->text()); });
    myProgress = new QProgressBar(this);
    myProgress->setTextVisible(false);
    myProgress->setFixedWidth(120);
    myProgress->setAccessibleName(tr("Fortschritt"));
    myProgress->hide();
    auto* row = new QHBoxLayout;
    row->addWidget(myAddress, 1);
    row->addWidget(myProgress);
    content()->addLayout(row);
}

/// What the user sees when the page's process has died; the library only records it.
void VXSampleWebPanel::addNotice()
{
    myNotice = new QFrame(this);
    myNotice->setObjectName(u"crashNotice"_s);
    myNotice->setProperty("cssstyle", u"notice"_s);
    auto* text = new QLabel(tr("Die Webansicht ist abgestürzt. Laden Sie die Seite neu. Hilft das "
                               "nicht, starten Sie das Programm neu."),
                            myNotice);
    text->setObjectName(u"crashText"_s);
    text->setWordWrap(true);
    auto* again = new QPushButton(tr("Neu la&den"), myNotice);
    again->setObjectName(u"reloadButton"_s);
    connect(again, &QPushButton::clicked, this, &VXSampleWebPanel::reload);
    auto* row = new QHBoxLayout(myNotice);
    row->addWidget(text, 1);
    row->addWidget(again);
    content()->addWidget(myNotice);
    myNotice->hide();
}

void VXSampleWebPanel::addScriptLine()
{
    myScript = new QLineEdit(u"document.title"_s, this);
    myScript->setObjectName(u"scriptEdit"_s);
    myScript->setAccessibleName(tr("Skript"));
    auto* run = new QPushButton(tr("Skript aus&führen"), this);
    run->setObjectName(u"scriptButton"_s);
    connect(run, &QPushButton::clicked, this, &VXSampleWebPanel::runScript);
    connect(myScript, &QLineEdit::returnPressed, this, &VXSampleWebPanel::runScript);
    myResult = new QLabel(tr("Noch kein Skript ausgeführt."), this);
    myResult->setObjectName(u"scriptResult"_s);
    myResult->setTextFormat(Qt::PlainText);
    myResult->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(myScript, 1);
    row->addWidget(run);
    content()->addLayout(row);
    content()->addWidget(myResult);
}

void VXSampleWebPanel::activate()
{
    if (!myView)
        createView();
}

void VXSampleWebPanel::createView()
{
    myView.reset(VXWebView::createWebView(this, true));
    myViewPlace->addWidget(myView->nativeWidget());
    QWidget* const widget = myView->nativeWidget();
    widget->setMinimumHeight(120);
    connect(myView.get(), &VXWebView::loadFinished, this, &VXSampleWebPanel::placeViewInTabOrder);
    connect(myView.get(), &VXWebView::loadFinished, this, &VXSampleWebPanel::showSkin);
    connect(qobject_cast<QWebEngineView*>(widget), &QWebEngineView::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus theStatus) {
                if (theStatus != QWebEnginePage::NormalTerminationStatus)
                    showCrash();
            });
    connect(myView.get(), &VXWebView::urlChanged, this, [this](const QUrl& theUrl) {
        myAddress->setText(theUrl.toString(QUrl::RemoveUserInfo));
    });
    connect(myView.get(), &VXWebView::loadProgress, myProgress, &QProgressBar::setValue);
    connect(myView.get(), &VXWebView::loadStarted, myProgress, &QWidget::show);
    connect(myView.get(), &VXWebView::loadFinished, myProgress, &QWidget::hide);
    open(u"tov://localhost/index.html"_s);
}

void VXSampleWebPanel::changeEvent(QEvent* theEvent)
{
    VXSamplePanel::changeEvent(theEvent);
    if (theEvent->type() == QEvent::PaletteChange) // a skin brings its palette
        showSkin();
}

/// Tells the program's own pages. The library tells local files, when they are loaded.
void VXSampleWebPanel::showSkin()
{
    if (!myView || myView->url().scheme() != u"tov"_s)
        return;
    const bool isDark = VXCSSSkinManager::instance()->currentMode() == VXCSSSkinManager::Dark;
    myView->runJavascriptAsync(u"document.documentElement.classList.toggle('dark', %1)"_s.arg(
                                   isDark ? u"true"_s : u"false"_s),
                               [](const QVariant&) {});
}

void VXSampleWebPanel::open(const QString& theAddress)
{
    const QUrl url = theAddress.startsWith(u'/') ? myContext.simulator.address(theAddress)
                                                 : QUrl::fromUserInput(theAddress);
    if (url.isValid()) {
        myNotice->hide();
        myView->setUrl(url);
    } else {
        myResult->setText(tr("\"%1\" ist keine Adresse.").arg(theAddress));
    }
}

/// The view came later than the parts below it, and a page of another process brings another widget
/// inside it, which has the keyboard.
void VXSampleWebPanel::placeViewInTabOrder()
{
    QWidget* const page = myView->nativeWidget()->focusProxy();
    if (!page)
        return;
    setTabOrder(myAddress, page);
    setTabOrder(page, myScript);
}

void VXSampleWebPanel::showCrash()
{
    myProgress->hide();
    myNotice->show();
}

void VXSampleWebPanel::reload()
{
    open(myAddress->text());
}

/// In a dialog of its own, with buttons that print the page and save it as PDF.
void VXSampleWebPanel::openReceipt()
{
    VXBrowserDialog dialog(window(), true, true);
    dialog.setAdjustSizeEnabled(true);
    dialog.setUrl(QUrl::fromLocalFile(VXDirectoryConfig::instance()->htmlPath(u"/receipt.html"_s)));
    dialog.exec();
}

void VXSampleWebPanel::openOrderSummary()
{
    const VXSampleCommandRun run({u"channel"_s, u"--page"_s, u"ordersummary"_s}, myContext);
    myResult->setText(run.isSuccess() ? tr("Die Bestellübersicht ist geschlossen.")
                                      : tr("Die Bestellübersicht ließ sich nicht öffnen."));
}

void VXSampleWebPanel::runScript()
{
    // Handles events until the page has answered. Not VXJavaScriptExecutor: that would wait for
    // ever for a page whose process has died.
    const QVariant result = myView->runJavascriptSync(myScript->text());
    myResult->setText(tr("Ergebnis: %1").arg(shown(result)));
}

void VXSampleWebPanel::cancel()
{
    if (myView)
        myView->stop();
}
