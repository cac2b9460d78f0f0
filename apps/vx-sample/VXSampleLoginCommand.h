#pragma once

#include "VXSampleCommand.h"
#include "VXSampleLogin.h"

class QJsonObject;
class VXSamplePkce;

/// "login direct|embedded|external": a login with a password, in a page of this program, or in the
/// user's own browser. Neither tokens nor codes are printed.
class VXSampleLoginCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    VXSampleExitCode direct(VXSampleContext& theContext) const;
    VXSampleExitCode embedded(VXSampleContext& theContext) const;
    VXSampleExitCode external(VXSampleContext& theContext) const;
    VXSampleExitCode giveUp(VXSampleContext& theContext, const QString& theErrorCode = {}) const;
    [[nodiscard]] QUrl loginAddress(const VXSamplePkce& thePkce, const QString& theState) const;
    VXSampleExitCode exchange(const QString& theCode, const VXSamplePkce& thePkce,
                              QJsonObject* theResult) const;

    VXSampleLogin myLogin;
    QString myService;     // the provider as users call it
    QString myRedirectUri; // leads to this computer
};
