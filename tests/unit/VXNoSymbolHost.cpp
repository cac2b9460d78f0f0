// An application that uses no symbol of the networking library but links it: prints how many
// initialisers are registered.

#include <VXCore/VXInitializer.h>

#include <cstdio>

int main()
{
    std::printf("%d\n", static_cast<int>(VXInitializer::instance()->initializers().size()));
    return 0;
}
