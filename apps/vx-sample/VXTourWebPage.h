#pragma once

#include <QtCore/QVariant>

class QImage;
class QWebEngineView;

/// A page in front of the tour's camera. Main thread; the calls handle events.
class VXTourWebPage
{
public:
    /// What a script returns; invalid when the page did not answer in time.
    static QVariant run(QWebEngineView& theView, const QString& theScript);

    /// Waits until a page other than the empty one is there and drawn. False when it takes longer
    /// than 20 seconds.
    static bool waitUntilDrawn(QWebEngineView& theView);

    /// Waits until the page has a dark background, which it gets a little after it is drawn.
    static bool waitUntilDark(QWebEngineView& theView);

    /// Waits until the view looks other than `theBefore` and no longer changes. The page's process
    /// draws a little later than its scripts run.
    static bool waitUntilChanged(QWebEngineView& theView, const QImage& theBefore);

    /// The same for any condition, a script that returns true or false.
    static bool waitUntilTrue(QWebEngineView& theView, const QString& theScript);
};
