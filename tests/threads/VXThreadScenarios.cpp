// Several threads use the library at once. Run by name, one scenario per process, so that each
// meets the lazily made tables and singletons untouched. In the tsan preset ThreadSanitizer
// watches.
//
// No QTest and no QThread here: a Qt frame anywhere in a stack, also in the one that created a
// thread, would let the suppressions for Qt swallow a real race (docs/sanitizers.md).

#include "VXRawPeer.h"
#include "VXTestEnvironment.h"
#include "VXTlsPeer.h"

#include <VXCore/VXGeneralSettings.h>
#include <VXNetworking/VXHttpContentType.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkReply>

#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int workerCount = 6;

std::atomic<int> ourFailures = 0;

void expect(bool theIsTrue, const char* theWhat)
{
    if (theIsTrue)
        return;
    ++ourFailures;
    std::fprintf(stderr, "expected: %s\n", theWhat);
}

/// Runs the work in all workers at once; they begin together.
void inWorkers(const std::function<void(int)>& theWork,
               const std::function<void()>& theMeanwhile = {})
{
    std::atomic<int> waiting = workerCount;
    std::atomic<int> running = workerCount;
    std::vector<std::thread> workers;
    for (int i = 0; i < workerCount; ++i) {
        workers.emplace_back([&, i] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            theWork(i);
            --running;
        });
    }
    while (theMeanwhile && running > 0)
        theMeanwhile();
    for (std::thread& worker : workers)
        worker.join();
}

/// Managers come and go in all threads while others reset the cookies of all.
void managers()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "body", {"Set-Cookie: a=1"}));
    inWorkers([&peer](int theNumber) {
        for (int i = 0; i < 5; ++i) {
            VXHttpOperation operation =
                VXHttpOperation::create(peer.url(), QNetworkAccessManager::GetOperation);
            expect(operation.receiveData() == "body", "the body in every thread");
            VXNetworkAccessManager::threadInstance()->blockUIEvents(i % 2 == 0);
            VXNetworkAccessManager::deleteAllCookies();
            VXNetworkAccessManager::setValidateSslCertificate(theNumber % 2 == 0);
            if (i % 2 == 1)
                VXNetworkAccessManager::releaseThreadInstance();
        }
        VXNetworkAccessManager::releaseThreadInstance();
    });
}

/// Questions of all threads reach this one, which answers through the pointers.
void relay()
{
    VXTestCertificates certificates;
    VXTlsPeer tlsPeer(certificates.selfSigned());
    tlsPeer.setAnswer(VXRawAnswer::http(200, {}, {"Connection: close"}).close());
    VXRawPeer peer;
    peer.setHandler([](const VXRawRequest& theRequest) {
        return theRequest.header("Authorization").isEmpty()
                   ? VXRawAnswer::http(401, {}, {"WWW-Authenticate: Basic realm=\"r\""})
                   : VXRawAnswer::http(200);
    });

    using Relay = VXNetworkAccessManagerSignalDispatcher;
    QObject answerer;
    int asked = 0;
    QObject::connect(Relay::instance(), &Relay::askIgnoreSSLErrors, &answerer,
                     [&asked](const QString&, const QStringList&, bool* theResult) {
                         ++asked;
                         *theResult = true;
                     });
    QObject::connect(Relay::instance(), &Relay::authenticationRequired, &answerer,
                     [&asked](const QUrl&, QAuthenticator* theAuthenticator) {
                         ++asked;
                         theAuthenticator->setUser(u"me"_s);
                         theAuthenticator->setPassword(u"secret"_s);
                     });

    inWorkers(
        [&](int) {
            for (int i = 0; i < 3; ++i) {
                for (const QUrl& url : {tlsPeer.url(), peer.url()}) {
                    VXHttpOperation operation =
                        VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
                    expect(operation.send(), "an answered question");
                }
            }
            VXNetworkAccessManager::releaseThreadInstance();
        },
        [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 20); });
    expect(asked >= workerCount + 1, "a password per thread and a certificate at least");
}

/// The list of trusted hosts, without Qt's frames in between. Each worker answers itself, so that
/// nothing but the list's own lock orders them.
void trustedHosts()
{
    using Manager = VXNetworkAccessManager;
    inWorkers([](int theNumber) {
        Manager* const manager = Manager::threadInstance();
        manager->disconnect(VXNetworkAccessManagerSignalDispatcher::instance());
        QObject::connect(
            manager, &Manager::askIgnoreSSLErrors, manager,
            [](const QString&, const QStringList&, bool* theResult) { *theResult = true; },
            Qt::DirectConnection);
        for (int i = 0; i < 10; ++i) {
            const QUrl url(u"https://127.0.0.2:%1/"_s.arg(i % 2 ? i : 100 * theNumber + i + 1));
            const std::unique_ptr<QNetworkReply> reply(manager->get(QNetworkRequest(url)));
            manager->handleSslErrors(reply.get(), {QSslError(QSslError::SelfSignedCertificate)});
        }
        Manager::releaseThreadInstance();
    });
}

/// Texts, tables and settings are asked for the first time by all threads at once.
void tables()
{
    inWorkers([](int theNumber) {
        const VXNetworkingError error(InvalidCouponCode);
        expect(error.errorMessage().size() > 4, "a message beside its line break");
        expect(VXNetworkingError(static_cast<VXNetworkingErrorCode>(4711)).errorMessage().size() >
                   4,
               "a message by severity");
        expect(VXHttpContentType(ContentJson).encode() == u"application/json"_s, "a content type");
        VXNetworkSettings* const settings = VXNetworkSettings::instance();
        for (int i = 0; i < 50; ++i) {
            settings->setProxyHostName(u"host%1"_s.arg(theNumber));
            expect(settings->proxyHostName().startsWith(u"host"), "one of the host names");
            expect(!settings->proxyForQuery({}).isEmpty(), "a proxy");
            expect(!VXGeneralSettings::instance()->doNotTrack(), "no wish yet");
        }
    });
}

// Two threads without any order: ThreadSanitizer must say so, or it sees nothing at all.
int plantedCounter = 0;

void plantedRace()
{
    inWorkers([](int) {
        for (int i = 0; i < 1000; ++i)
            ++plantedCounter;
    });
}

struct Scenario
{
    std::string_view name;
    void (*run)();
};

constexpr std::array scenarios{
    Scenario{"managers", &managers},          Scenario{"relay", &relay},
    Scenario{"trusted-hosts", &trustedHosts}, Scenario{"tables", &tables},
    Scenario{"planted-race", &plantedRace},
};

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const VXTestEnvironment environment;
    QCoreApplication application(theArgumentCount, theArguments);
    const std::string_view name = theArgumentCount > 1 ? theArguments[1] : "";
    for (const Scenario& scenario : scenarios) {
        if (scenario.name != name)
            continue;
        scenario.run();
        return ourFailures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    std::fprintf(stderr, "no scenario of the name \"%s\"\n", theArguments[theArgumentCount - 1]);
    return 2;
}
