#include "VXTourSecuritySteps.h"

#include "VXRecordedRequest.h"
#include "VXSampleAnswers.h"
#include "VXSampleSimulator.h"
#include "VXSampleWorkers.h"
#include "VXSimulatorControl.h"
#include "VXTourRun.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <QtNetwork/QNetworkProxy>

using namespace Qt::StringLiterals;

namespace {

// Known to this run of the simulator only, which listens on the loopback.
const QString& proxyUser()
{
    static const QString user = u"kunde"_s;
    return user;
}

const QString& proxyPassword()
{
    static const QString password = u"tour-geheim"_s;
    return password;
}

VXTourExpectation received(const QString& theListener, const QString& theTarget)
{
    VXTourExpectation wanted{u"GET"_s, theTarget, {}, {}};
    wanted.listener = theListener;
    return wanted;
}

/// What a GET ended with; the operation itself stays in its thread.
struct Outcome
{
    VXNetworkingError error;
    int http = 0;
    QByteArray body;
};

Outcome get(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    operation.setTimeout(20);
    const QByteArray body = operation.exec();
    return {operation.errorStatus(), operation.httpResponseCode(), body};
}

Outcome getFromWorker(const QUrl& theUrl)
{
    Outcome outcome;
    VXSampleWorkers::run(1, [&outcome, &theUrl](int) { outcome = get(theUrl); });
    return outcome;
}

void expectCode(VXTourRun& theRun, const Outcome& theOutcome, int theCode, int theHttp)
{
    theRun.expectEqual<qint64>(u"code"_s, theOutcome.error.errorCode(), theCode);
    theRun.expectEqual<qint64>(u"status"_s, theOutcome.http, theHttp);
    if (theOutcome.error.errorOccurred())
        theRun.came(u"error %1: %2"_s.arg(QString::number(theOutcome.error.errorCode()),
                                          theOutcome.error.errorMessage().remove(u"<br>"_s)));
    else
        theRun.came(u"status %1, %2 bytes"_s.arg(QString::number(theOutcome.http),
                                                 QString::number(theOutcome.body.size())));
}

void expectEchoed(VXTourRun& theRun, const Outcome& theOutcome, const VXTourExpectation& theWanted)
{
    expectCode(theRun, theOutcome, 0, 200);
    const QList<VXRecordedRequest> requests = theRun.expectReceived({theWanted});
    if (!requests.isEmpty())
        theRun.expectEcho(theOutcome.body, requests.constFirst());
}

/// One answer to TLS questions about a port of the simulator.
void answerTls(VXTourRun& theRun, const QUrl& theUrl, bool theAnswer)
{
    theRun.world.answers.add({QJsonObject{{u"kind"_s, u"question"_s},
                                          {u"text"_s, u"*<b>%1</b>*"_s.arg(theUrl.authority())},
                                          {u"answer"_s, theAnswer}}});
}

void ownAuthorityIsTrusted(VXTourRun& theRun)
{
    const QUrl url = theRun.world.simulator.https(u"trusted"_s, u"/echo"_s);
    expectEchoed(theRun, get(url), received(u"https-trusted"_s, u"/echo"_s));
    theRun.expectQuestions(0);
    theRun.came(u"no question"_s);
}

void unknownAuthorityIsAskedFor(VXTourRun& theRun)
{
    const QUrl url = theRun.world.simulator.https(u"unknownCa"_s, u"/echo"_s);
    answerTls(theRun, url, true);
    expectEchoed(theRun, get(url), received(u"https-unknownCa"_s, u"/echo"_s));
    theRun.expectQuestions(1);
    theRun.came(u"asked once, accepted"_s);
}

void acceptedHostIsSilent(VXTourRun& theRun)
{
    // A worker has a manager and hence a connection of its own, so there is a handshake again.
    const QUrl url = theRun.world.simulator.https(u"unknownCa"_s, u"/echo"_s);
    expectEchoed(theRun, getFromWorker(url), received(u"https-unknownCa"_s, u"/echo"_s));
    theRun.expectQuestions(0);
    theRun.expectEqual<qint64>(u"\"already ignored\" in the log"_s,
                               theRun.logLines(u"already ignored"_s).size(), 1);
    theRun.came(u"no question"_s);
}

void workerAsksInGuiThread(VXTourRun& theRun)
{
    const QUrl url = theRun.world.simulator.https(u"wrongHost"_s, u"/echo"_s);
    answerTls(theRun, url, true);
    expectEchoed(theRun, getFromWorker(url), received(u"https-wrongHost"_s, u"/echo"_s));
    theRun.expectQuestions(1);
    theRun.came(u"worker asked, GUI thread accepted"_s);
}

void expiredIsRefused(VXTourRun& theRun)
{
    const QUrl url = theRun.world.simulator.https(u"expired"_s, u"/echo"_s);
    answerTls(theRun, url, false);
    expectCode(theRun, get(url), 3506, 0);
    theRun.expectReceived({});
    theRun.expectQuestions(1);
    theRun.came(u"asked once, refused"_s);
}

void validationOffAcceptsAll(VXTourRun& theRun)
{
    VXNetworkAccessManager::setValidateSslCertificate(false);
    const QUrl url = theRun.world.simulator.https(u"expired"_s, u"/echo"_s);
    const Outcome outcome = get(url);
    VXNetworkAccessManager::setValidateSslCertificate(true);
    expectEchoed(theRun, outcome, received(u"https-expired"_s, u"/echo"_s));
    theRun.expectQuestions(0);
    theRun.came(u"no question"_s);
}

/// The user's own proxy while it exists; without password, so that the library has to ask.
class ManualProxy
{
    Q_DISABLE_COPY_MOVE(ManualProxy)

public:
    ManualProxy(QNetworkProxy::ProxyType theType, quint16 thePort)
    {
        VXNetworkSettings& settings = *VXNetworkSettings::instance();
        settings.setProxyType(theType);
        settings.setProxyHostName(u"127.0.0.1"_s);
        settings.setProxyPort(thePort);
        settings.setProxyUser({});
        settings.setProxyPassword({});
        settings.setProxyChoice(ProxyChoiceManual);
    }
    ~ManualProxy() { VXNetworkSettings::instance()->setProxyChoice(ProxyChoiceNone); }
};

void demandProxyPassword(VXTourRun& theRun, const QString& theAnswer)
{
    theRun.expect(theRun.world.control.put(
                      u"/proxy"_s, {{u"user"_s, proxyUser()}, {u"password"_s, proxyPassword()}}),
                  u"the simulator refuses the proxy password"_s);
    theRun.world.answers.clear();
    theRun.world.answers.add({QJsonObject{{u"kind"_s, u"password"_s},
                                          {u"text"_s, u"*Proxy \"127.0.0.1\"*"_s},
                                          {u"user"_s, proxyUser()},
                                          {u"password"_s, theAnswer}}});
}

/// The value of the header "Proxy-Authorization" (RFC 7617).
QString proxyAuthorization(const QString& thePassword)
{
    const QByteArray login = (proxyUser() + u':' + thePassword).toUtf8();
    return u"Basic "_s + QString::fromLatin1(login.toBase64());
}

/// The two requests that the proxy gets: one that it refuses, and one with a password.
QList<VXTourExpectation> atTheProxy(const QString& theMethod, const QString& theTarget,
                                    const QString& thePassword)
{
    VXTourExpectation refused = received(u"proxy"_s, theTarget);
    refused.method = theMethod;
    refused.isOwnRequest = theMethod != u"CONNECT"_s;
    VXTourExpectation answered = refused;
    refused.headers.insert(u"Proxy-Authorization"_s, QString());
    answered.headers.insert(u"Proxy-Authorization"_s, proxyAuthorization(thePassword));
    return {refused, answered};
}

void wrongProxyPasswordFails(VXTourRun& theRun)
{
    demandProxyPassword(theRun, u"falsch"_s);
    const ManualProxy proxy(QNetworkProxy::HttpProxy, theRun.world.simulator.port(u"proxy"_s));
    expectCode(theRun, getFromWorker(QUrl(u"http://service.test/echo"_s)), 3605, 407);
    theRun.expectReceived(atTheProxy(u"GET"_s, u"http://service.test/echo"_s, u"falsch"_s));
    theRun.expectQuestions(2); // Qt asks again when the first answer was wrong
    theRun.came(u"asked twice"_s);
}

void httpThroughProxy(VXTourRun& theRun)
{
    demandProxyPassword(theRun, proxyPassword());
    const ManualProxy proxy(QNetworkProxy::HttpProxy, theRun.world.simulator.port(u"proxy"_s));
    const Outcome outcome = get(QUrl(u"http://service.test/echo"_s));
    expectCode(theRun, outcome, 0, 200);
    const QList<VXRecordedRequest> requests =
        theRun.expectReceived(atTheProxy(u"GET"_s, u"http://service.test/echo"_s, proxyPassword())
                              << received(u"http"_s, u"/echo"_s));
    if (!requests.isEmpty())
        theRun.expectEcho(outcome.body, requests.constLast());
    theRun.expectQuestions(1);
    theRun.came(u"asked once for the password"_s);
}

void httpsThroughProxy(VXTourRun& theRun)
{
    demandProxyPassword(theRun, proxyPassword());
    const ManualProxy proxy(QNetworkProxy::HttpProxy, theRun.world.simulator.port(u"proxy"_s));
    const Outcome outcome = getFromWorker(QUrl(u"https://service.test/echo"_s));
    expectCode(theRun, outcome, 0, 200);
    const QList<VXRecordedRequest> requests =
        theRun.expectReceived(atTheProxy(u"CONNECT"_s, u"service.test:443"_s, proxyPassword())
                              << received(u"https-trusted"_s, u"/echo"_s));
    if (!requests.isEmpty())
        theRun.expectEcho(outcome.body, requests.constLast());
    theRun.expectQuestions(1);
    theRun.came(u"worker asked once for the password"_s);
}

void throughSocks(VXTourRun& theRun)
{
    const ManualProxy proxy(QNetworkProxy::Socks5Proxy, theRun.world.simulator.port(u"socks"_s));
    const Outcome outcome = get(QUrl(u"http://service.test/echo?socks"_s));
    expectCode(theRun, outcome, 0, 200);
    VXTourExpectation connection = received(u"socks"_s, u"service.test:80"_s);
    connection.method = u"CONNECT"_s;
    connection.isOwnRequest = false;
    const QList<VXRecordedRequest> requests =
        theRun.expectReceived({connection, received(u"http"_s, u"/echo?socks"_s)});
    if (!requests.isEmpty())
        theRun.expectEcho(outcome.body, requests.constLast());
    theRun.expectQuestions(0);
}

void loopbackGoesRoundTheProxy(VXTourRun& theRun)
{
    const ManualProxy proxy(QNetworkProxy::HttpProxy, 1); // nobody listens there
    expectEchoed(theRun, get(theRun.world.simulator.http(u"/echo"_s)),
                 received(u"http"_s, u"/echo"_s));
    theRun.came(u"not through the proxy"_s);
}

} // namespace

QList<VXTourStep> VXTourSecuritySteps::steps()
{
    return {
        {u"tls"_s, u"TLS, own certificate authority"_s, ownAuthorityIsTrusted},
        {u"tls"_s, u"TLS, unknown authority"_s, unknownAuthorityIsAskedFor},
        {u"tls"_s, u"The same host again, from a worker thread"_s, acceptedHostIsSilent},
        {u"tls"_s, u"TLS, wrong host name, from a worker thread"_s, workerAsksInGuiThread},
        {u"tls"_s, u"TLS, expired certificate"_s, expiredIsRefused},
        {u"tls"_s, u"TLS, expired, validation switched off"_s, validationOffAcceptsAll},
        {u"proxy"_s, u"HTTP proxy, wrong password, worker thread"_s, wrongProxyPasswordFails},
        {u"proxy"_s, u"HTTP proxy with password, name only it knows"_s, httpThroughProxy},
        {u"proxy"_s, u"TLS through the HTTP proxy, worker thread"_s, httpsThroughProxy},
        {u"proxy"_s, u"SOCKS5 proxy, name only it knows"_s, throughSocks},
        {u"proxy"_s, u"Loopback address in spite of a proxy"_s, loopbackGoesRoundTheProxy},
    };
}
