#include "VXSampleProblems.h"

#include "VXSampleContext.h"
#include "VXSampleOutput.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorControl.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXNetworkingResult.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QUrl>
#include <QtNetwork/QNetworkProxy>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int timeoutSeconds = 20;

VXRequestNetwork& mediator()
{
    return *VXRequestNetwork::instance();
}

QUrl deadPort()
{
    return QUrl(u"http://127.0.0.1:1/"_s); // reserved for a service that nobody runs any more
}

/// The outcome of a GET.
struct Outcome
{
    VXNetworkingError error;
    QByteArray body;
};

Outcome get(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    operation.setTimeout(timeoutSeconds);
    const QByteArray body = operation.exec();
    return {operation.errorStatus(), body};
}

/// The error that an order ended with.
VXNetworkingError orderError(const VXSampleProblemScene& theScene, const QString& theQuery)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theScene.context.simulator.http(u"/xtci/order?"_s + theQuery),
                                QNetworkAccessManager::GetOperation);
    operation.setTimeout(timeoutSeconds);
    const QDomDocument answer = operation.receiveXml();
    if (operation.errorOccurred())
        return operation.errorStatus();
    return VXNetworkingResult(answer).error();
}

void tell(VXSampleProblemScene& theScene, const VXNetworkingError& theError, QJsonObject theFields)
{
    theFields.insert(u"code"_s, static_cast<int>(theError.errorCode()));
    theScene.context.output.event(u"problem"_s, theFields);
}

void handle(VXSampleProblemScene& theScene, const VXNetworkingError& theError)
{
    const bool retry = mediator().handleNetworkError(theError, theScene.window);
    tell(theScene, theError, {{u"retry"_s, retry}});
}

void handleOrder(VXSampleProblemScene& theScene, const QString& theQuery)
{
    handle(theScene, orderError(theScene, theQuery));
}

void refuseLogin(VXSampleProblemScene& theScene, const QString& theQuery)
{
    const VXNetworkingError error = orderError(theScene, theQuery);
    mediator().handleInvalidLoginError(error);
    tell(theScene, error, {});
}

void askAboutCertificate(VXSampleProblemScene& theScene)
{
    tell(theScene, get(theScene.context.simulator.https(u"unknownCa"_s, u"/echo"_s)).error, {});
}

void refuseCertificate(VXSampleProblemScene& theScene)
{
    const QUrl url = theScene.context.simulator.https(u"expired"_s, u"/echo"_s);
    const VXNetworkingError error = get(url).error;
    if (error.errorOccurred())
        mediator().showSSLErrorWarning(url.authority(), error.errorText());
    tell(theScene, error, {});
}

void askForServerLogin(VXSampleProblemScene& theScene)
{
    tell(theScene, get(theScene.context.simulator.http(u"/auth/basic/demo/demo"_s)).error, {});
}

/// The user's own proxy settings, put back at the end.
class BorrowedProxy
{
    Q_DISABLE_COPY_MOVE(BorrowedProxy)

public:
    explicit BorrowedProxy(quint16 thePort)
        : myChoice(settings().proxyChoice())
        , myProxy(settings().proxyType(), settings().proxyHostName(), settings().proxyPort(),
                  settings().proxyUser(), settings().proxyPassword())
    {
        set(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, thePort));
        settings().setProxyChoice(ProxyChoiceManual);
    }
    ~BorrowedProxy()
    {
        set(myProxy);
        settings().setProxyChoice(myChoice);
    }

private:
    static VXNetworkSettings& settings() { return *VXNetworkSettings::instance(); }
    static void set(const QNetworkProxy& theProxy)
    {
        settings().setProxyType(theProxy.type());
        settings().setProxyHostName(theProxy.hostName());
        settings().setProxyPort(theProxy.port());
        settings().setProxyUser(theProxy.user());
        settings().setProxyPassword(theProxy.password());
    }

    VXProxyChoice myChoice;
    QNetworkProxy myProxy;
};

void askForProxyLogin(VXSampleProblemScene& theScene)
{
    const VXSampleSimulator& simulator = theScene.context.simulator;
    VXSimulatorControl control(simulator.port(u"control"_s));
    control.put(u"/proxy"_s, {{u"user"_s, u"demo"_s}, {u"password"_s, u"demo"_s}});
    Outcome outcome;
    {
        const BorrowedProxy proxy(simulator.port(u"proxy"_s));
        outcome = get(QUrl(u"http://service.test/echo"_s));
    }
    control.put(u"/proxy"_s, {});
    tell(theScene, outcome.error, {});
}

void findNoUpdate(VXSampleProblemScene& theScene)
{
    const VXNetworkingError error = orderError(theScene, u"errorcode=85"_s);
    if (error.errorCode() == static_cast<VXNetworkingErrorCode>(85))
        mediator().updateNotNecessary();
    tell(theScene, error, {});
}

void failUpdate(VXSampleProblemScene& theScene)
{
    const VXNetworkingError error = get(theScene.context.simulator.http(u"/truncate/1000"_s)).error;
    if (error.errorOccurred())
        mediator().warnUpdateError();
    tell(theScene, error, {});
}

void phaseOut(VXSampleProblemScene& theScene)
{
    const Outcome outcome = get(theScene.context.simulator.http(
        u"/status/410?body=Bitte%20laden%20Sie%20die%20neue%20Software.&type=text/plain"_s));
    if (outcome.error.errorOccurred())
        mediator().showPhaseOutMessage(QString::fromUtf8(outcome.body));
    tell(theScene, outcome.error, {});
}

void finishUpdate(VXSampleProblemScene& theScene)
{
    const VXNetworkingError error = get(theScene.context.simulator.http(u"/bytes/2000"_s)).error;
    bool quit = false;
    if (!error.errorOccurred())
        mediator().finishProgramForUpdate(&quit);
    tell(theScene, error, {{u"quit"_s, quit}});
}

void updatePrices(VXSampleProblemScene& theScene, const QUrl& theUrl)
{
    const VXNetworkingError error = get(theUrl).error;
    mediator().productListUpdateFinished(!error.errorOccurred());
    tell(theScene, error, {});
}

void restart(VXSampleProblemScene& theScene)
{
    const VXNetworkingError error = get(theScene.context.simulator.http(u"/json/good"_s)).error;
    if (!error.errorOccurred())
        mediator().softwareMustBeRestarted();
    tell(theScene, error, {});
}

using Scene = VXSampleProblemScene;

constexpr std::array problems{
    VXSampleProblem{"connection"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Keine Verbindung"),
                    [](Scene& theScene) { handle(theScene, get(deadPort()).error); }},
    VXSampleProblem{"remote-system"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Server gestört"),
                    [](Scene& theScene) { handleOrder(theScene, u"errorcode=1000"_s); }},
    VXSampleProblem{"auto-recover"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Server überlastet"),
                    [](Scene& theScene) { handleOrder(theScene, u"errorcode=1005"_s); }},
    VXSampleProblem{"unspecific"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Sitzung ungültig"),
                    [](Scene& theScene) { handleOrder(theScene, u"errorcode=4"_s); }},
    VXSampleProblem{"user-input"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Falsche Eingabe"),
                    [](Scene& theScene) { handleOrder(theScene, u"errorcode=5"_s); }},
    VXSampleProblem{"payment"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Bezahlung abgelehnt"),
                    [](Scene& theScene) { handleOrder(theScene, u"errorcode=655"_s); }},
    VXSampleProblem{"login-refused"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Login abgelehnt"),
                    [](Scene& theScene) { refuseLogin(theScene, u"errorcode=2"_s); }},
    VXSampleProblem{"login-wait"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Login mehrfach abgelehnt"),
                    [](Scene& theScene) { refuseLogin(theScene, u"errorcode=2&wait=5"_s); }},
    VXSampleProblem{"tls-question"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Zertifikat unbekannt"),
                    askAboutCertificate},
    VXSampleProblem{"tls-warning"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Zertifikat abgelaufen"),
                    refuseCertificate},
    VXSampleProblem{"server-login"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Server verlangt ein Passwort"),
                    askForServerLogin},
    VXSampleProblem{"proxy-login"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Proxy verlangt ein Passwort"),
                    askForProxyLogin},
    VXSampleProblem{"up-to-date"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Kein Update nötig"),
                    findNoUpdate},
    VXSampleProblem{"update-failed"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Update fehlgeschlagen"), failUpdate},
    VXSampleProblem{"update-ready"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Update geladen"),
                    finishUpdate},
    VXSampleProblem{"phase-out"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Software zu alt"),
                    phaseOut},
    VXSampleProblem{"prices-updated"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Preisliste geladen"),
                    [](Scene& theScene) {
                        updatePrices(theScene, theScene.context.simulator.http(u"/xtci/prices"_s));
                    }},
    VXSampleProblem{"prices-failed"_L1,
                    QT_TRANSLATE_NOOP("VXSampleProblems", "Preisliste nicht geladen"),
                    [](Scene& theScene) { updatePrices(theScene, deadPort()); }},
    VXSampleProblem{"restart"_L1, QT_TRANSLATE_NOOP("VXSampleProblems", "Neustart nötig"), restart},
};

} // namespace

std::span<const VXSampleProblem> VXSampleProblems::all()
{
    return problems;
}

const VXSampleProblem* VXSampleProblems::find(const QString& theName)
{
    const auto problem = std::ranges::find(problems, theName, &VXSampleProblem::name);
    return problem == problems.end() ? nullptr : &*problem;
}

bool VXSampleProblems::run(const VXSampleProblem& theProblem, VXSampleProblemScene& theScene)
{
    VXSampleSimulator& simulator = theScene.context.simulator;
    if (!simulator.open()) {
        theScene.context.output.message(u"vx-sample: %1"_s.arg(simulator.errorText()));
        return false;
    }
    theProblem.run(theScene);
    return true;
}
