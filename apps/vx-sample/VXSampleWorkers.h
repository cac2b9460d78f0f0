#pragma once

#include <functional>

/// Worker threads of the sample.
class VXSampleWorkers
{
public:
    /// Runs `theWork` with the numbers 0 to `theCount` - 1, each in a thread of its own, and
    /// returns when all have ended. Meanwhile the calling thread, which is the main thread,
    /// handles events, so that questions of the workers are answered. When the application
    /// quits first, the workers' waits end as well.
    static void run(int theCount, const std::function<void(int)>& theWork);
};
