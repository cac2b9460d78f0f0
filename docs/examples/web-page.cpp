#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXBrowserDialog.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QDebug>
#include <QtWidgets/QApplication>

int main(int theCount, char** theArguments)
{
    const QApplication application(theCount, theArguments);
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal); // before the first view
    {
        VXBrowserDialog dialog(nullptr, true, true); // with the buttons that print and save
        dialog.setAdjustSizeEnabled(true);           // fits itself to the page, once
        QObject::connect(dialog.webView(), &VXWebView::loadFinished, &dialog, [&dialog](bool isOk) {
            if (!isOk)
                return;
            dialog.webView()->runJavascriptAsync(
                QStringLiteral("document.links.length"),
                [](const QVariant& theLinks) { qInfo() << "links:" << theLinks.toInt(); });
        });
        dialog.setUrl(QUrl::fromUserInput(application.arguments().value(1)));
        dialog.exec();
    } // views go before the engine
    VXInitializer::instance()->runTeardown();
    return 0;
}
