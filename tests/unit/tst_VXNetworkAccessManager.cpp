#include "VXInputWindow.h"
#include "VXLogCapture.h"
#include "VXProgressRecorder.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXTlsPeer.h"
#include "VXWorker.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXGeneralSettings.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtCore/QScopeGuard>
#include <QtCore/QSemaphore>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtGui/QGuiApplication>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QHttpMultiPart>
#include <QtNetwork/QNetworkCookie>
#include <QtNetwork/QNetworkCookieJar>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QSslConfiguration>
#include <QtTest/QSignalSpy>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <thread>
#include <utility>

#include <sys/mman.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Operation = QNetworkAccessManager::Operation;
using ReplyPointer = std::unique_ptr<QNetworkReply>;

VXNetworkAccessManager* manager()
{
    return VXNetworkAccessManager::threadInstance();
}

ReplyPointer get(const QUrl& theUrl, int theTimeout = 30, const VXHttpParameter& theHeaders = {})
{
    return ReplyPointer(manager()->syncronGet(theUrl, theTimeout, nullptr, nullptr, theHeaders));
}

/// Answers of the platform that a test sets.
class TestPlatform : public VXPlatformIndependent
{
public:
    bool usesPlatformCertificatesOnly() const override { return false; }
    bool forcesHttps() const override { return isHttpsForced; }
    bool allowsHttp2() const override { return isHttp2Allowed; }
    QString mapTileHostFragment() const override { return mapTileFragment; }
    QString analyticsHostFragment() const override { return analyticsFragment; }

    std::atomic<bool> isHttpsForced = false;
    std::atomic<bool> isHttp2Allowed = false;
    QString mapTileFragment;
    QString analyticsFragment;
};

/// A reply of any operation, without an exchange behind it.
class BareReply : public QNetworkReply
{
    Q_OBJECT

public:
    explicit BareReply(Operation theOperation) { setOperation(theOperation); }
    void abort() override {}

protected:
    qint64 readData(char*, qint64) override { return -1; }
};

/// What the questions of one test were, and what they get as an answer.
class Answerer : public QObject
{
    Q_OBJECT

public:
    Answerer()
    {
        using Relay = VXNetworkAccessManagerSignalDispatcher;
        auto* const relay = Relay::instance();
        connect(relay, &Relay::askIgnoreSSLErrors, this,
                [this](const QString& theHost, const QStringList& theErrors, bool* theResult) {
                    hosts.append(theHost);
                    errors.append(theErrors);
                    threads.insert(QThread::currentThread());
                    *theResult = isAccepting;
                });
        connect(relay, &Relay::authenticationRequired, this,
                [this](const QUrl& theUrl, QAuthenticator* theAuthenticator) {
                    urls.append(theUrl);
                    threads.insert(QThread::currentThread());
                    fill(theAuthenticator);
                });
        connect(relay, &Relay::proxyAuthenticationRequired, this,
                [this](const QUrl& theUrl, QAuthenticator* theAuthenticator,
                       const QString& theProxyHost) {
                    urls.append(theUrl);
                    proxies.append(theProxyHost);
                    threads.insert(QThread::currentThread());
                    fill(theAuthenticator);
                });
    }

    bool isAccepting = true;
    QStringList hosts;
    QList<QStringList> errors;
    QList<QUrl> urls;
    QStringList proxies;
    QSet<QThread*> threads;

private:
    void fill(QAuthenticator* theAuthenticator) const
    {
        if (!isAccepting)
            return;
        theAuthenticator->setUser(u"me"_s);
        theAuthenticator->setPassword(u"secret"_s);
    }
};

constexpr auto knownCertificate = R"(-----BEGIN CERTIFICATE-----
MIICEDCCAbegAwIBAgIETyoAwjAKBggqhkjOPQQDAjBQMQswCQYDVQQGEwJERTEW
MBQGA1UECAwNTmllZGVyc2FjaHNlbjEVMBMGA1UECgwMSXNzdWVyIFdlcmtlMRIw
EAYDVQQDDAlJc3N1ZXIgQ0EwHhcNMjUwMTAyMDMwNDA1WhcNMzUwNjA3MDgwOTEw
WjCBgTELMAkGA1UEBhMCREUxFjAUBgNVBAgMDU5pZWRlcnNhY2hzZW4xEjAQBgNV
BAcMCU9sZGVuYnVyZzERMA8GA1UECgwIVlggV2Vya2UxDjAMBgNVBAsMBUZvdG9z
MQ4wDAYDVQQLDAVEcnVjazETMBEGA1UEAwwKcGhvdG8udGVzdDBZMBMGByqGSM49
AgEGCCqGSM49AwEHA0IABHi5o4HwgUKMJkmGuMt6GbzM84ppwvMhlmGgxSAViYwJ
fRzetvpR04AxROrSu4xU5cl2RZXILljB7K2sdFAsZg2jTTBLMAkGA1UdEwQCMAAw
HQYDVR0OBBYEFOP/slwhroVPSUqr2gJJr6qNnuKSMB8GA1UdIwQYMBaAFOYhYmcK
Zr/hM6Dpu9U1qViW0+O/MAoGCCqGSM49BAMCA0cAMEQCIAJLZv1Kr+E3FFCkV/ML
fnUWvldJKqPqvIcm3rL9MSUjAiA3A0fNLZzNoo3ZnOUGJkYRBHecq+uZFw/wN4Pk
ibI5IQ==
-----END CERTIFICATE-----
)";

} // namespace

class tst_VXNetworkAccessManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    // one manager per thread
    void oneThreadHasOneManagerAndTwoHaveTwo();
    void entryOfADeadThreadIsReplaced();
    void releasedManagerIsGoneAndMadeAnew();
    void connectionTypeFollowsTheThread();
    void networkSettingsExistBeforeTheFirstRequest();
    void signalsAndSlotsStandInOrder();
    void typesOfTheQuestionsAreRegistered();

    // requests on the wire
    void httpsIsForcedOnlyWhereThePlatformSays();
    void upperCaseSchemeArrivesLowerCased();
    void defaultHeadersAreSentInOrder();
    void customHeaderReplacesTheDefault();
    void doNotTrackIsSent();
    void deleteIsPlainWithoutABodyAndCustomWithOne();
    void requestsOfEveryOperationGoOut_data();
    void requestsOfEveryOperationGoOut();
    void bodyBeyondTwoGigabytesIsAnnouncedWhole();
    void headerWithLineBreakIsDropped_data();
    void headerWithLineBreakIsDropped();
    void requestHasNoCacheAndPipelining();
    void http2IsOffUnlessThePlatformAllowsIt();
    void mapTileQueryIsDecodedOnceMore();
    void emptyFragmentsNeverMatch();
    void analyticsHostIsLoggedAndAskedAllTheSame();

    // waiting
    void timeoutOfFiveSecondsIsLoggedAndAborts();
    void waitIsLoggedLiterally();
    void zeroSecondsAbortAtOnce();
    void negativeSecondsMeanNoLimit();
    void hugeTimeoutSaturates();
    void nullReplyIsIgnored();
    void localUrlFinishes_data();
    void localUrlFinishes();
    void quitDuringAWaitAborts();
    void passwordOfTheUrlIsNotLogged();
    void waitsNestLastInFirstOut();
    void blockedInputArrivesAfterTheWait();
    void unblockedInputArrivesDuringTheWait();
    void describeNamesTheOperations();
    void unsupportedOperationHasNoReply();
    void progressFollowsTheOperation_data();
    void progressFollowsTheOperation();
    void missingReceiversAndSlotsHurtNothing();
    void progressAndAbortAreQueued();

    // cookies
    void deletedCookiesAreNotSent();
    void allCookiesAreDeletedInTheirThreads();

    // certificates and questions
    void portMakesAnotherHostKey();
    void acceptedHostIsNotAskedAgain_data();
    void acceptedHostIsNotAskedAgain();
    void declinedHostIsAskedAgain();
    void withoutValidationNobodyIsAsked();
    void nobodyConnectedMeansNo();
    void nullReplyHasNoErrors();
    void questionNamesTheErrors();
    void questionNamesTheHostBehindARedirect();
    void unusableCertificatesAreNoAuthorities();
    void certificatesAppearOnce();
    void bundleIsTrusted();
    void invalidCertificatesAreRemoved();
    void certificateIsPrintedLiterally();
    void emptyAttributeKeepsItsLine();
    void passwordQuestion_data();
    void passwordQuestion();
    void unansweredPasswordFails();
    void proxyQuestion_data();
    void proxyQuestion();
    void quitReleasesAWorkerThatAsks();

private:
    std::unique_ptr<VXTestCertificates> myCertificates;
    QTemporaryDir myFolder;
    TestPlatform* myPlatform = nullptr; // the singleton's
    VXTestCertificates::Identity myExpired;
    VXTestCertificates::Identity myFuture;
    VXTestCertificates::Identity myBlacklisted;
};

void tst_VXNetworkAccessManager::initTestCase()
{
    auto platform = std::make_unique<TestPlatform>();
    myPlatform = platform.get();
    std::ignore = VXSingleton<VXPlatformIndependent>::setInstance(std::move(platform));

    // The CA list is made once per process: everything that matters lies in the bundle before.
    myCertificates = std::make_unique<VXTestCertificates>();
    myExpired = myCertificates->expired();
    myFuture = myCertificates->notYetValid();
    myBlacklisted = myCertificates->blacklisted();
    const QList<QSslCertificate> system = QSslConfiguration::systemCaCertificates();
    QVERIFY(!system.isEmpty());
    QFile bundle(myFolder.filePath(u"bundle.pem"_s));
    QVERIFY(bundle.open(QIODevice::WriteOnly));
    const QSslCertificate authority = myCertificates->authority().certificate;
    for (const QSslCertificate& certificate :
         {myExpired.certificate, myFuture.certificate, myBlacklisted.certificate, authority,
          authority, system.constFirst()})
        bundle.write(certificate.toPem());
    bundle.close();
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s, bundle.fileName()));
}

void tst_VXNetworkAccessManager::cleanup()
{
    QCoreApplication::processEvents();
    myPlatform->isHttpsForced = false;
    myPlatform->isHttp2Allowed = false;
    myPlatform->mapTileFragment.clear();
    myPlatform->analyticsFragment.clear();
    VXGeneralSettings::instance()->setDoNotTrack(false);
    VXNetworkAccessManager::setValidateSslCertificate(true);
    manager()->setProxy(QNetworkProxy());
    manager()->blockUIEvents(false);
}

void tst_VXNetworkAccessManager::oneThreadHasOneManagerAndTwoHaveTwo()
{
    VXNetworkAccessManager* const here = manager();
    QCOMPARE(manager(), here);
    QCOMPARE(here->thread(), QThread::currentThread());
    const bool isOther = vxRun(VXWhere::Worker, [here] {
        VXNetworkAccessManager* const there = manager();
        const bool result = there != here && there == manager() &&
                            there->thread() == QThread::currentThread() && !there->parent();
        VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QVERIFY(isOther);
    QCOMPARE(manager(), here);
}

void tst_VXNetworkAccessManager::entryOfADeadThreadIsReplaced()
{
    // Every thread object stands in the same place, as Qt's own do when memory is used again.
    struct Thread : QThread
    {
        explicit Thread(std::function<void()> theWork)
            : work(std::move(theWork))
        {
        }
        void run() override { work(); }

        std::function<void()> work;
    };
    alignas(Thread) std::array<std::byte, sizeof(Thread)> place;

    VXRawPeer peer;
    QList<VXNetworkAccessManager*> abandoned;
    for (int i = 0; i < 6; ++i) {
        QNetworkReply::NetworkError error = QNetworkReply::UnknownNetworkError;
        Thread* const thread = new (place.data()) Thread([&] {
            error = get(peer.url(), 20)->error();
            abandoned.append(manager()); // left behind, as by an owner who forgets it
        });
        thread->start();
        const bool hasEnded = thread->wait();
        std::destroy_at(thread);
        QVERIFY(hasEnded);
        QCOMPARE(error, QNetworkReply::NoError);
    }
    // No thread uses them any more, and nothing reaches them afterwards.
    for (VXNetworkAccessManager* const old : abandoned)
        delete old;
    VXNetworkAccessManager::deleteAllCookies();
}

void tst_VXNetworkAccessManager::releasedManagerIsGoneAndMadeAnew()
{
    const bool isGone = vxRun(VXWhere::Worker, [] {
        VXNetworkAccessManager::releaseThreadInstance(); // there is none yet
        const QPointer<VXNetworkAccessManager> first(manager());
        VXNetworkAccessManager::releaseThreadInstance();
        const bool result = first.isNull() && manager() != nullptr;
        VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QVERIFY(isGone);
}

void tst_VXNetworkAccessManager::connectionTypeFollowsTheThread()
{
    // The questions are asked once each; a second connection would ask twice.
    const Answerer answerer;
    auto* const authenticator = new QAuthenticator;
    const std::unique_ptr<QAuthenticator> owner(authenticator);
    Q_EMIT manager()->authenticationRequired(QUrl(u"http://a/"_s), authenticator);
    QCOMPARE(answerer.urls, QList{QUrl(u"http://a/"_s)});
    QCOMPARE(authenticator->user(), u"me"_s);

    const QString user = vxRun(VXWhere::Worker, [] {
        QAuthenticator inWorker;
        Q_EMIT manager()->proxyAuthenticationRequired(QUrl(), &inWorker, u"proxy"_s);
        VXNetworkAccessManager::releaseThreadInstance();
        return inWorker.user(); // in place as soon as the signal returns
    });
    QCOMPARE(user, u"me"_s);
    QCOMPARE(answerer.proxies, QStringList{u"proxy"_s});
    QCOMPARE(answerer.threads, QSet{QThread::currentThread()});
}

void tst_VXNetworkAccessManager::networkSettingsExistBeforeTheFirstRequest()
{
    manager();
    QVERIFY(VXSingleton<VXNetworkSettings>::hasInstance());
}

void tst_VXNetworkAccessManager::signalsAndSlotsStandInOrder()
{
    const QMetaObject& meta = VXNetworkAccessManager::staticMetaObject;
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        signatures.append(u"%1 %2 %3"_s.arg(
            isSignal ? u"signal"_s : u"slot"_s, QString::fromLatin1(method.methodSignature()),
            QString::fromLatin1(method.parameterNames().join(','))));
    }
    const QStringList expected{
        u"signal authenticationRequired(QUrl,QAuthenticator*) theUrl,theAuthenticator"_s,
        u"signal proxyAuthenticationRequired(QUrl,QAuthenticator*,QString) "
        "theUrl,theAuthenticator,theProxyHost"_s,
        u"signal askIgnoreSSLErrors(QString,QStringList,bool*) theHost,theErrorList,theResult"_s,
        u"slot handleAuthenticationRequest(QNetworkReply*,QAuthenticator*) "
        "theReply,theAuthenticator"_s,
        u"slot handleProxyAuthenticationRequest(QNetworkProxy,QAuthenticator*) "
        "theProxy,theAuthenticator"_s,
        u"slot handleSslErrors(QNetworkReply*,QList<QSslError>) theReply,theErrors"_s,
        u"slot printSslCertificate(QSslCertificate) theCertificate"_s,
        u"slot deleteCookies() "_s,
    };
    QCOMPARE(signatures, expected);
}

void tst_VXNetworkAccessManager::typesOfTheQuestionsAreRegistered()
{
    manager();
    for (const char* name :
         {"QNetworkProxy", "QList<QSslError>", "QSslCertificate", "QNetworkReply*"})
        QVERIFY2(QMetaType::fromName(name).isValid(), name);
}

void tst_VXNetworkAccessManager::httpsIsForcedOnlyWhereThePlatformSays()
{
    const auto schemeOf = [](const QString& theUrl) {
        return manager()->createRequest(QUrl(theUrl), {}, 0, {}).url().toString();
    };
    QCOMPARE(schemeOf(u"http://a.test:81/p?q"_s), u"http://a.test:81/p?q"_s);
    myPlatform->isHttpsForced = true;
    QCOMPARE(schemeOf(u"http://a.test:81/p?q"_s), u"https://a.test:81/p?q"_s);
    QCOMPARE(schemeOf(u"https://a.test/"_s), u"https://a.test/"_s);
    QCOMPARE(schemeOf(u"file:///a"_s), u"file:///a"_s);
    QCOMPARE(schemeOf(u"ftp://a.test/"_s), u"ftp://a.test/"_s);
}

void tst_VXNetworkAccessManager::upperCaseSchemeArrivesLowerCased()
{
    // The comparison is case-sensitive, but no way into a URL keeps a scheme's capitals.
    QUrl url(u"//a.test/"_s);
    url.setScheme(u"HTTP"_s);
    QCOMPARE(url.scheme(), u"http"_s);
    QCOMPARE(QUrl(u"HTTP://a.test/"_s).scheme(), u"http"_s);
    myPlatform->isHttpsForced = true;
    QCOMPARE(manager()->createRequest(url, {}, 0, {}).url().scheme(), u"https"_s);
}

void tst_VXNetworkAccessManager::defaultHeadersAreSentInOrder()
{
    VXRawPeer peer;
    VXHttpParameter headers;
    headers.insert(u"X-B"_s, u"2"_s);
    headers.insert(u"X-A"_s, u"1"_s);
    const ReplyPointer reply(manager()->syncronPut(peer.url(u"/p"_s), "abc", u"text/xml"_s, 30,
                                                   nullptr, nullptr, headers));
    QCOMPARE(reply->error(), QNetworkReply::NoError);

    const QByteArray bytes = peer.connections().constFirst();
    const QByteArray expected =
        "PUT /p HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(peer.port()) +
        "\r\n"
        "User-Agent: Mozilla/5.0 AppleWebKit/538.1 (KHTML, like Gecko) "
        "Safari/538.1 - Orvelo Desk\r\n"
        "Connection: disable-keep-alive\r\n"
        "Content-Type: text/xml\r\n"
        "Content-Length: 3\r\n"
        "X-A: 1\r\n"
        "X-B: 2\r\n";
    QCOMPARE(bytes.first(expected.size()), expected);
    QVERIFY(bytes.endsWith("\r\n\r\nabc"));

    // GET and HEAD also say that no cache may answer.
    get(peer.url());
    const QList<QByteArray> names = peer.requests().constLast().headerNames();
    QCOMPARE(names.first(5),
             (QList{"Host"_ba, "Cache-Control"_ba, "Pragma"_ba, "User-Agent"_ba, "Connection"_ba}));
    QCOMPARE(peer.connections().size(), 1); // the token closes nothing
}

void tst_VXNetworkAccessManager::customHeaderReplacesTheDefault()
{
    VXRawPeer peer;
    VXHttpParameter headers;
    headers.insert(u"X-Other"_s, u"1"_s);
    get(peer.url(), 30, headers);
    QCOMPARE(peer.requests().constLast().header("Connection"), "disable-keep-alive"_ba);
    QCOMPARE(peer.requests().constLast().header("User-Agent"),
             "Mozilla/5.0 AppleWebKit/538.1 (KHTML, like Gecko) Safari/538.1 - Orvelo Desk"_ba);

    headers.insert(u"connection"_s, u"close"_s);
    headers.insert(u"User-Agent"_s, u"own"_s);
    get(peer.url(), 30, headers);
    const VXRawRequest request = peer.requests().constLast();
    QCOMPARE(request.header("Connection"), "close"_ba);
    QCOMPARE(request.headerCount("Connection"), 1);
    QCOMPARE(request.header("User-Agent"), "own"_ba);
    QCOMPARE(request.headerCount("User-Agent"), 1);
}

void tst_VXNetworkAccessManager::doNotTrackIsSent()
{
    VXRawPeer peer;
    get(peer.url());
    QCOMPARE(peer.requests().constLast().headerCount("DNT"), 0);
    QVERIFY(!manager()->doNotTrack());

    VXGeneralSettings::instance()->setDoNotTrack(true);
    VXHttpParameter headers;
    headers.insert(u"DNT"_s, u"0"_s); // the user's wish is stronger
    get(peer.url(), 30, headers);
    QCOMPARE(peer.requests().constLast().header("DNT"), "1"_ba);
    QCOMPARE(peer.requests().constLast().headerCount("DNT"), 1);

    // Requests that were not built by the manager get it as well.
    const ReplyPointer reply(manager()->get(QNetworkRequest(peer.url())));
    manager()->waitForRequest(reply.get(), 30);
    QCOMPARE(peer.requests().constLast().header("DNT"), "1"_ba);
}

void tst_VXNetworkAccessManager::deleteIsPlainWithoutABodyAndCustomWithOne()
{
    VXRawPeer peer;
    const auto deleteWith = [&peer](QByteArray theData) {
        const VXLogCapture log;
        QNetworkRequest request = manager()->createRequest(peer.url(u"/d"_s), u"text/xml"_s,
                                                           static_cast<int>(theData.size()), {});
        const ReplyPointer reply(manager()->doOp(Operation::DeleteOperation, request, theData));
        manager()->waitForRequest(reply.get(), 30);
        return std::pair(reply->operation(), log.texts(QtInfoMsg).value(0));
    };

    const QString url = peer.url(u"/d"_s).toString();
    const auto [plain, plainLine] = deleteWith({});
    QCOMPARE(plain, Operation::DeleteOperation);
    QCOMPARE(plainLine, u" --  \"DELETE\" : \"%1\""_s.arg(url));
    QVERIFY(peer.connections().constFirst().startsWith("DELETE /d HTTP/1.1\r\n"));
    QCOMPARE(peer.requests().constLast().headerCount("Content-Length"), 0);
    QCOMPARE(peer.requests().constLast().body, ""_ba);

    const auto [custom, customLine] = deleteWith("<a/>");
    QCOMPARE(custom, Operation::CustomOperation);
    QCOMPARE(customLine, u" --  \"CUSTOM\" : \"%1\""_s.arg(url));
    QCOMPARE(peer.requests().constLast().method(), "DELETE"_ba);
    QCOMPARE(peer.requests().constLast().header("Content-Length"), "4"_ba);
    QCOMPARE(peer.requests().constLast().body, "<a/>"_ba);
}

void tst_VXNetworkAccessManager::requestsOfEveryOperationGoOut_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("requestLine");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("syncronGet") << 0 << "GET /x HTTP/1.1"_ba
                                << ""_ba;
    QTest::newRow("syncronDelete") << 1 << "DELETE /x HTTP/1.1"_ba
                                   << ""_ba;
    QTest::newRow("syncronPost") << 2 << "POST /x HTTP/1.1"_ba
                                 << "data"_ba;
    QTest::newRow("syncronPut") << 3 << "PUT /x HTTP/1.1"_ba
                                << "data"_ba;
    QTest::newRow("syncronHttp HEAD") << 4 << "HEAD /x HTTP/1.1"_ba
                                      << ""_ba;
}

void tst_VXNetworkAccessManager::requestsOfEveryOperationGoOut()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, requestLine);
    QFETCH(QByteArray, body);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, kind == 4 ? ""_ba : "answer"_ba));
    const QUrl url = peer.url(u"/x"_s);
    VXHttpParameter headers;
    headers.insert(u"X-Own"_s, u"1"_s);
    const QString type = u"text/plain"_s;
    VXNetworkAccessManager* const m = manager();
    const ReplyPointer reply(
        kind == 0   ? m->syncronGet(url, 30, nullptr, nullptr, headers)
        : kind == 1 ? m->syncronDelete(url, 30, nullptr, nullptr, headers)
        : kind == 2 ? m->syncronPost(url, "data", type, 30, nullptr, nullptr, headers)
        : kind == 3 ? m->syncronPut(url, "data", type, 30, nullptr, nullptr, headers)
                    : m->syncronHttp(Operation::HeadOperation, url, {}, {}, 30, nullptr, nullptr,
                                     nullptr, headers));
    QVERIFY(reply->isFinished());
    QCOMPARE(reply->readAll(), kind == 4 ? ""_ba : "answer"_ba);
    const VXRawRequest request = peer.requests().constLast();
    QCOMPARE(request.head.left(request.head.indexOf("\r\n")), requestLine);
    QCOMPARE(request.header("X-Own"), "1"_ba);
    QCOMPARE(request.header("Content-Type"), body.isEmpty() ? ""_ba : "text/plain"_ba);
    QCOMPARE(request.body, body);
}

void tst_VXNetworkAccessManager::bodyBeyondTwoGigabytesIsAnnouncedWhole()
{
    // 4 GiB and 3 bytes that take no memory: what is read of them is one page of zeros.
    constexpr size_t size = (size_t(1) << 32) + 3;
    void* const memory =
        mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    QVERIFY(memory != MAP_FAILED);
    const auto unmap = qScopeGuard([&] { munmap(memory, size); });

    VXRawPeer peer;
    peer.setBodyLimit([](const VXRawRequest&) { return 0; });
    peer.setAnswer(VXRawAnswer::http(413).close());
    const auto body = QByteArray::fromRawData(static_cast<const char*>(memory), size);
    ReplyPointer reply(manager()->startHttp(Operation::PostOperation, peer.url(), body, {}, nullptr,
                                            nullptr, nullptr, {}));
    QTRY_COMPARE(peer.requests().size(), 1);
    reply->abort();
    reply.reset(); // before the memory goes
    QCOMPARE(peer.requests().constFirst().header("Content-Length"), "4294967299"_ba);
}

void tst_VXNetworkAccessManager::headerWithLineBreakIsDropped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("LF in the value") << u"X-A"_s << u"1\nX-Evil: geheim"_s;
    QTest::newRow("CR in the value") << u"X-A"_s << u"1\rX-Evil: geheim"_s;
    QTest::newRow("NUL in the value") << u"X-A"_s << u"geheim%1"_s.arg(QChar(u'\0'));
    QTest::newRow("CR LF in the name") << u"X-A: 1\r\nX-Evil"_s << u"geheim"_s;
    QTest::newRow("NUL in the name") << u"X-%1Evil"_s.arg(QChar(u'\0')) << u"geheim"_s;
}

void tst_VXNetworkAccessManager::headerWithLineBreakIsDropped()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    VXRawPeer peer;
    VXHttpParameter headers;
    headers.insert(name, value);
    headers.insert(u"X-Good"_s, u"1"_s);
    const VXLogCapture log;
    get(peer.url(), 30, headers);
    QVERIFY(!peer.requests().constLast().head.contains("Evil"));
    QCOMPARE(peer.requests().constLast().headerCount("X-A"), 0);
    QCOMPARE(peer.requests().constLast().header("X-Good"), "1"_ba);
    QCOMPARE(log.texts(QtWarningMsg).size(), 1);
    QVERIFY(!log.texts(QtWarningMsg).constFirst().contains(u"geheim"_s));
    QVERIFY(!log.texts(QtWarningMsg).constFirst().contains(u'\n'));
}

void tst_VXNetworkAccessManager::requestHasNoCacheAndPipelining()
{
    VXRawPeer peer;
    const QNetworkRequest built = manager()->createRequest(peer.url(), {}, 0, {});
    QCOMPARE(built.attribute(QNetworkRequest::CacheLoadControlAttribute).toInt(),
             static_cast<int>(QNetworkRequest::AlwaysNetwork));
    QVERIFY(!built.header(QNetworkRequest::ContentLengthHeader).isValid());
    const ReplyPointer reply = get(peer.url());
    QVERIFY(reply->request().attribute(QNetworkRequest::HttpPipeliningAllowedAttribute).toBool());
}

void tst_VXNetworkAccessManager::http2IsOffUnlessThePlatformAllowsIt()
{
    const VXTestCertificates::Identity leaf = myCertificates->leaf();
    VXTlsPeer peer(leaf, {"h2", "http/1.1"});
    QCOMPARE(get(peer.url())->error(), QNetworkReply::NoError);
    QVERIFY(peer.connections().constLast().startsWith("GET / HTTP/1.1\r\n"));

    myPlatform->isHttp2Allowed = true;
    VXTlsPeer other(leaf, {"h2", "http/1.1"});
    const ReplyPointer reply = get(other.url(), 1); // the peer speaks HTTP/1.1 only
    QVERIFY(other.connections().constLast().startsWith("PRI * HTTP/2.0\r\n"));
}

void tst_VXNetworkAccessManager::mapTileQueryIsDecodedOnceMore()
{
    VXRawPeer peer;
    myPlatform->mapTileFragment = u"7.0.0"_s;
    get(peer.url(u"/tile?x=%2541&y=a%2Bb&z=a%26b&y=2"_s));
    QCOMPARE(peer.requests().constLast().target(), "/tile?x=A&y=a+b&z=a%26b&y=2"_ba);

    myPlatform->mapTileFragment = u"tiles.test"_s;
    get(peer.url(u"/tile?x=%2541"_s));
    QCOMPARE(peer.requests().constLast().target(), "/tile?x=%2541"_ba);
}

void tst_VXNetworkAccessManager::emptyFragmentsNeverMatch()
{
    VXRawPeer peer;
    VXGeneralSettings::instance()->setDoNotTrack(true);
    const VXLogCapture log;
    get(peer.url(u"/tile?x=%2541"_s));
    QCOMPARE(peer.requests().constLast().target(), "/tile?x=%2541"_ba);
    QCOMPARE(log.textsWith(u"Filtering"_s), QStringList());
}

void tst_VXNetworkAccessManager::analyticsHostIsLoggedAndAskedAllTheSame()
{
    VXRawPeer peer;
    myPlatform->analyticsFragment = u"27.0.0"_s;
    {
        const VXLogCapture log;
        get(peer.url(u"/a"_s));
        QCOMPARE(log.textsWith(u"Filtering"_s), QStringList());
    }
    VXGeneralSettings::instance()->setDoNotTrack(true);
    const VXLogCapture log;
    const ReplyPointer reply = get(peer.url(u"/b"_s));
    QCOMPARE(log.texts(QtInfoMsg).filter(u"Filtering"_s), QStringList{u"Filtering 27.0.0"_s});
    QCOMPARE(reply->error(), QNetworkReply::NoError);
    QCOMPARE(peer.requests().constLast().target(), "/b"_ba);
}

void tst_VXNetworkAccessManager::timeoutOfFiveSecondsIsLoggedAndAborts()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    const VXLogCapture log;
    QElapsedTimer clock;
    clock.start();
    const ReplyPointer reply = get(peer.url(), 5);
    const qint64 elapsed = clock.elapsed();
    QVERIFY2(elapsed >= 5000 && elapsed < 10000, qPrintable(QString::number(elapsed)));
    QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
    QVERIFY(reply->isFinished());
    QCOMPARE(log.texts(QtInfoMsg).constLast(),
             u" -- Request  \"%1\"  aborted: TIMEOUT after 5"_s.arg(peer.url().toString()));
}

void tst_VXNetworkAccessManager::waitIsLoggedLiterally()
{
    VXRawPeer peer;
    peer.setAnswers({VXRawAnswer::http(200), VXRawAnswer::http(404)});
    const QString url = peer.url(u"/a%20b?c=d"_s).toString();
    const VXLogCapture log;
    get(QUrl(url));
    get(QUrl(url));
    QCOMPARE(
        log.texts(QtInfoMsg),
        (QStringList{
            u" --  \"GET\" : \"%1\""_s.arg(url),
            u" -- Request  \"%1\" complete"_s.arg(url),
            u" --  \"GET\" : \"%1\""_s.arg(url),
            u" -- Request  \"%1\" failed with Qt Error Code: QNetworkReply::ContentNotFoundError"_s
                .arg(url),
        }));
}

void tst_VXNetworkAccessManager::zeroSecondsAbortAtOnce()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall()); // on a busy machine an answer could come first
    const VXLogCapture log;
    QElapsedTimer clock;
    clock.start();
    const ReplyPointer reply = get(peer.url(), 0);
    QVERIFY(clock.elapsed() < 20'000); // not the usual two minutes
    QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
    QCOMPARE(log.textsWith(u"aborted: TIMEOUT after 0"_s).size(), 1);
}

void tst_VXNetworkAccessManager::negativeSecondsMeanNoLimit()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().pause(300ms).send("HTTP/1.1 204 No\r\n\r\n"));
    const VXLogCapture log;
    QCOMPARE(get(peer.url(), -1)->error(), QNetworkReply::NoError);
    QCOMPARE(get(peer.url(), -5)->error(), QNetworkReply::NoError);
    QCOMPARE(log.textsWith(u"imer"_s), QStringList()); // Qt complains about negative intervals
    QCOMPARE(log.textsWith(u"complete"_s).size(), 2);
}

void tst_VXNetworkAccessManager::hugeTimeoutSaturates()
{
    // Times 1000, the second number would be 704 milliseconds and the first negative.
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().pause(1200ms).send("HTTP/1.1 204 No\r\n\r\n"));
    for (const int seconds : {2147484, 4294968, std::numeric_limits<int>::max()})
        QCOMPARE(get(peer.url(), seconds)->error(), QNetworkReply::NoError);
}

void tst_VXNetworkAccessManager::nullReplyIsIgnored()
{
    const VXLogCapture log;
    manager()->waitForRequest(nullptr, 5);
    manager()->connectRequest(nullptr, this, SLOT(deleteLater()), this);
    QCOMPARE(log.texts(), QStringList());
}

void tst_VXNetworkAccessManager::localUrlFinishes_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::newRow("data") << QUrl(u"data:text/plain,abc"_s) << QNetworkReply::NoError;
    QTest::newRow("missing file") << QUrl(u"file:///missing/file"_s)
                                  << QNetworkReply::ContentNotFoundError;
    QTest::newRow("unknown scheme") << QUrl(u"foo://a/"_s) << QNetworkReply::ProtocolUnknownError;
    QTest::newRow("empty") << QUrl() << QNetworkReply::ProtocolUnknownError;
    QTest::newRow("host and port only")
        << QUrl(u"127.0.0.1:80"_s) << QNetworkReply::ProtocolUnknownError;
}

void tst_VXNetworkAccessManager::localUrlFinishes()
{
    QFETCH(QUrl, url);
    QFETCH(QNetworkReply::NetworkError, error);
    const ReplyPointer reply = get(url, 10);
    QCOMPARE(reply->error(), error);
    if (error == QNetworkReply::NoError)
        QCOMPARE(reply->readAll(), "abc"_ba);
}

void tst_VXNetworkAccessManager::quitDuringAWaitAborts()
{
    // A worker with a loop of its own: its wait ends when the thread is told to quit.
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    QThread thread;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    bool isFinished = false;
    QObject inThread;
    inThread.moveToThread(&thread);
    connect(&thread, &QThread::started, &inThread, [&] {
        const ReplyPointer reply = get(peer.url(), -1);
        error = reply->error();
        isFinished = reply->isFinished();
    });
    connect(
        &thread, &QThread::finished, &inThread,
        [] { VXNetworkAccessManager::releaseThreadInstance(); }, Qt::DirectConnection);
    thread.start();
    QVERIFY(peer.waitForRequests(1));
    thread.quit();
    QVERIFY(thread.wait(20000));
    QCOMPARE(error, QNetworkReply::OperationCanceledError);
    QVERIFY(isFinished);
}

void tst_VXNetworkAccessManager::passwordOfTheUrlIsNotLogged()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404));
    QUrl url = peer.url(u"/p"_s);
    url.setUserName(u"me"_s);
    url.setPassword(u"geheim"_s);
    const VXLogCapture log;
    get(url);
    QCOMPARE(log.textsWith(u"geheim"_s), QStringList());
    QCOMPARE(log.texts(QtInfoMsg).constFirst(),
             u" --  \"GET\" : \"http://me@127.0.0.1:%1/p\""_s.arg(peer.port()));
}

void tst_VXNetworkAccessManager::waitsNestLastInFirstOut()
{
    VXRawPeer peer;
    peer.setHandler([](const VXRawRequest& theRequest) {
        return theRequest.target() == "/outer"
                   ? VXRawAnswer().pause(100ms).send("HTTP/1.1 204 No\r\n\r\n")
                   : VXRawAnswer::http(200, "inner");
    });
    QByteArray inner;
    QTimer::singleShot(0, this, [&] { inner = get(peer.url(u"/inner"_s))->readAll(); });
    const ReplyPointer outer = get(peer.url(u"/outer"_s));
    QCOMPARE(outer->error(), QNetworkReply::NoError);
    QCOMPARE(inner, "inner"_ba);
}

void tst_VXNetworkAccessManager::blockedInputArrivesAfterTheWait()
{
    VXInputWindow window;
    QVERIFY(window.open());

    int duringTheWait = -1;
    QSemaphore otherEvents;
    VXRawPeer peer;
    peer.setHandler([&otherEvents](const VXRawRequest&) {
        return VXRawAnswer::http(otherEvents.tryAcquire(1, 20'000) ? 204 : 500);
    });
    QTimer::singleShot(0, &window, &VXInputWindow::sendInput);
    QTimer::singleShot(50ms, &window, [&otherEvents] { otherEvents.release(); });

    QVERIFY(!manager()->blockUIEvents(true)); // the value before
    const ReplyPointer reply = get(peer.url());
    duringTheWait = window.keys + window.clicks;
    QVERIFY(manager()->blockUIEvents(false));

    QCOMPARE(duringTheWait, 0);
    QCOMPARE(reply->error(), QNetworkReply::NoError); // the other events did run
    QTRY_COMPARE(window.keys, 1);
    QTRY_COMPARE(window.clicks, 1);
}

void tst_VXNetworkAccessManager::unblockedInputArrivesDuringTheWait()
{
    VXInputWindow window;
    QVERIFY(window.open());

    QSemaphore arrived; // what the answer waits for, though not for ever
    QTimer timer;
    connect(&timer, &QTimer::timeout, &window, [&] {
        if (window.keys > 0 && window.clicks > 0)
            arrived.release();
    });
    timer.start(10);
    VXRawPeer peer;
    peer.setHandler([&arrived](const VXRawRequest&) {
        arrived.tryAcquire(1, 20'000);
        return VXRawAnswer::http(204);
    });
    QTimer::singleShot(0, &window, &VXInputWindow::sendInput);
    get(peer.url());
    QCOMPARE(window.keys, 1);
    QCOMPARE(window.clicks, 1);
}

void tst_VXNetworkAccessManager::describeNamesTheOperations()
{
    QStringList names;
    for (int operation = 0; operation <= 7; ++operation)
        names.append(manager()->describe(static_cast<Operation>(operation)));
    QCOMPARE(names, (QStringList{u"UNKNOWN"_s, u"HEAD"_s, u"GET"_s, u"PUT"_s, u"POST"_s,
                                 u"DELETE"_s, u"CUSTOM"_s, u"UNKNOWN"_s}));
}

void tst_VXNetworkAccessManager::unsupportedOperationHasNoReply()
{
    const QUrl url(u"http://127.0.0.1:1/"_s);
    const QNetworkRequest request(url);
    QByteArray data;
    QHttpMultiPart parts(QHttpMultiPart::FormDataType);
    for (const Operation operation : {Operation::UnknownOperation, Operation::CustomOperation}) {
        QVERIFY(!manager()->doOp(operation, request, data));
        QVERIFY(!manager()->doOp(operation, request, &parts));
        QVERIFY(!manager()->syncronHttp(operation, url, {}, {}, 5, this, SLOT(deleteLater()), this,
                                        {}));
    }
    for (const Operation operation :
         {Operation::GetOperation, Operation::HeadOperation, Operation::DeleteOperation})
        QVERIFY(!manager()->doOp(operation, request, &parts));
    QVERIFY(
        !manager()->doOp(Operation::PostOperation, request, static_cast<QHttpMultiPart*>(nullptr)));
}

void tst_VXNetworkAccessManager::progressFollowsTheOperation_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("total");

    QTest::newRow("unknown: none") << Operation::UnknownOperation << 0;
    QTest::newRow("HEAD: download") << Operation::HeadOperation << 20;
    QTest::newRow("GET: download") << Operation::GetOperation << 20;
    QTest::newRow("PUT: upload") << Operation::PutOperation << 10;
    QTest::newRow("POST: upload") << Operation::PostOperation << 10;
    QTest::newRow("DELETE: download") << Operation::DeleteOperation << 20;
    QTest::newRow("CUSTOM: download") << Operation::CustomOperation << 20;
}

void tst_VXNetworkAccessManager::progressFollowsTheOperation()
{
    QFETCH(Operation, operation);
    QFETCH(int, total);
    BareReply reply(operation);
    VXProgressRecorder receiver;
    manager()->connectRequest(&reply, &receiver, SLOT(note(qint64, qint64)), nullptr);
    Q_EMIT reply.uploadProgress(1, 10);
    Q_EMIT reply.downloadProgress(2, 20);
    QCoreApplication::processEvents();
    QList<std::pair<qint64, qint64>> expected;
    if (total != 0)
        expected.append({total / 10, total});
    QCOMPARE(receiver.notices(), expected);
}

void tst_VXNetworkAccessManager::missingReceiversAndSlotsHurtNothing()
{
    VXRawPeer peer;
    const VXLogCapture log;
    const ReplyPointer reply(manager()->get(QNetworkRequest(peer.url())));
    manager()->connectRequest(reply.get(), this, nullptr, nullptr);
    manager()->connectRequest(reply.get(), nullptr, SLOT(deleteLater()), nullptr);
    manager()->waitForRequest(reply.get(), 30);
    QCOMPARE(log.texts(QtWarningMsg), QStringList());

    // A slot that does not exist is reported and hurts nothing.
    const ReplyPointer other(manager()->get(QNetworkRequest(peer.url())));
    manager()->connectRequest(other.get(), this, SLOT(missing(qint64, qint64)), nullptr);
    QVERIFY(log.texts(QtWarningMsg).constLast().contains(u"progress"_s));
    manager()->waitForRequest(other.get(), 30);
}

void tst_VXNetworkAccessManager::progressAndAbortAreQueued()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    VXProgressRecorder receiver;
    VXHttpOperation aborter = VXHttpOperation::create(peer.url(), Operation::GetOperation);
    const ReplyPointer reply(manager()->get(QNetworkRequest(peer.url())));
    manager()->connectRequest(reply.get(), &receiver, SLOT(note(qint64, qint64)), &aborter);

    Q_EMIT reply->downloadProgress(1, 2);
    QVERIFY(receiver.notices().isEmpty());
    Q_EMIT aborter.abort();
    QVERIFY(!reply->isFinished());
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
    QVERIFY(receiver.notices().contains(std::pair<qint64, qint64>(1, 2)));
}

void tst_VXNetworkAccessManager::deletedCookiesAreNotSent()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, {}, {"Set-Cookie: a=1"}));
    get(peer.url());
    get(peer.url());
    QCOMPARE(peer.requests().constLast().header("Cookie"), "a=1"_ba);

    const QPointer<QNetworkCookieJar> old(manager()->cookieJar());
    manager()->deleteCookies();
    QVERIFY(old.isNull());
    get(peer.url());
    QCOMPARE(peer.requests().constLast().headerCount("Cookie"), 0);
}

void tst_VXNetworkAccessManager::allCookiesAreDeletedInTheirThreads()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, {}, {"Set-Cookie: a=1"}));
    get(peer.url());

    const auto cookieOf = [&peer] {
        get(peer.url());
        return peer.requests().constLast().header("Cookie");
    };
    const QList<QByteArray> inWorker = vxRun(VXWhere::Worker, [&] {
        get(peer.url());
        QList<QByteArray> seen{cookieOf()};
        VXNetworkAccessManager::deleteAllCookies();
        // The header is made when the request is created: this one is too early, the next not.
        seen.append(cookieOf());
        peer.setAnswer(VXRawAnswer::http(200));
        manager()->deleteCookies();
        seen.append(cookieOf());
        VXNetworkAccessManager::releaseThreadInstance();
        return seen;
    });
    QCOMPARE(inWorker, (QList{"a=1"_ba, "a=1"_ba, QByteArray()}));
    // This thread handled its own notice while it waited for the worker.
    QCOMPARE(cookieOf(), QByteArray());
}

void tst_VXNetworkAccessManager::portMakesAnotherHostKey()
{
    // The refused connections never get as far as a handshake: the errors are handed in.
    const auto replyOf = [](const QString& theUrl) {
        return ReplyPointer(manager()->get(QNetworkRequest(QUrl(theUrl))));
    };
    const QList<QSslError> errors{QSslError(QSslError::SelfSignedCertificate)};
    const Answerer answerer;
    const ReplyPointer withPort = replyOf(u"https://127.0.0.2:8443/"_s);
    const ReplyPointer without = replyOf(u"https://127.0.0.2/"_s);
    const ReplyPointer otherPort = replyOf(u"https://127.0.0.2:8444/"_s);
    for (QNetworkReply* const reply : {withPort.get(), without.get(), otherPort.get(),
                                       withPort.get(), without.get(), otherPort.get()})
        manager()->handleSslErrors(reply, errors);
    QCOMPARE(answerer.hosts,
             (QStringList{u"127.0.0.2:8443"_s, u"127.0.0.2"_s, u"127.0.0.2:8444"_s}));
}

void tst_VXNetworkAccessManager::acceptedHostIsNotAskedAgain_data()
{
    QTest::addColumn<VXWhere>("where");
    QTest::newRow("GUI thread") << VXWhere::ApplicationThread;
    QTest::newRow("worker") << VXWhere::Worker;
}

void tst_VXNetworkAccessManager::acceptedHostIsNotAskedAgain()
{
    QFETCH(VXWhere, where);
    VXTlsPeer peer(myCertificates->selfSigned());
    // A connection per request, hence a handshake per request.
    peer.setAnswer(VXRawAnswer::http(200, {}, {"Connection: close"}).close());
    const Answerer answerer;
    const VXLogCapture log;
    const QList<int> results = vxRun(where, [&] {
        QList<int> errors;
        for (int i = 0; i < 3; ++i)
            errors.append(get(peer.url())->error());
        if (where == VXWhere::Worker)
            VXNetworkAccessManager::releaseThreadInstance();
        return errors;
    });
    const QString key = u"127.0.0.1:%1"_s.arg(peer.port());
    QCOMPARE(results, (QList{0, 0, 0}));
    QCOMPARE(answerer.hosts, QStringList{key});
    QCOMPARE(answerer.threads, QSet{QThread::currentThread()});
    const QString line = u"-- Errors to %1 already ignored"_s.arg(key);
    QCOMPARE(log.texts(QtWarningMsg), (QStringList{line, line}));

    // The other thread's manager knows it as well.
    const VXWhere other = where == VXWhere::Worker ? VXWhere::ApplicationThread : VXWhere::Worker;
    QCOMPARE(vxRun(other,
                   [&] {
                       const int error = get(peer.url())->error();
                       if (other == VXWhere::Worker)
                           VXNetworkAccessManager::releaseThreadInstance();
                       return error;
                   }),
             0);
    QCOMPARE(answerer.hosts.size(), 1);
}

void tst_VXNetworkAccessManager::declinedHostIsAskedAgain()
{
    VXTlsPeer peer(myCertificates->selfSigned());
    Answerer answerer;
    answerer.isAccepting = false;
    QCOMPARE(get(peer.url())->error(), QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(get(peer.url())->error(), QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(answerer.hosts.size(), 2);
    QCOMPARE(peer.requests().size(), 0);
}

void tst_VXNetworkAccessManager::withoutValidationNobodyIsAsked()
{
    VXTlsPeer expired(myExpired);
    const Answerer answerer;
    const VXLogCapture log;
    QVERIFY(VXNetworkAccessManager::validateSslCertificate());
    VXNetworkAccessManager::setValidateSslCertificate(false);
    QCOMPARE(get(expired.url())->error(), QNetworkReply::NoError);
    QCOMPARE(answerer.hosts, QStringList());
    QCOMPARE(log.texts(QtWarningMsg),
             QStringList{u"-- Errors to 127.0.0.1:%1 already ignored"_s.arg(expired.port())});

    VXNetworkAccessManager::setValidateSslCertificate(true); // and nothing was remembered
    manager()->clearConnectionCache();
    get(expired.url());
    QCOMPARE(answerer.hosts.size(), 1);
}

void tst_VXNetworkAccessManager::nobodyConnectedMeansNo()
{
    VXTlsPeer peer(myCertificates->selfSigned());
    QCOMPARE(get(peer.url())->error(), QNetworkReply::SslHandshakeFailedError);
    const int inWorker = vxRun(VXWhere::Worker, [&] {
        const int error = get(peer.url())->error();
        VXNetworkAccessManager::releaseThreadInstance();
        return error;
    });
    QCOMPARE(inWorker, static_cast<int>(QNetworkReply::SslHandshakeFailedError));
}

void tst_VXNetworkAccessManager::nullReplyHasNoErrors()
{
    const Answerer answerer;
    const VXLogCapture log;
    manager()->handleSslErrors(nullptr, {QSslError(QSslError::SelfSignedCertificate)});
    QCOMPARE(answerer.hosts, QStringList());
    QCOMPARE(log.texts(), QStringList());
}

void tst_VXNetworkAccessManager::questionNamesTheErrors()
{
    VXTlsPeer peer(myExpired);
    const Answerer answerer;
    const VXLogCapture log;
    get(peer.url());
    const QString text = u"The certificate has expired"_s;
    QCOMPARE(answerer.errors.size(), 1);
    QCOMPARE(answerer.errors.constFirst(), QStringList{text});
    QCOMPARE(log.texts(QtInfoMsg).filter(text), QStringList{text});
    QCOMPARE(log.texts(QtInfoMsg).filter(u"\nCertificate:\n"_s).size(), 1);
}

void tst_VXNetworkAccessManager::questionNamesTheHostBehindARedirect()
{
    VXTlsPeer target(myCertificates->selfSigned());
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(302, {}, {"Location: " + target.url().toEncoded()}));
    const Answerer answerer;
    QCOMPARE(get(peer.url())->error(), QNetworkReply::NoError);
    QCOMPARE(answerer.hosts, QStringList{u"127.0.0.1:%1"_s.arg(target.port())});
    QCOMPARE(target.requests().size(), 1);
}

void tst_VXNetworkAccessManager::unusableCertificatesAreNoAuthorities()
{
    manager();
    const QList<QSslCertificate> list = QSslConfiguration::defaultConfiguration().caCertificates();
    QVERIFY(!list.contains(myExpired.certificate));
    QVERIFY(!list.contains(myFuture.certificate));
    QVERIFY(!list.contains(myBlacklisted.certificate));
    QVERIFY(list.contains(myCertificates->authority().certificate));
    const QDateTime now = QDateTime::currentDateTime();
    for (const QSslCertificate& certificate : list)
        QVERIFY(certificate.expiryDate() >= now && certificate.effectiveDate() <= now);
}

void tst_VXNetworkAccessManager::certificatesAppearOnce()
{
    manager();
    const QList<QSslCertificate> list = QSslConfiguration::defaultConfiguration().caCertificates();
    QCOMPARE(list.count(myCertificates->authority().certificate), 1);
    // Any valid one of the system's: their order changes, and some of them have expired.
    const QDateTime now = QDateTime::currentDateTime();
    const QList<QSslCertificate> system = QSslConfiguration::systemCaCertificates();
    const auto valid = std::ranges::find_if(system, [&now](const QSslCertificate& theCertificate) {
        return theCertificate.expiryDate() >= now && theCertificate.effectiveDate() <= now &&
               !theCertificate.isBlacklisted();
    });
    QVERIFY(valid != system.cend());
    QCOMPARE(list.count(*valid), 1);
    const QSet<QSslCertificate> different(list.cbegin(), list.cend());
    QCOMPARE(different.size(), list.size());
    QVERIFY(list.size() > 1);
    // The bundle follows the system's own.
    QCOMPARE(list.constLast(), myCertificates->authority().certificate);

    // Once is enough: a second call leaves alone what it finds.
    const QSslConfiguration loaded = QSslConfiguration::defaultConfiguration();
    QSslConfiguration changed = loaded;
    changed.setCaCertificates({list.constFirst()});
    QSslConfiguration::setDefaultConfiguration(changed);
    manager()->loadSslCertificates();
    const qsizetype size = QSslConfiguration::defaultConfiguration().caCertificates().size();
    QSslConfiguration::setDefaultConfiguration(loaded);
    QCOMPARE(size, 1);
}

void tst_VXNetworkAccessManager::bundleIsTrusted()
{
    VXTlsPeer peer(myCertificates->leaf());
    const Answerer answerer;
    QCOMPARE(get(peer.url())->error(), QNetworkReply::NoError);
    QCOMPARE(answerer.hosts, QStringList());
}

void tst_VXNetworkAccessManager::invalidCertificatesAreRemoved()
{
    const QSslCertificate leaf = myCertificates->leaf().certificate;
    const QSslCertificate authority = myCertificates->authority().certificate;
    const VXLogCapture log;
    QCOMPARE(manager()->removeInvalidCertificates({leaf, myExpired.certificate, authority,
                                                   myFuture.certificate, leaf,
                                                   myBlacklisted.certificate}),
             (QList{leaf, authority, leaf}));
    QCOMPARE(log.texts(), QStringList());
}

void tst_VXNetworkAccessManager::certificateIsPrintedLiterally()
{
    const VXLogCapture log;
    manager()->printSslCertificate(QSslCertificate(QByteArray(knownCertificate)));
    QCOMPARE(log.texts(), QStringList{QLatin1StringView(
                              "\n"
                              "Certificate:\n"
                              "\tEffective date: Thu Jan 2 03:04:05 2025 GMT\n"
                              "\tExpiry date: Thu Jun 7 08:09:10 2035 GMT\n"
                              "\tSerialnumber as hex: 4f:2a:00:c2\n"
                              "\tFingerprint (MD5):a091eeafe52defe1947b9cce0a218d21\n"
                              "\tFingerprint (SHA1):9300f4e79a29260b89d2c4c170d89f1938e74c30\n"
                              "\tIssuer info:\n"
                              "\t\tName of organization: Issuer Werke\n"
                              "\t\tCommon name: Issuer CA\n"
                              "\t\tLocality: \n"
                              "\t\tOrganizational unit name: \n"
                              "\t\tCountry: DE\n"
                              "\t\tState or province: Niedersachsen\n"
                              "\tSubject info:\n"
                              "\t\tName of organization: VX Werke\n"
                              "\t\tCommon name: photo.test\n"
                              "\t\tLocality: Oldenburg\n"
                              "\t\tOrganizational unit name: Druck,Fotos\n"
                              "\t\tCountry: DE\n"
                              "\t\tState or province: Niedersachsen")});
    QCOMPARE(log.lines().constFirst().type, QtInfoMsg);
}

void tst_VXNetworkAccessManager::emptyAttributeKeepsItsLine()
{
    const VXLogCapture log;
    manager()->printSslCertificate(myExpired.certificate);
    const QStringList lines = log.texts().value(0).split(u'\n');
    QCOMPARE(lines.count(u"\t\tLocality: "_s), 2);
    QCOMPARE(lines.size(), 21);

    manager()->printSslCertificate(QSslCertificate()); // a null one is no reason to crash
    QCOMPARE(log.texts().size(), 2);
}

void tst_VXNetworkAccessManager::passwordQuestion_data()
{
    acceptedHostIsNotAskedAgain_data();
}

void tst_VXNetworkAccessManager::passwordQuestion()
{
    QFETCH(VXWhere, where);
    VXRawPeer peer;
    peer.setHandler([](const VXRawRequest& theRequest) {
        const bool isGiven =
            theRequest.header("Authorization") == "Basic " + QByteArray("me:secret").toBase64();
        return isGiven ? VXRawAnswer::http(200)
                       : VXRawAnswer::http(401, {}, {"WWW-Authenticate: Basic realm=\"r\""});
    });
    const Answerer answerer;
    const int error = vxRun(where, [&] {
        const int result = get(peer.url(u"/private"_s))->error();
        if (where == VXWhere::Worker)
            VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QCOMPARE(error, 0);
    QCOMPARE(answerer.urls, QList{peer.url(u"/private"_s)});
    QCOMPARE(answerer.threads, QSet{QThread::currentThread()});
}

void tst_VXNetworkAccessManager::unansweredPasswordFails()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(401, {}, {"WWW-Authenticate: Basic realm=\"r\""}));
    Answerer answerer;
    answerer.isAccepting = false;
    QCOMPARE(get(peer.url())->error(), QNetworkReply::AuthenticationRequiredError);
    QCOMPARE(answerer.urls.size(), 1);
    QCOMPARE(peer.requests().size(), 1);
}

void tst_VXNetworkAccessManager::proxyQuestion_data()
{
    acceptedHostIsNotAskedAgain_data();
}

void tst_VXNetworkAccessManager::proxyQuestion()
{
    QFETCH(VXWhere, where);
    VXRawPeer proxy;
    proxy.setHandler([](const VXRawRequest& theRequest) {
        const bool isGiven = theRequest.header("Proxy-Authorization") ==
                             "Basic " + QByteArray("me:secret").toBase64();
        return isGiven ? VXRawAnswer::http(200)
                       : VXRawAnswer::http(407, {}, {"Proxy-Authenticate: Basic realm=\"r\""});
    });
    const Answerer answerer;
    const int error = vxRun(where, [&] {
        manager()->setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, proxy.port()));
        const int result = get(QUrl(u"http://service.test/p"_s))->error();
        if (where == VXWhere::Worker)
            VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QCOMPARE(error, 0);
    QCOMPARE(answerer.urls, QList{QUrl()});
    QCOMPARE(answerer.proxies, QStringList{u"127.0.0.1"_s});
    QCOMPARE(proxy.requests().constLast().target(), "http://service.test/p"_ba);
    QCOMPARE(proxy.requests().constLast().header("Connection"), "disable-keep-alive"_ba);
}

void tst_VXNetworkAccessManager::quitReleasesAWorkerThatAsks()
{
    VXTlsPeer peer(myCertificates->selfSigned());
    const Answerer answerer;
    const VXLogCapture log;
    int error = 0;
    std::thread worker;
    QTimer::singleShot(0, this, [&] {
        worker = std::thread([&] {
            error = get(peer.url())->error();
            VXNetworkAccessManager::releaseThreadInstance();
        });
        // This thread stands still until the worker asks, and then leaves its loop.
        while (log.textsWith(u"\nCertificate:\n"_s).isEmpty())
            QThread::msleep(1);
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    worker.join(); // for ever, if its question were still open
    QCOMPARE(error, static_cast<int>(QNetworkReply::SslHandshakeFailedError));
    QCOMPARE(answerer.hosts, QStringList());

    // Events run again: so do questions.
    QCoreApplication::processEvents();
    const int later = vxRun(VXWhere::Worker, [&] {
        const int result = get(peer.url())->error();
        VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });
    QCOMPARE(later, 0);
}

VX_TEST_MAIN(QGuiApplication, tst_VXNetworkAccessManager)

#include "tst_VXNetworkAccessManager.moc"
