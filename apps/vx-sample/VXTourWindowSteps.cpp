#include "VXTourWindowSteps.h"

#include "VXSampleContext.h"
#include "VXSampleMainWindow.h"
#include "VXSampleSimulator.h"
#include "VXTourRun.h"
#include "VXTourWebPage.h"

#include <VXCore/VXCrashDetector.h>
#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXQWebEngineWebView.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize windowSize(1180, 700); // whatever the screen, for pictures alike

constexpr int otherProcessMilliseconds = 60'000;

/// While it lives, another skin.
class BorrowedSkin
{
    Q_DISABLE_COPY_MOVE(BorrowedSkin)

public:
    explicit BorrowedSkin(int theMode)
        : myBefore(VXCSSSkinManager::instance()->currentMode())
    {
        VXCSSSkinManager::instance()->setMode(theMode);
    }
    ~BorrowedSkin() { VXCSSSkinManager::instance()->setMode(myBefore); }

private:
    int myBefore;
};

template <typename Widget>
Widget& part(QWidget& theWindow, const QString& theName)
{
    // The same part may be on several pages; the one in view is meant.
    const auto parts = theWindow.findChildren<Widget*>(theName);
    const auto seen = std::ranges::find_if(parts, &QWidget::isVisible);
    Q_ASSERT(seen != parts.end());
    return **seen;
}

void showPages(VXTourRun& theRun, const QString& theSuffix)
{
    VXSampleMainWindow window(theRun.world.context);
    window.resize(windowSize);
    window.show();
    auto& navigation = part<QListWidget>(window, u"navigation"_s);
    for (int page = 0; page < navigation.count(); ++page) {
        navigation.setCurrentRow(page);
        QCoreApplication::processEvents(); // a page's widgets appear by and by
        const auto views = window.findChildren<QWebEngineView*>();
        const auto seen = std::ranges::find_if(views, &QWidget::isVisible);
        if (seen != views.end())
            theRun.expect(VXTourWebPage::waitUntilDrawn(**seen), u"the page is not drawn"_s);
        if (seen != views.end() &&
            VXCSSSkinManager::instance()->currentMode() == VXCSSSkinManager::Dark)
            theRun.expect(VXTourWebPage::waitUntilDark(**seen), u"the page is light"_s);
        theRun.photograph(&window,
                          u"01-window-%1%2.png"_s.arg(QString::number(page + 1), theSuffix));
    }
    theRun.came(u"%1 pages"_s.arg(navigation.count()));
}

/// The user's way: the example that the window begins with, and the answer of the service.
void sendFromTheWindow(VXTourRun& theRun)
{
    VXSampleMainWindow window(theRun.world.context);
    window.resize(windowSize);
    window.show();
    part<QPushButton>(window, u"sendButton"_s).click();
    const QString answer = part<QPlainTextEdit>(window, u"outcomeBody"_s).toPlainText();
    theRun.expect(answer.contains(u"\"method\": \"GET\""_s), u"the window shows no answer"_s);
    theRun.expectReceived({{u"GET"_s, u"/echo"_s, {}, {}}});
    theRun.photograph(&window, u"01-window-answer.png"_s);
    theRun.came(u"%1 characters shown"_s.arg(answer.size()));
}

void showPagesLight(VXTourRun& theRun)
{
    const BorrowedSkin skin(VXCSSSkinManager::Light);
    showPages(theRun, {});
}

void showPagesDark(VXTourRun& theRun)
{
    const BorrowedSkin skin(VXCSSSkinManager::Dark);
    showPages(theRun, u"-dark"_s);
}

/// The arguments of another start of this program with the same deployment and settings, which
/// keeps log and temporary files in the named folder.
QStringList argumentsOfNextStart(const VXTourRun& theRun, const QString& theFolder)
{
    const VXSampleOptions& options = theRun.world.context.options;
    QStringList arguments{u"--offscreen"_s,       u"--log-dir"_s,    theFolder, u"--temp"_s,
                          theFolder + u"/temp"_s, u"--exit-after"_s, u"0"_s};
    if (!options.settings.isEmpty())
        arguments << u"--settings"_s << options.settings;
    if (!options.config.isEmpty())
        arguments << u"--config"_s << options.config;
    return arguments << u"gui"_s;
}

/// What another start notes about the graphics processor.
QString logOfNextStart(VXTourRun& theRun)
{
    const QDir folder(theRun.world.folder.filePath(u"38-next-start"_s));
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(),
                  argumentsOfNextStart(theRun, folder.path()));
    theRun.expect(process.waitForFinished(otherProcessMilliseconds) && process.exitCode() == 0,
                  u"the next start failed"_s);
    QString text;
    for (const QFileInfo& info : folder.entryInfoList({u"*.log"_s}, QDir::Files)) {
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly))
            text += QString::fromUtf8(file.readAll());
    }
    QDir(folder).removeRecursively();
    return text;
}

/// Waits until the window tells the user of the crash.
bool isCrashTold(const QWidget& theNotice)
{
    const QDeadlineTimer deadline(otherProcessMilliseconds);
    while (!theNotice.isVisible() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return theNotice.isVisible();
}

/// The page's process dies: the window says so, and the next start heeds the record.
void surviveCrash(VXTourRun& theRun)
{
    const BorrowedSkin skin(VXCSSSkinManager::Light);
    VXSampleMainWindow window(theRun.world.context);
    window.resize(windowSize);
    window.show();
    constexpr int webPage = 4;
    part<QListWidget>(window, u"navigation"_s).setCurrentRow(webPage);
    auto& view = *window.findChild<QWebEngineView*>();
    theRun.expect(VXTourWebPage::waitUntilDrawn(view), u"the page is not drawn"_s);

    VXCrashDetector& detector = *VXCrashDetector::instance();
    const bool isGpuOn = VXQWebEngineWebView::haveGpuEnabled;
    const bool before = isGpuOn ? detector.qtWebEngineDidCrashWithGpuOn()
                                : detector.qtWebEngineDidCrashWithGpuOff();
    ::kill(static_cast<pid_t>(view.page()->renderProcessPid()), SIGKILL);
    theRun.expect(isCrashTold(*window.findChild<QWidget*>(u"crashNotice"_s)),
                  u"the window does not tell that the page's process is gone"_s);
    theRun.photograph(&window, u"38-crash.png"_s);
    // Crashes both ways: acceleration was not the reason, so it stays.
    const bool isOffNext = isGpuOn && !detector.qtWebEngineDidCrashWithGpuOff();
    const QString log = logOfNextStart(theRun);
    detector.setDidCrash(isGpuOn, before); // it was no crash of the user's
    theRun.expectEqual<bool>(u"next start without the graphics processor"_s,
                             log.contains(u"disabling GPU accel."_s), isOffNext);
    theRun.came(isOffNext ? u"told, recorded; the next start does without the graphics processor"_s
                          : u"told and recorded"_s);

    part<QPushButton>(window, u"reloadButton"_s).click();
    theRun.expect(VXTourWebPage::waitUntilDrawn(view), u"the page did not come back"_s);
}

/// The language is chosen at start, so another process shows it.
void showEnglish(VXTourRun& theRun)
{
    if (VXLocaleAndTranslationManager::instance()->bcp47Name().startsWith("en"_L1)) {
        theRun.came(u"this tour is in English already"_s);
        return;
    }
    const QString folder = theRun.world.folder.filePath(u"english"_s);
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(
        QCoreApplication::applicationFilePath(),
        {u"--offscreen"_s, u"--language"_s, u"en"_s, u"tour"_s, folder, u"--only"_s, u"window"_s});
    theRun.expect(process.waitForFinished(otherProcessMilliseconds) && process.exitCode() == 0,
                  u"the tour in English failed"_s);
    theRun.addPicture(u"english/01-window-1.png"_s);
    theRun.came(u"window in English"_s);
}

} // namespace

QList<VXTourStep> VXTourWindowSteps::steps()
{
    return {{u"window"_s, u"Main window, every page"_s, showPagesLight},
            {u"window"_s, u"Main window in the dark skin"_s, showPagesDark},
            {u"window"_s, u"GET sent with the window's button"_s, sendFromTheWindow},
            {u"crash"_s, u"Crash of a page's process"_s, surviveCrash},
            {u"english"_s, u"Main window in English"_s, showEnglish}};
}
