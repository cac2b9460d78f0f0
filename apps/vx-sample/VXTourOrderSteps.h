#pragma once

#include "VXTourStep.h"

/// The XML order protocol and JSON: success, the server's errors, answers that cannot be read.
class VXTourOrderSteps
{
public:
    static QList<VXTourStep> steps();
};
