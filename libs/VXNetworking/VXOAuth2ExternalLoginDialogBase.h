#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtWidgets/QDialog>

class QLabel;
class QPushButton;

/// The hint that a login goes on in the user's own browser, with a button that gives it up.
///
/// Opens nothing and listens to nobody: VXOAuth2ExternalLoginDialog does. Its parent is the
/// application's active window. GUI thread only.
class VXNETWORKING_EXPORT VXOAuth2ExternalLoginDialogBase : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXOAuth2ExternalLoginDialogBase)

public:
    /// theLoginUrl is the provider's page for the user, theServiceName what users call the
    /// provider. A picture "ico_logo_<name>" is shown where there is one; its name is the service's
    /// in lower case with "_" for blanks.
    VXOAuth2ExternalLoginDialogBase(const QUrl& theLoginUrl, const QString& theServiceName);
    ~VXOAuth2ExternalLoginDialogBase() override;

    /// Whether this build can log in by OAuth2: always.
    [[nodiscard]] static bool oauth2Possible();

    /// As given to the constructor.
    [[nodiscard]] QUrl loginUrl() const { return myLoginUrl; }

    /// The authorisation code (RFC 6749, 4.1.2), empty until one was caught.
    [[nodiscard]] QString accessCode() const { return myAccessCode; }

    /// Only keeps the code; the dialog stays open.
    void setAccessCode(const QString& theCode) { myAccessCode = theCode; }

    /// The whole content. This and the operations below each make a new widget, which theParent
    /// owns.
    [[nodiscard]] QWidget* createWidget(QWidget* theParent);

    /// The narrow column at the left, 60 pixels wide, with the sign for a hint.
    [[nodiscard]] QWidget* createIconPane(QWidget* theParent) const;

    /// What stands beside it: headline, service, hint and button, one below the other.
    [[nodiscard]] QWidget* createContentWidget(QWidget* theParent);

    /// The line above the name of the service.
    [[nodiscard]] QLabel* createHeaderLabel(QWidget* theParent) const;

    /// Picture and name of the service, side by side; the name is shown as plain text.
    [[nodiscard]] QWidget* createIconWidget(QWidget* theParent) const;

    /// The picture, at most 32 x 32 pixels.
    [[nodiscard]] QWidget* createIcon(QWidget* theParent) const;

    /// The hint to log in in the browser; it names the service, as plain text.
    [[nodiscard]] QWidget* createInfoWidget(QWidget* theParent) const;

    /// Pressing it rejects the dialog.
    [[nodiscard]] QPushButton* createAbortButton(QWidget* theParent) const;

private:
    [[nodiscard]] QString serviceKey() const;

    QUrl myLoginUrl;
    QString myServiceName;
    QString myAccessCode;
};
