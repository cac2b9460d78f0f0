#include "VXSampleOrderWindow.h"

#include "VXSampleWizardScreen.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXNetworking/VXAbstractCommunication.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize firstSize(760, 900); // pixels

} // namespace

VXSampleOrderWindow::VXSampleOrderWindow(VXSampleWizardScreen& theScreen,
                                         const VXAbstractCommunication& theCommunication)
    : myView(VXWebView::createWebView(this, true))
{
    setWindowTitle(tr("Bestellübersicht"));
    resize(firstSize.boundedTo(screen()->availableSize()));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(myView->nativeWidget());

    connect(&theScreen, &VXSampleWizardScreen::summaryChanged, this,
            [this](const QJsonObject& theSummary) { callPage(u"showSummary"_s, theSummary); });
    connect(&theScreen, &VXSampleWizardScreen::ordered, this,
            [this](const QString& theText) { callPage(u"showOrdered"_s, theText); });

    QUrl url = QUrl::fromLocalFile(VXDirectoryConfig::instance()->htmlPath(u"ordersummary.html"_s));
    url.setQuery(theCommunication.addServerParameter({}));
    myView->setUrl(url);
}

VXSampleOrderWindow::~VXSampleOrderWindow() = default;

void VXSampleOrderWindow::closeEvent(QCloseEvent* theEvent)
{
    QWidget::closeEvent(theEvent);
    Q_EMIT closed();
}

/// The argument travels as JSON, which is also JavaScript: no text can become code.
void VXSampleOrderWindow::callPage(const QString& theFunction, const QJsonValue& theArgument)
{
    const QByteArray json = QJsonDocument(QJsonArray{theArgument}).toJson(QJsonDocument::Compact);
    myView->runJavascriptAsync(u"%1(...%2)"_s.arg(theFunction, QString::fromUtf8(json)),
                               [](const QVariant&) {});
}
