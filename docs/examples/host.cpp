#include <VXCore/VXCommandLineParser.h>
#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXInitializer.h>
#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXCore/VXLogger.h>
#include <VXCore/VXMainWindowHandle.h>
#include <VXCore/VXUrlOpener.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXPreferencesProxy.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QDebug>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// The library's questions, from any thread, become dialogs of the mediator.
void connectQuestions()
{
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    auto* const dispatcher = Dispatcher::instance();
    auto* const mediator = VXRequestNetwork::instance();
    QObject::connect(dispatcher, &Dispatcher::authenticationRequired, mediator,
                     &VXRequestNetwork::handleAuthenticationRequest);
    QObject::connect(dispatcher, &Dispatcher::proxyAuthenticationRequired, mediator,
                     &VXRequestNetwork::handleProxyAuthenticationRequest);
    QObject::connect(
        dispatcher, &Dispatcher::askIgnoreSSLErrors, mediator,
        [mediator](const QString& theHost, const QStringList& theErrors, bool* theAnswer) {
            *theAnswer = mediator->askIgnoreSSLErrors(theHost, theErrors);
        });
}

/// The network page, modal: the failed exchange is tried again when it is closed.
void editNetworkSettings()
{
    QDialog dialog(VXMainWindowHandle::mainWindow());
    auto* const page = new VXPreferencesProxy(&dialog);
    auto* const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->addWidget(page);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    page->readFromConfig();
    if (dialog.exec() == QDialog::Accepted)
        page->writeToConfig();
}

} // namespace

int main(int theCount, char** theArguments)
{
    // Names first: settings, logs and temporary files lie in folders of these names.
    QCoreApplication::setOrganizationName(u"Norvo"_s);
    QCoreApplication::setApplicationName(u"photo-desk"_s);
    VXDeploymentConfig::instance()->setValue(u"Program/name"_s, u"photo-desk"_s);

    const QApplication application(theCount, theArguments);
    VXLogger::installMessageHandler();
    VXLocaleAndTranslationManager::instance()->installTranslators(); // before any error text

    VXCommandLineParser parser; // with the options of the library
    VXInitializer::instance()->runCommandLine(&parser);
    if (!parser.process(application.arguments())) {
        qWarning().noquote() << parser.errorText();
        return 2;
    }

    std::ignore =
        VXNetworkSettings::instance(); // from now on web views follow the user's proxy, too
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal); // before the first web view
    VXCSSSkinManager::instance()->applyConfiguredMode();
    VXUrlOpener::installConfigured();
    connectQuestions();
    QObject::connect(VXRequestNetwork::instance(),
                     &VXRequestNetwork::pleaseStartSomeDialogToEditTheProxyPreferences,
                     &application, editNetworkSettings);

    int status = 0;
    { // windows and web views go before the engine
        QLabel window(u"Photo Desk"_s);
        VXMainWindowHandle::setMainWindow(&window);
        window.show();
        status = QApplication::exec();
        VXMainWindowHandle::setMainWindow(nullptr);
    }
    VXInitializer::instance()->runTeardown();
    return status;
}
