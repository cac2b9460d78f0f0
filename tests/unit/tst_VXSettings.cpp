#include <VXCore/VXSettings.h>
#include <VXCore/VXSettingsLock.h>
#include <VXCore/VXSingleton.h>

#include "VXCoreProcess.h"
#include "VXFileContent.h"
#include "VXFileSizeLimit.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions foreign = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                       QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

} // namespace

class tst_VXSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void defaultFileLiesInTheConfigurationFolder();
    void entrySurvivesTheProcess_data();
    void entrySurvivesTheProcess();
    void entryOfAnotherProcessIsRead();
    void missingEntryGivesTheDefault();
    void textThatIsNoNumberGivesZero();
    void groupIsNoEntry();
    void groupsNest();
    void eachObjectHasItsOwnGroups();
    void endGroupWithoutGroupDoesNothing();
    void deletedEntryIsGone();
    void deletingAGroupNameKeepsTheGroup();
    void emptyKeyIsNoEntry();
    void fileIsForItsOwnerOnlyFromTheBeginning();
    void fileKeepsItsModeWhenRewritten();
    void missingFoldersAreMade();
    void storeThatCannotBeWrittenSaysSo_data();
    void storeThatCannotBeWrittenSaysSo();
    void fullDiskIsReported();
    void folderThatComesBackIsWrittenAgain();
    void garbageInTheFileLosesNoEntry();
    void otherProcessesEntriesAreKept();
    void machineWideEntryIsNotTheUsersOwn();
    void machineWideEntryGoesIntoTheMachinesFile();
    void threadsDoNotMixTheirGroups();
    void settingsSingletonIsOneObject();

private:
    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXSettings::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    VXSettings::setStoreFile(myFolder->filePath(u"settings.ini"_s));
}

// First of all tests that write: it uses the store that nobody has chosen.
void tst_VXSettings::defaultFileLiesInTheConfigurationFolder()
{
    const QString expected =
        qEnvironmentVariable("XDG_CONFIG_HOME") + "/tst_VXSettings/settings.ini"_L1;
    QCOMPARE(answerOfOtherProcess({u"write"_s, u"Group"_s, u"key"_s, u"value"_s}), u"true"_s);
    QVERIFY2(VXFileContent::of(expected).contains("key=value"),
             VXFileContent::of(expected).constData());
}

void tst_VXSettings::entrySurvivesTheProcess_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << u"value"_s;
    QTest::newRow("umlauts and emoji") << u"Grüße 😀"_s;
    QTest::newRow("comma") << u"a, b"_s;
    QTest::newRow("quotation marks, semicolon, percent, backslash") << u"\"x\"; %41 \\n"_s;
    QTest::newRow("line feed") << u"a\nb"_s;
    QTest::newRow("looks like a variant") << u"@Invalid()"_s;
    QTest::newRow("blank at both ends") << u" a "_s;
    QTest::newRow("empty") << u""_s;
}

void tst_VXSettings::entrySurvivesTheProcess()
{
    QFETCH(QString, text);
    VXSettings settings;
    settings.beginGroup(u"Group"_s);
    QVERIFY(settings.writeEntry(u"key"_s, text));

    qputenv("VX_DEPLOYMENT_CONFIG", myFolder->filePath(u"d.ini"_s).toLocal8Bit());
    VXFileContent::write(myFolder->filePath(u"d.ini"_s), "[Paths]\nsettingsFile=settings.ini\n");
    const QString answer = answerOfOtherProcess({u"read"_s, u"Group"_s, u"key"_s});
    qunsetenv("VX_DEPLOYMENT_CONFIG");
    QCOMPARE(answer, text);
}

void tst_VXSettings::entryOfAnotherProcessIsRead()
{
    const QString file = myFolder->filePath(u"settings.ini"_s);
    VXFileContent::write(file, "[Network]\nProxyChoice=my\n");
    VXSettings settings;
    settings.beginGroup(u"Network"_s);
    QCOMPARE(settings.value(u"ProxyChoice"_s).toString(), u"my"_s);
}

void tst_VXSettings::missingEntryGivesTheDefault()
{
    const VXSettings settings;
    QCOMPARE(settings.value(u"absent"_s, 5).toInt(), 5);
    QCOMPARE(settings.value(u"absent"_s).toString(), QString());
}

void tst_VXSettings::textThatIsNoNumberGivesZero()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"port"_s, u"eighty"_s));
    QCOMPARE(settings.value(u"port"_s, 5).toInt(), 0);
}

void tst_VXSettings::groupIsNoEntry()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"Group/key"_s, 1));
    QVERIFY(settings.doesEntryExist(u"Group/key"_s));
    QVERIFY(!settings.doesEntryExist(u"Group"_s));
}

void tst_VXSettings::groupsNest()
{
    VXSettings settings;
    settings.beginGroup(u"Outer"_s);
    settings.beginGroup(u"Inner"_s);
    QVERIFY(settings.writeEntry(u"key"_s, 1));
    settings.endGroup();
    QVERIFY(settings.doesEntryExist(u"Inner/key"_s));
    QVERIFY(!settings.doesEntryExist(u"key"_s));
    settings.endGroup();
    QVERIFY(settings.doesEntryExist(u"Outer/Inner/key"_s));
}

void tst_VXSettings::eachObjectHasItsOwnGroups()
{
    VXSettings one;
    VXSettings other;
    one.beginGroup(u"One"_s);
    QVERIFY(other.writeEntry(u"key"_s, u"top"_s));
    QVERIFY(!one.doesEntryExist(u"key"_s));
    QVERIFY(other.doesEntryExist(u"key"_s));
}

void tst_VXSettings::endGroupWithoutGroupDoesNothing()
{
    VXSettings settings;
    settings.endGroup();
    QVERIFY(settings.writeEntry(u"key"_s, 1));
    QVERIFY(settings.doesEntryExist(u"key"_s));
}

void tst_VXSettings::deletedEntryIsGone()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, u"secret"_s));
    settings.deleteEntry(u"key"_s);
    QVERIFY(!settings.doesEntryExist(u"key"_s));
    QVERIFY(!VXFileContent::of(VXSettings::storeFile()).contains("secret"));
}

void tst_VXSettings::deletingAGroupNameKeepsTheGroup()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"Group/key"_s, 1));
    settings.deleteEntry(u"Group"_s);
    settings.deleteEntry(QString());
    QVERIFY(settings.doesEntryExist(u"Group/key"_s));
}

void tst_VXSettings::emptyKeyIsNoEntry()
{
    VXSettings settings;
    QVERIFY(!settings.writeEntry(QString(), 1));
    QVERIFY(!settings.doesEntryExist(QString()));
    QCOMPARE(settings.value(QString(), 3).toInt(), 3);
}

void tst_VXSettings::fileIsForItsOwnerOnlyFromTheBeginning()
{
    VXSettings settings;
    const VXSettingsLock lock; // nothing but the empty file is there before the lock ends
    QVERIFY(settings.writeEntry(u"key"_s, 1));
    QVERIFY(QFile::exists(VXSettings::storeFile()));
    QCOMPARE(QFile::permissions(VXSettings::storeFile()) & foreign, QFile::Permissions());
}

void tst_VXSettings::fileKeepsItsModeWhenRewritten()
{
    VXSettings settings;
    for (int number = 0; number < 3; ++number) {
        QVERIFY(settings.writeEntry(u"key"_s, number));
        QCOMPARE(QFile::permissions(VXSettings::storeFile()) & foreign, QFile::Permissions());
    }
}

void tst_VXSettings::missingFoldersAreMade()
{
    const QString file = myFolder->filePath(u"a/b/settings.ini"_s);
    VXSettings::setStoreFile(file);
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, u"value"_s));
    QVERIFY(VXFileContent::of(file).contains("key=value"));
}

void tst_VXSettings::storeThatCannotBeWrittenSaysSo_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("below a file") << u"file/settings.ini"_s;
    QTest::newRow("a folder") << u"folder"_s;
}

void tst_VXSettings::storeThatCannotBeWrittenSaysSo()
{
    QFETCH(QString, name);
    VXFileContent::write(myFolder->filePath(u"file"_s), "x");
    QVERIFY(QDir(myFolder->path()).mkdir(u"folder"_s));
    VXSettings::setStoreFile(myFolder->filePath(name));
    VXSettings settings;
    QVERIFY(!settings.writeEntry(u"key"_s, 1));
    QVERIFY(!settings.doesEntryExist(u"key"_s));
}

void tst_VXSettings::fullDiskIsReported()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, u"before"_s));
    {
        const VXFileSizeLimit full(64);
        QVERIFY(!settings.writeEntry(u"key"_s, QString(100'000, u'x')));
    }
    QCOMPARE(VXFileContent::of(VXSettings::storeFile()), "[General]\nkey=before\n"_ba);
}

void tst_VXSettings::folderThatComesBackIsWrittenAgain()
{
    const QString folder = myFolder->filePath(u"folder"_s);
    const QString away = myFolder->filePath(u"away"_s);
    VXSettings::setStoreFile(folder + u"/settings.ini"_s);
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"before"_s, 1));
    {
        const VXSettingsLock lock;
        QVERIFY(settings.writeEntry(u"meanwhile"_s, 2));
        QVERIFY(QDir().rename(folder, away));
        VXFileContent::write(folder, "x"); // else it would be made again
    }
    QVERIFY(QFile::remove(folder));
    QVERIFY(QDir().rename(away, folder));

    QVERIFY(settings.writeEntry(u"after"_s, 3));
    QCOMPARE(VXFileContent::of(VXSettings::storeFile()),
             "[General]\nafter=3\nbefore=1\nmeanwhile=2\n"_ba);
}

void tst_VXSettings::garbageInTheFileLosesNoEntry()
{
    VXFileContent::write(VXSettings::storeFile(),
                         "\xff\xfe\x01 garbage\n[Group]\nno value here\nkey=value\n[[[\n");
    QTest::ignoreMessage(QtWarningMsg, qPrintable(VXSettings::storeFile() +
                                                  u": a line is neither a section nor a value"_s));
    VXSettings settings;
    QCOMPARE(settings.value(u"Group/key"_s).toString(), u"value"_s);
    QVERIFY(settings.writeEntry(u"Group/other"_s, u"new"_s));
    QVERIFY(VXFileContent::of(VXSettings::storeFile()).contains("key=value"));
}

void tst_VXSettings::otherProcessesEntriesAreKept()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"ours"_s, 1));
    VXFileContent::write(myFolder->filePath(u"d.ini"_s), "[Paths]\nsettingsFile=settings.ini\n");
    qputenv("VX_DEPLOYMENT_CONFIG", myFolder->filePath(u"d.ini"_s).toLocal8Bit());
    QCOMPARE(answerOfOtherProcess({u"write"_s, u"Group"_s, u"theirs"_s, u"x"_s}), u"true"_s);
    qunsetenv("VX_DEPLOYMENT_CONFIG");

    QVERIFY(settings.writeEntry(u"ours"_s, 2));
    QVERIFY(VXFileContent::of(VXSettings::storeFile()).contains("theirs=x"));
    QVERIFY(VXFileContent::of(VXSettings::storeFile()).contains("ours=2"));
}

void tst_VXSettings::machineWideEntryIsNotTheUsersOwn()
{
    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, u"own"_s));
    QCOMPARE(settings.value(u"key"_s, u"none"_s, true).toString(), u"none"_s);
}

void tst_VXSettings::machineWideEntryGoesIntoTheMachinesFile()
{
    const QByteArray former = qgetenv("XDG_CONFIG_DIRS");
    const auto restore = qScopeGuard([&former] { qputenv("XDG_CONFIG_DIRS", former); });
    qputenv("XDG_CONFIG_DIRS", myFolder->filePath(u"machine"_s).toLocal8Bit());
    VXSettings::setStoreFile(myFolder->filePath(u"settings.ini"_s)); // opens both anew

    VXSettings settings;
    QVERIFY(settings.writeEntry(u"key"_s, u"everybody's"_s, true));
    QCOMPARE(settings.value(u"key"_s, u"none"_s, true).toString(), u"everybody's"_s);
    QCOMPARE(settings.value(u"key"_s, u"none"_s).toString(), u"none"_s);
}

void tst_VXSettings::threadsDoNotMixTheirGroups()
{
    constexpr int count = 50;
    const auto work = [](int theThread) {
        VXSettings settings;
        const QString group = u"Thread%1"_s.arg(theThread);
        for (int number = 0; number < count; ++number) {
            const VXSettingsLock lock;
            settings.beginGroup(group);
            settings.writeEntry(u"key%1"_s.arg(number), theThread);
            settings.endGroup();
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(work, thread);
    for (std::thread& thread : threads)
        thread.join();

    const VXSettings settings;
    for (int thread = 0; thread < 4; ++thread) {
        for (int number = 0; number < count; ++number)
            QCOMPARE(settings.value(u"Thread%1/key%2"_s.arg(thread).arg(number)).toInt(), thread);
    }
}

void tst_VXSettings::settingsSingletonIsOneObject()
{
    VXSettings* settings = VXSingleton<VXSettings>::instance();
    QCOMPARE(VXSingleton<VXSettings>::instance(), settings);
    settings->beginGroup(u"Group"_s);
    QVERIFY(settings->writeEntry(u"key"_s, 1));
    settings->endGroup();
    QVERIFY(settings->doesEntryExist(u"Group/key"_s));
}

VX_TEST_MAIN(QCoreApplication, tst_VXSettings)

#include "tst_VXSettings.moc"
