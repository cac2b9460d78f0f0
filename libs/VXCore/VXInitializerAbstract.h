#pragma once

#include "VXCoreExport.h"
#include "VXInitializerOption.h"

#include <QtCore/QtGlobal>

class VXCommandLineParserAbstract;

/// What a library has to do at the start and the end of the program. GUI thread.
class VXCORE_EXPORT VXInitializerAbstract
{
    Q_DISABLE_COPY_MOVE(VXInitializerAbstract)

public:
    VXInitializerAbstract();

    /// Leaves the registry of VXInitializer, should it be in it.
    virtual ~VXInitializerAbstract();

    /// Adds the options of the library while the parser is put together.
    virtual void addCommandLineOptionHandlers(VXCommandLineParserAbstract* theParser) = 0;

    /// Called once, after the application object exists and the command line was read.
    virtual void setup(VXInitializerOption theOption) = 0;

    /// Called once, before the application object goes.
    virtual void teardown() = 0;
};
