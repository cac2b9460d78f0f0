#pragma once

#include "VXTourStep.h"

/// Photos from a phone: the dialog, a phone that uploads, another that may not, and a computer
/// without a network. They need the network that script/in-namespace makes; elsewhere they say that
/// they were left out.
class VXTourUploadSteps
{
public:
    static QList<VXTourStep> steps();
};
