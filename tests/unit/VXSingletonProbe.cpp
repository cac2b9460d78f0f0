#include "VXSingletonProbe.h"

VXSingletonProbe* singletonProbeInLibrary()
{
    return VXSingletonProbe::instance();
}
