#pragma once

#include "VXTourStep.h"

/// Every method, with and without a body, from the GUI thread and from worker threads, and the
/// request record with the offset of the server's clock.
class VXTourMethodSteps
{
public:
    static QList<VXTourStep> steps();
};
