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

    /// Whether the view shows one colour. Its edges do not count: a view that has just grown,
    /// because the progress bar went, shows the old frame and a strip of background. Nor does its
    /// top: in a view that has just been laid out stands the frame of a widget without a layout,
    /// 100 x 30.
    static bool isPlain(QWebEngineView& theView);

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
