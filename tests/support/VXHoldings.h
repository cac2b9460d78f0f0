#pragma once

#include <QtCore/QtGlobal>

/// What the process holds, for tests that look for growth.
struct VXHoldings
{
    qint64 memory = 0; // resident bytes
    qsizetype descriptors = 0;
    qsizetype sockets = 0; // among the descriptors
    qsizetype threads = 0;

    /// Whether growth of memory means anything: with AddressSanitizer what was freed stays in
    /// quarantine.
#ifdef __SANITIZE_ADDRESS__
    static constexpr bool isMemoryMeasurable = false;
#else
    static constexpr bool isMemoryMeasurable = true;
#endif

    /// Gives freed memory back to the system first: what is only kept for later is no growth.
    [[nodiscard]] static VXHoldings now();

    /// The growth since then; negative where something was given back.
    [[nodiscard]] VXHoldings since(const VXHoldings& theBefore) const;
};
