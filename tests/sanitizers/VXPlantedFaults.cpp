#include <VXNetworking/VXCredentials.h>

#include <QtCore/QByteArray>

#include <cstdio>
#include <limits>
#include <memory>

// Faults that the sanitizers must find; a mistake in how they are set up shows here first.
namespace {

/// Writes behind the end of a buffer.
[[gnu::noinline]] int plantedOverflow(int theArgumentCount)
{
    const auto buffer = std::make_unique<volatile char[]>(8);
    const volatile int behind = 7 + theArgumentCount;
    buffer[behind] = 'x';
    return buffer[0];
}

/// Forgets an object of the library.
[[gnu::noinline]] int plantedLeak(int theArgumentCount)
{
    const auto* volatile forgotten = new VXCredentials;
    const bool isThere = forgotten != nullptr;
    forgotten = nullptr;
    return isThere && theArgumentCount > 0 ? 0 : 1;
}

/// Adds beyond the largest number.
[[gnu::noinline]] int plantedUndefined(int theArgumentCount)
{
    volatile int number = std::numeric_limits<int>::max();
    number = number + theArgumentCount;
    return number == 0;
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const QByteArray wanted = theArgumentCount > 1 ? theArguments[1] : "";
    if (wanted == "overflow")
        return plantedOverflow(theArgumentCount);
    if (wanted == "leak")
        return plantedLeak(theArgumentCount);
    if (wanted == "undefined")
        return plantedUndefined(theArgumentCount);
    std::fputs("overflow, leak or undefined\n", stderr);
    return 2;
}
