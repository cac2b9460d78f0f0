#include "VXSampleLoginPanel.h"

#include "VXSampleCloudSession.h"
#include "VXSampleCommandRun.h"
#include "VXSampleContext.h"
#include "VXSampleOutcomeView.h"
#include "VXSampleSimulator.h"

#include <VXGUIWidgets/VXWidgetFactory.h>
#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QJsonDocument>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

VXSampleLoginPanel::VXSampleLoginPanel(VXSampleContext& theContext, QWidget* theParent)
    : VXSamplePanel(tr("Anmeldung"),
                    tr("Der eingebaute Anbieter kennt den Kunden \"demo\" mit dem Passwort "
                       "\"demo\". Die Sitzung erneuert sich selbst, bevor sie abläuft."),
                    theParent)
    , myContext(theContext)
{
    addForm();
    addButtons();
    myState = new QLabel(this);
    myState->setObjectName(u"sessionState"_s);
    content()->addWidget(myState);
    myOutcome = new VXSampleOutcomeView(tr("Noch nicht angemeldet."), this);
    content()->addWidget(myOutcome, 1);
    showState();
    // After a refused login the mediator lets the customer wait.
    connect(VXRequestNetwork::instance(), &VXRequestNetwork::enableLoginButton, myOpen,
            &QWidget::setEnabled);
}

VXSampleLoginPanel::~VXSampleLoginPanel() = default;

void VXSampleLoginPanel::addForm()
{
    myUser = new QLineEdit(u"demo"_s, this);
    myUser->setObjectName(u"userEdit"_s);
    myPassword = VXWidgetFactory::createLineEdit(this);
    myPassword->setObjectName(u"passwordEdit"_s);
    myPassword->setEchoMode(QLineEdit::Password);
    connect(myPassword, &QLineEdit::returnPressed, this, [this] { myOpen->click(); });
    auto* form = new QFormLayout;
    form->addRow(tr("&Benutzer:"), myUser);
    form->addRow(tr("Pass&wort:"), myPassword);
    content()->addLayout(form);
}

void VXSampleLoginPanel::addButtons()
{
    auto* session = new QHBoxLayout;
    const auto add = [this](QHBoxLayout* theRow, const QString& theText, const QString& theName) {
        auto* button = new QPushButton(theText, this);
        button->setObjectName(theName);
        theRow->addWidget(button);
        return button;
    };
    myOpen = add(session, tr("An&melden"), u"loginButton"_s);
    myRenew = add(session, tr("Sitzung e&rneuern"), u"renewButton"_s);
    myClose = add(session, tr("Abmel&den"), u"logoutButton"_s);
    session->addStretch(1);
    auto* pages = new QHBoxLayout;
    auto* embedded = add(pages, tr("Auf der &Seite des Anbieters ..."), u"embeddedButton"_s);
    auto* external = add(pages, tr("&Im eigenen Browser ..."), u"externalButton"_s);
    pages->addStretch(1);
    content()->addLayout(session);
    content()->addLayout(pages);

    connect(myOpen, &QPushButton::clicked, this, &VXSampleLoginPanel::openSession);
    connect(myRenew, &QPushButton::clicked, this, &VXSampleLoginPanel::renew);
    connect(myClose, &QPushButton::clicked, this, &VXSampleLoginPanel::closeSession);
    connect(embedded, &QPushButton::clicked, this, [this] { logInOnPage(u"embedded"_s); });
    connect(external, &QPushButton::clicked, this, [this] { logInOnPage(u"external"_s); });
}

/// An exchange handles events: nothing may begin another one meanwhile, or delete the session.
void VXSampleLoginPanel::setBusy(bool theIsBusy)
{
    myIsBusy = theIsBusy;
    myOpen->setEnabled(!theIsBusy);
    showState();
}

void VXSampleLoginPanel::openSession()
{
    VXSampleLogin login;
    login.tokenUrl = myContext.simulator.address(u"/oauth2/token"_s);
    login.revokeUrl = myContext.simulator.address(u"/oauth2/revoke"_s);
    login.clientId = u"vx-sample"_s;
    if (!login.tokenUrl.isValid()) {
        myOutcome->showText(myContext.simulator.errorText());
        return;
    }
    mySession = std::make_unique<VXSampleCloudSession>(login);
    connect(mySession.get(), &VXSampleCloudSession::sessionExpired, this,
            &VXSampleLoginPanel::showState);
    setBusy(true);
    VXNetworkingError error = mySession->open({myUser->text(), myPassword->text()}, nullptr);
    setBusy(false);
    // The provider refuses a password with status 400 (RFC 6749, 5.2).
    if (error.errorCode() == NetProtocolInvalidOperation)
        error = VXNetworkingError(InvalidLogin);
    myOutcome->showEnd(error, tr("Angemeldet als %1.").arg(myUser->text()), {});
    if (error.errorOccurred())
        VXRequestNetwork::instance()->handleInvalidLoginError(error);
    Q_EMIT exchanged();
}

void VXSampleLoginPanel::renew()
{
    const QString before = mySession->accessToken();
    setBusy(true);
    mySession->updateAccessToken();
    setBusy(false);
    myOutcome->showText(mySession->accessToken() == before ? tr("Die Sitzung wurde nicht erneuert.")
                                                           : tr("Die Sitzung wurde erneuert."));
    Q_EMIT exchanged();
}

void VXSampleLoginPanel::closeSession()
{
    setBusy(true);
    mySession->close();
    setBusy(false);
    myOutcome->showText(tr("Abgemeldet."));
    Q_EMIT exchanged();
}

void VXSampleLoginPanel::logInOnPage(const QString& theKind)
{
    const VXSampleCommandRun run({u"login"_s, theKind}, myContext);
    const bool hasBegun = run.exitCode() != VXSampleExitCode::EnvironmentError;
    myOutcome->showText(run.isSuccess() ? tr("Der Anbieter hat die Anmeldung bestätigt.")
                        : hasBegun      ? tr("Die Anmeldung wurde nicht abgeschlossen.")
                                        : tr("Die Anmeldung konnte nicht beginnen. Der Port 1031 "
                                                  "ist belegt, oder der eingebaute Dienst fehlt."),
                        QString::fromUtf8(QJsonDocument(run.result()).toJson()));
    Q_EMIT exchanged();
}

void VXSampleLoginPanel::showState()
{
    const bool isOpen = mySession && mySession->isOpen();
    myRenew->setEnabled(isOpen && !myIsBusy);
    myClose->setEnabled(isOpen && !myIsBusy);
    const QString state = !isOpen                         ? tr("keine")
                          : mySession->isSessionExpired() ? tr("abgelaufen")
                                                          : tr("offen");
    myState->setText(tr("Sitzung: %1").arg(state));
}
