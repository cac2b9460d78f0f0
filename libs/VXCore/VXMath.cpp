#include "VXMath.h"

#include <QtCore/QMutex>
#include <QtCore/QRandomGenerator>

namespace {

struct State
{
    QMutex mutex;
    QRandomGenerator generator{QRandomGenerator::securelySeeded()}; // guarded by mutex
    VXMath::RandomSource source;                                    // guarded by mutex
};

State& state()
{
    static auto* const ourState = new State; // never destroyed: threads may outlive main()
    return *ourState;
}

} // namespace

void VXMath::seedRandom()
{
    const QMutexLocker locker(&state().mutex);
    state().generator = QRandomGenerator::securelySeeded();
}

int VXMath::randomNumber(int theMinimum, int theMaximum)
{
    if (theMaximum <= theMinimum)
        return theMinimum;
    RandomSource source;
    {
        const QMutexLocker locker(&state().mutex);
        source = state().source;
        if (!source) {
            const qint64 count = qint64(theMaximum) - theMinimum + 1;
            const quint64 offset = state().generator.generate64() % static_cast<quint64>(count);
            return static_cast<int>(theMinimum + static_cast<qint64>(offset));
        }
    }
    return source(theMinimum, theMaximum);
}

void VXMath::setRandomSource(const RandomSource& theSource)
{
    const QMutexLocker locker(&state().mutex);
    state().source = theSource;
}
