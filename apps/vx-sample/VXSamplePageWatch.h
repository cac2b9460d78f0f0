#pragma once

#include <QtCore/QDeadlineTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

/// Watches what the servers below an object still send, to tell when a browser has its page. GUI
/// thread.
class VXSamplePageWatch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSamplePageWatch)

public:
    /// `theServers` is an ancestor of the servers and outlives this object.
    explicit VXSamplePageWatch(QObject& theServers);

    /// Returns once nothing was sent for a second, or three seconds after this object was made.
    void wait();

private:
    void watchSockets();

    QObject& myServers;
    QDeadlineTimer myDeadline;
    QTimer myQuiet;
};
