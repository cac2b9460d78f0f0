#include "VXSampleWebCommand.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"
#include "VXSampleSignals.h"
#include "VXTourWebPage.h"

#include <VXCore/VXPlatformIndependent.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXBrowserDialog.h>
#include <VXNetworking/VXJavaScriptExecutor.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonValue>
#include <QtCore/QUrl>
#include <QtGui/QPixmap>
#include <QtWebEngineWidgets/QWebEngineView>

#include <chrono>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize dialogSize(900, 700);

constexpr std::chrono::seconds longestDrawing{5};

/// Sets a flag when the page has drawn what it holds now.
const QString drawnScript = u"vxIsDrawn = false; requestAnimationFrame(() => "
                            "requestAnimationFrame(() => { vxIsDrawn = true; })); true"_s;

/// Ends with the load, a signal or --exit-after.
bool waitForLoad(const VXWebView& theView)
{
    QEventLoop loop;
    bool isLoaded = false;
    QObject::connect(&theView, &VXWebView::loadFinished, &loop, [&](bool theIsOk) {
        isLoaded = theIsOk;
        // Queued, so that the page is adapted before our scripts run.
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    return isLoaded;
}

} // namespace

void VXSampleWebCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOption({u"script"_s, u"Run a script in the page; may be repeated."_s, u"JS"_s});
    theParser.addOption({u"pdf"_s, u"Save the page as PDF."_s, u"FILE"_s});
    theParser.addOption({u"png"_s, u"Save a picture of the dialog."_s, u"FILE"_s});
    theParser.addOption({u"dark"_s, u"Use the dark skin."_s});
    theParser.addOption({u"keep"_s, u"Leave the dialog open until it is closed."_s});
}

VXSampleExitCode VXSampleWebCommand::run(const QCommandLineParser& theArguments,
                                         VXSampleContext& theContext)
{
    QUrl url;
    if (!theContext.resolve(theArguments.positionalArguments().constFirst(), &url))
        return VXSampleExitCode::EnvironmentError;
    const VXSampleSignals signals;
    if (theArguments.isSet(u"dark"_s))
        VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Dark);

    VXBrowserDialog dialog(nullptr, true, true);
    dialog.resize(dialogSize);
    dialog.show();
    bool isWell = load(dialog, url);
    QJsonArray results;
    if (isWell) {
        results = runScripts(dialog, theArguments.values(u"script"_s));
        isWell = savePdf(dialog, theArguments.value(u"pdf"_s)) &&
                 savePicture(dialog, theArguments.value(u"png"_s));
    }
    if (isWell && theArguments.isSet(u"keep"_s) && dialog.isVisible())
        dialog.exec();
    theContext.output.result({{u"title"_s, dialog.webView()->title()},
                              {u"url"_s, dialog.webView()->url().toString(QUrl::RemoveUserInfo)},
                              {u"results"_s, results}});
    return isWell ? VXSampleExitCode::Success : VXSampleExitCode::LibraryError;
}

/// The dialog's own empty page first: when it is still on its way, its end would pass for that of
/// ours, and scripts would be lost with it.
bool VXSampleWebCommand::load(VXBrowserDialog& theDialog, const QUrl& theUrl)
{
    if (!waitForLoad(*theDialog.webView()))
        return false;
    theDialog.setUrl(theUrl);
    return waitForLoad(*theDialog.webView());
}

QJsonArray VXSampleWebCommand::runScripts(const VXBrowserDialog& theDialog,
                                          const QStringList& theScripts)
{
    VXJavaScriptExecutor executor(theDialog.webView());
    for (const QString& script : theScripts)
        executor.addScriptSource(script);
    executor.execute();
    QJsonArray results;
    for (const QString& script : theScripts)
        results.append(QJsonValue::fromVariant(executor.result(script)));
    return results;
}

bool VXSampleWebCommand::savePdf(VXBrowserDialog& theDialog, const QString& theFile)
{
    if (theFile.isEmpty())
        return true;
    QEventLoop loop;
    bool isSaved = false;
    QObject::connect(qobject_cast<QWebEngineView*>(theDialog.webView()->nativeWidget()),
                     &QWebEngineView::pdfPrintingFinished, &loop,
                     [&](const QString&, bool theIsOk) {
                         isSaved = theIsOk;
                         loop.quit();
                     });
    Q_EMIT theDialog.saveContent(QDir::current().absoluteFilePath(theFile));
    loop.exec();
    return isSaved;
}

bool VXSampleWebCommand::savePicture(VXBrowserDialog& theDialog, const QString& theFile)
{
    if (theFile.isEmpty())
        return true;
    VXWebView* const view = theDialog.webView();
    const QDeadlineTimer deadline(longestDrawing);
    std::ignore = view->runJavascriptSync(drawnScript);
    while (view->runJavascriptSync(u"vxIsDrawn"_s) == QVariant(false) && !deadline.hasExpired())
        VXPlatformIndependent::instance()->sleep(20);
    // The widget shows the frames of the page's process a little later.
    auto& widget = *qobject_cast<QWebEngineView*>(view->nativeWidget());
    while (VXTourWebPage::isPlain(widget) && !deadline.hasExpired())
        VXPlatformIndependent::instance()->sleep(20);
    return theDialog.grab().save(theFile);
}
