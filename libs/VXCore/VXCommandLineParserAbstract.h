#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

class VXCommandLineOptionHandlerAbstract;

/// Where libraries leave their command-line options.
class VXCORE_EXPORT VXCommandLineParserAbstract
{
    Q_DISABLE_COPY_MOVE(VXCommandLineParserAbstract)

public:
    VXCommandLineParserAbstract();
    virtual ~VXCommandLineParserAbstract();

    /// Adds an option. theType is the application's own number for it. The names stand without
    /// dashes. With an empty theValueName the option takes no value. The parser owns the handler.
    virtual void addOption(int theType, VXCommandLineOptionHandlerAbstract* theHandler,
                           const QStringList& theNames, const QString& theHelp,
                           const QString& theValueName, const QString& theDefaultValue) = 0;
};
