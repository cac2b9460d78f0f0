#include "VXSimulatorProxy.h"

#include "VXSimulatorFarewell.h"
#include "VXSimulatorGate.h"
#include "VXSimulatorPatience.h"
#include "VXSimulatorResponse.h"
#include "VXSimulatorState.h"
#include "VXSimulatorTunnel.h"

#include <QtCore/QUrl>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

using namespace Qt::StringLiterals;

VXSimulatorProxy::VXSimulatorProxy(QTcpSocket* theSocket, VXSimulatorGate* theGate)
    : QObject(theGate)
    , myGate(theGate)
    , myClient(theSocket)
    , myShare(theGate->budget())
{
    myClient->setParent(this);
    myClient->setReadBufferSize(1024 * 1024);
    new VXSimulatorPatience(myClient, myGate->limits().idle); // child of the socket
    connect(myClient, &QTcpSocket::readyRead, this, &VXSimulatorProxy::readMore);
    connect(myClient, &QTcpSocket::disconnected, this, [this] {
        if (!myServer)
            deleteLater();
    });
}

void VXSimulatorProxy::readMore()
{
    if (myServer || myIsClosing)
        return; // what follows belongs to the tunnel, or to nobody
    myInput += myClient->readAll();
    const auto state = myParser.feed(myInput);
    if (state == VXSimulatorRequestParser::State::Failed) {
        const int status = myParser.refusal();
        return refuse(myParser.take(), status);
    }
    if (!myShare.resize(myParser.bodyBytes()))
        return refuse(myParser.take(), 503);
    if (myParser.expectsContinue() && !myHasContinued) {
        myHasContinued = true;
        myClient->write("HTTP/1.1 100 Continue\r\n\r\n");
    }
    if (state == VXSimulatorRequestParser::State::Complete)
        handle(myParser.take());
}

void VXSimulatorProxy::handle(const VXSimulatorRequest& theRequest)
{
    if (!isAdmitted(theRequest))
        return refuse(theRequest, 407);
    const bool isTunnel = theRequest.method == "CONNECT";
    const QByteArray text = isTunnel ? "connect://" + theRequest.target : theRequest.target;
    const QUrl url(QString::fromUtf8(text), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || (!isTunnel && url.scheme() != u"http"_s) ||
        (isTunnel && url.port() < 1))
        return refuse(theRequest, 400);
    connectTo(theRequest, url.host(), url.port(80));
}

bool VXSimulatorProxy::isAdmitted(const VXSimulatorRequest& theRequest) const
{
    const auto credentials = myGate->state().proxyCredentials();
    if (!credentials)
        return true;
    const QByteArray pair = (credentials->user + u':' + credentials->password).toUtf8();
    const QByteArray given = theRequest.header("Proxy-Authorization");
    return given.left(6).toLower() == "basic " &&
           QByteArray::fromBase64(given.sliced(6).trimmed()) == pair;
}

void VXSimulatorProxy::refuse(const VXSimulatorRequest& theRequest, int theStatus)
{
    myGate->record(theRequest, myClient, theStatus);
    myShare.resize(0);
    if (myClient->state() != QAbstractSocket::ConnectedState)
        return deleteLater(); // it left while its target was being called
    auto response = VXSimulatorResponse::error(theStatus, u"the proxy refuses"_s);
    if (theStatus == 407)
        response.addHeader("Proxy-Authenticate", "Basic realm=\"vx-simulator proxy\"");
    response.isClosing = theStatus != 407 || !theRequest.keepsConnection();
    myClient->write(response.head());
    if (theRequest.method != "HEAD")
        myClient->write(response.body);
    myHasContinued = false;
    myIsClosing = response.isClosing;
    if (myIsClosing)
        new VXSimulatorFarewell(myClient); // child of the socket
    else
        QMetaObject::invokeMethod(this, &VXSimulatorProxy::readMore, Qt::QueuedConnection);
}

void VXSimulatorProxy::connectTo(const VXSimulatorRequest& theRequest, const QString& theHost,
                                 int thePort)
{
    const auto target = myGate->targets().find(theHost, static_cast<quint16>(thePort));
    if (!target)
        return refuse(theRequest, 502);
    myServer = new QTcpSocket(this);
    myServer->setProxy(QNetworkProxy::NoProxy);
    new VXSimulatorPatience(myServer, myGate->limits().idle); // child of the socket
    const auto failed = connect(myServer, &QTcpSocket::errorOccurred, this, [this, theRequest] {
        myServer->deleteLater();
        myServer = nullptr;
        refuse(theRequest, 502);
    });
    connect(myServer, &QTcpSocket::connected, this, [this, theRequest, failed] {
        disconnect(failed);
        start(theRequest);
    });
    myServer->connectToHost(target->address, target->port);
}

void VXSimulatorProxy::start(const VXSimulatorRequest& theRequest)
{
    myGate->record(theRequest, myClient, 200);
    if (myClient->state() != QAbstractSocket::ConnectedState)
        return deleteLater();
    if (theRequest.method == "CONNECT")
        myClient->write("HTTP/1.1 200 Connection established\r\n\r\n");
    else
        myServer->write(forwarded(theRequest));
    myServer->write(myInput);
    myInput.clear();
    auto* tunnel = new VXSimulatorTunnel(myClient, myServer, this);
    connect(tunnel, &VXSimulatorTunnel::finished, this, &QObject::deleteLater);
}

QByteArray VXSimulatorProxy::forwarded(const VXSimulatorRequest& theRequest)
{
    QByteArray path = theRequest.rawPath();
    if (theRequest.target.contains('?'))
        path += '?' + theRequest.rawQuery();
    QByteArray text = theRequest.method + ' ' + path + " HTTP/1.1\r\n";
    bool isChunked = false;
    for (const auto& [name, value] : theRequest.headers) {
        isChunked |= name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0;
        // The body is whole by now, and what is meant for the proxy ends here.
        if (!name.toLower().startsWith("proxy-") &&
            name.compare("Transfer-Encoding", Qt::CaseInsensitive) != 0 &&
            name.compare("Expect", Qt::CaseInsensitive) != 0)
            text += name + ": " + value + "\r\n";
    }
    if (isChunked)
        text += "Content-Length: " + QByteArray::number(theRequest.body.size()) + "\r\n";
    return text + "Via: 1.1 vx-simulator\r\nConnection: close\r\n\r\n" + theRequest.body;
}
