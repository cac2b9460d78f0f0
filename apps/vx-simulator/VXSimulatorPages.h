#pragma once

#include "VXSimulatorRouter.h"

/// Pages for web views, release notes and map tiles. The pages are compiled in.
class VXSimulatorPages
{
public:
    [[nodiscard]] static QList<VXSimulatorRoute> routes();
};
