#pragma once

#include "VXOAuth2ExternalLoginDialogBase.h"

class QHttpServer;
class QHttpServerRequest;
class QHttpServerResponse;
class QJsonObject;

/// A login in the user's own browser (RFC 8252): opens the provider's page there, shows a hint
/// meanwhile, and catches the provider's redirect on port 1031 of this computer.
///
/// When exec() returns QDialog::Accepted, the caller exchanges accessCode() for tokens itself. The
/// code's reserved characters are still percent-encoded: decode it once with
/// QUrl::fromPercentEncoding(). A provider's error redirect has no code and leaves the dialog open;
/// so does everything else until the user gives up.
///
/// The port is open on every address from the constructor to the destructor, and whoever reaches it
/// may hand in a code of its own. So the caller puts a PKCE challenge (RFC 7636) into the login URL
/// and the verifier into the exchange: a foreign code is then refused there. When the port is taken
/// the log has one warning, and the user can only cancel.
///
/// The answer to the redirect is written before exec() returns. For the files and the text that
/// the page asks for afterwards the dialog must live on and the event loop run, one or two seconds;
/// without them the page still tells what to do. GUI thread only; don't delete the dialog in a slot
/// of accepted() or finished().
class VXNETWORKING_EXPORT VXOAuth2ExternalLoginDialog : public VXOAuth2ExternalLoginDialogBase
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXOAuth2ExternalLoginDialog)

public:
    /// theLoginUrl redirects to this computer's port 1031 in the end. Listens from now on.
    VXOAuth2ExternalLoginDialog(const QUrl& theLoginUrl, const QString& theServiceName);
    ~VXOAuth2ExternalLoginDialog() override;

    /// The port that the provider's registered redirect URL names: 1031.
    [[nodiscard]] static quint16 defaultListeningPort();

    /// Accepts the dialog if there is an access code.
    void checkAccept();

    /// What the page that ends the login says, served as "/translations.json": "maintext", with
    /// "<strong>" around the application's name.
    [[nodiscard]] QJsonObject translations() const;

public Q_SLOTS:
    /// Opens the browser and shows the dialog until a code was caught or the user gives up.
    int exec() override;

private:
    void initializeHttpServer();
    void listen();
    [[nodiscard]] QHttpServerResponse answer(const QHttpServerRequest& theRequest);
    void writePendingAnswers() const;

    QHttpServer* myServer = nullptr; // child of this
};
