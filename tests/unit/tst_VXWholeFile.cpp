#include <VXNetworking/VXWholeFile.h>

#include "VXFileContent.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

ino_t inodeOf(const QString& thePath)
{
    struct stat status = {};
    return stat(QFile::encodeName(thePath).constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

class tst_VXWholeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFileGetsTheBytes_data();
    void aNewFileGetsTheBytes();
    void aFormerFileIsReplacedAsAWhole();
    void nothingElseStaysInTheFolder();
    void theFileBehindALinkIsReplaced();
    void modeAndNameOfAFormerFileStay();
    void aPipeIsWrittenTo();
    void aNameWithoutRoomForMoreIsWrittenInPlace();
    void aFailureHasAReason_data();
    void aFailureHasAReason();
    void allBytesOrNone();
};

void tst_VXWholeFile::aNewFileGetsTheBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("few") << QByteArray("a\0\r\n", 4);
    QTest::newRow("many") << QByteArray(3'000'000, 'x');
}

void tst_VXWholeFile::aNewFileGetsTheBytes()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    QString reason;
    QVERIFY(VXWholeFile::write(path, bytes, reason));
    QVERIFY(QFileInfo(path).isFile());
    QCOMPARE(VXFileContent::of(path), bytes);
    QCOMPARE(reason, QString());
}

void tst_VXWholeFile::aFormerFileIsReplacedAsAWhole()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    VXFileContent::write(path, "much longer than what follows");
    QFile reader(path);
    QVERIFY(reader.open(QFile::ReadOnly));
    QString reason;
    QVERIFY(VXWholeFile::write(path, "new", reason));
    QCOMPARE(VXFileContent::of(path), QByteArray("new"));
    // Who has the former one open reads on in it.
    QCOMPARE(reader.readAll(), QByteArray("much longer than what follows"));
}

void tst_VXWholeFile::nothingElseStaysInTheFolder()
{
    const QTemporaryDir folder;
    QString reason;
    QVERIFY(VXWholeFile::write(folder.filePath(u"file"_s), "new", reason));
    QVERIFY(!VXWholeFile::write(folder.filePath(u"missing/file"_s), "new", reason));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"file"_s});
}

void tst_VXWholeFile::theFileBehindALinkIsReplaced()
{
    const QTemporaryDir folder;
    const QString target = folder.filePath(u"target"_s);
    const QString link = folder.filePath(u"link"_s);
    VXFileContent::write(target, "old");
    QVERIFY(QFile::link(target, link));
    QString reason;
    QVERIFY(VXWholeFile::write(link, "new", reason));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(VXFileContent::of(target), QByteArray("new"));
}

void tst_VXWholeFile::modeAndNameOfAFormerFileStay()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"photo one.jpg"_s);
    VXFileContent::write(path, "old");
    const QFile::Permissions mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(path, mode));
    QString reason;
    QVERIFY(VXWholeFile::write(path, "new", reason));
    QCOMPARE(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser), mode);
}

void tst_VXWholeFile::aPipeIsWrittenTo()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"pipe"_s);
    const QByteArray name = QFile::encodeName(path);
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    const int reader = open(name.constData(), O_RDONLY | O_NONBLOCK); // or the writer would wait
    QVERIFY(reader >= 0);
    QString reason;
    const bool isWritten = VXWholeFile::write(path, "new", reason);
    QByteArray bytes(10, '\0');
    bytes.truncate(qMax<qsizetype>(0, read(reader, bytes.data(), 10)));
    close(reader);
    QVERIFY2(isWritten, qPrintable(reason));
    QCOMPARE(bytes, QByteArray("new"));
}

void tst_VXWholeFile::aNameWithoutRoomForMoreIsWrittenInPlace()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QString(255, u'n'));
    VXFileContent::write(path, "much longer than what follows");
    const ino_t before = inodeOf(path);
    QString reason;
    QVERIFY2(VXWholeFile::write(path, "new", reason), qPrintable(reason));
    QCOMPARE(VXFileContent::of(path), QByteArray("new"));
    QCOMPARE(inodeOf(path), before);
}

void tst_VXWholeFile::aFailureHasAReason_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("folder missing") << u"missing/file"_s;
    QTest::newRow("a folder") << u"."_s;
    QTest::newRow("name too long") << QString(256, u'n');
    QTest::newRow("full device") << u"/dev/full"_s;
}

void tst_VXWholeFile::aFailureHasAReason()
{
    QFETCH(QString, path);
    const QTemporaryDir folder;
    QString reason;
    QVERIFY(!VXWholeFile::write(QDir(folder.path()).absoluteFilePath(path), "new", reason));
    QVERIFY(!reason.isEmpty());
}

void tst_VXWholeFile::allBytesOrNone()
{
    QFile full(u"/dev/full"_s);
    QVERIFY(full.open(QFile::WriteOnly));
    QVERIFY(!VXWholeFile::writeAll(full, "a")); // it waits in a buffer until the flush
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    QVERIFY(VXWholeFile::writeAll(file, "ab"));
    QCOMPARE(VXFileContent::of(file.fileName()), QByteArray("ab")); // while it is still open
}

VX_TEST_MAIN(QCoreApplication, tst_VXWholeFile)

#include "tst_VXWholeFile.moc"
