#include "VXLogCapture.h"
#include "VXPeerChannel.h"
#include "VXProgressRecorder.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXTlsPeer.h"
#include "VXWorker.h"

#include <VXCore/VXLogger.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkProxy>
#include <QtTest/QSignalSpy>
#include <QtXml/QDomDocument>

#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Operation = QNetworkAccessManager::Operation;

enum class Question
{
    None,
    Server,
    Proxy,
    Certificate,
};

/// What a run leaves behind.
struct Outcome
{
    bool isSuccess = false;
    int code = -1;
    int http = -1;
};

/// Counts what the client takes of the answers.
class MeteredPeer final : public VXRawPeer
{
    Q_DISABLE_COPY_MOVE(MeteredPeer)

public:
    MeteredPeer()
        : MeteredPeer(std::make_shared<Meter>())
    {
    }
    ~MeteredPeer() override { stop(); }

    /// Waits until theSize bytes have been taken, or none for half a second; returns how many.
    [[nodiscard]] qsizetype waitForTaken(qsizetype theSize) const
    {
        std::unique_lock lock(myMeter->mutex);
        for (qsizetype before = -1; before != myMeter->taken && myMeter->taken < theSize;) {
            before = myMeter->taken;
            myMeter->change.wait_for(lock, 500ms, [&] { return myMeter->taken >= theSize; });
        }
        return myMeter->taken;
    }

private:
    struct Meter
    {
        std::mutex mutex;
        std::condition_variable change;
        qsizetype taken = 0;
    };

    class Channel final : public VXPeerChannel
    {
        Q_DISABLE_COPY_MOVE(Channel)

    public:
        Channel(int theDescriptor, std::shared_ptr<Meter> theMeter)
            : myChannel(VXPeerChannel::plain(theDescriptor))
            , myMeter(std::move(theMeter))
        {
        }
        ~Channel() override = default;

        Outcome read(QByteArray& theBuffer, std::chrono::milliseconds theTime) override
        {
            return myChannel->read(theBuffer, theTime);
        }
        bool write(const QByteArray& theBytes) override
        {
            constexpr qsizetype piece = 65536;
            for (qsizetype done = 0; done < theBytes.size(); done += piece) {
                if (!myChannel->write(theBytes.mid(done, piece)))
                    return false;
                const std::lock_guard lock(myMeter->mutex);
                myMeter->taken += qMin(piece, theBytes.size() - done);
                myMeter->change.notify_all();
            }
            return true;
        }
        void close() override { myChannel->close(); }
        void reset() override { myChannel->reset(); }

    private:
        const std::unique_ptr<VXPeerChannel> myChannel;
        const std::shared_ptr<Meter> myMeter;
    };

    explicit MeteredPeer(const std::shared_ptr<Meter>& theMeter)
        : VXRawPeer([theMeter](int theDescriptor) -> std::unique_ptr<VXPeerChannel> {
            return std::make_unique<Channel>(theDescriptor, theMeter);
        })
        , myMeter(theMeter)
    {
    }

    const std::shared_ptr<Meter> myMeter;
};

Outcome outcomeOf(const VXHttpOperation& theOperation, bool theIsSuccess)
{
    return {theIsSuccess, theOperation.errorStatus().errorCode(), theOperation.httpResponseCode()};
}

/// One kind of exchange, with what the server must see.
struct Exchange
{
    const char* name;
    Outcome (*run)(const QUrl& theUrl);
    const char* method;
    const char* contentType; // beginning; null = none
};

Outcome runPlain(const QUrl& theUrl, Operation theOperation)
{
    VXHttpOperation operation = VXHttpOperation::create(theUrl, theOperation);
    const bool isSent = operation.send();
    return outcomeOf(operation, isSent);
}

Outcome runPayload(const QUrl& theUrl, Operation theOperation)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, "payload", ContentOctetStream, theOperation);
    const bool isSent = operation.send();
    return outcomeOf(operation, isSent);
}

Outcome runForm(const QUrl& theUrl)
{
    QUrlQuery query;
    query.addQueryItem(u"q"_s, u"a b"_s);
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, query, QNetworkAccessManager::PostOperation);
    const QString text = operation.receiveString();
    return outcomeOf(operation, text == u"{\"answer\": 42}");
}

Outcome runJson(const QUrl& theUrl)
{
    VXHttpOperation operation = VXHttpOperation::create(
        theUrl, QJsonObject{{u"a"_s, 1}}, QNetworkAccessManager::PostOperation, ContentJson);
    const QJsonObject object = operation.receiveJsonObject();
    return outcomeOf(operation, object.value(u"answer"_s).toInt() == 42);
}

Outcome runXml(const QUrl& theUrl)
{
    QUrl url = theUrl;
    url.setPath(u"/xml"_s);
    VXHttpOperation operation =
        VXHttpOperation::create(url, "<order/>", ContentXml, QNetworkAccessManager::PutOperation);
    const QDomDocument document = operation.receiveXml();
    return outcomeOf(operation, document.documentElement().tagName() == u"answer"_s);
}

Outcome runMultiPart(const QUrl& theUrl, Operation theOperation)
{
    VXHttpOperation operation = VXHttpOperation::create(theUrl, theOperation);
    operation.createMultiPart("data", u"photo"_s, u"a.jpg"_s, u"image/jpeg"_s, {});
    const bool isSent = operation.send();
    return outcomeOf(operation, isSent);
}

Outcome runDownload(const QUrl& theUrl)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"download"_s);
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    const bool isWritten = operation.downloadToFile(QFileInfo(path));
    QFile file(path);
    return outcomeOf(operation, isWritten && file.open(QIODevice::ReadOnly) &&
                                    file.readAll() == "{\"answer\": 42}");
}

Outcome runTemporaryDownload(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    const std::unique_ptr<QTemporaryFile> file(operation.downloadToTemporaryFile());
    return outcomeOf(operation, file && file->open() && file->readAll() == "{\"answer\": 42}");
}

constexpr std::array exchanges{
    Exchange{
        "HEAD",
        [](const QUrl& theUrl) { return runPlain(theUrl, QNetworkAccessManager::HeadOperation); },
        "HEAD", nullptr},
    Exchange{
        "GET",
        [](const QUrl& theUrl) { return runPlain(theUrl, QNetworkAccessManager::GetOperation); },
        "GET", nullptr},
    Exchange{
        "POST",
        [](const QUrl& theUrl) { return runPayload(theUrl, QNetworkAccessManager::PostOperation); },
        "POST", "application/octet-stream"},
    Exchange{
        "PUT",
        [](const QUrl& theUrl) { return runPayload(theUrl, QNetworkAccessManager::PutOperation); },
        "PUT", "application/octet-stream"},
    Exchange{
        "DELETE",
        [](const QUrl& theUrl) { return runPlain(theUrl, QNetworkAccessManager::DeleteOperation); },
        "DELETE", nullptr},
    Exchange{"DELETE with a body",
             [](const QUrl& theUrl) {
                 return runPayload(theUrl, QNetworkAccessManager::DeleteOperation);
             },
             "DELETE", "application/octet-stream"},
    Exchange{"form", &runForm, "POST", "application/x-www-form-urlencoded"},
    Exchange{"JSON", &runJson, "POST", "application/json"},
    Exchange{"XML", &runXml, "PUT", "text/xml"},
    Exchange{"multipart POST",
             [](const QUrl& theUrl) {
                 return runMultiPart(theUrl, QNetworkAccessManager::PostOperation);
             },
             "POST", "multipart/form-data; boundary="},
    Exchange{"multipart PUT",
             [](const QUrl& theUrl) {
                 return runMultiPart(theUrl, QNetworkAccessManager::PutOperation);
             },
             "PUT", "multipart/form-data; boundary="},
    Exchange{"download to a file", &runDownload, "GET", nullptr},
    Exchange{"download to a temporary file", &runTemporaryDownload, "GET", nullptr},
};

VXRawAnswer answerTo(const VXRawRequest& theRequest)
{
    if (theRequest.method() == "HEAD")
        return VXRawAnswer::http(200, {}, {"Content-Length: 14"});
    if (theRequest.target().endsWith("/xml"))
        return VXRawAnswer::http(200, "<answer/>");
    return VXRawAnswer::http(200, "{\"answer\": 42}");
}

/// Asks for a name and a password in the named way until both come.
VXRawAnswer guardedAnswerTo(const VXRawRequest& theRequest, bool theIsProxy)
{
    const QByteArray wanted = theIsProxy ? "Proxy-Authorization" : "Authorization";
    if (theRequest.header(wanted) == "Basic " + QByteArray("me:secret").toBase64())
        return answerTo(theRequest);
    const QByteArray challenge = theIsProxy ? "Proxy-Authenticate" : "WWW-Authenticate";
    return VXRawAnswer::http(theIsProxy ? 407 : 401, {}, {challenge + ": Basic realm=\"here\""});
}

/// A part of a multipart body.
struct Part
{
    QByteArray head;
    QByteArray body;
};

QList<Part> partsOf(const VXRawRequest& theRequest)
{
    const QByteArray type = theRequest.header("Content-Type");
    QByteArray boundary = type.mid(type.indexOf("boundary=") + 9);
    if (boundary.startsWith('"'))
        boundary = boundary.mid(1, boundary.size() - 2);
    const QByteArray separator = "--" + boundary;
    QList<Part> parts;
    for (qsizetype at = theRequest.body.indexOf(separator); at >= 0;) {
        const qsizetype begin = at + separator.size() + 2; // CR LF, or "--" after the last
        at = theRequest.body.indexOf(separator, begin);
        if (at < 0)
            break;
        const QByteArray part = theRequest.body.mid(begin, at - begin - 2);
        const qsizetype empty = part.indexOf("\r\n\r\n");
        parts.append({part.left(empty), part.mid(empty + 4)});
    }
    return parts;
}

/// Collects the platform's file notices.
class RecordingPlatform : public VXPlatformIndependent
{
public:
    void fileWriteFailed(const QFileInfo& theFile) override
    {
        failedPaths.append(theFile.absoluteFilePath());
        failedSizes.append(theFile.size());
    }
    QString mapTileHostFragment() const override
    {
        if (onStart)
            onStart();
        return mapTileFragment;
    }

    std::function<void()> onStart; // called while a request starts
    QString mapTileFragment;
    QStringList failedPaths;
    QList<qint64> failedSizes; // as the notice says
};

/// Notes the longest time that a timer of this thread has left, while events run.
class LongestTimer
{
    Q_DISABLE_COPY_MOVE(LongestTimer)

public:
    LongestTimer()
    {
        QObject::connect(&myWatcher, &QTimer::timeout, &myWatcher, [this] { look(); });
        myWatcher.start(0);
    }

    [[nodiscard]] qint64 milliseconds() const { return myLongest; }

private:
    void look()
    {
        auto* const dispatcher = QAbstractEventDispatcher::instance();
        for (int id = 1; id < 200; ++id)
            myLongest = qMax<qint64>(myLongest, dispatcher->remainingTime(id));
    }

    QTimer myWatcher;
    qint64 myLongest = 0;
};

VXHttpOperation get(const QUrl& theUrl)
{
    return VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
}

/// The records of the request log, without anything else.
QStringList recordsOf(const VXLogCapture& theLog)
{
    QStringList records;
    static const QRegularExpression record(u"TOV NETREQUEST.*"_s);
    for (const QString& text : theLog.textsWith(u"TOV NETREQUEST"_s))
        records.append(record.match(text).captured());
    return records;
}

QByteArray httpDate(const QDateTime& theTime, const QByteArray& theZone = "GMT")
{
    return QLocale::c().toString(theTime.toUTC(), u"ddd, dd MMM yyyy HH:mm:ss "_s).toLatin1() +
           theZone;
}

} // namespace

class tst_VXHttpOperation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void everyExchangeWorksInEveryThreadWithEveryQuestion_data();
    void everyExchangeWorksInEveryThreadWithEveryQuestion();

    // the edge cases
    void answerWithoutDateWritesNoRecord();
    void serverClockBehindGivesPositiveOffset();
    void emptyAnswerWith204IsASuccessOfNoBytes();
    void jsonErrorBodyIsReturnedOnRequestOnly();
    void queryIsSentAsForm();
    void temporaryDownloadWaitsAnHour();
    void exchangeWaitsTwoMinutesUnlessToldOtherwise();

    void recordIsOneLineOfFixedForm();
    void dateIsReadInEveryZone_data();
    void dateIsReadInEveryZone();
    void failureIsLoggedInFixedOrder();
    void debugOutputShowsTheRequestIdOnly();
    void answerIsLoggedAsTheDebugStreamShowsIt_data();
    void answerIsLoggedAsTheDebugStreamShowsIt();
    void passwordsAreMaskedInTheFailureBlock();
    void messagesShowWhereTheRequestGoes_data();
    void messagesShowWhereTheRequestGoes();

    void brokenPeerGivesItsCode_data();
    void brokenPeerGivesItsCode();
    void announcedLengthIsNoErrorWithoutABody_data();
    void announcedLengthIsNoErrorWithoutABody();
    void compressedAnswerIsInflated();
    void bodyBeyondTheBufferArrives_data();
    void bodyBeyondTheBufferArrives();
    void busyReceiverHoldsTheServerUp();
    void redirectWithALargeBodyIsFollowed();
    void redirectToTlsIsFollowed();
    void httpStatusGivesItsCode_data();
    void httpStatusGivesItsCode();
    void timeoutEndsAsCanceled();
    void abortFromAnotherThreadEndsTheRequest();
    void abortDuringTheStartIsNotLost_data();
    void abortDuringTheStartIsNotLost();
    void quitDuringTheWaitIsNoSuccess();
    void redirectIsFollowed();
    void unsupportedOperationIsNoReply();

    void jsonPayloadIsIndented();
    void headersAreSent();
    void brokenJsonIsAnError();
    void brokenXmlIsAnErrorAndNull();
    void xmlThatIsNestedTooDeepIsAnErrorAndNull();
    void downloadGoesIntoTheFile();
    void downloadThatCannotBeWritten_data();
    void downloadThatCannotBeWritten();
    void noticeOfAFailureKnowsTheFile();
    void failedTemporaryDownloadWarns();
    void multiPartFieldsComeInOrderOfNames();
    void multiPartFileIsSentAndClosed();
    void multiPartHeaderInjectionIsDropped();
    void missingUploadFileIsRefused();
    void multiPartWithGetIsNoReply();
    void progressReachesItsReceiver_data();
    void progressReachesItsReceiver();
    void receiverThatIsGoneGetsNoProgress();
    void copyHasEverythingButTheMultiPart();
    void copyIsAsOldAsTheOriginal();
    void describeErrorHasMessageAndDetails();
    void executingAgainOverwritesTheOutcome();

private:
    std::unique_ptr<VXTestCertificates> myCertificates;
    RecordingPlatform* myPlatform = nullptr; // the singleton's
};

void tst_VXHttpOperation::initTestCase()
{
    auto platform = std::make_unique<RecordingPlatform>();
    myPlatform = platform.get();
    std::ignore = VXSingleton<VXPlatformIndependent>::setInstance(std::move(platform));
    myCertificates = std::make_unique<VXTestCertificates>();
}

void tst_VXHttpOperation::cleanup()
{
    // Progress notices of an ended request may still be on the way.
    QCoreApplication::processEvents();
    VXNetworkAccessManager::threadInstance()->setProxy(QNetworkProxy());
}

void tst_VXHttpOperation::everyExchangeWorksInEveryThreadWithEveryQuestion_data()
{
    QTest::addColumn<int>("exchange");
    QTest::addColumn<VXWhere>("where");
    QTest::addColumn<Question>("question");

    const std::array wheres{std::pair{VXWhere::ApplicationThread, "GUI thread"},
                            std::pair{VXWhere::Worker, "worker"}};
    const std::array questions{std::pair{Question::None, "no question"},
                               std::pair{Question::Server, "password"},
                               std::pair{Question::Proxy, "proxy password"},
                               std::pair{Question::Certificate, "certificate"}};
    for (size_t i = 0; i < exchanges.size(); ++i) {
        for (const auto& [where, whereName] : wheres) {
            for (const auto& [question, questionName] : questions) {
                QTest::addRow("%s, %s, %s", exchanges.at(i).name, whereName, questionName)
                    << static_cast<int>(i) << where << question;
            }
        }
    }
}

void tst_VXHttpOperation::everyExchangeWorksInEveryThreadWithEveryQuestion()
{
    QFETCH(int, exchange);
    QFETCH(VXWhere, where);
    QFETCH(Question, question);
    const Exchange& kind = exchanges.at(static_cast<size_t>(exchange));

    std::unique_ptr<VXRawPeer> peer;
    if (question == Question::Certificate)
        peer = std::make_unique<VXTlsPeer>(myCertificates->selfSigned());
    else
        peer = std::make_unique<VXRawPeer>();
    if (question == Question::Server || question == Question::Proxy)
        peer->setHandler([question](const VXRawRequest& theRequest) {
            return guardedAnswerTo(theRequest, question == Question::Proxy);
        });
    else
        peer->setHandler(&answerTo);
    // Qt asks a proxy only for names that are not local; this proxy answers itself.
    const QUrl url =
        question == Question::Proxy ? QUrl(u"http://service.test/x"_s) : peer->url(u"/x"_s);

    QObject answerer;
    int asked = 0;
    const auto login = [&](QAuthenticator* theAuthenticator) {
        ++asked;
        theAuthenticator->setUser(u"me"_s);
        theAuthenticator->setPassword(u"secret"_s);
    };
    auto* const relay = VXNetworkAccessManagerSignalDispatcher::instance();
    connect(relay, &VXNetworkAccessManagerSignalDispatcher::authenticationRequired, &answerer,
            [&](const QUrl&, QAuthenticator* theAuthenticator) { login(theAuthenticator); });
    connect(relay, &VXNetworkAccessManagerSignalDispatcher::proxyAuthenticationRequired, &answerer,
            [&](const QUrl&, QAuthenticator* theAuthenticator) { login(theAuthenticator); });
    connect(relay, &VXNetworkAccessManagerSignalDispatcher::askIgnoreSSLErrors, &answerer,
            [&](const QString&, const QStringList&, bool* theResult) {
                ++asked;
                *theResult = true;
            });

    const quint16 port = peer->port();
    const Outcome outcome = vxRun(where, [&] {
        if (question == Question::Proxy)
            VXNetworkAccessManager::threadInstance()->setProxy(
                QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, port));
        const Outcome result = kind.run(url);
        if (where == VXWhere::Worker)
            VXNetworkAccessManager::releaseThreadInstance();
        return result;
    });

    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.http, 200);
    QVERIFY(outcome.isSuccess);
    QCOMPARE(asked, question == Question::None ? 0 : 1);
    const bool isAskedTwice = question == Question::Server || question == Question::Proxy;
    QCOMPARE(peer->requests().size(), isAskedTwice ? 2 : 1);
    const VXRawRequest request = peer->requests().constLast();
    QCOMPARE(request.method(), QByteArray(kind.method));
    QVERIFY(request.header("Content-Type").startsWith(kind.contentType));
    QCOMPARE(request.header("Content-Type").isEmpty(), kind.contentType == nullptr);
}

void tst_VXHttpOperation::answerWithoutDateWritesNoRecord()
{
    VXRawPeer peer;
    const VXLogCapture log;
    QVERIFY(get(peer.url()).send());
    QCOMPARE(recordsOf(log), QStringList());
}

void tst_VXHttpOperation::serverClockBehindGivesPositiveOffset()
{
    // The header has whole seconds, so that it tells the date itself, not the clock's time.
    QDateTime date;
    QDateTime sent;
    VXRawPeer peer;
    peer.setHandler([&date, &sent](const VXRawRequest&) {
        sent = QDateTime::currentDateTimeUtc();
        date = QDateTime::fromSecsSinceEpoch(sent.addMSecs(-1500).toSecsSinceEpoch(), Qt::UTC);
        return VXRawAnswer::http(200, "abc", {"Date: " + httpDate(date)});
    });
    const VXLogCapture log;
    const qsizetype before = VXLogger::instance()->offSetTimes().size();
    QVERIFY(get(peer.url()).send());

    QCOMPARE(recordsOf(log).size(), 1);
    static const QRegularExpression offset(u"OFFBYMS:(-?\\d+) "_s);
    const int milliseconds = offset.match(recordsOf(log).constFirst()).captured(1).toInt();
    QVERIFY(date.msecsTo(sent) >= 1500 && date.msecsTo(sent) < 2500);
    QVERIFY2(milliseconds >= date.msecsTo(sent), qPrintable(recordsOf(log).constFirst()));
    QVERIFY2(milliseconds <= date.msecsTo(QDateTime::currentDateTimeUtc()),
             qPrintable(recordsOf(log).constFirst()));
    QCOMPARE(VXLogger::instance()->offSetTimes().size(), before + 1);
    QCOMPARE(VXLogger::instance()->offSetTimes().constLast(), milliseconds);
}

void tst_VXHttpOperation::emptyAnswerWith204IsASuccessOfNoBytes()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(204, {}, {"Date: " + httpDate(QDateTime::currentDateTime())}));
    const VXLogCapture log;
    VXHttpOperation operation = get(peer.url());
    QCOMPARE(operation.exec(), QByteArray());
    QVERIFY(!operation.errorOccurred());
    QCOMPARE(operation.httpResponseCode(), 204);
    QCOMPARE(recordsOf(log).size(), 1);
    QVERIFY(recordsOf(log).constFirst().contains(u" BYTES:0  DURATIONMS:"_s));
}

void tst_VXHttpOperation::jsonErrorBodyIsReturnedOnRequestOnly()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404, "{\"resultCode\": 7}"));

    VXHttpOperation withBody = get(peer.url());
    QCOMPARE(withBody.receiveJsonDocumentWithErrorBody().object().value(u"resultCode"_s).toInt(),
             7);
    QCOMPARE(static_cast<int>(withBody.errorStatus().errorCode()), 3703);
    QCOMPARE(withBody.httpResponseCode(), 404);
    QCOMPARE(withBody.receiveJsonObjectWithErrorBody().value(u"resultCode"_s).toInt(), 7);

    VXHttpOperation without = get(peer.url());
    QVERIFY(without.receiveJsonDocument().isNull());
    QCOMPARE(static_cast<int>(without.errorStatus().errorCode()), 3703);
    QVERIFY(without.receiveJsonObject().isEmpty());
}

void tst_VXHttpOperation::queryIsSentAsForm()
{
    VXRawPeer peer;
    QUrlQuery query;
    query.addQueryItem(u"name"_s, u"a b\u00e4&=+"_s);
    query.addQueryItem(u"x"_s, u"1"_s);
    QVERIFY(
        VXHttpOperation::create(peer.url(), query, QNetworkAccessManager::PostOperation).send());
    const VXRawRequest request = peer.requests().constLast();
    QCOMPARE(request.header("Content-Type"), "application/x-www-form-urlencoded"_ba);
    QCOMPARE(request.body, query.toString(QUrl::FullyEncoded).toUtf8());
    QVERIFY(request.body.startsWith("name=a%20b%C3%A4"));
    QVERIFY(request.body.endsWith("&x=1"));
}

void tst_VXHttpOperation::temporaryDownloadWaitsAnHour()
{
    // What the waiting thread's timers say is the proof: one of an hour runs during the request.
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "content"));
    const LongestTimer timer;
    const std::unique_ptr<QTemporaryFile> file(
        VXHttpOperation::downloadToTemporaryFile(peer.url()));
    QVERIFY(file);
    const qint64 longest = timer.milliseconds();
    QVERIFY2(longest > 3'590'000 && longest <= 3'600'000, qPrintable(QString::number(longest)));
    QVERIFY(file->fileName().startsWith(QDir::tempPath() + u"/TOV_TEMPORARY_DOWNLOAD"_s));
    QVERIFY(!file->isOpen());
}

void tst_VXHttpOperation::exchangeWaitsTwoMinutesUnlessToldOtherwise()
{
    VXRawPeer peer;
    const LongestTimer timer;
    QVERIFY(get(peer.url()).send());
    const qint64 longest = timer.milliseconds();
    QVERIFY2(longest > 110'000 && longest <= 120'000, qPrintable(QString::number(longest)));
}

void tst_VXHttpOperation::recordIsOneLineOfFixedForm()
{
    VXRawPeer peer;
    const QDateTime before = QDateTime::currentDateTime();
    peer.setAnswer(VXRawAnswer::http(200, "12345", {"Date: " + httpDate(before)}));
    const VXLogCapture log;
    const QUrl url = peer.url(u"/p?q=a%2Bb%251"_s);
    QVERIFY(get(url).send());

    QCOMPARE(recordsOf(log).size(), 1);
    const QRegularExpression form(
        u"^TOV NETREQUEST OFFBYMS:(-?\\d+) BYTES:5  DURATIONMS:(\\d+) URL:%1 SERVEREPOCH:(\\d+)$"_s
            .arg(QRegularExpression::escape(url.toString())));
    const QRegularExpressionMatch match = form.match(recordsOf(log).constFirst());
    QVERIFY2(match.hasMatch(), qPrintable(recordsOf(log).constFirst()));
    QVERIFY(match.captured(2).toInt() <= before.msecsTo(QDateTime::currentDateTime()));
    const qint64 epoch = match.captured(3).toLongLong();
    QVERIFY(epoch >= before.toSecsSinceEpoch());
    QVERIFY(epoch <= QDateTime::currentSecsSinceEpoch());
}

void tst_VXHttpOperation::dateIsReadInEveryZone_data()
{
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<bool>("isRead");

    const QDateTime hourAgo = QDateTime::currentDateTimeUtc().addSecs(-3600);
    for (const char* zone : {"GMT", "UTC", "UT", "Z", "+0000"})
        QTest::newRow(zone) << httpDate(hourAgo, zone) << true;
    QTest::newRow("two hours east") << httpDate(hourAgo.addSecs(7200), "+0200") << true;
    QTest::newRow("no date") << "yesterday"_ba << false;
    QTest::newRow("GMT alone") << "GMT"_ba << false;
    QTest::newRow("month 13") << "Sat, 21 Foo 2026 06:18:03 GMT"_ba << false;
}

void tst_VXHttpOperation::dateIsReadInEveryZone()
{
    QFETCH(QByteArray, date);
    QFETCH(bool, isRead);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, {}, {"Date: " + date}));
    const VXLogCapture log;
    QVERIFY(get(peer.url()).send());
    QCOMPARE(recordsOf(log).size(), 1);
    static const QRegularExpression offset(u"OFFBYMS:(-?\\d+) "_s);
    const int milliseconds = offset.match(recordsOf(log).constFirst()).captured(1).toInt();
    if (isRead)
        QVERIFY2(milliseconds >= 3'600'000 && milliseconds < 3'660'000,
                 qPrintable(QString::number(milliseconds)));
    else
        QCOMPARE(milliseconds, 0);
}

void tst_VXHttpOperation::failureIsLoggedInFixedOrder()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(403, "no\n", {"Zel-Request-Id: s1"}));
    const VXLogCapture log;
    VXHttpOperation operation = VXHttpOperation::create(
        peer.url(u"/a"_s), "b=1", ContentFormUrlEncoded, QNetworkAccessManager::PutOperation);
    operation.setHeader(u"zel-request-id"_s, u"c1"_s);
    operation.setHeader(u"Secret"_s, u"hidden"_s);
    QVERIFY(!operation.send());

    const QString url = peer.url(u"/a"_s).toString();
    const QString reason = u"Error transferring %1 - server replied: Status"_s.arg(url);
    const QStringList expected{
        u" --  \"PUT\" : \"%1\""_s.arg(url),
        u" -- Request  \"%1\" failed with Qt Error Code: QNetworkReply::ContentAccessDenied"_s.arg(
            url),
        u" method: \"PUT\""_s,
        u" Header # elements: 2"_s,
        u" Header \"zel-request-id\" \"c1\""_s,
        u"Response Raw Header:"_s,
        u"\"Zel-Request-Id\" \"s1\""_s,
        u" url:  QUrl(\"%1\")"_s.arg(url),
        u" body: \"b=1\""_s,
        u" http: 403"_s,
        u" answer: \"no\\n\""_s,
        u" got:  \"%1\""_s.arg(reason),
    };
    QCOMPARE(log.texts().first(expected.size()), expected);
    QCOMPARE(recordsOf(log), QStringList{u"TOV NETREQUEST ERROR:%1 URL:%2"_s.arg(reason, url)});
    for (const VXLogCapture::Line& line : log.lines()) {
        const bool isDump = line.text.contains(u"eader"_s) || line.text.contains(u"s1"_s);
        if (!line.text.contains(u"TOV"_s))
            QCOMPARE(line.type, isDump ? QtDebugMsg : QtInfoMsg);
    }
}

void tst_VXHttpOperation::debugOutputShowsTheRequestIdOnly()
{
    const VXHttpOperation operation = get(QUrl());
    QVERIFY(operation.isKnownHeader(u"zel-request-id"_s));
    QVERIFY(operation.isKnownHeader(u"ZEL-Request-ID"_s));
    QVERIFY(!operation.isKnownHeader(u"Authorization"_s));
    QVERIFY(!operation.isKnownHeader(u"zel-request-id "_s));
    QVERIFY(!operation.isKnownHeader(QString()));
}

void tst_VXHttpOperation::answerIsLoggedAsTheDebugStreamShowsIt_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("shown"); // empty: whatever the stream makes of it

    QTest::newRow("nothing") << QByteArray() << u"\"\""_s;
    QTest::newRow("plain") << QByteArray("<p>~ 1</p>") << u"\"<p>~ 1</p>\""_s;
    QTest::newRow("quotation marks") << QByteArray(R"({"a":"\\"})") << uR"("{\"a\":\"\\\\\"}")"_s;
    QTest::newRow("line ends") << QByteArray("a\r\n\tb\n") << uR"("a\r\n\tb\n")"_s;
    QTest::newRow("umlaut") << QByteArray("\xc3\xa4") << uR"("\xC3\xA4")"_s;
    QTest::newRow("NUL before a digit") << QByteArray("x\0001", 3) << QString();
    QByteArray every;
    for (int byte = 0; byte < 256; ++byte)
        every.append(static_cast<char>(byte));
    QTest::newRow("every byte") << every << QString();
}

void tst_VXHttpOperation::answerIsLoggedAsTheDebugStreamShowsIt()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, shown);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404, body));
    const VXLogCapture log;
    QVERIFY(!get(peer.url()).send());

    QString streamed;
    QDebug(&streamed).nospace() << body;
    QVERIFY(log.texts().contains(u" answer: "_s + streamed));
    if (!shown.isEmpty())
        QCOMPARE(streamed, shown);
}

void tst_VXHttpOperation::passwordsAreMaskedInTheFailureBlock()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(403));
    const VXLogCapture log;
    QVERIFY(!VXHttpOperation::create(peer.url(), "user=me&password=geheim", ContentFormUrlEncoded,
                                     QNetworkAccessManager::PostOperation)
                 .send());
    QCOMPARE(log.textsWith(u" body:"_s).size(), 1);
    QVERIFY(log.textsWith(u" body:"_s).constFirst().contains(u"user=me"_s));
    QCOMPARE(log.textsWith(u"geheim"_s), QStringList());
}

void tst_VXHttpOperation::messagesShowWhereTheRequestGoes_data()
{
    QTest::addColumn<QString>("user"); // before the host
    QTest::addColumn<QString>("tiles");
    QTest::addColumn<QString>("shownUser");
    QTest::addColumn<QString>("shownQuery");

    QTest::newRow("as asked for") << u""_s << u""_s << u""_s << u"x=%2541"_s;
    QTest::newRow("password") << u"me:geheim@"_s << u""_s << u"me@"_s << u"x=%2541"_s;
    QTest::newRow("empty password") << u"me:@"_s << u""_s << u"me@"_s << u"x=%2541"_s;
    QTest::newRow("user") << u"me@"_s << u""_s << u"me@"_s << u"x=%2541"_s;
    QTest::newRow("map tile") << u""_s << u"7.0.0"_s << u""_s << u"x=A"_s;
}

void tst_VXHttpOperation::messagesShowWhereTheRequestGoes()
{
    QFETCH(QString, user);
    QFETCH(QString, tiles);
    QFETCH(QString, shownUser);
    QFETCH(QString, shownQuery);
    myPlatform->mapTileFragment = tiles;
    const auto restore = qScopeGuard([this] { myPlatform->mapTileFragment.clear(); });
    VXRawPeer peer;
    peer.setAnswer(
        VXRawAnswer::http(200, "hello", {"Date: " + httpDate(QDateTime::currentDateTime())}));
    const auto url = [&peer](const QString& theUser, const QString& theQuery) {
        return u"http://"_s + theUser + u"127.0.0.1:%1/p?"_s.arg(peer.port()) + theQuery;
    };
    const QString asked = url(user, u"x=%2541"_s);
    const QString shown = url(shownUser, shownQuery);
    const VXLogCapture log;
    QVERIFY(get(QUrl(asked)).send());
    QCOMPARE(log.texts(QtInfoMsg).first(2),
             (QStringList{u" --  \"GET\" : \"%1\""_s.arg(shown),
                          u" -- Request  \"%1\" complete"_s.arg(shown)}));
    QCOMPARE(recordsOf(log).size(), 1);
    QVERIFY2(recordsOf(log).constFirst().contains(u" URL:%1 SERVEREPOCH:"_s.arg(asked)),
             qPrintable(recordsOf(log).constFirst()));
}

void tst_VXHttpOperation::brokenPeerGivesItsCode_data()
{
    QTest::addColumn<VXRawAnswer>("answer");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("http");
    QTest::addColumn<QByteArray>("body");

    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n";
    QTest::newRow("reset at once") << VXRawAnswer().reset() << 3502 << 0 << ""_ba;
    QTest::newRow("closed at once") << VXRawAnswer().close() << 3502 << 0 << ""_ba;
    QTest::newRow("garbage") << VXRawAnswer().send("\x01\x02 no HTTP\r\n\r\n").close() << 3502 << 0
                             << ""_ba;
    QTest::newRow("head cut off") << VXRawAnswer().send("HTTP/1.1 200 OK\r\nCont").close() << 3502
                                  << 0 << ""_ba;
    QTest::newRow("body cut off") << VXRawAnswer().send(head + "half").close() << 3502 << 200
                                  << "half"_ba;
    QTest::newRow("body cut off by reset")
        << VXRawAnswer().send(head + "half").pause(200ms).reset() << 3502 << 200 << "half"_ba;
    QTest::newRow("body cut off after a while")
        << VXRawAnswer().send(head + "half").pause(200ms).close() << 3502 << 200 << "half"_ba;
    QTest::newRow("length without any body")
        << VXRawAnswer().send(head).pause(200ms).close() << 3502 << 200 << ""_ba;
    QTest::newRow("stalled body") << VXRawAnswer().send(head + "half").stall() << 3505 << 200
                                  << ""_ba;
    QTest::newRow("silence") << VXRawAnswer().stall() << 3505 << 0 << ""_ba;
}

void tst_VXHttpOperation::brokenPeerGivesItsCode()
{
    QFETCH(VXRawAnswer, answer);
    QFETCH(int, code);
    QFETCH(int, http);
    QFETCH(QByteArray, body);

    VXRawPeer peer;
    peer.setAnswer(answer);
    const VXLogCapture log;
    VXHttpOperation operation = get(peer.url());
    operation.setTimeout(code == 3505 ? (http == 200 ? 4 : 1) : 30); // 200 has to come in time
    QCOMPARE(operation.exec(), body);
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), code);
    QCOMPARE(operation.httpResponseCode(), http);
    QCOMPARE(recordsOf(log).size(), 1);
    QVERIFY(recordsOf(log).constFirst().startsWith(u"TOV NETREQUEST ERROR:"_s));
    QCOMPARE(log.textsWith(u"QIODevice"_s), QStringList()); // no read of a closed reply
}

void tst_VXHttpOperation::announcedLengthIsNoErrorWithoutABody_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("status");
    QTest::newRow("HEAD") << Operation::HeadOperation << 200;
    QTest::newRow("204") << Operation::GetOperation << 204;
    QTest::newRow("304") << Operation::GetOperation << 304;
}

void tst_VXHttpOperation::announcedLengthIsNoErrorWithoutABody()
{
    QFETCH(Operation, operation);
    QFETCH(int, status);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(status, {}, {"Content-Length: 100"}));
    VXHttpOperation exchange = VXHttpOperation::create(peer.url(), operation);
    QVERIFY(exchange.send());
    QCOMPARE(exchange.httpResponseCode(), status);
}

void tst_VXHttpOperation::compressedAnswerIsInflated()
{
    // gzip of "hello hello hello"
    const QByteArray packed =
        QByteArray::fromHex("1f8b0800000000000203cb48cdc9c957c84090008088f9e511000000");
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, packed, {"Content-Encoding: gzip"}));
    VXHttpOperation inflated = get(peer.url());
    QCOMPARE(inflated.exec(), "hello hello hello"_ba);
    QVERIFY(!inflated.errorOccurred());

    VXHttpOperation asIs = get(peer.url());
    asIs.setHeader(u"Accept-Encoding"_s, u"gzip"_s); // then Qt leaves it to the caller
    QCOMPARE(asIs.exec(), packed);
    QVERIFY(!asIs.errorOccurred());
}

namespace {

/// Three MiB, which is more than is buffered, and hardly compressible.
QByteArray largeBody()
{
    QByteArray body(3 * 1024 * 1024, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : body)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return body;
}

QByteArray deflated(const QByteArray& theData)
{
    return qCompress(theData).sliced(4); // Qt puts the length before it
}

/// In chunks of 300,000 bytes (RFC 9112, 7.1).
QByteArray chunked(const QByteArray& theData)
{
    QByteArray chunks;
    for (qsizetype position = 0; position < theData.size(); position += 300'000) {
        const QByteArray part = theData.mid(position, 300'000);
        chunks += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
    }
    return chunks + "0\r\n\r\n";
}

VXRawAnswer rawAnswer(const QByteArray& theHead, const QByteArray& theRest)
{
    return VXRawAnswer().send("HTTP/1.1 " + theHead + "\r\n\r\n" + theRest);
}

} // namespace

void tst_VXHttpOperation::bodyBeyondTheBufferArrives_data()
{
    QTest::addColumn<VXRawAnswer>("answer");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<Operation>("operation");

    const auto row = [](const char* theName, const VXRawAnswer& theAnswer,
                        const QByteArray& theBody,
                        Operation theOperation = Operation::GetOperation) {
        QTest::newRow(theName) << theAnswer << theBody << theOperation;
    };
    const QByteArray large = largeBody();
    const QByteArray zeros(large.size(), 0);
    const QByteArray inChunks = "Transfer-Encoding: chunked";
    const QByteArray packed = "Content-Encoding: deflate";

    row("with its length", VXRawAnswer::http(200, large), large);
    row("POST", VXRawAnswer::http(200, large), large, Operation::PostOperation);
    row("DELETE", VXRawAnswer::http(200, large), large, Operation::DeleteOperation);
    row("without a length", rawAnswer("200 OK", large).close(), large);
    row("chunks", rawAnswer("200 OK\r\n" + inChunks, chunked(large)), large);
    row("chunks beside a short length",
        rawAnswer("200 OK\r\nContent-Length: 100\r\n" + inChunks, chunked(large)), large);
    row("compressed", VXRawAnswer::http(200, deflated(large), {packed}), large);
    row("compressed chunks",
        rawAnswer("200 OK\r\n" + packed + "\r\n" + inChunks, chunked(deflated(large))), large);
    row("grows by 1000", VXRawAnswer::http(200, deflated(zeros), {packed}), zeros);
    row("404", VXRawAnswer::http(404, large), large);
    const QByteArray kept = large.first(1024 * 1024); // of more Qt may lose the end
    row("401", VXRawAnswer::http(401, kept), kept);
}

void tst_VXHttpOperation::bodyBeyondTheBufferArrives()
{
    QFETCH(VXRawAnswer, answer);
    QFETCH(QByteArray, body);
    QFETCH(Operation, operation);
    VXRawPeer peer;
    peer.setAnswer(answer);
    VXHttpOperation exchange =
        VXHttpOperation::create(peer.url(), "x", ContentOctetStream, operation);
    exchange.setTimeout(20);
    QVERIFY(exchange.exec() == body); // no comparison that prints them
    QVERIFY(exchange.httpResponseCode() != 0);
}

void tst_VXHttpOperation::busyReceiverHoldsTheServerUp()
{
    const QByteArray body(64 * 1024 * 1024, 'x');
    MeteredPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, body));
    qsizetype taken = 0;
    const QObject context;
    // This thread does not get to the body for as long as the server gets rid of it.
    QTimer::singleShot(0, &context, [&] {
        if (peer.waitForRequests(1))
            taken = peer.waitForTaken(body.size());
    });
    VXHttpOperation operation = get(peer.url());
    operation.setTimeout(60);
    QVERIFY(operation.exec() == body);
    // Two MiB, and what the kernel's buffers hold.
    QVERIFY2(taken > 0 && taken < body.size() / 2, QByteArray::number(taken).constData());
}

void tst_VXHttpOperation::redirectWithALargeBodyIsFollowed()
{
    const QByteArray large = largeBody();
    VXRawPeer peer;
    peer.setHandler([&large](const VXRawRequest& theRequest) {
        return theRequest.target() == "/from" ? VXRawAnswer::http(302, large, {"Location: /to"})
                                              : VXRawAnswer::http(200, large);
    });
    VXHttpOperation operation = get(peer.url(u"/from"_s));
    operation.setTimeout(20);
    QVERIFY(operation.exec() == large);
    QCOMPARE(operation.httpResponseCode(), 200);
}

void tst_VXHttpOperation::redirectToTlsIsFollowed()
{
    const QByteArray large = largeBody();
    VXNetworkAccessManager::setValidateSslCertificate(false);
    const auto restore =
        qScopeGuard([] { VXNetworkAccessManager::setValidateSslCertificate(true); });
    // Each time a connection that is not encrypted yet when the limit of the first one is lifted.
    for (int i = 0; i < 5; ++i) {
        VXTlsPeer target(myCertificates->selfSigned());
        target.setAnswer(VXRawAnswer::http(200, large));
        VXRawPeer peer;
        peer.setAnswer(VXRawAnswer::http(302, large, {"Location: " + target.url().toEncoded()}));
        VXHttpOperation operation = get(peer.url());
        operation.setTimeout(20);
        QVERIFY(operation.exec() == large);
        QCOMPARE(operation.httpResponseCode(), 200);
    }
}

void tst_VXHttpOperation::httpStatusGivesItsCode_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("code");

    const std::array rows{
        std::pair{200, 0},    std::pair{300, 0},     std::pair{304, 0},    std::pair{400, 3802},
        std::pair{401, 3704}, std::pair{403, 3701},  std::pair{404, 3703}, std::pair{405, 3702},
        std::pair{407, 3605}, std::pair{409, 3706},  std::pair{410, 3707}, std::pair{418, 3802},
        std::pair{429, 3799}, std::pair{500, 3901},  std::pair{501, 3902}, std::pair{502, 10499},
        std::pair{503, 3903}, std::pair{504, 10499},
    };
    for (const auto& [status, code] : rows)
        QTest::addRow("%d", status) << status << code;
}

void tst_VXHttpOperation::httpStatusGivesItsCode()
{
    QFETCH(int, status);
    QFETCH(int, code);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(status, status == 304 ? ""_ba : "why"_ba));
    VXHttpOperation operation = get(peer.url());
    const QByteArray body = operation.exec();
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), code);
    QCOMPARE(operation.httpResponseCode(), status);
    // Qt reads no body with 407 of a server that is no proxy; all others keep theirs.
    if (status != 304 && status != 407)
        QCOMPARE(body, "why"_ba);
}

void tst_VXHttpOperation::timeoutEndsAsCanceled()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    const VXLogCapture log;
    QElapsedTimer clock;
    clock.start();
    VXHttpOperation operation = get(peer.url());
    operation.setTimeout(1);
    QVERIFY(!operation.send());
    QVERIFY2(clock.elapsed() >= 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 3505);
    QCOMPARE(
        log.textsWith(u"TIMEOUT"_s),
        QStringList{u" -- Request  \"%1\"  aborted: TIMEOUT after 1"_s.arg(peer.url().toString())});
}

void tst_VXHttpOperation::abortFromAnotherThreadEndsTheRequest()
{
    VXRawPeer peer;
    VXHttpOperation operation = get(peer.url());
    peer.setHandler([&operation](const VXRawRequest&) {
        Q_EMIT operation.abort(); // in the peer's thread
        return VXRawAnswer().stall();
    });
    QVERIFY(!operation.send());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 3505);
}

void tst_VXHttpOperation::abortDuringTheStartIsNotLost_data()
{
    QTest::addColumn<bool>("isMultiPart");
    QTest::newRow("payload") << false;
    QTest::newRow("multipart") << true;
}

void tst_VXHttpOperation::abortDuringTheStartIsNotLost()
{
    QFETCH(bool, isMultiPart);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    VXHttpOperation operation =
        VXHttpOperation::create(peer.url(), QNetworkAccessManager::PostOperation);
    if (isMultiPart)
        operation.createMultiPart("d", u"n"_s, u"f"_s, {}, {});
    operation.setTimeout(20);
    myPlatform->onStart = [&operation] {
        std::thread([&operation] { Q_EMIT operation.abort(); }).join();
    };
    const VXLogCapture log;
    QVERIFY(!operation.send());
    myPlatform->onStart = nullptr;
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 3505);
    QCOMPARE(log.textsWith(u"TIMEOUT"_s), QStringList());
}

void tst_VXHttpOperation::quitDuringTheWaitIsNoSuccess()
{
    VXRawPeer peer;
    peer.setHandler([](const VXRawRequest&) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
        return VXRawAnswer().stall();
    });
    const VXLogCapture log;
    VXHttpOperation operation = get(peer.url());
    // Quitting ends the loops that run below exec().
    QTimer::singleShot(0, this, [&] { operation.send(); });
    QCoreApplication::exec();
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 3505);
    QCOMPARE(operation.httpResponseCode(), 0);
    QCOMPARE(log.textsWith(u"complete"_s), QStringList());
    QCOMPARE(log.textsWith(u"failed with Qt Error Code: "
                           "QNetworkReply::OperationCanceledError"_s)
                 .size(),
             1);
}

void tst_VXHttpOperation::redirectIsFollowed()
{
    VXRawPeer peer;
    peer.setHandler([](const VXRawRequest& theRequest) {
        return theRequest.target() == "/from" ? VXRawAnswer::http(302, {}, {"Location: /to"})
                                              : VXRawAnswer::http(200, "there");
    });
    VXHttpOperation operation = VXHttpOperation::create(
        peer.url(u"/from"_s), "x", ContentOctetStream, QNetworkAccessManager::PostOperation);
    QCOMPARE(operation.exec(), "there"_ba);
    QCOMPARE(operation.httpResponseCode(), 200);
    QCOMPARE(peer.requests().constLast().head.left(7), "GET /to"_ba);
}

void tst_VXHttpOperation::unsupportedOperationIsNoReply()
{
    const VXLogCapture log;
    VXHttpOperation operation = VXHttpOperation::create(QUrl(u"http://127.0.0.1:1/a"_s),
                                                        QNetworkAccessManager::CustomOperation);
    QCOMPARE(operation.exec(), QByteArray());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 1000000);
    QCOMPARE(operation.httpResponseCode(), 0);
    QCOMPARE(recordsOf(log),
             QStringList{u"TOV NETREQUEST ERROR:NoReply URL:http://127.0.0.1:1/a"_s});
}

void tst_VXHttpOperation::jsonPayloadIsIndented()
{
    VXRawPeer peer;
    const QJsonObject object{{u"a"_s, QJsonArray{1}}};
    QVERIFY(VXHttpOperation::create(peer.url(), object, QNetworkAccessManager::PostOperation,
                                    ContentJson)
                .send());
    QCOMPARE(peer.requests().constLast().body, "{\n    \"a\": [\n        1\n    ]\n}\n"_ba);
    QVERIFY(VXHttpOperation::create(peer.url(), QJsonDocument(object),
                                    QNetworkAccessManager::PutOperation, ContentNone)
                .send());
    QCOMPARE(peer.requests().constLast().body, peer.requests().constFirst().body);
    QCOMPARE(peer.requests().constLast().headerCount("Content-Type"), 0);
}

void tst_VXHttpOperation::headersAreSent()
{
    VXRawPeer peer;
    VXHttpOperation operation = get(peer.url());
    operation.setHeader(u"X-Gone"_s, u"1"_s);
    VXHttpParameter headers;
    headers.insert(u"X-Text"_s, u"\u00e4"_s);
    operation.setHeader(headers);
    operation.setAuthorization(u"Bearer token"_s);
    QVERIFY(operation.send());
    const VXRawRequest request = peer.requests().constLast();
    QCOMPARE(request.header("X-Text"), "\xc3\xa4"_ba);
    QCOMPARE(request.header("Authorization"), "Bearer token"_ba);
    QCOMPARE(request.headerCount("X-Gone"), 0);
}

void tst_VXHttpOperation::brokenJsonIsAnError()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "<html>"));
    VXHttpOperation operation = get(peer.url());
    QVERIFY(operation.receiveJsonDocument().isNull());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 5010);
    QCOMPARE(operation.errorStatus().errorText(), u"illegal value at offset 1"_s);
    QCOMPARE(operation.errorStatus().originator(), u"<html>"_s);
    QCOMPARE(operation.httpResponseCode(), 200);
}

void tst_VXHttpOperation::brokenXmlIsAnErrorAndNull()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "<a><b></a>"));
    VXHttpOperation operation = get(peer.url());
    QVERIFY(operation.receiveXml().isNull());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 5011);
    QCOMPARE(operation.errorStatus().errorText(),
             u"Opening and ending tag mismatch. at line 1, column 10"_s);
    QCOMPARE(operation.errorStatus().originator(), u"<a><b></a>"_s);

    peer.setAnswer(VXRawAnswer::http(404, "<a/>"));
    QVERIFY(operation.receiveXml().isNull());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 3703);
}

void tst_VXHttpOperation::xmlThatIsNestedTooDeepIsAnErrorAndNull()
{
    const QByteArray body = "<a>"_ba.repeated(100000) + "</a>"_ba.repeated(100000);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, body));
    VXHttpOperation operation = get(peer.url());
    QVERIFY(operation.receiveXml().isNull());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 5011);
    QCOMPARE(operation.errorStatus().errorText(),
             u"elements nested too deep at line 1, column 771"_s);
}

void tst_VXHttpOperation::downloadGoesIntoTheFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"old"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("much longer than what follows");
    file.close();

    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, "new"));
    QVERIFY(get(peer.url()).downloadToFile(QFileInfo(file.fileName())));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "new"_ba);

    peer.setAnswer(VXRawAnswer::http(500, "error page"));
    QVERIFY(!get(peer.url()).downloadToFile(QFileInfo(file.fileName())));
    file.seek(0);
    QCOMPARE(file.readAll(), "new"_ba);
}

void tst_VXHttpOperation::downloadThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("code");

    QTest::newRow("folder missing") << u"missing/file"_s << "x"_ba << 2000;
    QTest::newRow("name too long") << QString(300, u'n') << "x"_ba << 2002;
    QTest::newRow("device full") << u"/dev/full"_s << QByteArray(100000, 'x') << 2001;
    QTest::newRow("device full, few bytes") << u"/dev/full"_s << "x"_ba << 2001;
    QTest::newRow("nothing to write") << u"empty"_s << ""_ba << 2001;
}

void tst_VXHttpOperation::downloadThatCannotBeWritten()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QFETCH(int, code);
    const QTemporaryDir folder;
    const QString full = QDir(folder.path()).absoluteFilePath(path);
    myPlatform->failedPaths.clear();

    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, body));
    const VXLogCapture log;
    VXHttpOperation operation = get(peer.url());
    QVERIFY(!operation.downloadToFile(QFileInfo(full)));
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), code);
    QCOMPARE(operation.errorStatus().originator(), full);
    QCOMPARE(myPlatform->failedPaths, QStringList{full});
    QCOMPARE(log.texts(QtWarningMsg).filter(full).size(), 1);
}

void tst_VXHttpOperation::noticeOfAFailureKnowsTheFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"emptied"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("old");
    file.close();
    const QFileInfo info(file.fileName());
    QCOMPARE(info.size(), 3); // remembered by the value
    myPlatform->failedSizes.clear();

    VXRawPeer peer; // answers without a body
    QVERIFY(!get(peer.url()).downloadToFile(info));
    QCOMPARE(myPlatform->failedSizes, QList<qint64>{0});
}

void tst_VXHttpOperation::failedTemporaryDownloadWarns()
{
    // Not the machine's: others download there at the same time, killed ones left files.
    const QTemporaryDir folder;
    const QByteArray usual = qgetenv("TMPDIR");
    qputenv("TMPDIR", folder.path().toLocal8Bit());
    const auto restore =
        qScopeGuard([&usual] { usual.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", usual); });

    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404));
    const VXLogCapture log;
    const QUrl url = peer.url(u"/a%20b"_s);
    QVERIFY(!VXHttpOperation::downloadToTemporaryFile(url));
    QCOMPARE(log.texts(QtWarningMsg).constLast(), u" file \"%1\" failed"_s.arg(url.toString()));
    QCOMPARE(QDir::tempPath(), folder.path());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList());
}

void tst_VXHttpOperation::multiPartFieldsComeInOrderOfNames()
{
    VXRawPeer peer;
    VXHttpParameter fields;
    fields.insert(u"z"_s, u"last"_s);
    fields.insert(u"a%1"_s, u"\u00e4"_s);
    VXHttpOperation operation =
        VXHttpOperation::create(peer.url(), QNetworkAccessManager::PostOperation);
    QVERIFY(
        operation.createMultiPart("\0\r\n-"_ba, u"ph%2oto"_s, u"a.jpg"_s, u"image/jpeg"_s, fields));
    QVERIFY(operation.send());

    const QList<Part> parts = partsOf(peer.requests().constLast());
    QCOMPARE(parts.size(), 3);
    QCOMPARE(parts.at(0).head, "Content-Disposition: form-data; name=\"a%1\""_ba);
    QCOMPARE(parts.at(0).body, "\xc3\xa4"_ba);
    QCOMPARE(parts.at(1).head, "Content-Disposition: form-data; name=\"z\""_ba);
    QCOMPARE(parts.at(1).body, "last"_ba);
    QCOMPARE(parts.at(2).head, "Content-Disposition: form-data; name=\"ph%2oto\"; "
                               "filename=\"a.jpg\"\r\nContent-Type: image/jpeg"_ba);
    QCOMPARE(parts.at(2).body, "\0\r\n-"_ba);

    // Sent once: the second exchange has the payload, which is empty.
    QVERIFY(operation.send());
    QCOMPARE(peer.requests().constLast().body, ""_ba);
}

void tst_VXHttpOperation::multiPartFileIsSentAndClosed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"photo one.bin"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray content(200'000, 'p');
    file.write(content);
    file.close();

    const auto openFiles = [] {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
    };
    VXRawPeer peer;
    QVERIFY(get(peer.url()).send()); // the connection exists from now on
    const qsizetype before = openFiles();
    VXHttpOperation operation =
        VXHttpOperation::create(peer.url(), QNetworkAccessManager::PutOperation);
    QVERIFY(operation.createMultiPart(VXUploadFile(u"image"_s, path, u"image/x-own"_s), {}));
    QCOMPARE(openFiles(), before + 1);
    QVERIFY(operation.send());
    QTRY_COMPARE(openFiles(), before);

    const QList<Part> parts = partsOf(peer.requests().constLast());
    QCOMPARE(parts.size(), 1);
    QCOMPARE(parts.at(0).head, "Content-Disposition: form-data; name=\"image\"; "
                               "filename=\"photo one.bin\"\r\nContent-Type: image/x-own"_ba);
    QCOMPARE(parts.at(0).body, content);
}

void tst_VXHttpOperation::multiPartHeaderInjectionIsDropped()
{
    VXRawPeer peer;
    VXHttpParameter fields;
    fields.insert(u"a\r\nX-Evil: 1"_s, u"v"_s);
    const VXLogCapture log;
    VXHttpOperation operation =
        VXHttpOperation::create(peer.url(), QNetworkAccessManager::PostOperation);
    QVERIFY(operation.createMultiPart("d", u"n"_s, u"f"_s, u"a/b\r\nX-Evil: 2"_s, fields));
    QCOMPARE(log.texts(QtWarningMsg).size(), 2);
    QVERIFY(operation.send());
    QVERIFY(!peer.requests().constLast().body.contains("X-Evil"));
    QVERIFY(operation.createMultiPart("d", u"n\nX-Evil: 3"_s, u"f"_s, {}, {}));
    QVERIFY(operation.send());
    QVERIFY(!peer.requests().constLast().body.contains("X-Evil"));
}

void tst_VXHttpOperation::missingUploadFileIsRefused()
{
    VXRawPeer peer;
    VXHttpOperation operation =
        VXHttpOperation::create(peer.url(), QNetworkAccessManager::PostOperation);
    QVERIFY(operation.createMultiPart("d", u"n"_s, u"f"_s, u"a/b"_s, {}));
    QVERIFY(!operation.createMultiPart(VXUploadFile(u"image"_s, u"/missing"_s, {}), {}));
    QVERIFY(operation.send()); // nothing is left of the one before
    QCOMPARE(peer.requests().constLast().body, ""_ba);
}

void tst_VXHttpOperation::multiPartWithGetIsNoReply()
{
    VXHttpOperation operation = get(QUrl(u"http://127.0.0.1:1/"_s));
    QVERIFY(operation.createMultiPart("d", u"n"_s, u"f"_s, u"a/b"_s, {}));
    QVERIFY(!operation.send());
    QCOMPARE(static_cast<int>(operation.errorStatus().errorCode()), 1000000);
}

void tst_VXHttpOperation::progressReachesItsReceiver_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<qint64>("total");

    QTest::newRow("POST: upload") << Operation::PostOperation << 200'000LL;
    QTest::newRow("PUT: upload") << Operation::PutOperation << 200'000LL;
    QTest::newRow("GET: download") << Operation::GetOperation << 300'000LL;
    QTest::newRow("DELETE with a body: download") << Operation::DeleteOperation << 300'000LL;
}

void tst_VXHttpOperation::progressReachesItsReceiver()
{
    QFETCH(Operation, operation);
    QFETCH(qint64, total);
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(200, QByteArray(300'000, 'x')));
    const bool isGet = operation == QNetworkAccessManager::GetOperation;
    const QByteArray payload = isGet ? QByteArray() : QByteArray(200'000, 'y');
    VXProgressRecorder receiver;
    VXHttpOperation exchange =
        VXHttpOperation::create(peer.url(), payload, ContentOctetStream, operation);
    exchange.setProgressReceiver(&receiver, SLOT(note(qint64, qint64)));
    QVERIFY(exchange.send());
    QTRY_VERIFY(receiver.notices().contains(std::pair(total, total)));
}

void tst_VXHttpOperation::receiverThatIsGoneGetsNoProgress()
{
    VXRawPeer peer;
    VXHttpOperation operation = get(peer.url());
    {
        VXProgressRecorder receiver;
        operation.setProgressReceiver(&receiver, SLOT(note(qint64, qint64)));
    }
    const VXLogCapture log;
    QVERIFY(operation.send());
    QCOMPARE(log.texts(QtWarningMsg), QStringList());
}

void tst_VXHttpOperation::copyHasEverythingButTheMultiPart()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer::http(404));
    VXHttpOperation original = VXHttpOperation::create(peer.url(), "payload", ContentXml,
                                                       QNetworkAccessManager::PostOperation);
    original.setHeader(u"X-Kept"_s, u"1"_s);
    QVERIFY(!original.send());
    QVERIFY(original.createMultiPart("d", u"n"_s, u"f"_s, u"a/b"_s, {}));

    const QVariant variant = QVariant::fromValue(original);
    VXHttpOperation copy(*static_cast<const VXHttpOperation*>(variant.constData()));
    QCOMPARE(copy.httpResponseCode(), 404);
    QCOMPARE(static_cast<int>(copy.errorStatus().errorCode()), 3703);
    copy.send();
    QCOMPARE(peer.requests().constLast().body, "payload"_ba);
    QCOMPARE(peer.requests().constLast().header("X-Kept"), "1"_ba);
    QCOMPARE(peer.requests().constLast().header("Content-Type"), "text/xml"_ba);
    original.send();
    QVERIFY(peer.requests().constLast().header("Content-Type").startsWith("multipart/form-data"));
    QVERIFY(QMetaType::fromName("VXHttpOperation").isValid());
}

void tst_VXHttpOperation::copyIsAsOldAsTheOriginal()
{
    VXRawPeer peer;
    const QByteArray date = "Date: " + httpDate(QDateTime::currentDateTime());
    peer.setAnswers({VXRawAnswer().pause(300ms).send("HTTP/1.1 204 No\r\n\r\n"),
                     VXRawAnswer::http(200, "abc", {date})});
    VXHttpOperation original = get(peer.url());
    QVERIFY(original.send());
    VXHttpOperation copy(original);
    const VXLogCapture log;
    QVERIFY(copy.send());
    static const QRegularExpression duration(u"DURATIONMS:(\\d+) "_s);
    const QString record = recordsOf(log).value(0);
    QVERIFY2(duration.match(record).captured(1).toInt() >= 300, qPrintable(record));
}

void tst_VXHttpOperation::describeErrorHasMessageAndDetails()
{
    VXRawPeer peer;
    VXHttpOperation operation = get(peer.url());
    QVERIFY(operation.send());
    QCOMPARE(operation.describeError(), QString());
    peer.setAnswer(VXRawAnswer::http(404));
    QVERIFY(!operation.send());
    QCOMPARE(operation.describeError(),
             u"Der angeforderte Inhalt wurde nicht gefunden (ähnlich HTTP error 404).<br>\n"
             u"Fehlercode: 3703"_s);
}

void tst_VXHttpOperation::executingAgainOverwritesTheOutcome()
{
    VXRawPeer peer;
    peer.setAnswers({VXRawAnswer::http(500), VXRawAnswer::http(200, "fine")});
    VXHttpOperation operation = get(peer.url());
    QVERIFY(!operation.send());
    QCOMPARE(operation.receiveData(), "fine"_ba);
    QVERIFY(!operation.errorOccurred());
    QCOMPARE(operation.httpResponseCode(), 200);
    QCOMPARE(peer.requests().size(), 2);
}

VX_TEST_MAIN(QCoreApplication, tst_VXHttpOperation)

#include "tst_VXHttpOperation.moc"
