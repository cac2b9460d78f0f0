#include "VXFileContent.h"
#include "VXLan.h"
#include "VXPlainHttpClient.h"
#include "VXProbe.h"
#include "VXRawPeer.h"

#include <VXCore/VXSettings.h>
#include <VXCore/VXSettingsLock.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <csignal>
#include <memory>

#include <sys/prctl.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto folderVariable = "VX_PROBE_FOLDER";
constexpr qsizetype large = 1 << 20;   // bytes, or characters
constexpr qint64 somePages = 64 << 10; // bytes

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

/// A lock that was cut off itself names no process; Qt respects it for half a minute.
void makeOld(const QString& theLock)
{
    QFile file(theLock);
    if (!file.open(QFile::ReadWrite) ||
        !file.setFileTime(QDateTime::currentDateTime().addSecs(-31), QFile::FileModificationTime))
        qFatal("cannot change %s", qPrintable(theLock));
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
        const VXSettingsLock pending; // the file is written when this ends
        store.writeEntry(u"Group/entry"_s, QString(large, QLatin1Char(letter(turn))));
        VXProbe::print(QString::number(turn));
        std::fflush(stdout);
        std::getchar(); // that it may end
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

/// How much of a file is there when its writer dies.
enum class Moment
{
    OneByte,
    SomePages,
    Half,
    AllButOneByte,
};

/// In bytes, for a file that gets as large as the one that stands there.
qint64 sizeAt(Moment theMoment, const QString& thePath)
{
    const qint64 whole = QFileInfo(thePath).size();
    switch (theMoment) {
    case Moment::OneByte:
        return 1;
    case Moment::SomePages:
        return somePages;
    case Moment::Half:
        return whole / 2;
    case Moment::AllButOneByte:
        return whole - 1;
    }
    return 0;
}

void addMoments()
{
    QTest::addColumn<Moment>("moment");
    QTest::newRow("one byte") << Moment::OneByte;
    QTest::newRow("64 KiB") << Moment::SomePages;
    QTest::newRow("half") << Moment::Half;
    QTest::newRow("all but one byte") << Moment::AllButOneByte;
}

/// A probe that is killed when this object ends, at the latest.
class Victim
{
    Q_DISABLE_COPY_MOVE(Victim)

public:
    explicit Victim(const QString& theProbe)
    {
        myProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        myProcess.setChildProcessModifier([] {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            const rlimit noCore = {0, 0};
            setrlimit(RLIMIT_CORE, &noCore);
            // Some parents ignore it, Python for one, and that is handed down.
            std::signal(SIGXFSZ, SIG_DFL);
        });
        myProcess.start(QCoreApplication::applicationFilePath(), {u"--probe"_s, theProbe});
    }
    ~Victim() { kill(); }

    QByteArray line()
    {
        while (!myProcess.canReadLine() && myProcess.waitForReadyRead(30000)) {
        }
        return myProcess.readLine().trimmed();
    }

    /// Lets it write what is pending.
    void goOn() { myProcess.write("\n"); }

    /// From now on the kernel ends the process by SIGXFSZ, within the write that would make the
    /// file larger than it is at that moment. As hard as SIGKILL: nobody catches the signal, and
    /// nothing is cleaned up. The file stands there already, as large as the next one will be.
    [[nodiscard]] bool letDieWriting(const QString& thePath, Moment theMoment)
    {
        const auto process = static_cast<pid_t>(myProcess.processId());
        rlimit limit = {};
        if (prlimit(process, RLIMIT_FSIZE, nullptr, &limit) != 0)
            return false;
        limit.rlim_cur = static_cast<rlim_t>(sizeAt(theMoment, thePath));
        return prlimit(process, RLIMIT_FSIZE, &limit, nullptr) == 0;
    }

    /// Waits for that end. False when there is none, or another one.
    [[nodiscard]] bool diesWriting()
    {
        return (myProcess.state() == QProcess::NotRunning || myProcess.waitForFinished(60000)) &&
               myProcess.exitStatus() == QProcess::CrashExit && myProcess.exitCode() == SIGXFSZ;
    }

    void kill()
    {
        myProcess.kill(); // SIGKILL
        myProcess.waitForFinished();
    }

private:
    QProcess myProcess;
};

} // namespace

/// The process dies while it writes: what stands under a final name is whole.
class tst_killed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withinADownload_data();
    void withinADownload();
    void withinAResult_data();
    void withinAResult();
    void withinSettings_data();
    void withinSettings();
    void withinTheTransferOfAnUpload();
    void withinTheStoringOfAnUpload_data();
    void withinTheStoringOfAnUpload();

private:
    void useNewFolder();

    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_killed::initTestCase()
{
    QVERIFY2(VXLan::missingRight().isEmpty(), qPrintable(VXLan::missingRight()));
}

void tst_killed::useNewFolder()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    qputenv(folderVariable, myFolder->path().toLocal8Bit());
}

void tst_killed::withinADownload_data()
{
    addMoments();
}

void tst_killed::withinADownload()
{
    QFETCH(Moment, moment);
    useNewFolder();
    Victim victim(u"downloads"_s);
    QVERIFY(!victim.line().isEmpty()); // one is complete
    QVERIFY(victim.letDieWriting(pathOf(u"photo"_s), moment));
    QVERIFY(victim.diesWriting());
    const QByteArray photo = VXFileContent::of(pathOf(u"photo"_s));
    QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
}

void tst_killed::withinAResult_data()
{
    addMoments();
}

void tst_killed::withinAResult()
{
    QFETCH(Moment, moment);
    useNewFolder();
    Victim victim(u"results"_s);
    QVERIFY(!victim.line().isEmpty()); // one is complete
    QVERIFY(victim.letDieWriting(pathOf(u"result"_s), moment));
    QVERIFY(victim.diesWriting());
    const QByteArray result = VXFileContent::of(pathOf(u"result"_s));
    QVERIFY(result.startsWith("<?xml"));
    QVERIFY2(result.endsWith("</content>\n"), qPrintable(QString::number(result.size())));
}

void tst_killed::withinSettings_data()
{
    addMoments();
}

void tst_killed::withinSettings()
{
    QFETCH(Moment, moment);
    useNewFolder();
    Victim victim(u"settings"_s);
    QVERIFY(!victim.line().isEmpty());
    victim.goOn();
    QVERIFY(!victim.line().isEmpty()); // one is complete
    // The check for room is over: the next to be made are the lock and the file.
    QVERIFY(victim.letDieWriting(pathOf(u"settings.ini"_s), moment));
    victim.goOn();
    QVERIFY(victim.diesWriting());
    if (moment == Moment::OneByte)
        makeOld(pathOf(u"settings.ini.lock"_s));
    VXSettings::setStoreFile(pathOf(u"settings.ini"_s));
    VXSettings store;
    QCOMPARE(store.value(u"Fixed/entry"_s).toString(), u"fixed"_s);
    QVERIFY(isWhole(store.value(u"Group/entry"_s).toByteArray(), large));
    // Nor does a lock of the dead one keep the living from saving.
    QVERIFY(store.writeEntry(u"Fixed/later"_s, 1));
    VXSettings::setStoreFile(QDir::homePath() + u"/settings.ini"_s);
}

void tst_killed::withinTheTransferOfAnUpload()
{
    useNewFolder();
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

void tst_killed::withinTheStoringOfAnUpload_data()
{
    addMoments();
}

void tst_killed::withinTheStoringOfAnUpload()
{
    QFETCH(Moment, moment);
    useNewFolder();
    Victim victim(u"uploads"_s);
    const QUrl url(QString::fromLatin1(victim.line()));
    const QByteArray token = victim.line();
    VXPlainHttpClient phone(QHostAddress(url.host()), static_cast<quint16>(url.port()));
    QCOMPARE(phone.ask("GET /translations.json?" + token).status, 200);
    const QByteArray request =
        "POST /upload?file=a.jpg HTTP/1.1\r\nHost: x\r\nCookie: sid=" + token +
        "\r\nContent-Length: " + QByteArray::number(large) + "\r\n\r\n" + QByteArray(large, 'x');
    QCOMPARE(phone.askRaw(request).status, 200);
    QVERIFY(victim.letDieWriting(pathOf(u"photos/a.qrul.jpg"_s), moment));
    QCOMPARE(phone.askRaw(request).status, 0); // nobody is there to answer
    QVERIFY(victim.diesWriting());
    const QByteArray photo = VXFileContent::of(pathOf(u"photos/a.qrul.jpg"_s));
    QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_killed, {u"downloads"_s, downloads},
                   {u"results"_s, results}, {u"settings"_s, settings}, {u"uploads"_s, uploads})

#include "tst_killed.moc"
