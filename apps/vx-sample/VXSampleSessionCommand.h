#pragma once

#include "VXSampleCommand.h"

class QString;
class VXSampleCloudSession;

/// "session open|refresh|expire|close": one cloud session from its login on. Tokens are never
/// printed.
class VXSampleSessionCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static bool proceed(const QString& theVerb, VXSampleCloudSession& theSession,
                        VXSampleContext& theContext);
    static bool waitForExpiry(VXSampleCloudSession& theSession, VXSampleContext& theContext);
};
