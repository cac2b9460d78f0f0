#pragma once

#include "VXTourStep.h"

/// Logins at a provider: in a page of the program, with its progress and its end, and in the user's
/// own browser, played by a second web view.
class VXTourLoginSteps
{
public:
    static QList<VXTourStep> steps();
};
