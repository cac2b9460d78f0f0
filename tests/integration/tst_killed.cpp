#include "VXLan.h"
#include "VXPlainHttpClient.h"
#include "VXProbe.h"
#include "VXRawPeer.h"

#include <VXCore/VXSettings.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <array>
#include <chrono>
#include <csignal>
#include <memory>

#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto folderVariable = "VX_PROBE_FOLDER";
constexpr qsizetype large = 32 << 20;  // bytes; so that a write takes its time
constexpr qsizetype entry = 4 << 20;   // characters
constexpr qsizetype someBytes = 65536; // more than a lock file has
constexpr int rounds = 5;
constexpr std::chrono::seconds patience{60};

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

    [[nodiscard]] qint64 processId() const { return myProcess.processId(); }

    void kill()
    {
        myProcess.kill(); // SIGKILL
        myProcess.waitForFinished();
    }

private:
    QProcess myProcess;
};

/// Whether the descriptor is that of a file below the folder, named or not yet, which has some of
/// its bytes.
bool isBeingWritten(const QByteArray& theDescriptor, const QByteArray& theFolder, qsizetype theSize)
{
    std::array<char, 4096> target{};
    const ssize_t size = readlink(theDescriptor.constData(), target.data(), target.size());
    struct stat status = {};
    return size > 0 && QByteArray(target.data(), size).startsWith(theFolder) &&
           stat(theDescriptor.constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_size >= someBytes && status.st_size < theSize;
}

/// Kills within a write to a file in the folder that gets more bytes than theSize. False when none
/// was caught so.
bool killWithinWrite(Victim& theVictim, const QString& theFolder, qsizetype theSize)
{
    const QString descriptors = u"/proc/%1/fd/"_s.arg(theVictim.processId());
    const QByteArray folder = theFolder.toLocal8Bit();
    const QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        for (const QString& name : QDir(descriptors).entryList(QDir::Files | QDir::System)) {
            if (!isBeingWritten((descriptors + name).toLocal8Bit(), folder, theSize))
                continue;
            theVictim.kill();
            return true;
        }
    }
    return false;
}

} // namespace

/// The process is killed while it writes: what stands under a final name is whole.
class tst_killed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withinADownload();
    void withinAResult();
    void withinSettings();
    void withinTheTransferOfAnUpload();
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

void tst_killed::withinADownload()
{
    for (int i = 0; i < rounds; ++i) {
        useNewFolder();
        Victim victim(u"downloads"_s);
        QVERIFY(!victim.line().isEmpty()); // one is complete
        QVERIFY(killWithinWrite(victim, myFolder->path(), large));
        const QByteArray photo = contentOf(pathOf(u"photo"_s));
        QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
    }
}

void tst_killed::withinAResult()
{
    for (int i = 0; i < rounds; ++i) {
        useNewFolder();
        Victim victim(u"results"_s);
        QVERIFY(!victim.line().isEmpty()); // one is complete
        QVERIFY(killWithinWrite(victim, myFolder->path(), large));
        const QByteArray result = contentOf(pathOf(u"result"_s));
        QVERIFY(result.startsWith("<?xml"));
        QVERIFY2(result.trimmed().endsWith("</content>"),
                 qPrintable(QString::number(result.size())));
    }
}

void tst_killed::withinSettings()
{
    for (int i = 0; i < rounds; ++i) {
        useNewFolder();
        Victim victim(u"settings"_s);
        QVERIFY(!victim.line().isEmpty()); // one is complete
        QVERIFY(killWithinWrite(victim, myFolder->path(), entry));
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

void tst_killed::withinTheStoringOfAnUpload()
{
    for (int i = 0; i < rounds; ++i) {
        useNewFolder();
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
        QTRY_COMPARE(phone.socket().bytesToWrite(), 0);
        QVERIFY(killWithinWrite(victim, pathOf(u"photos"_s), large));
        const QByteArray photo = contentOf(pathOf(u"photos/a.qrul.jpg"_s));
        QVERIFY2(isWhole(photo, large), qPrintable(QString::number(photo.size())));
    }
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_killed, {u"downloads"_s, downloads},
                   {u"results"_s, results}, {u"settings"_s, settings}, {u"uploads"_s, uploads})

#include "tst_killed.moc"
