#pragma once

/// How the program ends; the numbers are its exit status.
enum class VXSampleExitCode : int
{
    Success = 0,
    LibraryError = 1,     ///< the library reported an error; the result line has the details
    UsageError = 2,       ///< the command line or a file that it names is wrong
    EnvironmentError = 3, ///< no display, no simulator, port in use
    TimedOut = 4,         ///< the exchange or the whole command took longer than allowed
    TourCheckFailed = 5,  ///< a row of the tour is not what the simulator recorded
};
