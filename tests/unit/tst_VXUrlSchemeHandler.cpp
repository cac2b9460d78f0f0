#include <VXNetworking/VXUrlSchemeHandler.h>

#include "VXAssetFolders.h"
#include "VXLogCapture.h"
#include "VXOpenedUrls.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <memory>

using namespace Qt::StringLiterals;

class tst_VXUrlSchemeHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { myFolders = std::make_unique<VXAssetFolders>(); }
    void cleanup() { myFolders.reset(); }

    void suffixDecidesTheType_data();
    void suffixDecidesTheType();
    void commandOpensTheAddressOnce_data();
    void commandOpensTheAddressOnce();
    void hostAndCaseOfTheSchemeDoNotMatter();
    void otherAddressIsNoCommand_data();
    void otherAddressIsNoCommand();
    void usualTargetIsOpenedSilently();
    void otherTargetIsOpenedWithOneWarning();
    void missingTargetIsACommandAllTheSame();
    void optionOfAProgramIsNotOpened_data();
    void optionOfAProgramIsNotOpened();
    void startScreenComesFirst();
    void scenePageComesBeforeTheRenderedPicture();
    void renderedPictureNeedNotExist();
    void threejsIsCaseSensitive();
    void bookProposalIsAskedByItsLastPart();
    void bookProposalNeedsNoSlash();
    void bookProposalIsCaseSensitive();
    void otherPathIsThatOfAMissingStartScreenFile();
    void folderIsNoFile();
    void nothingOutsideIsServed();
    void plantedLinksAreNotServed();

private:
    VXUrlSchemeHandler myHandler;
    std::unique_ptr<VXAssetFolders> myFolders;
};

void tst_VXUrlSchemeHandler::suffixDecidesTheType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");

    const QList<std::pair<QString, QString>> rows{
        {u"a.html"_s, u"text/html"_s},     {u"a.js"_s, u"application/javascript"_s},
        {u"a.jpg"_s, u"image/jpeg"_s},     {u"a.png"_s, u"image/png"_s},
        {u"a.svg"_s, u"image/svg+xml"_s},  {u"a.css"_s, u"text/css"_s},
        {u"a.mp4"_s, u"video/mp4"_s},      {u"a.webp"_s, u"image/webp"_s},
        {u"a.webm"_s, u"video/webm"_s},    {u"a.jpeg"_s, u"text/plain"_s},
        {u"a.htm"_s, u"text/plain"_s},     {u"a.HTML"_s, u"text/plain"_s},
        {u"a.html.gz"_s, u"text/plain"_s}, {u"a.b.html"_s, u"text/html"_s},
        {u"html"_s, u"text/plain"_s},      {u""_s, u"text/plain"_s},
    };
    for (const auto& [name, type] : rows)
        QTest::newRow(qPrintable(u"\"%1\""_s.arg(name))) << name << type;
}

void tst_VXUrlSchemeHandler::suffixDecidesTheType()
{
    QFETCH(QString, name);
    QTEST(myHandler.contentType(QFileInfo(name)), "type");
}

void tst_VXUrlSchemeHandler::commandOpensTheAddressOnce_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("target");

    QTest::newRow("https") << u"url=https%3A%2F%2Fwww.example%2Fa"_s << u"https://www.example/a"_s;
    QTest::newRow("mailto") << u"url=mailto%3Aa%40b.example"_s << u"mailto:a@b.example"_s;
    QTest::newRow("not encoded") << u"url=http://www.example/"_s << u"http://www.example/"_s;
    QTest::newRow("query and fragment") << u"url=https%3A%2F%2Fh.example%2F%3Fa%3D1%26b%3D2%23c"_s
                                        << u"https://h.example/?a=1&b=2#c"_s;
    QTest::newRow("decoded once") << u"url=https%3A%2F%2Fh.example%2F%25C3%25A4%2520"_s
                                  << u"https://h.example/%C3%A4%20"_s;
    QTest::newRow("plus stays") << u"url=https%3A%2F%2Fh.example%2F%3Fq%3Da+b%2Bc"_s
                                << u"https://h.example/?q=a+b+c"_s;
    QTest::newRow("first of two") << u"url=http%3A%2F%2Fa.example&url=http%3A%2F%2Fb.example"_s
                                  << u"http://a.example"_s;
    QTest::newRow("beside another") << u"x=1&url=http%3A%2F%2Fa.example"_s << u"http://a.example"_s;
}

void tst_VXUrlSchemeHandler::commandOpensTheAddressOnce()
{
    QFETCH(QString, query);
    QFETCH(QString, target);
    const VXOpenedUrls opened({u"http"_s, u"https"_s, u"mailto"_s});
    QVERIFY(myHandler.commandFilter(QUrl(u"tov://localhost/openUrl?"_s + query)));
    QCOMPARE(opened.urls().size(), 1);
    QCOMPARE(QString::fromLatin1(opened.urls().constFirst().toEncoded()), target);
}

void tst_VXUrlSchemeHandler::hostAndCaseOfTheSchemeDoNotMatter()
{
    const VXOpenedUrls opened({u"http"_s});
    // The engine and QUrl write schemes small.
    for (const auto& address :
         {u"tov:///openUrl?url=http%3A%2F%2Fa"_s, u"tov:/openUrl?url=http%3A%2F%2Fa"_s,
          u"TOV://any:1/%6fpenUrl?url=http%3A%2F%2Fa"_s})
        QVERIFY2(myHandler.commandFilter(QUrl(address)), qPrintable(address));
    QCOMPARE(opened.urls().size(), 3);
}

void tst_VXUrlSchemeHandler::otherAddressIsNoCommand_data()
{
    QTest::addColumn<QString>("address");

    for (const auto& address :
         {u"http://localhost/openUrl?url=http%3A%2F%2Fa"_s,
          u"tovx://localhost/openUrl?url=http%3A%2F%2Fa"_s,
          u"tov://localhost/openurl?url=http%3A%2F%2Fa"_s,
          u"tov://localhost/openUrl/?url=http%3A%2F%2Fa"_s,
          u"tov://localhost//openUrl?url=http%3A%2F%2Fa"_s,
          u"tov://localhost/x/openUrl?url=http%3A%2F%2Fa"_s, u"tov:openUrl?url=http%3A%2F%2Fa"_s,
          u"tov://openUrl?url=http%3A%2F%2Fa"_s, u"tov://localhost/?url=http%3A%2F%2Fa"_s, u""_s})
        QTest::newRow(qPrintable(address)) << address;
}

void tst_VXUrlSchemeHandler::otherAddressIsNoCommand()
{
    QFETCH(QString, address);
    const VXOpenedUrls opened({u"http"_s});
    QVERIFY(!myHandler.commandFilter(QUrl(address)));
    QVERIFY(opened.urls().isEmpty());
}

void tst_VXUrlSchemeHandler::usualTargetIsOpenedSilently()
{
    const VXOpenedUrls opened({u"http"_s, u"https"_s, u"mailto"_s});
    const VXLogCapture log;
    for (const auto& target : {u"http%3A%2F%2Fa"_s, u"HTTPS%3A%2F%2Fa"_s, u"mailto%3Aa%40b"_s})
        QVERIFY(myHandler.commandFilter(QUrl(u"tov://localhost/openUrl?url="_s + target)));
    QCOMPARE(opened.urls().size(), 3);
    QCOMPARE(log.texts(), QStringList());
}

void tst_VXUrlSchemeHandler::otherTargetIsOpenedWithOneWarning()
{
    const VXOpenedUrls opened({u"smb"_s});
    const VXLogCapture log;
    QVERIFY(myHandler.commandFilter(
        QUrl(u"tov://localhost/openUrl?url=smb%3A%2F%2Fme%3Apass%40h%2F%3Ftoken%3Dgeheim"_s)));
    QCOMPARE(opened.urls(), QList<QUrl>{QUrl(u"smb://me:pass@h/?token=geheim"_s)});
    QCOMPARE(log.texts(QtWarningMsg),
             QStringList{u"a page opens an address of the scheme \"smb\""_s});
}

void tst_VXUrlSchemeHandler::missingTargetIsACommandAllTheSame()
{
    const VXLogCapture log;
    QVERIFY(myHandler.commandFilter(QUrl(u"tov://localhost/openUrl"_s)));
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"a page opens an address of the scheme \"\""_s});
}

void tst_VXUrlSchemeHandler::optionOfAProgramIsNotOpened_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isOpened");

    QTest::newRow("option") << u"--version"_s << false;
    QTest::newRow("encoded twice") << u"%252D%252Dversion"_s << false;
    QTest::newRow("path") << u"a-b"_s << true;
}

void tst_VXUrlSchemeHandler::optionOfAProgramIsNotOpened()
{
    QFETCH(QString, target);
    QFETCH(bool, isOpened);
    const VXOpenedUrls opened({QString()}); // what has no scheme
    const VXLogCapture log;
    QVERIFY(myHandler.commandFilter(QUrl(u"tov://localhost/openUrl?url="_s + target)));
    QCOMPARE(!opened.urls().isEmpty(), isOpened);
    QCOMPARE(log.texts(QtWarningMsg), QStringList{u"a page opens an address of the scheme \"\""_s});
}

void tst_VXUrlSchemeHandler::startScreenComesFirst()
{
    for (const auto& name :
         {u"start/html/threejs/a.html"_s, u"html/threejs/a.html"_s,
          u"start/html/autoBookProposal.html"_s, u"books/autoBookProposal.html"_s})
        QVERIFY(myFolders->write(name, "x"));
    QCOMPARE(myHandler.fileInfo(u"/threejs/a.html"_s).filePath(),
             myFolders->path(u"start/html/threejs/a.html"_s));
    QCOMPARE(myHandler.fileInfo(u"/autoBookProposal.html"_s).filePath(),
             myFolders->path(u"start/html/autoBookProposal.html"_s));
}

void tst_VXUrlSchemeHandler::scenePageComesBeforeTheRenderedPicture()
{
    const QString picture = u"scene-%1.png"_s.arg(QCoreApplication::applicationPid());
    QVERIFY(myFolders->write(u"html/threejs/a.html"_s, "x"));
    QVERIFY(myFolders->write(u"temp/"_s + picture, "x"));
    QCOMPARE(myHandler.fileInfo(u"/threejs/a.html"_s).filePath(),
             myFolders->path(u"html/threejs/a.html"_s));
    const QFileInfo rendered = myHandler.fileInfo(u"/threejs/missing.png"_s);
    QVERIFY(rendered.exists());
    QCOMPARE(rendered.filePath(), myFolders->path(u"temp/"_s + picture));
}

void tst_VXUrlSchemeHandler::renderedPictureNeedNotExist()
{
    const QFileInfo rendered = myHandler.fileInfo(u"/threejsomething"_s);
    QCOMPARE(rendered.fileName(), u"scene-%1.png"_s.arg(QCoreApplication::applicationPid()));
    QVERIFY(!rendered.exists());
}

void tst_VXUrlSchemeHandler::threejsIsCaseSensitive()
{
    QVERIFY(myFolders->write(u"html/threejs/a.html"_s, "x"));
    QVERIFY(myFolders->write(u"html/Threejs/a.html"_s, "x"));
    QCOMPARE(myHandler.fileInfo(u"/Threejs/a.html"_s).filePath(),
             myFolders->path(u"start/html/Threejs/a.html"_s));
    QVERIFY(!myHandler.fileInfo(u"/x/threejs/a.html"_s).exists());
}

void tst_VXUrlSchemeHandler::bookProposalIsAskedByItsLastPart()
{
    QVERIFY(myFolders->write(u"books/page.html"_s, "x"));
    const QFileInfo file = myHandler.fileInfo(u"/x/autoBookProposal/y/page.html"_s);
    QVERIFY(file.exists());
    QCOMPARE(file.filePath(), myFolders->path(u"books/page.html"_s));
}

void tst_VXUrlSchemeHandler::bookProposalNeedsNoSlash()
{
    QVERIFY(myFolders->write(u"books/autoBookProposal.html"_s, "x"));
    QCOMPARE(myHandler.fileInfo(u"autoBookProposal.html"_s).filePath(),
             myFolders->path(u"books/autoBookProposal.html"_s));
}

void tst_VXUrlSchemeHandler::bookProposalIsCaseSensitive()
{
    QVERIFY(myFolders->write(u"books/page.html"_s, "x"));
    QVERIFY(!myHandler.fileInfo(u"/autobookproposal/page.html"_s).exists());
}

void tst_VXUrlSchemeHandler::otherPathIsThatOfAMissingStartScreenFile()
{
    const QFileInfo file = myHandler.fileInfo(u"/a/b.html"_s);
    QCOMPARE(file.filePath(), myFolders->path(u"start/html/a/b.html"_s));
    QVERIFY(!file.exists());
}

void tst_VXUrlSchemeHandler::folderIsNoFile()
{
    QVERIFY(myFolders->write(u"start/html/folder/a.html"_s, "x"));
    QVERIFY(myFolders->write(u"books/folder/a.html"_s, "x"));
    for (const auto& path : {u""_s, u"/"_s, u"/folder"_s, u"/folder/"_s, u"/autoBookProposal/"_s,
                             u"/autoBookProposal/folder"_s})
        QVERIFY2(!myHandler.fileInfo(path).exists(), qPrintable(path));
}

void tst_VXUrlSchemeHandler::nothingOutsideIsServed()
{
    const VXLogCapture log;
    const QStringList paths = myFolders->traversals();
    QVERIFY(paths.size() > 200);
    for (const QString& path : paths) {
        const QUrl url(u"tov://localhost"_s + path);
        const QFileInfo file = myHandler.fileInfo(url.path(QUrl::FullyDecoded));
        QVERIFY2(!file.exists(), qPrintable(path + " -> "_L1 + file.filePath()));
        QVERIFY(!file.filePath().isEmpty());
        QVERIFY(file.filePath().startsWith(myFolders->path(QString())));
    }
    QCOMPARE(log.texts(), QStringList()); // Qt complains about names that it cannot look up
}

void tst_VXUrlSchemeHandler::plantedLinksAreNotServed()
{
    const QString secret = myFolders->path(u"secret.html"_s);
    const QString base = myFolders->path(QString());
    for (const auto& folder : {u"start/html"_s, u"html/threejs"_s, u"books"_s}) {
        QVERIFY(QFile::link(secret, myFolders->path(folder + "/file.html"_L1)));
        QVERIFY(QFile::link(base, myFolders->path(folder + "/up"_L1)));
        QVERIFY(QFile::link(u"/etc/passwd"_s, myFolders->path(folder + "/passwd"_L1)));
        QVERIFY(QFile::link(base + "later.html"_L1, myFolders->path(folder + "/later.html"_L1)));
    }
    const QStringList before{u"/file.html"_s,
                             u"/up/secret.html"_s,
                             u"/passwd"_s,
                             u"/later.html"_s,
                             u"/up/later.html"_s,
                             u"/threejs/file.html"_s,
                             u"/threejs/up/secret.html"_s,
                             u"/threejs/later.html"_s,
                             u"/autoBookProposal/file.html"_s,
                             u"/autoBookProposal/up"_s,
                             u"/autoBookProposal/later.html"_s};
    QList<QFileInfo> files;
    for (const QString& path : before)
        files << myHandler.fileInfo(path);
    // The target of a link may come between the look-up and the reading.
    QVERIFY(myFolders->write(u"later.html"_s, "GEHEIM"));
    for (const QFileInfo& file : files)
        QVERIFY2(!QFile::exists(file.filePath()), qPrintable(file.filePath()));
}

VX_TEST_MAIN(QCoreApplication, tst_VXUrlSchemeHandler)

#include "tst_VXUrlSchemeHandler.moc"
