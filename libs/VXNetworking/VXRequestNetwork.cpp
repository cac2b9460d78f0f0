#include "VXRequestNetwork.h"

#include "VXNetworkingError.h"
#include "VXProgramUpdateDescriptionDialog.h"

#include <VXCore/VXLogger.h>
#include <VXCore/VXMath.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXCore/VXVersionConfig.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr int shortestRecoverySeconds = 180;
constexpr int largestExtraSeconds = 120;
constexpr int sleepMilliseconds = 1000;

enum ConnectionChoice
{
    EditSettings = 1,
    TryAgain = 2,
};

bool isMainThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return application != nullptr && QThread::currentThread() == application->thread();
}

// Once the application quits, no event loop runs any more and a sleep returns at once.
bool isApplicationQuitting()
{
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    return loop.exec(QEventLoop::ExcludeUserInputEvents) == -1;
}

} // namespace

VXRequestNetwork::VXRequestNetwork()
{
    moveToMainThread();
}

VXRequestNetwork::~VXRequestNetwork() = default;

void VXRequestNetwork::moveToMainThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (application != nullptr && thread() != application->thread())
        moveToThread(application->thread());
}

QString VXRequestNetwork::windowTitle() const
{
    return tr("Ein Fehler ist aufgetreten (%1)").arg(VXVersionConfig::versionString());
}

bool VXRequestNetwork::handleNetworkError(const VXNetworkingError& theError, QWidget* theParent)
{
    if (!isMainThread())
        return false;
    if (theError.errorCode() == NoError)
        return handleConnectionError(theError);

    switch (theError.severity()) {
    case SeverityUserInput:
        return handleUserInputError(theError);
    case SeverityRemoteSystem:
        return handleRemoteSystemError(theError);
    case SeverityNoNetwork:
    case SeverityTemporary:
        return handleConnectionError(theError);
    case SeverityAutoRecover:
        return handleAutoRecoverError(theError, theParent);
    case SeverityPayment:
        return handlePaymentError(theError);
    case SeverityNoError:
    case SeverityUnrecoverable:
    case SeverityProgramError:
    case SeverityOrderDeclaration:
        break;
    }
    return handleUnspecificError(theError);
}

bool VXRequestNetwork::handleAutoRecoverError(const VXNetworkingError& theError, QWidget* theParent)
{
    VXMath::seedRandom();
    const int seconds = shortestRecoverySeconds + VXMath::randomNumber(0, largestExtraSeconds);
    return autoCloseMessageBox(QMessageBox::Warning, tr("Einen Moment bitte"),
                               theError.errorMessage(), theError.errorDetails(), seconds,
                               QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry,
                               QMessageBox::Cancel, QString(), theParent) == QMessageBox::Retry;
}

bool VXRequestNetwork::handleUserInputError(const VXNetworkingError& theError)
{
    const VXNetworkingErrorCode code = theError.errorCode();
    if (code != InvalidAddress && code != InvalidLogin && !theError.isCouponError()) {
        messageBox(QMessageBox::Warning, windowTitle(), theError.errorMessage(),
                   theError.errorDetails(), QMessageBox::Ok);
    }
    return false;
}

bool VXRequestNetwork::handleUnspecificError(const VXNetworkingError& theError)
{
    messageBox(QMessageBox::Critical, windowTitle(), theError.errorMessage(),
               theError.errorDetails(), QMessageBox::Cancel);
    return false;
}

bool VXRequestNetwork::handlePaymentError(const VXNetworkingError& theError)
{
    information(windowTitle(), theError.errorMessage(), theError.errorDetails());
    return false;
}

bool VXRequestNetwork::handleRemoteSystemError(const VXNetworkingError& theError)
{
    return askHowToGoOn(theError, {retryChoice(1)}).has_value();
}

bool VXRequestNetwork::handleConnectionError(const VXNetworkingError& theError)
{
    const VXDialogChoice settings{
        EditSettings, tr("Netzwerkeinstellungen ändern...", "CMDLNKTITLE"),
        tr("Startet den Dialog \"Netzwerkeinstellungen\"", "CMDLINKTEXT")};
    const std::optional<int> choice = askHowToGoOn(theError, {settings, retryChoice(TryAgain)});
    if (choice == EditSettings)
        Q_EMIT pleaseStartSomeDialogToEditTheProxyPreferences();
    return choice.has_value();
}

std::optional<int> VXRequestNetwork::askHowToGoOn(const VXNetworkingError& theError,
                                                  const QList<VXDialogChoice>& theChoices)
{
    return choose(windowTitle(),
                  theError.errorMessage() + tr("<p>Wollen Sie es noch einmal versuchen?"),
                  theChoices);
}

VXDialogChoice VXRequestNetwork::retryChoice(int theValue) const
{
    return {theValue, tr("Noch einmal versuchen", "CMDLNKTITLE"),
            tr("Führt die Aktion noch einmal durch", "CMDLINKTEXT")};
}

void VXRequestNetwork::handleInvalidLoginError(const VXNetworkingError& theError)
{
    if (theError.errorCode() != InvalidLogin) {
        if (theError.errorOccurred())
            (void)handleNetworkError(theError);
        return;
    }

    const int seconds = theError.waitTime();
    QString text = theError.errorMessage();
    QDeadlineTimer deadline; // already over
    if (seconds > 0) {
        text += tr("Sie haben mehrfach falsche Login-Daten eingegeben. Bitte warten Sie einen "
                   "Moment.");
        deadline = QDeadlineTimer(qint64(seconds) * 1000, Qt::PreciseTimer);
    }
    autoCloseMessageBox(QMessageBox::Warning, windowTitle(), text, theError.errorDetails(), seconds,
                        QMessageBox::Ok, QMessageBox::Ok, QMessageBox::NoButton,
                        u"loginErrorMessageBox"_s);
    if (!deadline.hasExpired())
        waitBeforeNextLogin(deadline);
}

void VXRequestNetwork::waitBeforeNextLogin(const QDeadlineTimer& theDeadline)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    Q_EMIT enableLoginButton(false);
    while (!theDeadline.hasExpired() && !isApplicationQuitting())
        VXPlatformIndependent::instance()->sleep(sleepMilliseconds);
    // Clicks that were held back meet the disabled button now, not the enabled one afterwards.
    QCoreApplication::processEvents();
    QApplication::restoreOverrideCursor();
    Q_EMIT enableLoginButton(true);
}

void VXRequestNetwork::handleAuthenticationRequest(const QUrl& theUrl,
                                                   QAuthenticator* theAuthenticator)
{
    // "gebe" is the product's text.
    runPasswordDialog(tr("Für die URL \"%1\" wird eine Authentifizierung benötigt.<br>Bitte gebe "
                         "Sie Ihren Benutzernamen und Ihr Passwort ein.")
                          .arg(theUrl.toString().toHtmlEscaped()),
                      theAuthenticator);
}

void VXRequestNetwork::handleProxyAuthenticationRequest(const QUrl& theUrl,
                                                        QAuthenticator* theAuthenticator,
                                                        const QString& theHostName)
{
    Q_UNUSED(theUrl)
    runPasswordDialog(tr("Für den Proxy \"%1\" wird eine Authentifizierung benötigt.<br>Bitte "
                         "geben Sie Ihren Benutzernamen und Ihr Passwort ein.")
                          .arg(theHostName),
                      theAuthenticator);
}

void VXRequestNetwork::runPasswordDialog(const QString& theText, QAuthenticator* theAuthenticator)
{
    const VXDialogAnswer answer = askForLogin(theText, QApplication::activeWindow());
    if (answer.button != QMessageBox::Ok)
        return;
    theAuthenticator->setUser(answer.userName);
    theAuthenticator->setPassword(answer.password);
}

bool VXRequestNetwork::askIgnoreSSLErrors(const QString& theUrl, const QStringList& theErrors)
{
    QString items;
    for (const QString& error : theErrors) {
        VXLogger::instance()->legacyLog(u"TOV SSLERROR:%1"_s.arg(error), true);
        items += u"<li>%1</li>"_s.arg(error);
    }
    return question(tr("SSL Fehler"),
                    tr("<html>Bei der Daten&uuml;bertragung mit dem Server<br><b>%1</b><br>sind "
                       "die folgenden Fehler aufgetreten:%2M&ouml;chten Sie diese Fehler "
                       "<b>ignorieren</b>?</html>")
                        .arg(theUrl, u"<ul>%1</ul>"_s.arg(items)),
                    false);
}

void VXRequestNetwork::showSSLErrorWarning(const QString& theUrl, const QString& theError)
{
    warning(tr("SSL Fehler"),
            tr("<html>Bei der Daten&uuml;bertragung mit dem Server<br><b>%1</b><br>ist folgender "
               "Fehler aufgetreten:<ul><li>%2</li></ul>Dieser Fehler kann nicht ignoriert werden. "
               "Die Daten&uuml;bertragung wird abgebrochen.</html>")
                .arg(theUrl, theError));
}

bool VXRequestNetwork::showProgramUpdateDialog(const QString& theText, bool isDeprecated,
                                               bool* doUpdate)
{
    // Its parent may take it along while it runs.
    const QPointer<VXProgramUpdateDescriptionDialog> dialog = new VXProgramUpdateDescriptionDialog(
        QApplication::activeModalWidget(), theText, isDeprecated);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (dialog) {
        dialog->hide();
        dialog->deleteLater();
    }
    if (doUpdate != nullptr)
        *doUpdate = isAccepted;
    return isAccepted;
}

void VXRequestNetwork::finishProgramForUpdate(bool* quit)
{
    *quit = question(tr("Aktualisierung wurde erfolgreich heruntergeladen."),
                     tr("Um das Update zu starten, muss das Programm beendet werden. Der "
                        "Installationsprozess wird dann automatisch gestartet. Wollen Sie das "
                        "Programm jetzt beenden?"),
                     true);
}

void VXRequestNetwork::updateNotNecessary()
{
    information(tr("Fertig"), tr("Die Software befindet sich auf dem neuesten Stand."));
}

void VXRequestNetwork::warnUpdateError()
{
    warning(attentionString(),
            tr("Das Update konnte nicht durchgeführt werden.\nStellen Sie sicher, dass das dazu "
               "benötigte Programm \"perl\" sowie eines der Terminals \"konsole\", "
               "\"gnome-terminal\", \"xfce4-terminal\", \"lxterminal\" oder \"xterm\" auf Ihrem "
               "System installiert ist."));
}

void VXRequestNetwork::showPhaseOutMessage(const QString& theDeprecationMessage)
{
    warning(tr("Diese Software wird nicht mehr unterstützt."), theDeprecationMessage);
}

void VXRequestNetwork::productListUpdateFinished(bool theSuccess)
{
    information(hintString(), theSuccess ? tr("Die Preisliste wurde erfolgreich aktualisiert.")
                                         : tr("Das Programm konnte die Preisliste nicht updaten."));
}

void VXRequestNetwork::softwareMustBeRestarted()
{
    // The blank at the end of the title belongs to the product's text.
    information(tr("Die Software muss neu gestartet werden. "),
                tr("Die Größe der Seitenpakete hat sich geändert. Die Software muss leider neu "
                   "gestartet werden."));
}
