#include "VXTourWebPage.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QMargins>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtWebEngineWidgets/QWebEngineView>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int answerMilliseconds = 20'000;

/// Two frames after the page is complete: the first may still show what was there before.
const QString drawnScript =
    u"if (location.href != 'about:blank' && document.readyState == 'complete' && "
    "!window.vxFrames) { window.vxFrames = 1; requestAnimationFrame(() => "
    "requestAnimationFrame(() => { window.vxFrames = 2; })); } window.vxFrames == 2"_s;

constexpr int pauseMilliseconds = 30;
constexpr QMargins edge(32, 32, 32, 32); // pixels
constexpr int firstFrame = 40;           // device-independent pixels; a bit more than its height

void wait()
{
    QEventLoop loop;
    QTimer::singleShot(pauseMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

QVariant VXTourWebPage::run(QWebEngineView& theView, const QString& theScript)
{
    struct Answer
    {
        QVariant value;
        bool isThere = false;
    };
    const auto answer = std::make_shared<Answer>(); // it may come later than anybody waits
    QEventLoop loop;
    QTimer pulse; // an event now and then, so that no wait lasts for ever
    pulse.start(20);
    theView.page()->runJavaScript(theScript, [answer](const QVariant& theValue) {
        answer->value = theValue;
        answer->isThere = true;
    });
    const QDeadlineTimer deadline(answerMilliseconds);
    while (!answer->isThere && !deadline.hasExpired())
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    return answer->value;
}

bool VXTourWebPage::isPlain(QWebEngineView& theView)
{
    const QImage whole = theView.grab().toImage();
    QMargins margins = edge;
    margins.setTop(qRound(firstFrame * whole.devicePixelRatio()));
    const QImage image = whole.copy(whole.rect().marginsRemoved(margins));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != image.pixel(0, 0))
                return false;
    return true;
}

bool VXTourWebPage::waitUntilDrawn(QWebEngineView& theView)
{
    if (!waitUntilTrue(theView, drawnScript))
        return false;
    // The widget shows the frames of the page's process a little later.
    const QDeadlineTimer deadline(answerMilliseconds);
    while (isPlain(theView) && !deadline.hasExpired())
        wait();
    return !deadline.hasExpired();
}

bool VXTourWebPage::waitUntilDark(QWebEngineView& theView)
{
    const auto isDark = [&theView] {
        return theView.grab().toImage().pixelColor(edge.left(), edge.top()).lightness() < 128;
    };
    const QDeadlineTimer deadline(answerMilliseconds);
    while (!isDark() && !deadline.hasExpired())
        wait();
    return !deadline.hasExpired();
}

bool VXTourWebPage::waitUntilChanged(QWebEngineView& theView, const QImage& theBefore)
{
    const QDeadlineTimer deadline(answerMilliseconds);
    QImage last = theBefore;
    while (!deadline.hasExpired()) {
        wait();
        const QImage now = theView.grab().toImage();
        if (now != theBefore && now == last)
            return true;
        last = now;
    }
    return false;
}

bool VXTourWebPage::waitUntilTrue(QWebEngineView& theView, const QString& theScript)
{
    const QDeadlineTimer deadline(answerMilliseconds);
    while (!deadline.hasExpired()) {
        if (run(theView, theScript).toBool())
            return true;
    }
    return false;
}
