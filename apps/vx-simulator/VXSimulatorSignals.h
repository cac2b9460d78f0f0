#pragma once

#include <QtCore/QObject>

class QSocketNotifier;

/// Turns SIGTERM and SIGINT into a Qt signal. Make one per process, in the main thread.
class VXSimulatorSignals : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSimulatorSignals)

public:
    explicit VXSimulatorSignals(QObject* theParent = nullptr);
    ~VXSimulatorSignals() override;

Q_SIGNALS:
    /// The process was asked to end.
    void terminated();

private:
    int myDescriptor = -1;                 // of the kernel's signal queue
    QSocketNotifier* myNotifier = nullptr; // child of this
};
