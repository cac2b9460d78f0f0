#pragma once

#include "VXTourStep.h"

/// What the user reads: one code of each family with its German text.
class VXTourTextSteps
{
public:
    static QList<VXTourStep> steps();
};
