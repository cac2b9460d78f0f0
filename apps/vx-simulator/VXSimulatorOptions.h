#pragma once

#include "VXSimulator.h"

/// The command line of vx-simulator. A plain value.
struct VXSimulatorOptions
{
    VXSimulator::Setup setup;
    QString scenarioFile;
    QString readyFile;
    QString certificatesToMake; ///< folder of "make-certs"; empty: serve
    int exitAfterMs = 0;        ///< 0: no limit
    bool isQuiet = false;
    bool isHelpWanted = false;
    QString error;    ///< what is wrong with the command line; empty when nothing is
    QString helpText; ///< for --help

    /// Reads the arguments, the program's name first.
    [[nodiscard]] static VXSimulatorOptions fromArguments(const QStringList& theArguments);
};
