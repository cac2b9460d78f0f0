#include "VXFileContent.h"
#include "VXFolderContent.h"
#include "VXGapMeter.h"
#include "VXHoldings.h"
#include "VXLan.h"
#include "VXPhoneSocket.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto secretText = "nobody may read this";
constexpr int connectionCount = 1000;
constexpr int guessCount = 100000;
constexpr auto alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";
constexpr size_t alphabetSize = 39;

// Milliseconds. Far more than measured on an idle machine; a service that reads, looks up or
// writes something without end would be beyond it.
constexpr qint64 longestGap = 2000;

/// Runs theAttack as phone1 in a thread of its own; the GUI thread, where the service lives,
/// handles its events meanwhile.
template <typename Attack>
auto asPhone(Attack theAttack)
{
    decltype(theAttack()) result{};
    QEventLoop loop;
    std::thread attacker([&] {
        if (VXPhoneSocket::enterNetwork(1))
            result = theAttack();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    attacker.join();
    return result;
}

} // namespace

/// Attackers on the local network. Runs in a network namespace, where phone1 is theirs; each test
/// reports how long the GUI thread was kept busy at most.
class tst_upload_hostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aThousandConnectionsLeaveRoomForAPhone();
    void stalledBodiesLeaveRoomForAPhone();
    void noGuessOfTheTokenIsAdmitted();
    void noAddressReadsAnotherFile();
    void noFileNameLeavesTheFolder();
    void noCookieTrickIsAdmitted_data();
    void noCookieTrickIsAdmitted();
    void requestsSurviveTheServicesEnd();

private:
    QString path(const QString& theName) const { return myFolder->filePath(theName); }
    void startService();
    /// To the service of this test; any thread.
    VXPhoneSocket connection() const { return {myHost, myPort}; }
    /// Makes phone1 known; in its thread.
    void admit() const { connection().ask("/translations.json?" + myFirstToken); }
    void report(VXGapMeter& theMeter, const QString& theText) const;

    std::unique_ptr<QTemporaryDir> myFolder;
    std::unique_ptr<VXLocalUploadService> myService;
    // As they were when the service started; the attackers' threads read them.
    QByteArray myHost;
    std::atomic<quint16> myPort = 0;
    QByteArray myFirstToken;
};

void tst_upload_hostile::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {});
    // Both ends of the connections are in this process.
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = qMin<rlim_t>(limit.rlim_max, 4096);
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    QVERIFY(limit.rlim_cur > 2 * connectionCount + 100);
}

void tst_upload_hostile::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    VXFileContent::write(path(u"secret"_s), secretText);
    VXFileContent::write(path(u"assets/index.html"_s), "<h1>index</h1>");
    VXFileContent::write(path(u"assets/css/site.css"_s), "body{}");
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::QrUpload, path(u"assets"_s));
    startService();
    QVERIFY(myPort != 0);
}

void tst_upload_hostile::startService()
{
    myService = std::make_unique<VXLocalUploadService>(nullptr);
    myService->setTargetFolder(path(u"target"_s));
    myService->start();
    myHost = myService->url().host().toLatin1();
    myPort = static_cast<quint16>(myService->url().port());
    myFirstToken = myService->nextToken().toLatin1();
}

void tst_upload_hostile::cleanup()
{
    myService.reset();
}

void tst_upload_hostile::report(VXGapMeter& theMeter, const QString& theText) const
{
    const qint64 gap = theMeter.milliseconds();
    qInfo().noquote() << u"%1; longest gap of the GUI thread %2 ms"_s.arg(theText).arg(gap);
    QVERIFY(gap < longestGap);
}

void tst_upload_hostile::aThousandConnectionsLeaveRoomForAPhone()
{
    VXGapMeter meter;
    const qsizetype before = VXHoldings::now().descriptors;
    struct Outcome
    {
        int open = 0;
        int status = 0;
        qint64 answeredIn = 0;
    };
    const Outcome outcome = asPhone([this] {
        std::vector<VXPhoneSocket> crowd;
        Outcome seen;
        for (int number = 0; number < connectionCount; ++number) {
            crowd.push_back(connection());
            // Nothing, the beginning of a line, or a line without an end.
            const QByteArray begun = number % 3 == 0 ? "" : number % 3 == 1 ? "GET /" : "GET / HT";
            seen.open += crowd.back().isOpen() && crowd.back().send(begun);
        }
        QElapsedTimer timer;
        timer.start();
        admit();
        seen.status = VXPhoneSocket::status(connection().ask(
            "/upload?file=a.jpg", "Cookie: sid=" + myFirstToken + "\r\n", "photo"));
        seen.answeredIn = timer.elapsed();
        return seen;
    });
    QCOMPARE(outcome.open, connectionCount);
    QCOMPARE(outcome.status, 200);
    QCOMPARE(VXFolderContent::of(path(u"target"_s)).size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(VXHoldings::now().descriptors <= before + 8,
                             30000); // the resolver keeps some
    report(meter, u"1,000 connections, a phone served in %1 ms"_s.arg(outcome.answeredIn));
}

void tst_upload_hostile::stalledBodiesLeaveRoomForAPhone()
{
    VXGapMeter meter;
    QSignalSpy uploads(myService.get(), &VXLocalUploadService::filesUploaded);
    const int status = asPhone([this] {
        admit();
        std::vector<VXPhoneSocket> crowd;
        for (int number = 0; number < 200; ++number) {
            crowd.push_back(connection());
            crowd.back().send("POST /upload?file=stalled.jpg HTTP/1.1\r\nCookie: sid=" +
                              myFirstToken + "\r\nContent-Length: 1000000000\r\n\r\nfirst bytes");
        }
        return VXPhoneSocket::status(connection().ask(
            "/upload?file=b.jpg", "Cookie: sid=" + myFirstToken + "\r\n", "photo"));
    });
    QCOMPARE(status, 200);
    QCOMPARE(uploads.count(), 1); // who hangs up in the middle has sent nothing
    QCOMPARE(VXFolderContent::of(path(u"target"_s)).keys(),
             QStringList{path(u"target/b.qrul.jpg"_s)});
    report(meter, u"200 stalled bodies"_s);
}

void tst_upload_hostile::noGuessOfTheTokenIsAdmitted()
{
    VXGapMeter meter;
    QSignalSpy changes(myService.get(), &VXLocalUploadService::urlChanged);
    QElapsedTimer timer;
    timer.start();
    const int refused = asPhone([this] {
        VXPhoneSocket guesser = connection();
        int count = 0;
        quint32 state = 1;
        for (int sent = 0; sent < guessCount;) {
            QByteArray batch;
            int size = 0;
            for (; size < 100; ++sent, ++size) {
                QByteArray guess;
                while (guess.size() < 5) {
                    state = state * 1664525U + 1013904223U;
                    guess += alphabet[(state >> 16) % alphabetSize];
                }
                if (guess == myFirstToken) // one run in nine hundred would otherwise win
                    guess = guess.toLower();
                batch += "GET /translations.json?" + guess + " HTTP/1.1\r\nHost: d\r\n\r\n";
            }
            if (!guesser.send(batch))
                break;
            for (int answer = 0; answer < size; ++answer)
                count += VXPhoneSocket::status(guesser.answer()) == 403;
        }
        return count;
    });
    const qint64 milliseconds = qMax<qint64>(1, timer.elapsed());
    QCOMPARE(refused, guessCount);
    QCOMPARE(changes.count(), 0);
    QCOMPARE(myService->nextToken().toLatin1(), myFirstToken);
    report(meter, u"100,000 guesses, %1 a second"_s.arg(guessCount * 1000LL / milliseconds));
}

void tst_upload_hostile::noAddressReadsAnotherFile()
{
    VXGapMeter meter;
    const QByteArrayList steps{"../",        "..%2f", "%2e%2e/",      "%2e%2e%2f",
                               "..\\",       "..%5c", "%2e%2e%5c",    "%252e%252e/",
                               "....//",     "..;/",  "..%00/",       "%c0%ae%c0%ae/",
                               "css/../../", ".%2e/", "%2e./",        "./../",
                               "..//",       "up/",   "..%2f%2e%2e/", "%uff0e%uff0e/"};
    const QByteArray absolute = path(u"secret"_s).toUtf8();
    QByteArrayList targets{"/" + absolute,  "/%2f" + absolute.mid(1), "//" + absolute,
                           "/:" + absolute, "/file://" + absolute,    "/assets/../secret"};
    for (const QByteArray& step : steps) {
        for (int depth = 1; depth <= 8; ++depth) {
            targets.append('/' + step.repeated(depth) + "secret");
            targets.append('/' + step.repeated(depth) + "etc/hostname");
        }
    }
    QFile::link(path(u"."_s), path(u"assets/up"_s));
    const QMap<QString, QByteArray> before = VXFolderContent::of(path(u"assets"_s));

    struct Outcome
    {
        int asked = 0;
        QByteArrayList leaks;
    };
    const Outcome outcome = asPhone([&] {
        Outcome seen;
        for (const QByteArray& target : targets) {
            const QByteArray answer = connection().ask(target);
            ++seen.asked;
            if (answer.contains(secretText) || VXPhoneSocket::status(answer) == 200)
                seen.leaks.append(target);
        }
        return seen;
    });
    QCOMPARE(outcome.leaks, QByteArrayList());
    QCOMPARE(outcome.asked, targets.size());
    QVERIFY(targets.size() > 200);
    QCOMPARE(VXFolderContent::of(path(u"assets"_s)), before);
    report(meter, u"%1 addresses"_s.arg(targets.size()));
}

void tst_upload_hostile::noFileNameLeavesTheFolder()
{
    VXGapMeter meter;
    // Those with a suffix lead to places where a file could be made.
    const QByteArrayList names{"../x",
                               "../x.jpg",
                               "..%2Fx.jpg",
                               "%2e%2e%2fx.jpg",
                               "link%2Fx.jpg",
                               "folder%2F..%2F..%2Fx.jpg",
                               "..%2Fx",
                               "%2Ftmp%2Fx",
                               "..%5Cx",
                               "%00",
                               "..",
                               ".",
                               "%2e%2e%2f%2e%2e%2fx",
                               "~%2Fx",
                               ":x",
                               "qrc:x",
                               "file:%2F%2F%2Ftmp%2Fx",
                               "a%00%2F..%2Fx",
                               "..%00",
                               "-rf",
                               "x%0Ay",
                               "%252e%252e%252fx",
                               "%C0%AE%C0%AE%2Fx",
                               "link%2Fx",
                               "con",
                               "x.",
                               "..%2F..%2F..%2F..%2F..%2F..%2Ftmp%2Fx.jpg"};
    QDir().mkpath(path(u"target/folder"_s));
    QVERIFY(QFile::link(path(u"assets"_s), path(u"target/link"_s)));
    const QMap<QString, QByteArray> before = VXFolderContent::of(myFolder->path());
    const int stored = asPhone([&] {
        admit();
        int count = 0;
        for (const QByteArray& name : names) {
            const QByteArray answer = connection().ask(
                "/upload?file=" + name, "Cookie: sid=" + myFirstToken + "\r\n", "photo");
            count += VXPhoneSocket::status(answer) == 200;
        }
        return count;
    });
    QCOMPARE(stored, names.size());

    QMap<QString, QByteArray> after = VXFolderContent::of(myFolder->path());
    after.removeIf([this](const auto& theFile) {
        const QString name = theFile.key().mid(path(u"target/"_s).size());
        return theFile.key().startsWith(path(u"target/"_s)) && !name.contains(u'/') &&
               name.contains(u".qrul."_s);
    });
    QCOMPARE(after, before);
    report(meter, u"%1 file names"_s.arg(names.size()));
}

void tst_upload_hostile::noCookieTrickIsAdmitted_data()
{
    QTest::addColumn<QByteArray>("headers");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("lower-case name") << "cookie: sid=TOKEN\r\n"_ba;
    QTest::newRow("upper-case id") << "Cookie: SID=TOKEN\r\n"_ba;
    QTest::newRow("longer id") << "Cookie: xsid=TOKEN\r\n"_ba;
    QTest::newRow("empty value") << "Cookie: sid=\r\n"_ba;
    QTest::newRow("no value") << "Cookie: sid\r\n"_ba;
    QTest::newRow("in quotes") << "Cookie: sid=\"TOKEN\"\r\n"_ba;
    QTest::newRow("percent-encoded") << "Cookie: sid=%54OKEN\r\n"_ba;
    QTest::newRow("prefix") << "Cookie: sid=TOKENx\r\n"_ba;
    QTest::newRow("comma") << "Cookie: a=b,sid=TOKEN\r\n"_ba;
    QTest::newRow("answer's header") << "Set-Cookie: sid=TOKEN\r\n"_ba;
    QTest::newRow("other place") << "Authorization: sid=TOKEN\r\nX-Cookie: sid=TOKEN\r\n"_ba;
    QTest::newRow("claims another address") << "X-Forwarded-For: 10.77.0.1\r\n"
                                               "Forwarded: for=10.77.0.1\r\n"
                                               "Cookie: sid=OTHER\r\n"_ba;
    QTest::newRow("100 kB of pairs") << "Cookie: " + "sid=x; "_ba.repeated(15000) + "\r\n";
    QTest::newRow("1,000 cookie lines") << "Cookie: sid=x\r\n"_ba.repeated(1000);
}

void tst_upload_hostile::noCookieTrickIsAdmitted()
{
    QFETCH(QByteArray, headers);

    VXGapMeter meter;
    // TOKEN is what phone1 itself may use, OTHER what was given to somebody at another address.
    const QByteArray other = myFirstToken;
    QSignalSpy changes(myService.get(), &VXLocalUploadService::urlChanged);
    std::thread desktop([this, other] { connection().ask("/translations.json?" + other); });
    QTRY_COMPARE(changes.count(), 1);
    desktop.join();
    const QByteArray own = myService->nextToken().toLatin1();
    headers.replace("TOKEN", own).replace("OTHER", other);

    struct Outcome
    {
        int upload = 0;
        int texts = 0;
        int control = 0;
    };
    const Outcome outcome = asPhone([&] {
        connection().ask("/translations.json?" + own);
        Outcome seen;
        seen.upload =
            VXPhoneSocket::status(connection().ask("/upload?file=a.jpg", headers, "photo"));
        seen.texts = VXPhoneSocket::status(connection().ask("/translations.json", headers));
        seen.control = VXPhoneSocket::status(
            connection().ask("/translations.json", "Cookie: sid=" + own + "\r\n"));
        return seen;
    });
    QCOMPARE(outcome.control, 200); // else the row proves nothing
    QCOMPARE(outcome.upload, 403);
    QCOMPARE(outcome.texts, 403);
    QVERIFY(!QFileInfo::exists(path(u"target"_s)));
    report(meter, QString::fromUtf8(QTest::currentDataTag()));
}

void tst_upload_hostile::requestsSurviveTheServicesEnd()
{
    VXGapMeter meter;
    constexpr int lives = 20;
    std::atomic<bool> isOver = false;
    std::atomic<int> answers = 0;
    std::atomic<int> oddAnswers = 0;
    const QByteArray host = myHost;
    std::vector<std::thread> attackers;
    for (int number = 0; number < 4; ++number) {
        attackers.emplace_back([&, number] {
            if (!VXPhoneSocket::enterNetwork(1))
                return;
            const QByteArray body = number % 2 ? "photo"_ba.repeated(2000) : QByteArray();
            const QByteArray target = number % 2 ? "/upload?file=x" : "/index.html";
            while (!isOver) {
                VXPhoneSocket socket(host, myPort);
                for (int turn = 0; turn < 5 && !isOver; ++turn) {
                    const int status = VXPhoneSocket::status(socket.ask(target, {}, body));
                    ++answers;
                    oddAnswers += status != 200 && status != 403 && status != 404;
                }
            }
        });
    }

    for (int life = 0; life < lives; ++life) {
        const int before = answers;
        QTRY_VERIFY_WITH_TIMEOUT(answers > before + 20, 60000);
        // Its server goes on without it, and the attackers with that.
        myService.reset();
        const int without = answers;
        QTRY_VERIFY_WITH_TIMEOUT(answers > without + 20, 60000);
        startService();
    }
    isOver = true;
    // The last answers still need this thread.
    for (std::thread& attacker : attackers) {
        QEventLoop loop;
        std::thread waiter([&] {
            attacker.join();
            QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        });
        loop.exec();
        waiter.join();
    }
    QCOMPARE(oddAnswers.load(), 0);
    QVERIFY(!QFileInfo::exists(path(u"target"_s)));
    report(meter, u"%1 requests while 20 services came and went"_s.arg(answers.load()));
}

VX_TEST_MAIN(QCoreApplication, tst_upload_hostile)

#include "tst_upload_hostile.moc"
