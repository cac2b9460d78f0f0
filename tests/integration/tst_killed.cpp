#include "VXLan.h"
#include "VXPlainHttpClient.h"
#include "VXProbe.h"
#include "VXRawPeer.h"

#include <VXCore/VXSettings.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto folderVariable = "VX_PROBE_FOLDER";
constexpr qsizetype large = 8 << 20; // bytes; so that most of the time goes into writing
constexpr qsizetype entry = 300'000; // characters
constexpr int rounds = 6;

QString pathOf(const QString& theName)
{
    return qEnvironmentVariable(folderVariable) + u'/' + theName;
}

/// A letter of its own for each turn.
char letter(int theTurn)
{
    return static_cast<char>('a' + theTurn % 26);
}

/// Whether the bytes are one letter, that many times.
bool isWhole(const QByteArray& theBytes, qsizetype theSize)
{
    return theBytes.size() == theSize && theBytes.count(theBytes.front()) == theSize;
}

QByteArray contentOf(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

// --- what is killed; each says a line per turn and never ends by itself

int downloads()
{
    VXRawPeer peer;
    for (int turn = 0;; ++turn) {
        peer.setAnswer(VXRawAnswer::http(200, QByteArray(large, letter(turn))));
        auto operation = VXHttpOperation::create(peer.url(), QNetworkAccessManager::GetOperation);
        operation.downloadToFile(QFileInfo(pathOf(u"photo"_s)));
        VXProbe::print(QString::number(turn));
        std::fflush(stdout);
    }
}

int results()
{
    for (int turn = 0;; ++turn) {
        QDomDocument answer;
        answer.setContent("<a><content>" + QByteArray(large, letter(turn)) + "</content></a>");
        VXNetworkingResult(answer).saveContentToFile(QFileInfo(pathOf(u"result"_s)));
        VXProbe::print(QString::number(turn));
        std::fflush(stdout);
    }
}

int settings()
{
    VXSettings::setStoreFile(pathOf(u"settings.ini"_s));
    VXSettings store;
    store.writeEntry(u"Fixed/entry"_s, u"fixed"_s);
    for (int turn = 0;; ++turn) {
        store.writeEntry(u"Group/entry"_s, QString(entry, QLatin1Char(letter(turn))));
        VXProbe::print(QString::number(turn));
        std::fflush(stdout);
    }
}

int uploads()
{
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    VXLocalUploadService service(nullptr);
    service.setTargetFolder(pathOf(u"photos"_s));
    service.start();
    VXProbe::print(service.url().toString(QUrl::RemoveQuery));
    VXProbe::print(service.nextToken());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

/// A probe that is killed when this object ends, at the latest.
class Victim
{
    Q_DISABLE_COPY_MOVE(Victim)

public:
    explicit Victim(const QString& theProbe)
    {
        myProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        myProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        myProcess.start(QCoreApplication::applicationFilePath(), {u"--probe"_s, theProbe});
    }
    ~Victim() { kill(); }

    QByteArray line()
    {
        while (!myProcess.canReadLine() && myProcess.waitForReadyRead(30000)) {
        }
        return myProcess.readLine().trimmed();
    }

    void kill()
    {
        myProcess.kill(); // SIGKILL
        myProcess.waitForFinished();
    }

private:
    QProcess myProcess;
};

/// Kills somewhere within a turn: after the first one has been told, at a moment of chance.
bool killAtAnyMoment(Victim& theVictim)
{
    if (theVictim.line().isEmpty() || theVictim.line().isEmpty())
        return false;
    QElapsedTimer clock;
    clock.start();
    const int moment = QRandomGenerator::global()->bounded(20'000); // microseconds
    while (clock.nsecsElapsed() / 1000 < moment) {
    }
    theVictim.kill();
    return true;
}

} // namespace

/// The process is killed while it writes: what stands under a final name is whole.
class tst_killed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void withinADownload();
    void withinAResult();
    void withinSettings();
    void withinTheTransferOfAnUpload();
    void withinTheStoringOfAnUpload();

private:
    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_killed::initTestCase()
{
    QVERIFY2(VXLan::missingRight().isEmpty(), qPrintable(VXLan::missingRight()));
}

void tst_killed::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    qputenv(folderVariable, myFolder->path().toLocal8Bit());
}

void tst_killed::withinADownload()
{
    for (int i = 0; i < rounds; ++i) {
        Victim victim(u"downloads"_s);
        QVERIFY(killAtAnyMoment(victim));
        const QByteArray photo = contentOf(pathOf(u"photo"_s));
        QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
    }
}

void tst_killed::withinAResult()
{
    for (int i = 0; i < rounds; ++i) {
        Victim victim(u"results"_s);
        QVERIFY(killAtAnyMoment(victim));
        const QByteArray result = contentOf(pathOf(u"result"_s));
        QVERIFY(result.startsWith("<?xml"));
        QVERIFY2(result.trimmed().endsWith("</content>"),
                 qPrintable(QString::number(result.size())));
    }
}

void tst_killed::withinSettings()
{
    for (int i = 0; i < rounds; ++i) {
        Victim victim(u"settings"_s);
        QVERIFY(killAtAnyMoment(victim));
        VXSettings::setStoreFile(pathOf(u"settings.ini"_s));
        VXSettings store;
        QCOMPARE(store.value(u"Fixed/entry"_s).toString(), u"fixed"_s);
        QVERIFY(isWhole(store.value(u"Group/entry"_s).toByteArray(), entry));
        // Nor does a lock of the dead one keep the living from saving.
        QVERIFY(store.writeEntry(u"Fixed/later"_s, i));
        VXSettings::setStoreFile(QDir::homePath() + u"/settings.ini"_s);
    }
}

void tst_killed::withinTheTransferOfAnUpload()
{
    Victim victim(u"uploads"_s);
    const QUrl url(QString::fromLatin1(victim.line()));
    const QByteArray token = victim.line();
    const QHostAddress host(url.host());
    const auto port = static_cast<quint16>(url.port());
    QCOMPARE(VXPlainHttpClient(host, port).ask("GET /translations.json?" + token).status, 200);
    VXPlainHttpClient phone(host, port);
    phone.socket().write("POST /upload?file=a.jpg HTTP/1.1\r\nHost: x\r\nCookie: sid=" + token +
                         "\r\nContent-Length: 1000000\r\n\r\n" + QByteArray(500'000, 'x'));
    QTRY_COMPARE(phone.socket().bytesToWrite(), 0);
    victim.kill();
    QVERIFY(!QFile::exists(pathOf(u"photos/a.qrul.jpg"_s)));
}

void tst_killed::withinTheStoringOfAnUpload()
{
    for (int i = 0; i < rounds; ++i) {
        Victim victim(u"uploads"_s);
        const QUrl url(QString::fromLatin1(victim.line()));
        const QByteArray token = victim.line();
        const QHostAddress host(url.host());
        const auto port = static_cast<quint16>(url.port());
        VXPlainHttpClient phone(host, port);
        QCOMPARE(phone.ask("GET /translations.json?" + token).status, 200);
        const QByteArray request =
            "POST /upload?file=a.jpg HTTP/1.1\r\nHost: x\r\nCookie: sid=" + token +
            "\r\nContent-Length: " + QByteArray::number(large) + "\r\n\r\n" +
            QByteArray(large, letter(i));
        QCOMPARE(phone.askRaw(request).status, 200);
        phone.socket().write(request);
        QTRY_COMPARE(phone.socket().bytesToWrite(), 0); // now it begins to store, or soon
        QElapsedTimer clock;
        clock.start();
        const int moment = QRandomGenerator::global()->bounded(20'000);
        while (clock.nsecsElapsed() / 1000 < moment) {
        }
        victim.kill();
        const QByteArray photo = contentOf(pathOf(u"photos/a.qrul.jpg"_s));
        QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
    }
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_killed, {u"downloads"_s, downloads},
                   {u"results"_s, results}, {u"settings"_s, settings}, {u"uploads"_s, uploads})

#include "tst_killed.moc"
