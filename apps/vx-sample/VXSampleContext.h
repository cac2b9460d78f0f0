#pragma once

#include "VXSampleOptions.h"

class VXSampleOutput;

/// What a command may use while it runs. Owned by the program; main thread.
struct VXSampleContext
{
    VXSampleOptions options;
    VXSampleOutput& output;
};
