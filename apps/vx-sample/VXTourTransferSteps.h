#pragma once

#include "VXTourStep.h"

/// Downloads and uploads, and exchanges that fail half-way.
class VXTourTransferSteps
{
public:
    static QList<VXTourStep> steps();
};
