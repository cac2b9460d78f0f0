#include "VXSimulatorBytes.h"

#include <algorithm>

namespace {

quint64 numberAt(quint64 theSeed, quint64 theIndex)
{
    quint64 z = theSeed + (theIndex + 1) * Q_UINT64_C(0x9E3779B97F4A7C15);
    z = (z ^ (z >> 30)) * Q_UINT64_C(0xBF58476D1CE4E5B9);
    z = (z ^ (z >> 27)) * Q_UINT64_C(0x94D049BB133111EB);
    return z ^ (z >> 31);
}

} // namespace

VXSimulatorBytes::VXSimulatorBytes(quint64 theSeed, qint64 theOffset, qint64 theSize)
    : mySeed(theSeed)
    , myOffset(theOffset)
    , mySize(theSize)
{
}

QByteArray VXSimulatorBytes::read(qint64 thePosition, qint64 theCount) const
{
    const qint64 count = std::clamp<qint64>(mySize - thePosition, 0, theCount);
    QByteArray bytes(count, Qt::Uninitialized);
    quint64 index = static_cast<quint64>(myOffset + thePosition);
    quint64 number = numberAt(mySeed, index / 8);
    for (char& byte : bytes) {
        byte = static_cast<char>(number >> (8 * (index % 8)));
        if (++index % 8 == 0)
            number = numberAt(mySeed, index / 8);
    }
    return bytes;
}
