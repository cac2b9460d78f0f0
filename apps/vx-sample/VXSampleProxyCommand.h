#pragma once

#include "VXSampleCommand.h"

#include <QtCore/QString>

class VXNetworkSettings;

/// "proxy show", "proxy set CHOICE", "proxy for URL": the user's proxy settings. Passwords are
/// read from standard input only and never printed.
class VXSampleProxyCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    static VXSampleExitCode show(const QCommandLineParser& theArguments,
                                 VXSampleContext& theContext);
    static VXSampleExitCode set(const QCommandLineParser& theArguments,
                                VXSampleContext& theContext);
    static VXSampleExitCode forUrl(const QCommandLineParser& theArguments,
                                   VXSampleContext& theContext);
    static QString apply(const QCommandLineParser& theArguments, VXNetworkSettings& theSettings);
};
