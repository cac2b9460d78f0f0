#include <VXNetworking/VXNetworkingResult.h>

#include "VXFileContent.h"
#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <type_traits>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Remembers which files were announced, and what was on the disk at that time.
class RecordingPlatform : public VXPlatformIndependent
{
public:
    void fileWritten(const QFileInfo& theFile) override
    {
        QFile file(theFile.absoluteFilePath());
        if (file.open(QFile::ReadOnly))
            contents << file.read(10000); // of /dev/full there is no end
        written << theFile.absoluteFilePath();
        sizes << theFile.size();
    }
    void fileWriteFailed(const QFileInfo& theFile) override
    {
        failed << theFile.absoluteFilePath();
    }

    QStringList written;
    QStringList failed;
    QByteArrayList contents;
    QList<qint64> sizes; // as the announcement says
};

QDomDocument documentFrom(const QString& theXml)
{
    QDomDocument document;
    if (!document.setContent(theXml))
        qWarning("the test's XML is broken: %s", qPrintable(theXml));
    return document;
}

QString answerWith(const QString& theHead, const QString& theContent)
{
    return u"<answer server_timestamp=\"1234\"><head>"_s + theHead + u"</head>"_s + theContent +
           u"</answer>"_s;
}

VXNetworkingResult goodResult()
{
    return documentFrom(answerWith(QString(), u"<content><a>1</a></content>"_s));
}

} // namespace

class tst_VXNetworkingResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aFreshResultWasNotExecuted();
    void noErrorIsASuccessWithoutPayload();
    void anotherCodeHasNoDocument();
    void anInformationalCodeIsASuccess();
    void anErrorOfTheHeadAborts();
    void anInformationalCodeWithoutDocumentAborts();
    void aNullAnswerAborts();
    void aMissingHeadIsASuccess();
    void theContentIsAChildOfTheLastNode_data();
    void theContentIsAChildOfTheLastNode();
    void theTimeStampIsThatOfTheLastElement_data();
    void theTimeStampIsThatOfTheLastElement();
    void theDocumentIsIndentedByOne();
    void raiseErrorKeepsTheDocument();
    void raiseFileErrorLooksAtTheDisk();
    void errorIsACopy();
    void theContentIsSavedByteForByte_data();
    void theContentIsSavedByteForByte();
    void anExistingFileIsTruncated();
    void theFileIsAnnouncedWhenItIsComplete();
    void theAnnouncementKnowsTheNewFile();
    void aReaderOfTheFormerFileKeepsIt();
    void anAbortedResultSavesNothing();
    void aResultWithoutContentSavesNothing();
    void aMissingFolderIsRaised();
    void aFolderAsTargetIsOnlyLogged();
    void aWriteProtectedFileIsOnlyLogged();
    void aFullDiskIsNoticed();
    void aFullDiskIsNoticedWithALargeContent();

private:
    RecordingPlatform* myPlatform = nullptr; // owned by the singleton during a test
    std::unique_ptr<VXPlatformIndependent> myFormerPlatform;
};

void tst_VXNetworkingResult::init()
{
    auto platform = std::make_unique<RecordingPlatform>();
    myPlatform = platform.get();
    myFormerPlatform = VXPlatformIndependent::setInstance(std::move(platform));
}

void tst_VXNetworkingResult::cleanup()
{
    VXPlatformIndependent::setInstance(std::move(myFormerPlatform));
}

void tst_VXNetworkingResult::aFreshResultWasNotExecuted()
{
    static_assert(std::has_virtual_destructor_v<VXNetworkingResult>);
    const VXNetworkingResult result;
    QVERIFY(result.isAbortSituation());
    QVERIFY(!result.isSuccess());
    QVERIFY(result.errorOccurred());
    QCOMPARE(static_cast<int>(result.errorCode()), 7777);
    QCOMPARE(static_cast<int>(result.error().severity()), 2);
    QVERIFY(result.contentNode().isNull());
    QVERIFY(result.serverTimeStamp().isEmpty());
    QVERIFY(result.documentToString().isEmpty());
}

void tst_VXNetworkingResult::noErrorIsASuccessWithoutPayload()
{
    const VXNetworkingResult result(NoError);
    QVERIFY(result.isSuccess());
    QVERIFY(!result.isAbortSituation());
    QVERIFY(!result.errorOccurred());
    QVERIFY(result.contentNode().isNull());
    QVERIFY(result.serverTimeStamp().isEmpty());
}

void tst_VXNetworkingResult::anotherCodeHasNoDocument()
{
    const VXNetworkingResult result(XmlParseError);
    QVERIFY(result.isAbortSituation());
    QCOMPARE(static_cast<int>(result.errorCode()), 5011);
    QVERIFY(result.documentToString().isEmpty());
}

void tst_VXNetworkingResult::anInformationalCodeIsASuccess()
{
    const VXNetworkingResult result(
        documentFrom(answerWith(u"<errorcode>85</errorcode>"_s, u"<content/>"_s)));
    QCOMPARE(static_cast<int>(result.errorCode()), 85);
    QVERIFY(!result.errorOccurred());
    QVERIFY(result.isSuccess());
}

void tst_VXNetworkingResult::anErrorOfTheHeadAborts()
{
    const VXNetworkingResult result(
        documentFrom(answerWith(u"<errorcode coupon_code=\"X1\" wait_time=\"3\">70</errorcode>"
                                u"<errortext>invalid</errortext>"_s,
                                u"<content/>"_s)));
    QVERIFY(result.isAbortSituation());
    QVERIFY(!result.isSuccess());
    QCOMPARE(static_cast<int>(result.errorCode()), 70);
    QCOMPARE(result.error().defectiveCouponCode(), u"X1"_s);
    QCOMPARE(result.error().waitTime(), 3);
    QCOMPARE(result.error().errorText(), u"invalid"_s);
    QVERIFY(!result.contentNode().isNull());
}

void tst_VXNetworkingResult::anInformationalCodeWithoutDocumentAborts()
{
    const VXNetworkingResult result(SoftwareUpToDate);
    QVERIFY(!result.errorOccurred());
    QVERIFY(result.isAbortSituation());
}

void tst_VXNetworkingResult::aNullAnswerAborts()
{
    const VXNetworkingResult result{QDomDocument()};
    QCOMPARE(static_cast<int>(result.errorCode()), 0);
    QVERIFY(!result.errorOccurred());
    QVERIFY(result.isAbortSituation());
}

void tst_VXNetworkingResult::aMissingHeadIsASuccess()
{
    const VXNetworkingResult result(documentFrom(u"<answer><content/></answer>"_s));
    QCOMPARE(static_cast<int>(result.errorCode()), 0);
    QVERIFY(result.isSuccess());
}

void tst_VXNetworkingResult::theContentIsAChildOfTheLastNode_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("id");

    QTest::newRow("plain") << u"<r><content id=\"1\"/></r>"_s << u"1"_s;
    QTest::newRow("the first of two")
        << u"<r><content id=\"1\"/><content id=\"2\"/></r>"_s << u"1"_s;
    QTest::newRow("not a grandchild") << u"<r><x><content id=\"1\"/></x></r>"_s << QString();
    QTest::newRow("not the root itself") << u"<content id=\"1\"/>"_s << QString();
    QTest::newRow("another case") << u"<r><Content id=\"1\"/></r>"_s << QString();
    QTest::newRow("comment before") << u"<!-- x --><r><content id=\"1\"/></r>"_s << u"1"_s;
    QTest::newRow("blanks after") << u"<r><content id=\"1\"/></r>\n  \n"_s << u"1"_s;
    QTest::newRow("comment after") << u"<r><content id=\"1\"/></r><!-- x -->"_s << QString();
    QTest::newRow("instruction after") << u"<r><content id=\"1\"/></r><?x y?>"_s << QString();
}

void tst_VXNetworkingResult::theContentIsAChildOfTheLastNode()
{
    QFETCH(QString, xml);
    QFETCH(QString, id);

    const VXNetworkingResult result(documentFrom(xml));
    QCOMPARE(result.contentNode().isNull(), id.isNull());
    QCOMPARE(result.contentNode().attribute(u"id"_s), id);
    QVERIFY(result.isSuccess());
}

void tst_VXNetworkingResult::theTimeStampIsThatOfTheLastElement_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("timeStamp");

    QTest::newRow("plain") << u"<r server_timestamp=\"7\"/>"_s << u"7"_s;
    QTest::newRow("comment after") << u"<r server_timestamp=\"7\"/><!-- x -->"_s << u"7"_s;
    QTest::newRow("absent") << u"<r><content server_timestamp=\"7\"/></r>"_s << QString();
    QTest::newRow("as it stands") << u"<r server_timestamp=\" 2026-11-21 \"/>"_s
                                  << u" 2026-11-21 "_s;
}

void tst_VXNetworkingResult::theTimeStampIsThatOfTheLastElement()
{
    QFETCH(QString, xml);
    QFETCH(QString, timeStamp);
    QCOMPARE(VXNetworkingResult(documentFrom(xml)).serverTimeStamp(), timeStamp);
}

void tst_VXNetworkingResult::theDocumentIsIndentedByOne()
{
    const VXNetworkingResult result(documentFrom(u"<r><content><a>1</a></content></r>"_s));
    QCOMPARE(result.documentToString(), u"<r>\n <content>\n  <a>1</a>\n </content>\n</r>\n"_s);
}

void tst_VXNetworkingResult::raiseErrorKeepsTheDocument()
{
    VXNetworkingResult result(documentFrom(answerWith(
        u"<errorcode coupon_code=\"X1\" wait_time=\"3\">70</errorcode>"_s, u"<content/>"_s)));
    result.raiseError(SoftwareUpToDate);
    QCOMPARE(static_cast<int>(result.errorCode()), 85);
    QVERIFY(result.error().defectiveCouponCode().isEmpty());
    QCOMPARE(result.error().waitTime(), 0);
    QVERIFY(result.isSuccess());
    QVERIFY(!result.contentNode().isNull());
}

void tst_VXNetworkingResult::raiseFileErrorLooksAtTheDisk()
{
    const QTemporaryDir folder;
    VXNetworkingResult result = goodResult();
    VXFileContent::write(folder.filePath(u"full"_s), "x");
    result.raiseFileError(QFileInfo(folder.filePath(u"full"_s)));
    QVERIFY(result.isSuccess());

    VXFileContent::write(folder.filePath(u"empty"_s), {});
    result.raiseFileError(QFileInfo(folder.filePath(u"empty"_s)));
    QCOMPARE(static_cast<int>(result.errorCode()), 2001);
    result.raiseFileError(QFileInfo(folder.filePath(u"missing"_s)));
    QCOMPARE(static_cast<int>(result.errorCode()), 2002);
    result.raiseFileError(QFileInfo(folder.filePath(u"missing/file"_s)));
    QCOMPARE(static_cast<int>(result.errorCode()), 2000);
}

void tst_VXNetworkingResult::errorIsACopy()
{
    VXNetworkingResult result = goodResult();
    VXNetworkingError error = result.error();
    error.raise(InvalidLogin);
    QVERIFY(result.isSuccess());
}

void tst_VXNetworkingResult::theContentIsSavedByteForByte_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QByteArray>("bytes");

    // The content element begins one level deep, so it is indented by one blank.
    QTest::newRow("subtree") << u"<content><a>1</a><b/></content>"_s
                             << QByteArray(" <content>\n  <a>1</a>\n  <b/>\n </content>\n");
    QTest::newRow("empty") << u"<content/>"_s << QByteArray(" <content/>\n");
    QTest::newRow("attribute") << u"<content id=\"1\">x</content>"_s
                               << QByteArray(" <content id=\"1\">x</content>\n");
    QTest::newRow("UTF-8") << u"<content>ä \u20ac \U0001F4F7</content>"_s
                           << QByteArray(" <content>\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x93\xB7"
                                         "</content>\n");
    QTest::newRow("escaped") << u"<content>&lt;a&gt; &amp; \"</content>"_s
                             << QByteArray(" <content>&lt;a> &amp; \"</content>\n");
    QTest::newRow("CDATA") << u"<content><![CDATA[<x>]]></content>"_s
                           << QByteArray(" <content><![CDATA[<x>]]></content>\n");
}

void tst_VXNetworkingResult::theContentIsSavedByteForByte()
{
    QFETCH(QString, content);
    QFETCH(QByteArray, bytes);

    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXNetworkingResult result(documentFrom(u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"_s +
                                           answerWith(u"<errorcode>0</errorcode>"_s, content)));
    result.saveContentToFile(QFileInfo(path));
    QVERIFY(result.isSuccess());
    QCOMPARE(VXFileContent::of(path), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + bytes);
}

void tst_VXNetworkingResult::anExistingFileIsTruncated()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, QByteArray(10000, 'x'));
    goodResult().saveContentToFile(QFileInfo(path));
    QCOMPARE(VXFileContent::of(path), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                 " <content>\n  <a>1</a>\n </content>\n"));
}

void tst_VXNetworkingResult::theFileIsAnnouncedWhenItIsComplete()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    const VXLogCapture log;
    goodResult().saveContentToFile(QFileInfo(QDir::current().relativeFilePath(path)));
    QCOMPARE(myPlatform->written.size(), 1);
    QCOMPARE(QDir::cleanPath(myPlatform->written.constFirst()), path);
    QCOMPARE(myPlatform->contents, QByteArrayList{VXFileContent::of(path)});
    QVERIFY(myPlatform->contents.constFirst().endsWith("</content>\n"));
    QVERIFY(myPlatform->failed.isEmpty());
    QVERIFY(log.lines().isEmpty());
}

void tst_VXNetworkingResult::theAnnouncementKnowsTheNewFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, "old");
    const QFileInfo file(path);
    QCOMPARE(file.size(), 3); // remembered by the value
    goodResult().saveContentToFile(file);
    QCOMPARE(myPlatform->sizes, QList<qint64>{VXFileContent::of(path).size()});
}

void tst_VXNetworkingResult::aReaderOfTheFormerFileKeepsIt()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, "old");
    QFile reader(path);
    QVERIFY2(reader.open(QFile::ReadOnly), qPrintable(reader.errorString()));
    goodResult().saveContentToFile(QFileInfo(path));
    QCOMPARE(reader.readAll(), QByteArray("old"));
    QVERIFY(VXFileContent::of(path).endsWith("</content>\n"));
}

void tst_VXNetworkingResult::anAbortedResultSavesNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXNetworkingResult result(documentFrom(
        answerWith(u"<errorcode coupon_code=\"X1\">70</errorcode>"_s, u"<content/>"_s)));
    result.saveContentToFile(QFileInfo(path));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(static_cast<int>(result.errorCode()), 70);
    QVERIFY(myPlatform->written.isEmpty());
}

void tst_VXNetworkingResult::aResultWithoutContentSavesNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXNetworkingResult result(NoError);
    result.saveContentToFile(QFileInfo(path));
    QVERIFY(!QFile::exists(path));
    QVERIFY(result.isSuccess());

    VXNetworkingResult fresh;
    fresh.saveContentToFile(QFileInfo(path));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(static_cast<int>(fresh.errorCode()), 7777);
    QVERIFY(myPlatform->written.isEmpty());
}

void tst_VXNetworkingResult::aMissingFolderIsRaised()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"missing/order.xml"_s);
    VXNetworkingResult result = goodResult();
    const VXLogCapture log;
    result.saveContentToFile(QFileInfo(path));
    QCOMPARE(static_cast<int>(result.errorCode()), 2000);
    QCOMPARE(result.error().originator(), path);
    QVERIFY(result.isAbortSituation());
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"could not write to file "_s + path});
    QVERIFY(myPlatform->written.isEmpty());
    QVERIFY(!QFileInfo::exists(folder.filePath(u"missing"_s)));
}

void tst_VXNetworkingResult::aFolderAsTargetIsOnlyLogged()
{
    const QTemporaryDir folder;
    VXFileContent::write(folder.filePath(u"file"_s), "x"); // a folder with content has a size
    VXNetworkingResult result = goodResult();
    const VXLogCapture log;
    result.saveContentToFile(QFileInfo(folder.path()));
    QVERIFY(result.isSuccess());
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"could not write to file "_s + folder.path()});
    QVERIFY(myPlatform->written.isEmpty());
}

void tst_VXNetworkingResult::aWriteProtectedFileIsOnlyLogged()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"order.xml"_s);
    VXFileContent::write(path, "old");
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(folder.isValid());
    // The superuser may write anywhere, so the test steps down to another user.
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7555)));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadOther));
        QCOMPARE(seteuid(65534), 0);
    }
    VXNetworkingResult result = goodResult();
    const VXLogCapture log;
    result.saveContentToFile(QFileInfo(path));
    const QStringList warnings = log.texts(QtWarningMsg);
    if (isRoot)
        QCOMPARE(seteuid(0), 0);

    QCOMPARE(warnings, QStringList{u"could not write to file "_s + path});
    QVERIFY(result.isSuccess());
    QCOMPARE(VXFileContent::of(path), QByteArray("old"));
    QVERIFY(myPlatform->written.isEmpty());
}

void tst_VXNetworkingResult::aFullDiskIsNoticed()
{
    VXNetworkingResult result = goodResult();
    const VXLogCapture log;
    result.saveContentToFile(QFileInfo(u"/dev/full"_s)); // each write fails with ENOSPC
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"could not write to file /dev/full"_s});
    QVERIFY(myPlatform->written.isEmpty());
    QCOMPARE(static_cast<int>(result.errorCode()), 2001); // a device has no size
    QCOMPARE(result.error().originator(), u"/dev/full"_s);
}

void tst_VXNetworkingResult::aFullDiskIsNoticedWithALargeContent()
{
    VXNetworkingResult result(
        documentFrom(answerWith(QString(), u"<content>%1</content>"_s.arg(QString(300000, u'x')))));
    const VXLogCapture log;
    result.saveContentToFile(QFileInfo(u"/dev/full"_s));
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"could not write to file /dev/full"_s});
    QVERIFY(myPlatform->written.isEmpty());
    QVERIFY(result.isAbortSituation());
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetworkingResult)

#include "tst_VXNetworkingResult.moc"
