#include <VXCore/VXFileHandler.h>

#include "VXLogCapture.h"
#include "VXProbe.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Makes every disk read-only for this process, for good. False, with errno, without the right.
bool protectEverything()
{
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    return ::unshare(CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER)) == 0 &&
           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) == 0;
}

/// In a process where nothing can be deleted: a mistake in what is tested must not cost the
/// machine.
int removeRoot()
{
    if (!protectEverything()) {
        VXProbe::print(u"not protected: "_s + QString::fromLocal8Bit(std::strerror(errno)));
        return 0;
    }
    for (const QString& path : {u"/"_s, u"/usr/.."_s}) {
        const VXLogCapture log;
        const bool isRemoved = VXFileHandler::recursiveRemove(path);
        VXProbe::print(isRemoved ? path + u": removed"_s : log.texts(QtWarningMsg).value(0));
    }
    return 0;
}

} // namespace

class tst_VXFileHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folderGoesWithAllThatIsInIt();
    void missingFolderIsGone();
    void linksAreNotFollowed();
    void dangerousPathsAreRefused_data();
    void dangerousPathsAreRefused();
    void theRootIsRefused();
    void fileAndLinkAreRefused();
    void linkInTheMiddleIsRefused();
};

void tst_VXFileHandler::folderGoesWithAllThatIsInIt()
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath(u"a"_s);
    QVERIFY(QDir().mkpath(folder + "/b/.hidden"_L1));
    QFile file(folder + "/b/.hidden/x"_L1);
    QVERIFY(file.open(QFile::WriteOnly));
    QVERIFY(VXFileHandler::recursiveRemove(folder));
    QVERIFY(!QDir(folder).exists());
    QVERIFY(QDir(parent.path()).exists());
}

void tst_VXFileHandler::missingFolderIsGone()
{
    const QTemporaryDir parent;
    QVERIFY(VXFileHandler::recursiveRemove(parent.filePath(u"missing"_s)));
}

void tst_VXFileHandler::linksAreNotFollowed()
{
    const QTemporaryDir parent;
    const QTemporaryDir elsewhere;
    QFile file(elsewhere.filePath(u"kept"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    QVERIFY(QDir().mkdir(parent.filePath(u"a"_s)));
    QVERIFY(QFile::link(elsewhere.path(), parent.filePath(u"a/link"_s)));
    QVERIFY(VXFileHandler::recursiveRemove(parent.filePath(u"a"_s)));
    QVERIFY(QFile::exists(file.fileName()));
}

void tst_VXFileHandler::dangerousPathsAreRefused_data()
{
    QTest::addColumn<QString>("folder");

    // The home folder is the test's own, and empty but for what this test puts there.
    QTest::newRow("empty") << u""_s;
    QTest::newRow("above home") << QFileInfo(QDir::homePath()).path();
    QTest::newRow("home") << QDir::homePath();
    QTest::newRow("home with slash") << QDir::homePath() + u'/';
    QTest::newRow("home by a detour") << QDir::homePath() + u"/x/.."_s;
}

void tst_VXFileHandler::dangerousPathsAreRefused()
{
    QFETCH(QString, folder);
    QVERIFY(QDir().mkpath(QDir::homePath() + "/x"_L1));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"not deleted, no folder to delete as a whole$"_s));
    QVERIFY(!VXFileHandler::recursiveRemove(folder));
    QVERIFY(QDir(QDir::homePath() + "/x"_L1).exists());
}

void tst_VXFileHandler::theRootIsRefused()
{
    const QString refusal = u"not deleted, no folder to delete as a whole"_s;
    QCOMPARE(VXProbe::run(u"root"_s), (QStringList{u"/: "_s + refusal, u"/usr/..: "_s + refusal}));
}

void tst_VXFileHandler::fileAndLinkAreRefused()
{
    const QTemporaryDir parent;
    QFile file(parent.filePath(u"file"_s));
    QVERIFY(file.open(QFile::WriteOnly));
    QVERIFY(QDir().mkdir(parent.filePath(u"folder"_s)));
    QVERIFY(QFile::link(parent.filePath(u"folder"_s), parent.filePath(u"link"_s)));
    for (const QString& name : {u"file"_s, u"link"_s}) {
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"not deleted, no folder to delete as a whole$"_s));
        QVERIFY(!VXFileHandler::recursiveRemove(parent.filePath(name)));
    }
    QVERIFY(QFile::exists(file.fileName()));
    QVERIFY(QDir(parent.filePath(u"folder"_s)).exists());
}

void tst_VXFileHandler::linkInTheMiddleIsRefused()
{
    const QTemporaryDir parent;
    QVERIFY(QDir().mkpath(parent.filePath(u"kept/Cache"_s)));
    QVERIFY(QFile::link(parent.filePath(u"kept"_s), parent.filePath(u"link"_s)));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"not deleted, no folder to delete as a whole$"_s));
    QVERIFY(!VXFileHandler::recursiveRemove(parent.filePath(u"link/Cache"_s)));
    QVERIFY(QDir(parent.filePath(u"kept/Cache"_s)).exists());
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_VXFileHandler, {u"root"_s, removeRoot})

#include "tst_VXFileHandler.moc"
