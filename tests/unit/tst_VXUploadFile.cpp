#include <VXNetworking/VXUploadFile.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

const QByteArray pngHead("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);

} // namespace

class tst_VXUploadFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFieldsAreReturned();
    void aGivenMimeTypeWins();
    void theMimeTypeFollowsFromTheFile_data();
    void theMimeTypeFollowsFromTheFile();
    void aMissingFileIsJudgedByItsName();
    void aCopyIsIndependent();
};

void tst_VXUploadFile::theFieldsAreReturned()
{
    const VXUploadFile file(u"photo"_s, u"/tmp/a.jpg"_s, u"image/x-own"_s);
    QCOMPARE(file.type(), u"photo"_s);
    QCOMPARE(file.file(), u"/tmp/a.jpg"_s);
}

void tst_VXUploadFile::aGivenMimeTypeWins()
{
    const VXUploadFile file(u"photo"_s, u"/tmp/a.jpg"_s, u"image/x-own"_s);
    QCOMPARE(file.mimeType(), u"image/x-own"_s);
}

void tst_VXUploadFile::theMimeTypeFollowsFromTheFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("mimeType");

    QTest::newRow("name and content") << u"a.png"_s << pngHead << u"image/png"_s;
    QTest::newRow("content only") << u"noSuffix"_s << pngHead << u"image/png"_s;
    QTest::newRow("the name wins") << u"a.jpg"_s << pngHead << u"image/jpeg"_s;
    QTest::newRow("upper case") << u"A.JPG"_s << QByteArray("x") << u"image/jpeg"_s;
    QTest::newRow("empty, no suffix") << u"empty"_s << QByteArray() << u"application/x-zerosize"_s;
    QTest::newRow("text") << u"notes"_s << QByteArray("hello\n") << u"text/plain"_s;
    QTest::newRow("bytes") << u"bytes"_s << QByteArray("\0\1\2\3", 4)
                           << u"application/octet-stream"_s;
}

void tst_VXUploadFile::theMimeTypeFollowsFromTheFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, mimeType);

    const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    QVERIFY2(file.open(QFile::WriteOnly), qPrintable(file.errorString()));
    QCOMPARE(file.write(content), content.size());
    file.close();

    QCOMPARE(VXUploadFile(u"photo"_s, file.fileName(), QString()).mimeType(), mimeType);
    QCOMPARE(VXUploadFile::mimeType(file.fileName()), mimeType);
}

void tst_VXUploadFile::aMissingFileIsJudgedByItsName()
{
    const QTemporaryDir folder;
    QCOMPARE(VXUploadFile::mimeType(folder.filePath(u"missing.png"_s)), u"image/png"_s);
    QCOMPARE(VXUploadFile::mimeType(folder.filePath(u"missing"_s)), u"application/octet-stream"_s);
}

void tst_VXUploadFile::aCopyIsIndependent()
{
    const VXUploadFile file(u"photo"_s, u"/tmp/a.jpg"_s, u"image/jpeg"_s);
    VXUploadFile copy = file;
    copy = VXUploadFile(u"video"_s, u"/tmp/b.mp4"_s, u"video/mp4"_s);
    QCOMPARE(file.type(), u"photo"_s);
    QCOMPARE(copy.mimeType(), u"video/mp4"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXUploadFile)

#include "tst_VXUploadFile.moc"
