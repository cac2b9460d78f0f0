#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// What happens when an option stands on the command line.
class VXCORE_EXPORT VXCommandLineOptionHandlerAbstract
{
    Q_DISABLE_COPY_MOVE(VXCommandLineOptionHandlerAbstract)

public:
    VXCommandLineOptionHandlerAbstract();
    virtual ~VXCommandLineOptionHandlerAbstract();

    /// Called once by the parser; theValue is empty for an option that takes none.
    virtual void optionUsed(const QString& theValue) = 0;
};
