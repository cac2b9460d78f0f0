#pragma once

#include "VXTourStep.h"

/// TLS certificates and proxies, with the questions that they raise.
class VXTourSecuritySteps
{
public:
    static QList<VXTourStep> steps();
};
