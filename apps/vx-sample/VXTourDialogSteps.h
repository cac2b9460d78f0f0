#pragma once

#include "VXTourStep.h"

/// What the customer sees: each network problem brought about for real, its dialog photographed
/// and left, and the preferences.
class VXTourDialogSteps
{
public:
    static QList<VXTourStep> steps();
};
