#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

class VXOAuth2LoginDialog;

/// Types a login into the first page with a password field and sends it, so that an embedded login
/// can be tried without hands. Only pages of the provider get it, and only once: what comes after a
/// refusal is the user's. Main thread.
class VXSampleFormTypist : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleFormTypist)

public:
    /// theProvider is any address of the provider. Must not outlive theDialog.
    VXSampleFormTypist(VXOAuth2LoginDialog& theDialog, const QUrl& theProvider,
                       const QString& theUser, const QString& thePassword);

private:
    void type();

    VXOAuth2LoginDialog& myDialog;
    const QUrl myProvider;
    const QString myUser;
    const QString myPassword;
    bool myHasTyped = false;
};
