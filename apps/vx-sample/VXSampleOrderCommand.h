#pragma once

#include "VXSampleCommand.h"

class QString;

/// "order NAME": one exchange of the XML order protocol with the simulator.
class VXSampleOrderCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static QString pathAndQuery(const QCommandLineParser& theArguments);
};
