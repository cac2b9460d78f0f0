#pragma once

#include "VXTourStep.h"

/// Web content: pages of the scheme, scripts, the dialogs around pages, printing to PDF.
class VXTourWebSteps
{
public:
    static QList<VXTourStep> steps();
};
