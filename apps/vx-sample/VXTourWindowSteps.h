#pragma once

#include "VXTourStep.h"

/// The main window: each page, light and dark, and in English by a second process.
class VXTourWindowSteps
{
public:
    static QList<VXTourStep> steps();
};
