#include "VXSampleUpdateCommand.h"

#include "VXSampleButtonPress.h"
#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleExchange.h"
#include "VXSampleOutput.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>
#include <QtWidgets/QDialogButtonBox>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// What --press names; NoButton leaves it to the user, nothing for a wrong name.
std::optional<QDialogButtonBox::StandardButton> buttonNamed(const QString& theName)
{
    if (theName.isEmpty())
        return QDialogButtonBox::NoButton;
    if (theName == "now"_L1)
        return QDialogButtonBox::Ok;
    if (theName == "later"_L1)
        return QDialogButtonBox::Cancel;
    return std::nullopt;
}

} // namespace

void VXSampleUpdateCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"mandatory"_s, u"The program must be updated: there is no button for later."_s},
        {u"notes"_s, u"The address of the release notes (HTML); without it those in the assets."_s,
         u"URL"_s},
        {u"press"_s, u"Press the button by itself: now or later."_s, u"BUTTON"_s},
    });
}

VXSampleExitCode VXSampleUpdateCommand::run(const QCommandLineParser& theArguments,
                                            VXSampleContext& theContext)
{
    const auto button = buttonNamed(theArguments.value(u"press"_s));
    if (!button)
        return refuse(theContext, u"update: --press takes now or later"_s);
    const bool isMandatory = theArguments.isSet(u"mandatory"_s);
    if (isMandatory && button == QDialogButtonBox::Cancel)
        return refuse(theContext, u"update: a mandatory update has no button for later"_s);
    QUrl url =
        QUrl::fromLocalFile(VXDirectoryConfig::instance()->htmlPath(u"/release-notes.html"_s));
    if (theArguments.isSet(u"notes"_s) && !theContext.resolve(theArguments.value(u"notes"_s), &url))
        return VXSampleExitCode::EnvironmentError;

    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    const QString notes = operation.receiveString();
    if (operation.errorOccurred()) {
        theContext.output.result(VXSampleErrorJson::fromError(operation.errorStatus()));
        return VXSampleExchange::exitCode(operation.errorStatus());
    }

    const VXSampleButtonPress press(u"programUpdateDescriptionDialog"_s, *button);
    bool doUpdate = false;
    VXRequestNetwork::instance()->showProgramUpdateDialog(notes, isMandatory, &doUpdate);
    theContext.output.result({{u"update"_s, doUpdate}, {u"mandatory"_s, isMandatory}});
    return VXSampleExitCode::Success;
}
