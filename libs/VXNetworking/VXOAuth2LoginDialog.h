#pragma once

#include "VXNetworkingExport.h"

#include <VXGUIWidgets/VXProgressDialogController.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFlags>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtWidgets/QDialog>

class QCheckBox;
class QUrl;
class VXWebView;

/// Shows the login page of an identity provider inside the program, below a bar with its address.
///
/// Who watches the addresses, a subclass or an object connected to urlHasChanged(), recognises the
/// provider's redirect, keeps the code with setAccessCode() and ends the dialog with
/// startAcceptTimer():
///
/// \code
/// VXOAuth2LoginDialog dialog(loginUrl, u"Tessarim"_s, VXOAuth2LoginDialog::CancelButtonOption);
/// connect(&dialog, &VXOAuth2LoginDialog::urlHasChanged, &dialog, [&](const QUrl& theUrl) {
///     if (!isRedirectOfThisLogin(theUrl)) // compares the state, too (RFC 6749, 10.12)
///         return;
///     dialog.setAccessCode(codeOf(theUrl));
///     dialog.startAcceptTimer();
/// });
/// if (dialog.exec() == QDialog::Accepted)
///     exchange(dialog.accessCode());
/// \endcode
///
/// While the first page loads it watches the clock: after 4 seconds a progress dialog appears,
/// after 60 seconds it gives up with a message and is rejected. Errors of pages are the engine's to
/// show. GUI thread only.
class VXNETWORKING_EXPORT VXOAuth2LoginDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXOAuth2LoginDialog)

public:
    /// What stands below the page; combine with "|".
    enum OAuth2LoginDialogOption
    {
        NoOption = 0,
        SaveLoginDataOption = 1, ///< a check box for saving the authorisation, not checked at first
        CloseButtonOption = 2,   ///< a button that accepts the dialog, also without a code
        CancelButtonOption = 4,  ///< a button that rejects it
    };
    Q_DECLARE_FLAGS(OAuth2LoginDialogOptions, OAuth2LoginDialogOption)

    /// Begins to load theUrl. theServiceName is what users call the provider.
    VXOAuth2LoginDialog(const QUrl& theUrl, const QString& theServiceName,
                        OAuth2LoginDialogOptions theOptions);
    ~VXOAuth2LoginDialog() override;

    /// The authorisation code (RFC 6749, 4.1.2), empty until somebody set it.
    [[nodiscard]] QString accessCode() const { return myAccessCode; }

    /// Whether the user wants the authorisation to be kept; never without SaveLoginDataOption.
    [[nodiscard]] bool saveLoginData() const;

    /// Accepts the dialog after 250 milliseconds, so that the event of the page that led here is
    /// over.
    void startAcceptTimer() const;

    /// The same with QDialog::Rejected.
    void startRejectTimer() const;

    /// Of the page that is shown.
    [[nodiscard]] QUrl url() const;

    /// Of the page that is shown.
    [[nodiscard]] QString title() const;

Q_SIGNALS:
    /// The view went on to theUrl: by a link, a redirect or a script.
    void urlHasChanged(const QUrl& theUrl);

    /// Emit it to show or hide the bar with the address.
    void setUrlBarVisible(bool theIsVisible);

public Q_SLOTS:
    /// Runs the dialog, and the watch if the first page has not finished loading yet.
    int exec() override;

    /// Ends the watch, whether the page is there or not.
    virtual void handleLoadFinished(bool theIsOk);

    /// A hook; does nothing.
    virtual void handleTitleChanged(const QString& theTitle);

    /// Emits urlHasChanged().
    virtual void handleUrlChanged(const QUrl& theUrl);

    /// Looks at the clock; called every 500 milliseconds while the first page loads.
    void handleTimeout();

    /// Only keeps the code; startAcceptTimer() ends the dialog.
    void setAccessCode(const QString& theCode) { myAccessCode = theCode; }

    /// Stops the view; what was loaded stays, and the dialog, too.
    void stopLoading();

protected:
    /// Milliseconds since exec(), 0 before. What the watch goes by.
    [[nodiscard]] virtual qint64 elapsedMilliseconds() const;

private:
    [[nodiscard]] QWidget* createUrlBar();
    [[nodiscard]] QWidget* createWebEngineView(const QUrl& theUrl);
    [[nodiscard]] QWidget* createCheckBox();
    [[nodiscard]] QWidget* createButtonBox();
    void updateProgress();
    void handleServiceUnavailable();
    void stopWatch();

    QString myServiceName;
    OAuth2LoginDialogOptions myOptions;
    VXWebView* myWebView = nullptr;  // owned
    QCheckBox* myCheckBox = nullptr; // child of this; null without SaveLoginDataOption
    QString myAccessCode;
    QTimer myWatchTimer;
    QElapsedTimer myStopwatch; // invalid until exec()
    VXProgressDialogController myProgress;
    bool myIsFirstPageLoaded = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VXOAuth2LoginDialog::OAuth2LoginDialogOptions)
