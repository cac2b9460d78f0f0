#pragma once

#include "VXSimulatorRouter.h"

class VXSimulatorState;

/// The addresses that show HTTP itself: echo, statuses, bytes, faults, redirects, cookies,
/// passwords, multipart and JSON bodies.
class VXSimulatorHttp
{
public:
    /// Largest N of /bytes/N and /truncate/N.
    static constexpr qint64 maximumBytes = 8LL * 1024 * 1024 * 1024;
    /// Longest delay of /slow, in milliseconds.
    static constexpr int longestDelayMs = 600'000;

    /// The state must outlive the routes.
    explicit VXSimulatorHttp(const VXSimulatorState& theState);
    [[nodiscard]] QList<VXSimulatorRoute> routes() const;
    /// An HTTP date (RFC 9110, 5.6.7).
    [[nodiscard]] static QByteArray dateText(const QDateTime& theTime);

private:
    const VXSimulatorState& myState;
};
