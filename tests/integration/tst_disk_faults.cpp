#include "VXFileContent.h"
#include "VXLogCapture.h"
#include "VXPlainHttpClient.h"
#include "VXProbe.h"
#include "VXRawPeer.h"
#include "VXReliabilityDocument.h"
#include "VXSmallDisk.h"

#include <VXCore/VXCrypto.h>
#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXSettings.h>
#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXNetworkingResult.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtXml/QDomDocument>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

enum class Fault
{
    FullDisk,
    AlmostFullDisk, // one page is free
    ReadOnlyFolder,
    FolderInPlace, // a folder has the name of the file
    VanishedFolder,
    FileAsFolder,   // a file has the name of the folder
    LongName,       // 300 bytes
    LongestName,    // 255 bytes
    LongFolderName, // 300 bytes
};

constexpr int large = 100'000; // bytes
constexpr int few = 100;

/// A file of an earlier time.
const QByteArray former = "former";

/// A folder with one thing wrong, and the path of a file in it.
class Place
{
    Q_DISABLE_COPY_MOVE(Place)

public:
    Place(Fault theFault, const QString& theName, const QByteArray& theFormerContent)
        : myDisk(myRoot.path())
        , myFolder(
              myRoot.filePath(theFault == Fault::LongFolderName ? QString(300, u'f') : u"folder"_s))
        , myPath(folder() + u'/' + nameFor(theFault, theName))
    {
        QDir().mkpath(folder());
        if (!theFormerContent.isNull())
            VXFileContent::write(path(), theFormerContent);
        apply(theFault);
    }

    [[nodiscard]] QString folder() const { return myFolder; }
    [[nodiscard]] QString path() const { return myPath; }

    /// What has the name of the file: "nothing", "former", "whole", "folder", "empty" or
    /// "N bytes".
    [[nodiscard]] QString stands(const QByteArray& theWhole) const
    {
        const QFileInfo info(path());
        if (!info.exists())
            return u"nothing"_s;
        if (info.isDir())
            return u"folder"_s;
        const QByteArray content = VXFileContent::of(path());
        if (content.isEmpty())
            return u"empty"_s;
        if (content == theWhole)
            return u"whole"_s;
        return content == former ? u"former"_s : u"%1 bytes"_s.arg(content.size());
    }

    /// The names of files that nobody ordered; the folder's when a file that stands there changed.
    [[nodiscard]] QStringList leftovers() const
    {
        if (QFileInfo(folder()).isFile())
            return VXFileContent::of(folder()) == former ? QStringList() : QStringList(folder());
        const auto filters = QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot;
        QStringList names = QDir(folder()).entryList(filters);
        names.removeAll(QFileInfo(path()).fileName());
        return names;
    }

private:
    static QString nameFor(Fault theFault, const QString& theName)
    {
        const int size = theFault == Fault::LongName      ? 300
                         : theFault == Fault::LongestName ? 255
                                                          : 0;
        return size == 0 ? theName : QString(size, u'n');
    }

    void apply(Fault theFault)
    {
        if (theFault == Fault::FullDisk)
            myDisk.fill();
        else if (theFault == Fault::AlmostFullDisk)
            myDisk.fill(VXSmallDisk::page);
        else if (theFault == Fault::ReadOnlyFolder)
            myDisk.protect();
        else if (theFault == Fault::VanishedFolder || theFault == Fault::FileAsFolder)
            QDir().rmdir(folder());
        else if (theFault == Fault::FolderInPlace)
            QDir().mkpath(path() + u"/in it"_s);
        if (theFault == Fault::FileAsFolder)
            VXFileContent::write(folder(), former);
    }

    QTemporaryDir myRoot;
    VXSmallDisk myDisk;
    QString myFolder;
    QString myPath;
};

QString text(bool theValue)
{
    return theValue ? u"true"_s : u"false"_s;
}

QString warningsAbout(const VXLogCapture& theLog, const QString& thePath)
{
    return QString::number(theLog.texts(QtWarningMsg).filter(thePath).size());
}

constexpr auto pathVariable = "VX_PROBE_PATH";

/// In a process of its own, which has never had a key: whether a text comes back, and the warnings.
int key()
{
    const QString path = qEnvironmentVariable(pathVariable);
    VXDeploymentConfig::instance()->setValue(u"Crypto/keyFile"_s, path);
    const VXLogCapture log;
    const VXCrypto crypto;
    VXProbe::print(text(crypto.decryptDES(crypto.encryptDES(u"geheim"_s)) == u"geheim"_s));
    VXProbe::print(warningsAbout(log, path));
    return 0;
}

VXHttpOperation download(const VXRawPeer& thePeer)
{
    return VXHttpOperation::create(thePeer.url(), QNetworkAccessManager::GetOperation);
}

} // namespace

Q_DECLARE_METATYPE(Fault)

/// Disks that are full, protected or otherwise in the way; the outcomes stand in
/// docs/reliability.md.
class tst_disk_faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void downloadIntoAFile_data();
    void downloadIntoAFile();
    void downloadIntoATemporaryFile_data();
    void downloadIntoATemporaryFile();
    void savedResult_data();
    void savedResult();
    void savedSettings_data();
    void savedSettings();
    void deletedSetting();
    void newKey_data();
    void newKey();
    void uploadedPhoto_data();
    void uploadedPhoto();
    void theDocumentHasNoOtherRows();

private:
    static void addColumns();
    static void add(const QString& theName, Fault theFault, const QByteArray& theFormer,
                    int theSize);
    static void compare(const QStringList& theMeasured);

    VXRawPeer myPeer;
    QStringList myRows; // that have been compared
};

void tst_disk_faults::initTestCase()
{
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
}

void tst_disk_faults::addColumns()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QByteArray>("before"); // null: nothing
    QTest::addColumn<int>("size");
}

void tst_disk_faults::add(const QString& theName, Fault theFault, const QByteArray& theFormer,
                          int theSize)
{
    QTest::newRow(qPrintable(theName)) << theFault << theFormer << theSize;
}

/// Holds the row of the document against returned value, code, what stands, and warnings.
void tst_disk_faults::compare(const QStringList& theMeasured)
{
    const QString name = QString::fromUtf8(QTest::currentDataTag());
    const QStringList cells = VXReliabilityDocument::rows(u"Disk"_s).value(name);
    QVERIFY2(!cells.isEmpty(), qPrintable(name + u" | "_s + theMeasured.join(u" | "_s)));
    QCOMPARE(theMeasured, cells);
}

void tst_disk_faults::downloadIntoAFile_data()
{
    addColumns();
    const QByteArray nothing;
    add(u"download, full disk"_s, Fault::FullDisk, nothing, large);
    add(u"download of a few bytes, full disk"_s, Fault::FullDisk, nothing, few);
    add(u"download over a file, full disk"_s, Fault::FullDisk, former, large);
    add(u"download of a few bytes over a file, full disk"_s, Fault::FullDisk, former, few);
    add(u"download, disk full within the body"_s, Fault::AlmostFullDisk, nothing, large);
    add(u"download, read-only folder"_s, Fault::ReadOnlyFolder, nothing, few);
    add(u"download over a file, read-only folder"_s, Fault::ReadOnlyFolder, former, few);
    add(u"download, folder in place of the file"_s, Fault::FolderInPlace, nothing, few);
    add(u"download, vanished folder"_s, Fault::VanishedFolder, nothing, few);
    add(u"download, file in place of the folder"_s, Fault::FileAsFolder, nothing, few);
    add(u"download, folder name of 300 bytes"_s, Fault::LongFolderName, nothing, few);
    add(u"download, name of 300 bytes"_s, Fault::LongName, nothing, few);
    add(u"download, name of 255 bytes"_s, Fault::LongestName, nothing, few);
}

void tst_disk_faults::downloadIntoAFile()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, before);
    QFETCH(int, size);
    const QByteArray body(size, 'x');
    myPeer.setAnswer(VXRawAnswer::http(200, body));
    const Place place(fault, u"photo.jpg"_s, before);
    const VXLogCapture log;
    VXHttpOperation operation = download(myPeer);
    const bool isWritten = operation.downloadToFile(QFileInfo(place.path()));
    compare({text(isWritten), QString::number(operation.errorStatus().errorCode()),
             place.stands(body), warningsAbout(log, place.path())});
    QCOMPARE(place.leftovers(), QStringList());
}

void tst_disk_faults::downloadIntoATemporaryFile_data()
{
    addColumns();
    const QByteArray nothing;
    add(u"temporary download, full disk"_s, Fault::FullDisk, nothing, large);
    add(u"temporary download of a few bytes, full disk"_s, Fault::FullDisk, nothing, few);
    add(u"temporary download, disk full within the body"_s, Fault::AlmostFullDisk, nothing, large);
    add(u"temporary download, read-only folder"_s, Fault::ReadOnlyFolder, nothing, few);
    add(u"temporary download, vanished folder"_s, Fault::VanishedFolder, nothing, few);
    add(u"temporary download, file in place of the folder"_s, Fault::FileAsFolder, nothing, few);
    add(u"temporary download, folder name of 300 bytes"_s, Fault::LongFolderName, nothing, few);
}

void tst_disk_faults::downloadIntoATemporaryFile()
{
    QFETCH(Fault, fault);
    QFETCH(int, size);
    myPeer.setAnswer(VXRawAnswer::http(200, QByteArray(size, 'x')));
    const Place place(fault, u"unused"_s, {});
    const QByteArray formerFolder = qgetenv("TMPDIR");
    qputenv("TMPDIR", place.folder().toLocal8Bit());
    const VXLogCapture log;
    VXHttpOperation operation = download(myPeer);
    const std::unique_ptr<QTemporaryFile> file(operation.downloadToTemporaryFile());
    formerFolder.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", formerFolder);
    const QString prefix = place.folder() + u"/TOV_TEMPORARY_DOWNLOAD"_s;
    compare({file ? u"file"_s : u"null"_s, QString::number(operation.errorStatus().errorCode()),
             place.leftovers().isEmpty() ? u"nothing"_s : place.leftovers().join(u' '),
             warningsAbout(log, prefix)});
}

void tst_disk_faults::savedResult_data()
{
    addColumns();
    const QByteArray nothing;
    add(u"result, full disk"_s, Fault::FullDisk, nothing, large);
    add(u"result of a few bytes, full disk"_s, Fault::FullDisk, nothing, few);
    add(u"result over a file, full disk"_s, Fault::FullDisk, former, few);
    add(u"result, disk full within it"_s, Fault::AlmostFullDisk, nothing, large);
    add(u"result, read-only folder"_s, Fault::ReadOnlyFolder, nothing, few);
    add(u"result over a file, read-only folder"_s, Fault::ReadOnlyFolder, former, few);
    add(u"result, folder in place of the file"_s, Fault::FolderInPlace, nothing, few);
    add(u"result, vanished folder"_s, Fault::VanishedFolder, nothing, few);
    add(u"result, file in place of the folder"_s, Fault::FileAsFolder, nothing, few);
    add(u"result, folder name of 300 bytes"_s, Fault::LongFolderName, nothing, few);
    add(u"result, name of 300 bytes"_s, Fault::LongName, nothing, few);
}

void tst_disk_faults::savedResult()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, before);
    QFETCH(int, size);
    QDomDocument answer;
    QVERIFY(answer.setContent("<a><content>" + QByteArray(size, 'x') + "</content></a>"));
    const Place place(fault, u"order.xml"_s, before);
    const VXLogCapture log;
    VXNetworkingResult result(answer);
    result.saveContentToFile(QFileInfo(place.path()));
    compare({text(result.isSuccess()), QString::number(result.errorCode()),
             place.stands("never whole"), warningsAbout(log, place.path())});
    QCOMPARE(place.leftovers(), QStringList());
}

void tst_disk_faults::savedSettings_data()
{
    addColumns();
    const QByteArray stored = "[Group]\nold=" + QByteArray(few, 'x') + '\n';
    add(u"setting, full disk"_s, Fault::FullDisk, stored, few);
    add(u"setting, one page free"_s, Fault::AlmostFullDisk, stored, few);
    add(u"large setting, full disk"_s, Fault::FullDisk, stored, large);
    add(u"large setting, one page free"_s, Fault::AlmostFullDisk, stored, large);
    add(u"setting, read-only folder"_s, Fault::ReadOnlyFolder, stored, few);
    add(u"first setting, read-only folder"_s, Fault::ReadOnlyFolder, {}, few);
    add(u"first setting, full disk"_s, Fault::FullDisk, {}, few);
    add(u"setting, folder in place of the file"_s, Fault::FolderInPlace, {}, few);
    add(u"setting, vanished folder"_s, Fault::VanishedFolder, {}, few);
    add(u"setting, file in place of the folder"_s, Fault::FileAsFolder, {}, few);
    add(u"setting, folder name of 300 bytes"_s, Fault::LongFolderName, {}, few);
    add(u"setting, name of 300 bytes"_s, Fault::LongName, {}, few);
}

void tst_disk_faults::savedSettings()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, before);
    QFETCH(int, size);
    QString outcome;
    bool isWritten = false;
    QString warnings;
    QStringList leftovers;
    {
        const Place place(fault, u"settings.ini"_s, before);
        VXSettings::setStoreFile(place.path());
        const VXLogCapture log;
        VXSettings settings;
        isWritten = settings.writeEntry(u"Group/new"_s, QString(size, u'y'));
        warnings = warningsAbout(log, place.path());
        // Here the former file is the one that must be whole.
        outcome = isWritten ? u"written"_s : place.stands(before).replace(u"whole"_s, u"former"_s);
        VXSettings::setStoreFile(QDir::homePath() + u"/settings.ini"_s);
        leftovers = place.leftovers();
    }
    compare({text(isWritten), u"-"_s, outcome, warnings});
    QCOMPARE(leftovers, QStringList());
}

void tst_disk_faults::deletedSetting()
{
    const QByteArray stored = "[Group]\na=1\nb=2\n";
    const Place place(Fault::AlmostFullDisk, u"settings.ini"_s, stored);
    VXSettings::setStoreFile(place.path());
    VXSettings settings;
    settings.deleteEntry(u"Group/a"_s);
    QFile file(place.path());
    QVERIFY(file.open(QFile::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY2(content == stored || content == "[Group]\nb=2\n", content.constData());
    VXSettings::setStoreFile(QDir::homePath() + u"/settings.ini"_s);
}

void tst_disk_faults::newKey_data()
{
    addColumns();
    add(u"key, full disk"_s, Fault::FullDisk, {}, 0);
    add(u"key, one page free"_s, Fault::AlmostFullDisk, {}, 0);
    add(u"key, read-only folder"_s, Fault::ReadOnlyFolder, {}, 0);
    add(u"key, folder in place of the file"_s, Fault::FolderInPlace, {}, 0);
    add(u"key, vanished folder"_s, Fault::VanishedFolder, {}, 0);
    add(u"key, file in place of the folder"_s, Fault::FileAsFolder, {}, 0);
    add(u"key, folder name of 300 bytes"_s, Fault::LongFolderName, {}, 0);
    add(u"key, name of 300 bytes"_s, Fault::LongName, {}, 0);
}

void tst_disk_faults::newKey()
{
    QFETCH(Fault, fault);
    const Place place(fault, u"key"_s, {});
    qputenv(pathVariable, place.path().toLocal8Bit());
    const QStringList lines = VXProbe::run(u"key"_s);
    QCOMPARE(lines.size(), 2);
    compare({lines.at(0), u"-"_s, place.stands({}), lines.at(1)});
    QCOMPARE(place.leftovers(), QStringList());
}

void tst_disk_faults::uploadedPhoto_data()
{
    addColumns();
    const QByteArray nothing;
    add(u"upload, full disk"_s, Fault::FullDisk, nothing, large);
    add(u"upload of a few bytes, full disk"_s, Fault::FullDisk, nothing, few);
    add(u"upload of a few bytes over a file, full disk"_s, Fault::FullDisk, former, few);
    add(u"upload, disk full within it"_s, Fault::AlmostFullDisk, nothing, large);
    add(u"upload, read-only folder"_s, Fault::ReadOnlyFolder, nothing, few);
    add(u"upload over a file, read-only folder"_s, Fault::ReadOnlyFolder, former, few);
    add(u"upload, folder in place of the file"_s, Fault::FolderInPlace, nothing, few);
    add(u"upload, vanished folder"_s, Fault::VanishedFolder, nothing, few);
    add(u"upload, file in place of the folder"_s, Fault::FileAsFolder, nothing, few);
    add(u"upload, folder name of 300 bytes"_s, Fault::LongFolderName, nothing, few);
    add(u"upload, name of 300 bytes"_s, Fault::LongName, nothing, few);
}

void tst_disk_faults::uploadedPhoto()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, before);
    QFETCH(int, size);
    const QByteArray photo(size, 'x');
    const Place place(fault, u"a.qrul.jpg"_s, before);
    VXLocalUploadService service(nullptr);
    service.setTargetFolder(place.folder());
    service.start();
    const QSignalSpy uploads(&service, &VXLocalUploadService::filesUploaded);
    const QByteArray token = service.nextToken().toLatin1();
    const VXLogCapture log;
    // The service puts ".qrul" in front of the last dot itself.
    const QByteArray name =
        fault == Fault::LongName ? QByteArray(295, 'n') + ".jpg" : QByteArray("a.jpg");
    VXPlainHttpClient phone(QHostAddress(service.url().host()),
                            static_cast<quint16>(service.url().port()));
    QCOMPARE(phone.ask("GET /translations.json?" + token).status, 200);
    const auto answer = phone.ask("POST /upload?file=" + name, {"Cookie: sid=" + token}, photo);
    compare({QString::fromLatin1(answer.body), QString::number(answer.status), place.stands(photo),
             warningsAbout(log, place.folder())});
    QCOMPARE(place.leftovers(), QStringList());
    QCOMPARE(uploads.count(), 1); // announced all the same
}

void tst_disk_faults::theDocumentHasNoOtherRows()
{
    // Each data function adds rows to the table of the running test; their names are the rows.
    static constexpr int rows = 13 + 7 + 11 + 12 + 8 + 11;
    QCOMPARE(VXReliabilityDocument::rows(u"Disk"_s).size(), rows);
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_disk_faults, {u"key"_s, key})

#include "tst_disk_faults.moc"
