#pragma once

#include "VXSampleCommand.h"

class VXCredentials;

/// "credentials save|load GROUP" and "credentials deeplink URL": the record of a login. Passwords
/// and tokens are read from standard input only and never printed.
class VXSampleCredentialsCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static QString fill(const QCommandLineParser& theArguments, VXCredentials& theCredentials);
};
