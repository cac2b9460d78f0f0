#pragma once

#include <QtCore/QObject>
#include <QtCore/QUrl>

class VXOAuth2LoginDialog;

/// Recognises the redirect that ends an embedded login (RFC 6749, 4.1.2) and closes the dialog:
/// with the code, or without when the provider sent an error. A redirect whose state is not that of
/// this login is passed over: it is somebody else's (RFC 6749, 10.12). Main thread.
class VXSampleRedirectWatch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleRedirectWatch)

public:
    /// Watches theDialog until either goes. Nobody need listen at theRedirectUri.
    VXSampleRedirectWatch(VXOAuth2LoginDialog& theDialog, const QUrl& theRedirectUri,
                          const QString& theState);

    /// What the provider called its error, empty without one.
    [[nodiscard]] QString errorCode() const { return myErrorCode; }

private:
    void look(const QUrl& theUrl);
    [[nodiscard]] bool isRedirect(const QUrl& theUrl) const;

    VXOAuth2LoginDialog& myDialog;
    const QUrl myRedirectUri;
    const QString myState;
    QString myErrorCode;
    bool myIsOver = false;
};
