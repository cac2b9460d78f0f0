#pragma once

#include <QtCore/QObject>

/// The native object that a page calls over a web channel.
class VXBenchPeer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXBenchPeer)

public:
    VXBenchPeer() = default;

    /// Slots of the page's: it is connected, here is a call with an answer, that was the last one.
    Q_INVOKABLE void ready() { Q_EMIT pageIsReady(); }
    Q_INVOKABLE int twice(int theNumber) { return 2 * theNumber; }
    Q_INVOKABLE void done(double theSum) { Q_EMIT pageIsDone(theSum); }

Q_SIGNALS:
    void pageIsReady();
    void pageIsDone(double theSum);
};
