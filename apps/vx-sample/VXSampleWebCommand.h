#pragma once

#include "VXSampleCommand.h"

#include <QtCore/QStringList>

class QJsonArray;
class QUrl;
class VXBrowserDialog;

/// "web URL": shows a page in the browser dialog, runs scripts in it and saves it.
class VXSampleWebCommand : public VXSampleCommand
{
public:
    void addOptions(QCommandLineParser& theParser) const override;
    VXSampleExitCode run(const QCommandLineParser& theArguments,
                         VXSampleContext& theContext) override;

private:
    /// False when the page could not be loaded, or the program is to end.
    [[nodiscard]] static bool load(VXBrowserDialog& theDialog, const QUrl& theUrl);
    [[nodiscard]] static QJsonArray runScripts(const VXBrowserDialog& theDialog,
                                               const QStringList& theScripts);
    [[nodiscard]] static bool savePdf(VXBrowserDialog& theDialog, const QString& theFile);
    [[nodiscard]] static bool savePicture(VXBrowserDialog& theDialog, const QString& theFile);
};
