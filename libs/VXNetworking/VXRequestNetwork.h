#pragma once

#include "VXNetworkingExport.h"

#include <VXCore/VXSingleton.h>
#include <VXGUIWidgets/VXRequest.h>

#include <QtCore/QStringList>

#include <optional>

class QAuthenticator;
class QDeadlineTimer;
class QUrl;
class VXNetworkingError;

/// The one place where the library talks to the user about network problems, updates, certificates
/// and passwords.
///
/// Lives in the application's main thread, whatever thread asks for it first, so slots that worker
/// threads reach by blocking queued connections run there. The handlers return true when the user
/// wants the failed action to be done again. Nobody but the application connects the signal
/// dispatcher's questions to this object:
///
/// \code
/// auto* dispatcher = VXNetworkAccessManagerSignalDispatcher::instance();
/// auto* mediator = VXRequestNetwork::instance();
/// connect(dispatcher, &VXNetworkAccessManagerSignalDispatcher::authenticationRequired,
///         mediator, &VXRequestNetwork::handleAuthenticationRequest);
/// connect(dispatcher, &VXNetworkAccessManagerSignalDispatcher::proxyAuthenticationRequired,
///         mediator, &VXRequestNetwork::handleProxyAuthenticationRequest);
/// connect(dispatcher, &VXNetworkAccessManagerSignalDispatcher::askIgnoreSSLErrors, mediator,
///         [mediator](const QString& theHost, const QStringList& theErrors, bool* theResult) {
///             *theResult = mediator->askIgnoreSSLErrors(theHost, theErrors);
///         });
/// \endcode
class VXNETWORKING_EXPORT VXRequestNetwork
    : public VXRequest
    , public VXSingleton<VXRequestNetwork>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXRequestNetwork)

public:
    /// Use instance(). Needs the application object to find the main thread.
    VXRequestNetwork();
    ~VXRequestNetwork() override;

    /// Shows the dialog that fits theError's severity; NoError counts as a lost connection.
    /// theParent is for an overloaded server's countdown, the others belong to the active window.
    /// In any other thread than the main thread nothing is shown and the answer is false.
    [[nodiscard]] bool handleNetworkError(const VXNetworkingError& theError,
                                          QWidget* theParent = nullptr);

    /// Counts down 180 to 300 seconds and then goes on by itself. The server's wait time is not
    /// used: a random time spreads the clients.
    [[nodiscard]] bool handleAutoRecoverError(const VXNetworkingError& theError,
                                              QWidget* theParent = nullptr);

    /// Shows a warning, but nothing for what the calling dialog shows beside its fields: coupons,
    /// the address, the login. Always false.
    [[nodiscard]] bool handleUserInputError(const VXNetworkingError& theError);

    /// Shows a critical message. Always false.
    [[nodiscard]] bool handleUnspecificError(const VXNetworkingError& theError);

    /// Shows an information. Always false.
    [[nodiscard]] bool handlePaymentError(const VXNetworkingError& theError);

    /// Offers another try; true when the user takes it.
    [[nodiscard]] bool handleRemoteSystemError(const VXNetworkingError& theError);

    /// Offers the network settings and another try; both count as "once more".
    [[nodiscard]] bool handleConnectionError(const VXNetworkingError& theError);

    /// Tells how the update of the price list ended.
    void productListUpdateFinished(bool theSuccess);

    /// Tells that the program must be started anew, because the sizes of page packages changed.
    /// Ends nothing.
    void softwareMustBeRestarted();

    /// Tells of an error that cannot be ignored. theError is shown as HTML.
    void showSSLErrorWarning(const QString& theUrl, const QString& theError);

    /// Logs theErrors and asks whether to ignore them; true = ignore.
    [[nodiscard]] bool askIgnoreSSLErrors(const QString& theUrl, const QStringList& theErrors);

    /// Asks for user name and password. A cancelled dialog leaves theAuthenticator untouched.
    void runPasswordDialog(const QString& theText, QAuthenticator* theAuthenticator);

    /// The title of error boxes, with the program's version.
    [[nodiscard]] QString windowTitle() const;

public Q_SLOTS:
    /// Shows what is new in a newer version (HTML) and asks whether to update now. With
    /// isDeprecated the program must be updated and there is no button for later. The answer is
    /// returned and written to *doUpdate, which may be null.
    bool showProgramUpdateDialog(const QString& theText, bool isDeprecated, bool* doUpdate);

    /// Writes the answer to *quit: true when the program is to end now.
    void finishProgramForUpdate(bool* quit);

    /// Fills theAuthenticator for a server, or leaves it untouched.
    void handleAuthenticationRequest(const QUrl& theUrl, QAuthenticator* theAuthenticator);

    /// The same for a proxy, which is known by its host name only.
    void handleProxyAuthenticationRequest(const QUrl& theUrl, QAuthenticator* theAuthenticator,
                                          const QString& theHostName);

    /// Tells of a refused login. With a wait time (here in seconds) the login button stays disabled
    /// until that time is over, also when the box is closed earlier. Any other error than
    /// InvalidLogin goes to handleNetworkError().
    void handleInvalidLoginError(const VXNetworkingError& theError);

    /// Tells that the program is up to date.
    void updateNotNecessary();

    /// Tells that the update failed, and which programs it needs.
    void warnUpdateError();

    /// Tells that this program is no longer supported; the server's message may be rich text.
    void showPhaseOutMessage(const QString& theDeprecationMessage);

Q_SIGNALS:
    /// The user wants to edit the network settings. A slot that shows its page modally lets the
    /// user finish before the failed action is tried again.
    void pleaseStartSomeDialogToEditTheProxyPreferences();

    /// Disables the login button while a login wait runs, and enables it afterwards.
    void enableLoginButton(bool enable);

private:
    void moveToMainThread();
    [[nodiscard]] std::optional<int> askHowToGoOn(const VXNetworkingError& theError,
                                                  const QList<VXDialogChoice>& theChoices);
    [[nodiscard]] VXDialogChoice retryChoice(int theValue) const;
    void waitBeforeNextLogin(const QDeadlineTimer& theDeadline);
};
