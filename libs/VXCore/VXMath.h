#pragma once

#include "VXCoreExport.h"

#include <functional>

/// Random numbers for everyday use; not for keys. Thread-safe.
class VXCORE_EXPORT VXMath
{
public:
    /// Gets the smallest and the greatest number, returns one between them, both included.
    using RandomSource = std::function<int(int theMinimum, int theMaximum)>;

    VXMath() = delete;

    /// Starts a new sequence that cannot be foreseen.
    static void seedRandom();

    /// A number from theMinimum to theMaximum, both included; theMinimum when the range is empty.
    [[nodiscard]] static int randomNumber(int theMinimum, int theMaximum);

    /// Lets another function choose the numbers; an empty one brings the own source back.
    static void setRandomSource(const RandomSource& theSource);
};
