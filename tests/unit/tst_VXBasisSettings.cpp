#include <VXCore/VXBasisSettings.h>

#include "VXCoreProcess.h"
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

} // namespace

class tst_VXBasisSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folderIsTheSameInEachRun();
    void folderIsMadeForItsOwnerOnly();
    void openFolderIsClosedToOthers();
    void linkIsRefused();
    void foreignFolderIsRefused();
    void fileInTheWayIsRefused();
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

void tst_VXBasisSettings::openFolderIsClosedToOthers()
{
    const QTemporaryDir parent;
    const QString path = parent.filePath(u"open"_s);
    QVERIFY(QDir().mkdir(path));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x7777)));
    VXBasisSettings::instance()->setTemporaryDirectory(path);
    QCOMPARE(folder(), path);
    QCOMPARE(QFile::permissions(path) & foreign, QFile::Permissions());
}

void tst_VXBasisSettings::linkIsRefused()
{
    const QTemporaryDir parent;
    const QTemporaryDir elsewhere;
    const QString path = parent.filePath(u"link"_s);
    QVERIFY(QFile::link(elsewhere.path(), path));
    VXBasisSettings::instance()->setTemporaryDirectory(path);
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(path + u": no folder of one's own for temporary files"_s));
    QCOMPARE(folder(), QString());
}

void tst_VXBasisSettings::foreignFolderIsRefused()
{
    // Somebody else's folder: one that we give away when we may, else that of the administrator.
    const QTemporaryDir parent;
    const QString own = parent.filePath(u"foreign"_s);
    QVERIFY(QDir().mkdir(own));
    const bool isGivenAway = ::chown(QFile::encodeName(own).constData(), 12345, -1u) == 0;
    const QString path = isGivenAway ? own : u"/etc"_s;
    VXBasisSettings::instance()->setTemporaryDirectory(path);
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(path + u": no folder of one's own for temporary files"_s));
    QCOMPARE(folder(), QString());
}

void tst_VXBasisSettings::fileInTheWayIsRefused()
{
    const QTemporaryDir parent;
    QFile file(parent.filePath(u"file"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    VXBasisSettings::instance()->setTemporaryDirectory(file.fileName());
    QTest::ignoreMessage(
        QtWarningMsg,
        qPrintable(file.fileName() + u": no folder of one's own for temporary files"_s));
    QCOMPARE(folder(), QString());
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
