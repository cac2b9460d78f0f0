#pragma once

#include <VXCore/VXSingleton.h>

/// A singleton of which neither library nor program holds any code of its own.
class Q_DECL_EXPORT VXSingletonProbe : public VXSingleton<VXSingletonProbe>
{
};

/// The instance as code inside the probe library sees it.
Q_DECL_EXPORT VXSingletonProbe* singletonProbeInLibrary();
