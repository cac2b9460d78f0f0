#pragma once

#include <QtCore/QByteArray>

/// Reproducible bytes that are made when they are asked for, at any position.
///
/// Bytes 8k to 8k+7 are the k-th number (k from 0) of the SplitMix64 sequence of the seed, the
/// lowest byte first:
///
///     z = seed + (k + 1) * 0x9E3779B97F4A7C15
///     z = (z xor (z >> 30)) * 0xBF58476D1CE4E5B9
///     z = (z xor (z >> 27)) * 0x94D049BB133111EB
///     number = z xor (z >> 31)                       (all modulo 2^64)
///
/// A plain value; reentrant.
class VXSimulatorBytes
{
public:
    VXSimulatorBytes() = default;
    /// The bytes from an offset on, so many of them.
    VXSimulatorBytes(quint64 theSeed, qint64 theOffset, qint64 theSize);

    [[nodiscard]] qint64 size() const noexcept { return mySize; }
    /// At most theCount bytes from a position inside this piece on.
    [[nodiscard]] QByteArray read(qint64 thePosition, qint64 theCount) const;

private:
    quint64 mySeed = 0;
    qint64 myOffset = 0;
    qint64 mySize = 0;
};
