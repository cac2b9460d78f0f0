#include "VXInitializerAbstract.h"

#include "VXInitializer.h"

VXInitializerAbstract::VXInitializerAbstract() = default;

VXInitializerAbstract::~VXInitializerAbstract()
{
    VXInitializer::instance()->unregisterInitializer(this);
}
