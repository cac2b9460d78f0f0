#include "VXTourWindowSteps.h"

#include "VXSampleContext.h"
#include "VXSampleMainWindow.h"
#include "VXSampleSimulator.h"
#include "VXTourRun.h"
#include "VXTourWebPage.h"

#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int englishMilliseconds = 60'000;

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
    window.show();
    auto& navigation = part<QListWidget>(window, u"navigation"_s);
    for (int page = 0; page < navigation.count(); ++page) {
        navigation.setCurrentRow(page);
        QCoreApplication::processEvents(); // a page's widgets appear by and by
        const auto views = window.findChildren<QWebEngineView*>();
        const auto seen = std::ranges::find_if(views, &QWidget::isVisible);
        if (seen != views.end())
            theRun.expect(VXTourWebPage::waitUntilDrawn(**seen), u"the page is not drawn"_s);
        theRun.photograph(&window,
                          u"01-window-%1%2.png"_s.arg(QString::number(page + 1), theSuffix));
    }
    theRun.came(u"%1 pages"_s.arg(navigation.count()));
}

/// The user's way: the example that the window begins with, and the answer of the service.
void sendFromTheWindow(VXTourRun& theRun)
{
    VXSampleMainWindow window(theRun.world.context);
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
    theRun.expect(process.waitForFinished(englishMilliseconds) && process.exitCode() == 0,
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
            {u"english"_s, u"Main window in English"_s, showEnglish}};
}
