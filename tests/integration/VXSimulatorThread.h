#pragma once

#include "VXSimulator.h"

#include <QtCore/QThread>

/// A simulator inside this process, in a thread of its own; ends with this object.
class VXSimulatorThread
{
    Q_DISABLE_COPY_MOVE(VXSimulatorThread)

public:
    /// Returns when all ports are open.
    explicit VXSimulatorThread(const VXSimulator::Setup& theSetup);
    ~VXSimulatorThread();

    /// Empty when the simulator is ready.
    [[nodiscard]] QString errorText() const { return myErrorText; }
    /// Number of a port: "http", "control", ..., or the name of a TLS port.
    [[nodiscard]] int port(const QString& theName) const;

private:
    QThread myThread;
    QObject myContext; // lives in the thread
    std::unique_ptr<VXSimulator> mySimulator;
    QJsonObject myReady;
    QString myErrorText;
};
