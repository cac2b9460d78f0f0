#include "VXSampleMediatorEvents.h"

#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSampleOutput.h"
#include "VXSamplePreferencesDialog.h"

#include <VXNetworking/VXRequestNetwork.h>

using namespace Qt::StringLiterals;

VXSampleMediatorEvents::VXSampleMediatorEvents(VXSampleContext& theContext, QWidget* theWindow)
    : myContext(theContext)
{
    const VXRequestNetwork* mediator = VXRequestNetwork::instance();
    connect(mediator, &VXRequestNetwork::pleaseStartSomeDialogToEditTheProxyPreferences, this,
            [this, theWindow] { editProxyPreferences(theWindow); });
    connect(mediator, &VXRequestNetwork::enableLoginButton, this, [this](bool theEnable) {
        myContext.output.event(u"enableLoginButton"_s, {{u"enable"_s, theEnable}});
    });
}

void VXSampleMediatorEvents::editProxyPreferences(QWidget* theWindow)
{
    myContext.output.event(u"editProxyPreferences"_s, {});
    if (myContext.answers.userIsThere())
        VXSamplePreferencesDialog(theWindow).exec();
}
