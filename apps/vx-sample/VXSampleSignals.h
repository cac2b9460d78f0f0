#pragma once

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <memory>

/// While it lives, SIGINT and SIGTERM quit the application instead of ending the process, so that
/// what runs comes to an orderly end. Make one at a time, in the main thread.
class VXSampleSignals
{
    Q_DISABLE_COPY_MOVE(VXSampleSignals)

public:
    VXSampleSignals();
    ~VXSampleSignals();

private:
    struct sigaction myInterruptBefore = {};
    struct sigaction myTerminateBefore = {};
    int myReadEnd = -1; // of a pipe that the handler writes to
    std::unique_ptr<QSocketNotifier> myNotifier;
};
