#include <VXCore/VXDirectoryConfig.h>

#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using Root = VXDirectoryConfig::Root;

class tst_VXDirectoryConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fileBelowTheRootIsFound_data();
    void fileBelowTheRootIsFound();
    void nothingElseIsFound_data();
    void nothingElseIsFound();
    void linkInsideTheRootIsFollowed();
    void linkOutOfTheRootIsRefused();
    void linkedFolderOutOfTheRootIsRefused();
    void rootMayItselfBeALink();
    void pipeIsNoAsset();
    void folderWithASimilarNameIsNotTheRoot();
    void missingRootHoldsNothing();
    void bookProposalBeginsWithASlash();
    void pagePathIsGivenForAMissingFileToo();
    void pagePathNeverLeavesTheRoot_data();
    void pagePathNeverLeavesTheRoot();
    void refusedPathCannotExist();
    void controlCharactersAreRefusedUnseen_data();
    void controlCharactersAreRefusedUnseen();
    void linkWithoutTargetIsRefused();
    void missingFileBehindALinkIsRefused();
    void pagesOfAMissingRootDoNotExist();
    void currentFolderIsNoRoot();
    void downloadedStartScreenWins();
    void relativeRootIsMadeAbsolute();

private:
    void write(const QString& theRelativePath) const;
    [[nodiscard]] QString root() const { return myFolder->filePath(u"root"_s); }
    // The file that cannot exist: its name has a byte more than Linux allows.
    [[nodiscard]] QString refused() const { return root() + "/.refused"_L1 + QString(255, u'-'); }

    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXDirectoryConfig::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    write(u"secret.txt"_s);
    write(u"root/index.html"_s);
    write(u"root/css/page.css"_s);
    write(u"root/Grüße 1.html"_s);
    write(u"root/.hidden"_s);
    write(u"root/.git/config"_s);
    write(u"root-other/index.html"_s);
    VXDirectoryConfig* config = VXDirectoryConfig::instance();
    for (const Root kind :
         {Root::OAuthSupport, Root::QrUpload, Root::StartScreen, Root::Html, Root::BookProposals})
        config->setRoot(kind, root());
}

void tst_VXDirectoryConfig::cleanup()
{
    myFolder.reset();
}

void tst_VXDirectoryConfig::write(const QString& theRelativePath) const
{
    const QString path = myFolder->filePath(theRelativePath);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write("x"), 1);
}

void tst_VXDirectoryConfig::fileBelowTheRootIsFound_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("file") << u"index.html"_s;
    QTest::newRow("file in a folder") << u"css/page.css"_s;
    QTest::newRow("blank and umlauts") << u"Grüße 1.html"_s;
}

void tst_VXDirectoryConfig::fileBelowTheRootIsFound()
{
    QFETCH(QString, name);
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    const QString expected = QFileInfo(root()).canonicalFilePath() + u'/' + name;
    QCOMPARE(config->qrUploadAsset(name), expected);
    QCOMPARE(config->oAuthSupportAsset(name), expected);
}

void tst_VXDirectoryConfig::nothingElseIsFound_data()
{
    QTest::addColumn<QString>("name");

    const QStringList names{
        u""_s,
        u"."_s,
        u".."_s,
        u"/"_s,
        u"//"_s,
        u"./index.html"_s,
        u"missing.html"_s,
        u"css"_s,
        u"css/"_s,
        u"css/.."_s,
        u"index.html/"_s,
        u"index.html/."_s,
        u"/index.html"_s,
        u"//index.html"_s,
        u"css//page.css"_s,
        u"css/./page.css"_s,
        u"css/../index.html"_s,
        u"../secret.txt"_s,
        u"../root/index.html"_s,
        u"../root-other/index.html"_s,
        u"css/../../secret.txt"_s,
        u"..\\secret.txt"_s,
        u"css\\page.css"_s,
        u"....//secret.txt"_s,
        u".../secret.txt"_s,
        u"..;/secret.txt"_s,
        u"%2e%2e/secret.txt"_s,
        u"..%2fsecret.txt"_s,
        u"%252e%252e/secret.txt"_s,
        u"..%c0%afsecret.txt"_s,
        u"．．/secret.txt"_s,
        u"..／secret.txt"_s,
        u".hidden"_s,
        u".git/config"_s,
        u"css/.hidden"_s,
        u"/etc/passwd"_s,
        u"etc/passwd"_s,
        u"../../../../../../../../etc/passwd"_s,
        u"/proc/self/environ"_s,
        u"file:///etc/passwd"_s,
        u":/qt-project.org/qmessagebox/images/qtlogo-64.png"_s,
        u":"_s,
        u":index.html"_s,
        u"qrc:/index.html"_s,
        u"assets:index.html"_s,
        u"C:\\secret.txt"_s,
        u"~"_s,
        u"~/x"_s,
        u"$HOME/x"_s,
        u"index.html\n"_s,
        u" index.html"_s,
        u"index.html "_s,
        u"INDEX.HTML"_s,
        QString(QChar::Null),
        u"index.html"_s + QChar::Null,
        u"index.html"_s + QChar::Null + u".png"_s,
        u"../secret.txt"_s + QChar::Null + u".html"_s,
        QString(QChar(0xd800)),
        QString(300, u'a'),
        QString(100000, u'a'),
        u"a/"_s.repeated(50000),
        u"../"_s.repeated(50000) + u"etc/passwd"_s,
    };
    int number = 0;
    for (const QString& name : names)
        QTest::newRow(qPrintable(u"%1: %2"_s.arg(++number).arg(name.left(60)))) << name;
}

void tst_VXDirectoryConfig::nothingElseIsFound()
{
    QFETCH(QString, name);
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->qrUploadAsset(name), QString());
    QCOMPARE(config->oAuthSupportAsset(name), QString());
}

void tst_VXDirectoryConfig::linkInsideTheRootIsFollowed()
{
    QVERIFY(QFile::link(u"index.html"_s, root() + "/start.html"_L1));
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"start.html"_s),
             QFileInfo(root()).canonicalFilePath() + "/index.html"_L1);
}

void tst_VXDirectoryConfig::linkOutOfTheRootIsRefused()
{
    QVERIFY(QFile::link(myFolder->filePath(u"secret.txt"_s), root() + "/absolute.txt"_L1));
    QVERIFY(QFile::link(u"../secret.txt"_s, root() + "/relative.txt"_L1));
    QVERIFY(QFile::link(u"loop.txt"_s, root() + "/loop.txt"_L1));
    for (const QString& name : {u"absolute.txt"_s, u"relative.txt"_s, u"loop.txt"_s}) {
        QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(name), QString());
        QCOMPARE(VXDirectoryConfig::instance()->findBookProposalFile(u'/' + name), refused());
        QCOMPARE(VXDirectoryConfig::instance()->htmlPath(u'/' + name), refused());
    }
}

void tst_VXDirectoryConfig::linkedFolderOutOfTheRootIsRefused()
{
    QVERIFY(QFile::link(myFolder->path(), root() + "/up"_L1));
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"up/secret.txt"_s), QString());
}

void tst_VXDirectoryConfig::rootMayItselfBeALink()
{
    const QString link = myFolder->filePath(u"link"_s);
    QVERIFY(QFile::link(root(), link));
    VXDirectoryConfig::instance()->setRoot(Root::QrUpload, link);
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"index.html"_s),
             QFileInfo(root()).canonicalFilePath() + "/index.html"_L1);
}

void tst_VXDirectoryConfig::pipeIsNoAsset()
{
    QCOMPARE(::mkfifo(QFile::encodeName(root() + "/pipe"_L1).constData(), 0600), 0);
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"pipe"_s), QString());
}

void tst_VXDirectoryConfig::folderWithASimilarNameIsNotTheRoot()
{
    QVERIFY(QFile::link(myFolder->filePath(u"root-other"_s), root() + "/other"_L1));
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"other/index.html"_s), QString());
}

void tst_VXDirectoryConfig::missingRootHoldsNothing()
{
    VXDirectoryConfig::instance()->setRoot(Root::QrUpload, myFolder->filePath(u"missing"_s));
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"index.html"_s), QString());
    VXDirectoryConfig::instance()->setRoot(Root::QrUpload, QString());
    QCOMPARE(VXDirectoryConfig::instance()->qrUploadAsset(u"etc/passwd"_s), QString());
}

void tst_VXDirectoryConfig::bookProposalBeginsWithASlash()
{
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->findBookProposalFile(u"/css/page.css"_s), root() + "/css/page.css"_L1);
    for (const auto& name :
         {u"//css/page.css"_s, u"/../secret.txt"_s, u"/.."_s, u"/"_s, u"\\"_s, u""_s})
        QCOMPARE(config->findBookProposalFile(name), refused());
}

void tst_VXDirectoryConfig::pagePathIsGivenForAMissingFileToo()
{
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->htmlPath(u"/index.html"_s), root() + "/index.html"_L1);
    QCOMPARE(config->htmlPath(u"threejs/missing.html"_s), root() + "/threejs/missing.html"_L1);
    QCOMPARE(config->startScreenHtmlPath(u"/missing.html"_s, false), root() + "/missing.html"_L1);
    QCOMPARE(config->findBookProposalFile(u"/missing.html"_s), root() + "/missing.html"_L1);
}

void tst_VXDirectoryConfig::pagePathNeverLeavesTheRoot_data()
{
    nothingElseIsFound_data();
}

void tst_VXDirectoryConfig::pagePathNeverLeavesTheRoot()
{
    QFETCH(QString, name);
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    for (const QString& path : {config->htmlPath(name), config->startScreenHtmlPath(name, true),
                                config->findBookProposalFile(name)}) {
        QVERIFY2(path.startsWith(root() + u'/'), qPrintable(path.left(200)));
        QVERIFY(!path.contains("/.."_L1));
        const QFileInfo file(path);
        QVERIFY(!file.isDir());
        if (file.exists())
            QVERIFY(file.canonicalFilePath().startsWith(QFileInfo(root()).canonicalFilePath()));
    }
}

void tst_VXDirectoryConfig::refusedPathCannotExist()
{
    QFile file(VXDirectoryConfig::instance()->htmlPath(u"/../secret.txt"_s));
    QCOMPARE(file.fileName(), refused());
    QVERIFY(!file.open(QFile::WriteOnly));
}

void tst_VXDirectoryConfig::controlCharactersAreRefusedUnseen_data()
{
    QTest::addColumn<int>("code");

    for (const int code : {0x00, 0x01, 0x09, 0x0a, 0x0d, 0x1b, 0x1f, 0x7f, 0x80, 0x9f, 0xfffd})
        QTest::addRow("%04x", code) << code;
}

void tst_VXDirectoryConfig::controlCharactersAreRefusedUnseen()
{
    QFETCH(int, code);
    const QString name = u"a"_s + QChar(code) + u"b"_s;
    if (code != 0)
        write(u"root/"_s + name); // it could be read
    const VXLogCapture log;
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->htmlPath(name), refused());
    QCOMPARE(config->startScreenHtmlPath(name, false), refused());
    QCOMPARE(config->findBookProposalFile(u'/' + name), refused());
    QCOMPARE(log.texts(), QStringList()); // Qt would complain if it were asked for a NUL
}

void tst_VXDirectoryConfig::linkWithoutTargetIsRefused()
{
    QVERIFY(QFile::link(myFolder->filePath(u"later.txt"_s), root() + "/later.txt"_L1));
    QCOMPARE(VXDirectoryConfig::instance()->htmlPath(u"/later.txt"_s), refused());
}

void tst_VXDirectoryConfig::missingFileBehindALinkIsRefused()
{
    QVERIFY(QFile::link(myFolder->path(), root() + "/up"_L1));
    QVERIFY(QFile::link(myFolder->filePath(u"gone"_s), root() + "/gone"_L1));
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->htmlPath(u"/up/later.txt"_s), refused());
    QCOMPARE(config->htmlPath(u"/up/a/b/later.txt"_s), refused());
    QCOMPARE(config->htmlPath(u"/gone/later.txt"_s), refused());
    QCOMPARE(config->htmlPath(u"/index.html/later.txt"_s), refused());
}

void tst_VXDirectoryConfig::pagesOfAMissingRootDoNotExist()
{
    VXDirectoryConfig* config = VXDirectoryConfig::instance();
    const QString missing = myFolder->filePath(u"missing"_s);
    config->setRoot(Root::Html, missing);
    QCOMPARE(config->htmlPath(u"/a.html"_s), missing + "/a.html"_L1);
    config->setRoot(Root::Html, QString());
    QVERIFY(!QFileInfo::exists(config->htmlPath(u"/etc/passwd"_s)));
    QVERIFY(!QFileInfo::exists(config->htmlPath(u"etc/passwd"_s)));
    config->setRoot(Root::Html, u"/"_s);
    QVERIFY(!QFileInfo::exists(config->htmlPath(u"/etc/passwd"_s)));
}

void tst_VXDirectoryConfig::currentFolderIsNoRoot()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(root()));
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    VXDirectoryConfig::instance()->setRoot(Root::Html, myFolder->filePath(u"root-other"_s));
    const bool isFound = QFileInfo::exists(config->htmlPath(u"css/page.css"_s));
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(!isFound);
}

void tst_VXDirectoryConfig::downloadedStartScreenWins()
{
    const VXDirectoryConfig* config = VXDirectoryConfig::instance();
    QCOMPARE(config->startScreenHtmlPath(u"index.html"_s, true), root() + "/index.html"_L1);

    const QString folder =
        qEnvironmentVariable("XDG_DATA_HOME") + "/tst_VXDirectoryConfig/startscreen/html"_L1;
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + "/index.html"_L1);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(config->startScreenHtmlPath(u"index.html"_s, true),
             QFileInfo(file).canonicalFilePath());
    QCOMPARE(config->startScreenHtmlPath(u"index.html"_s, false), root() + "/index.html"_L1);
}

void tst_VXDirectoryConfig::relativeRootIsMadeAbsolute()
{
    VXDirectoryConfig::instance()->setRoot(Root::QrUpload, u"some/folder/"_s);
    QCOMPARE(VXDirectoryConfig::instance()->root(Root::QrUpload),
             QDir::currentPath() + "/some/folder"_L1);
}

VX_TEST_MAIN(QCoreApplication, tst_VXDirectoryConfig)

#include "tst_VXDirectoryConfig.moc"
