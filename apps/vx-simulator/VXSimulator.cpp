#include "VXSimulator.h"

#include "VXSimulatorCertificates.h"
#include "VXSimulatorGate.h"
#include "VXSimulatorListener.h"
#include "VXSimulatorPages.h"
#include "VXSimulatorProxy.h"
#include "VXSimulatorSocks.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

VXSimulator::VXSimulator(QObject* theParent)
    : QObject(theParent)
    , myControl(
          myState, myRecorder, myOAuth, [this] { return handshakes(); },
          [this] { Q_EMIT quitRequested(); })
{
    fillRoutes();
}

VXSimulator::~VXSimulator()
{
    // The ports end before what their handlers use.
    qDeleteAll(findChildren<QTcpServer*>(Qt::FindDirectChildrenOnly));
}

void VXSimulator::fillRoutes()
{
    myRouter.add(myHttp.routes());
    myRouter.add(myOrders.routes());
    myRouter.add(myOAuth.routes());
    myRouter.add(VXSimulatorPages::routes());
    myControlRouter.add(myControl.routes());
}

QString VXSimulator::applyScenario(const QJsonObject& theObject)
{
    return myState.applyScenario(theObject);
}

QString VXSimulator::start(const Setup& theSetup)
{
    myBind = theSetup.bind;
    myBudget = std::make_unique<VXSimulatorBudget>(theSetup.limits.unfinishedBodies);
    const VXSimulatorCertificates certificates(
        theSetup.certificates.isEmpty() ? myCertificates.path() : theSetup.certificates);
    if (!certificates.isComplete()) {
        QStringList hosts = myState.hosts();
        hosts.removeIf([](const QString& theHost) { return theHost.startsWith(u'*'); });
        if (QString error = certificates.make(hosts); !error.isEmpty())
            return error;
    }
    myReady = {{u"event"_s, u"ready"_s},
               {u"caFile"_s, certificates.caFile()},
               {u"pid"_s, QCoreApplication::applicationPid()}};

    auto* http = new VXSimulatorListener(
        u"http"_s, [this](const VXSimulatorRequest& theRequest) { return serve(theRequest); },
        theSetup.limits, *myBudget, this);
    auto* control = new VXSimulatorListener(
        u"control"_s,
        [this](const VXSimulatorRequest& theRequest) { return myControlRouter.answer(theRequest); },
        theSetup.limits, *myBudget, this);
    const QString errors[]{
        open(http, theSetup.http, myReady),
        openTls(theSetup, certificates),
        openProxies(theSetup),
        open(control, theSetup.control, myReady),
    };
    for (const QString& error : errors)
        if (!error.isEmpty())
            return error;
    return {};
}

QString VXSimulator::openTls(const Setup& theSetup, const VXSimulatorCertificates& theCertificates)
{
    QJsonObject ports;
    quint16 port = theSetup.https; // only the first one can be chosen
    for (const QString& name : VXSimulatorCertificates::names()) {
        const QSslConfiguration configuration = theCertificates.configuration(name);
        if (configuration.localCertificate().isNull())
            return u"the certificate or key \"%1\" cannot be read"_s.arg(name);
        auto* listener = new VXSimulatorListener(
            u"https-"_s + name,
            [this](const VXSimulatorRequest& theRequest) { return serve(theRequest); },
            theSetup.limits, *myBudget, this);
        listener->setTls(configuration);
        QJsonObject opened;
        if (QString error = open(listener, port, opened); !error.isEmpty())
            return error;
        ports.insert(name, opened.value(listener->name()));
        myTlsListeners.append(listener);
        port = 0;
    }
    myReady.insert(u"https"_s, ports);
    return {};
}

QString VXSimulator::openProxies(const Setup& theSetup)
{
    myTargets = std::make_unique<VXSimulatorTargets>(myState, myBind);
    QList<quint16> all{static_cast<quint16>(myReady.value(u"http"_s).toInt())};
    for (const VXSimulatorListener* listener : std::as_const(myTlsListeners))
        all.append(listener->serverPort());
    myTargets->setPorts(all.value(0), all.value(1), all);

    const auto recorder = [this](const VXSimulatorRequest& theRequest, int theStatus) {
        record(theRequest, theStatus);
    };
    auto* proxy = new VXSimulatorGate(
        u"proxy"_s,
        [](QTcpSocket* theSocket, VXSimulatorGate* theGate) {
            return new VXSimulatorProxy(theSocket, theGate);
        },
        myState, *myTargets, recorder, theSetup.limits, *myBudget, this);
    auto* socks = new VXSimulatorGate(
        u"socks"_s,
        [](QTcpSocket* theSocket, VXSimulatorGate* theGate) {
            return new VXSimulatorSocks(theSocket, theGate);
        },
        myState, *myTargets, recorder, theSetup.limits, *myBudget, this);
    QString error = open(proxy, theSetup.proxy, myReady);
    return error.isEmpty() ? open(socks, theSetup.socks, myReady) : error;
}

QString VXSimulator::open(QTcpServer* theServer, quint16 thePort, QJsonObject& theReady)
{
    if (!theServer->listen(myBind, thePort))
        return u"cannot listen on %1 port %2 (%3): %4"_s.arg(
            myBind.toString(), QString::number(thePort), theServer->objectName(),
            theServer->errorString());
    theReady.insert(theServer->objectName(), theServer->serverPort());
    return {};
}

VXSimulatorResponse VXSimulator::serve(const VXSimulatorRequest& theRequest)
{
    const int number = myRecorder.add(theRequest);
    VXSimulatorResponse response = routed(theRequest);
    const bool hasDate = std::ranges::any_of(
        response.headers, [](const auto& theHeader) { return theHeader.first == "Date"; });
    if (myState.hasClock() && !hasDate && theRequest.path() != u"/nodate"_s)
        response.addHeader("Date", VXSimulatorHttp::dateText(myState.now()));
    const bool isSilent =
        response.fault == VXSimulatorResponse::Fault::Never ||
        (response.fault == VXSimulatorResponse::Fault::Reset && response.faultAfter < 0);
    const int status = isSilent ? 0 : response.status;
    myRecorder.setStatus(number, status);
    Q_EMIT requestServed(u"%1 %2 %3 -> %4"_s.arg(
        theRequest.listener, QString::fromLatin1(theRequest.method),
        QString::fromLatin1(theRequest.rawPath()), QString::number(status)));
    return response;
}

VXSimulatorResponse VXSimulator::routed(const VXSimulatorRequest& theRequest)
{
    const auto behaviour = myState.takeBehaviour(theRequest);
    if (!behaviour)
        return myRouter.answer(theRequest);
    VXSimulatorResponse response =
        behaviour->replacesAnswer() ? behaviour->answer() : myRouter.answer(theRequest);
    behaviour->applyTo(response);
    return response;
}

void VXSimulator::record(const VXSimulatorRequest& theRequest, int theStatus)
{
    myRecorder.setStatus(myRecorder.add(theRequest), theStatus);
    Q_EMIT requestServed(u"%1 %2 %3 -> %4"_s.arg(
        theRequest.listener, QString::fromLatin1(theRequest.method),
        QString::fromLatin1(theRequest.target.split('?').first()), QString::number(theStatus)));
}

QJsonObject VXSimulator::handshakes() const
{
    QJsonObject object;
    for (const VXSimulatorListener* listener : myTlsListeners)
        object.insert(listener->name().sliced(6), // without "https-"
                      QJsonObject{{u"completed"_s, listener->completedHandshakes()},
                                  {u"failed"_s, listener->failedHandshakes()}});
    return object;
}
