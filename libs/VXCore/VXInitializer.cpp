#include "VXInitializer.h"

#include "VXInitializerAbstract.h"

#include <algorithm>

VXInitializer* VXInitializer::instance()
{
    // Never destroyed: initialisers that are static objects leave it at the very end.
    static auto* const ourInstance = new VXInitializer;
    return ourInstance;
}

void VXInitializer::registerInitializer(VXInitializerAbstract* theInitializer)
{
    if (theInitializer && !myInitializers.contains(theInitializer))
        myInitializers.append(theInitializer);
}

void VXInitializer::unregisterInitializer(VXInitializerAbstract* theInitializer)
{
    myInitializers.removeAll(theInitializer);
}

// Each walks through a copy: an initialiser may load a library that registers its own.

void VXInitializer::runCommandLine(VXCommandLineParserAbstract* theParser) const
{
    for (VXInitializerAbstract* initializer : initializers())
        initializer->addCommandLineOptionHandlers(theParser);
}

void VXInitializer::runSetup(VXInitializerOption theOption) const
{
    for (VXInitializerAbstract* initializer : initializers())
        initializer->setup(theOption);
}

void VXInitializer::runTeardown() const
{
    QList<VXInitializerAbstract*> reversed = initializers();
    std::ranges::reverse(reversed);
    for (VXInitializerAbstract* initializer : reversed)
        initializer->teardown();
}
