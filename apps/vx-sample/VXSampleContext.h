#pragma once

#include "VXSampleOptions.h"

class QUrl;
class VXSampleAnswers;
class VXSampleOutput;
class VXSampleSimulator;

/// What a command may use while it runs. Owned by the program; main thread.
struct VXSampleContext
{
    const VXSampleOptions& options;
    VXSampleOutput& output;
    VXSampleSimulator& simulator;
    VXSampleAnswers& answers;

    /// Turns what the user typed into an address: a path means the simulator, which is started
    /// for it. False, and the user is told, when the simulator is not there.
    bool resolve(const QString& theText, QUrl* theUrl) const;
};
