#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtCore/QUrl>

/// Waits in an event loop, the same for both sides of a comparison.
namespace VXWebWait {

constexpr int patience = 60'000; // milliseconds

/// Calls theStart and runs theLoop until it quits; false when that takes too long.
template <typename Start>
bool run(QEventLoop& theLoop, Start theStart)
{
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &theLoop, [&theLoop] { theLoop.exit(1); });
    limit.start(patience);
    theStart(); // answers come from the event loop only
    return theLoop.exec() == 0;
}

/// VXWebView and QWebEngineView alike.
template <typename View>
bool load(View& theView, const QUrl& theUrl)
{
    QEventLoop loop;
    bool isLoaded = false;
    QObject::connect(&theView, &View::loadFinished, &loop, [&](bool theIsOk) {
        isLoaded = theIsOk;
        loop.quit();
    });
    return run(loop, [&] { theView.setUrl(theUrl); }) && isLoaded;
}

} // namespace VXWebWait
