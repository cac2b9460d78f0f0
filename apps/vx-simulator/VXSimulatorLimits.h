#pragma once

#include <QtCore/QtGlobal>

#include <chrono>

/// What clients may use up. A plain value.
struct VXSimulatorLimits
{
    /// A connection on which nothing moves for so long is cut.
    std::chrono::milliseconds idle = std::chrono::minutes(5);
    /// Most bytes of unfinished request bodies, all ports together.
    qint64 unfinishedBodies = 1024LL * 1024 * 1024;
    /// Most clients of a port at a time; who comes then is hung up on.
    int clients = 500;
};
