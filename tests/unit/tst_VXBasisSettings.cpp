#include <VXCore/VXBasisSettings.h>

#include "VXCoreProcess.h"
#include "VXLogCapture.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions foreign = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                       QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

QString folder()
{
    return VXBasisSettings::instance()->temporaryDirectory();
}

// With the first warning about theRefused, a folder of this process alone takes its place.
void verifyThatAnotherTakesItsPlace(const QString& theRefused)
{
    VXBasisSettings::instance()->setTemporaryDirectory(theRefused);
    QTest::ignoreMessage(
        QtWarningMsg, qPrintable(theRefused + u": no folder of one's own for temporary files"_s));
    const QFileInfo found(folder());
    QVERIFY(found.isDir() && found.isAbsolute() && !found.isSymLink());
    QVERIFY(found.filePath() != theRefused);
    QVERIFY(found.fileName().startsWith("vx-"_L1));
    QCOMPARE(found.ownerId(), ::getuid());
    QCOMPARE(QFile::permissions(found.filePath()) & foreign, QFile::Permissions());
    QCOMPARE(folder(), found.filePath());
}

} // namespace

class tst_VXBasisSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folderIsTheSameInEachRun();
    void folderIsMadeForItsOwnerOnly();
    void readableFolderIsClosedToOthers();
    void pathHasNoLinks();
    void linkIsRefused();
    void foreignFolderIsRefused();
    void folderWhereOthersWriteIsRefused();
    void folderBelowOneThatOthersMayChangeIsRefused();
    void fileInTheWayIsRefused();
    void noFolderAtAllIsRefused();
    void refusedFolderIsWarnedAboutOnce();
    void masterModeIsOffUnlessDeployed();
};

// First: the folder that nobody has chosen.
void tst_VXBasisSettings::folderIsTheSameInEachRun()
{
    const QString path = folder();
    QVERIFY(QFileInfo(path).isDir());
    QVERIFY(QDir::isAbsolutePath(path));
    QVERIFY(!path.endsWith(u'/'));
    QCOMPARE(answerOfOtherProcess({u"temporaryDirectory"_s}), path);
}

void tst_VXBasisSettings::folderIsMadeForItsOwnerOnly()
{
    const QTemporaryDir parent;
    VXBasisSettings::instance()->setTemporaryDirectory(parent.filePath(u"a/b/"_s));
    QCOMPARE(folder(), parent.filePath(u"a/b"_s));
    QCOMPARE(QFile::permissions(folder()) & foreign, QFile::Permissions());
}

void tst_VXBasisSettings::readableFolderIsClosedToOthers()
{
    const QTemporaryDir parent;
    const QString path = parent.filePath(u"readable"_s);
    QVERIFY(QDir().mkdir(path));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x7755)));
    VXBasisSettings::instance()->setTemporaryDirectory(path);
    QCOMPARE(folder(), path);
    QCOMPARE(QFile::permissions(path) & foreign, QFile::Permissions());
}

void tst_VXBasisSettings::pathHasNoLinks()
{
    const QTemporaryDir parent;
    const QString real = QFileInfo(parent.path()).canonicalFilePath() + "/real"_L1;
    QVERIFY(QDir().mkdir(real));
    QVERIFY(QFile::link(real, parent.filePath(u"link"_s)));
    VXBasisSettings::instance()->setTemporaryDirectory(parent.filePath(u"link/temp"_s));
    QCOMPARE(folder(), real + "/temp"_L1);
}

void tst_VXBasisSettings::linkIsRefused()
{
    const QTemporaryDir parent;
    const QTemporaryDir elsewhere;
    const QString path = parent.filePath(u"link"_s);
    QVERIFY(QFile::link(elsewhere.path(), path));
    verifyThatAnotherTakesItsPlace(path);
}

void tst_VXBasisSettings::foreignFolderIsRefused()
{
    // Somebody else's folder: one that we give away when we may, else that of the administrator.
    const QTemporaryDir parent;
    const QString own = parent.filePath(u"foreign"_s);
    QVERIFY(QDir().mkdir(own));
    const bool isGivenAway = ::chown(QFile::encodeName(own).constData(), 12345, -1u) == 0;
    verifyThatAnotherTakesItsPlace(isGivenAway ? own : u"/etc"_s);
}

// They may have left links there. It is not closed either: it may be everybody's /tmp.
void tst_VXBasisSettings::folderWhereOthersWriteIsRefused()
{
    const QTemporaryDir parent;
    const QString path = parent.filePath(u"open"_s);
    QVERIFY(QDir().mkdir(path));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x7777)));
    verifyThatAnotherTakesItsPlace(path);
    QCOMPARE(QFile::permissions(path) & foreign, foreign);
}

void tst_VXBasisSettings::folderBelowOneThatOthersMayChangeIsRefused()
{
    const QTemporaryDir parent;
    QVERIFY(QFile::setPermissions(parent.path(), QFile::Permissions(0x7777)));
    verifyThatAnotherTakesItsPlace(parent.filePath(u"temp"_s));
}

void tst_VXBasisSettings::fileInTheWayIsRefused()
{
    const QTemporaryDir parent;
    QFile file(parent.filePath(u"file"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    verifyThatAnotherTakesItsPlace(file.fileName());
    verifyThatAnotherTakesItsPlace(file.fileName() + "/temp"_L1);
}

void tst_VXBasisSettings::noFolderAtAllIsRefused()
{
    verifyThatAnotherTakesItsPlace(QString());
}

void tst_VXBasisSettings::refusedFolderIsWarnedAboutOnce()
{
    const VXLogCapture log;
    VXBasisSettings::instance()->setTemporaryDirectory(u"/dev/null/x"_s);
    for (int i = 0; i < 3; ++i)
        QVERIFY(!folder().isEmpty());
    QCOMPARE(log.texts(),
             QStringList{u"/dev/null/x: no folder of one's own for temporary files"_s});
}

void tst_VXBasisSettings::masterModeIsOffUnlessDeployed()
{
    QVERIFY(!VXBasisSettings::instance()->runsInMasterMode());
    VXBasisSettings::instance()->setMasterMode(true);
    QVERIFY(VXBasisSettings::instance()->runsInMasterMode());
    VXBasisSettings::instance()->setMasterMode(false);
    QVERIFY(!VXBasisSettings::instance()->runsInMasterMode());
}

VX_TEST_MAIN(QCoreApplication, tst_VXBasisSettings)

#include "tst_VXBasisSettings.moc"
