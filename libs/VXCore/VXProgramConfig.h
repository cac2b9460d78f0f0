#pragma once

#include "VXCoreExport.h"

/// Which of the programs that share the libraries this one is. Thread-safe.
class VXCORE_EXPORT VXProgramConfig
{
public:
    VXProgramConfig() = delete;

    /// The program that shows no web content.
    static constexpr int ProgramIdNoWebContent = 8;

    /// The program's number ("Program/id" of the deployment); 1 unless told otherwise.
    [[nodiscard]] static int programID();

    /// Holds until the process ends; stronger than the deployment's files.
    static void setProgramID(int theProgramId);
};
