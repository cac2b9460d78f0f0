#include <VXCore/VXLogger.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions foreign = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                       QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

VXLogger* logger()
{
    return VXLogger::instance();
}

} // namespace

class tst_VXLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void folderIsThatOfTheDeployment();
    void recordIsOneLineWithTime();
    void recordGoesToTheMessageHandlerAsItIs();
    void furtherLinesOfARecordAreIndented();
    void uploadActionsHaveTheirOwnFile();
    void uploadActionStaysOneLine();
    void filesAreForTheirOwnerOnly();
    void sinkTakesThePlaceOfTheFile();
    void sinkMayLogItself();
    void signalTellsEachRecord();
    void clockOffsetsAreKeptInOrder();
    void clockOffsetsAreBounded();
    void longFileIsPutAside();
    void fullDiskStopsNobody();
    void folderThatCannotBeMadeStopsNobody();
    void threadsWriteWholeLines();
    void messagesOfQtAreLoggedAfterInstallation();
    void recordStandsOnceInTheFile();

private:
    [[nodiscard]] QString content(const QString& theName) const;
    [[nodiscard]] QString file(const QString& theName) const { return myFolder->filePath(theName); }

    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXLogger::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    if (qstrcmp(QTest::currentTestFunction(), "folderIsThatOfTheDeployment") != 0)
        logger()->setFolder(myFolder->path());
}

void tst_VXLogger::cleanup()
{
    logger()->setSink({});
    logger()->setMaximumSize(4 * 1024 * 1024);
}

QString tst_VXLogger::content(const QString& theName) const
{
    QFile log(file(theName));
    return log.open(QFile::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
}

void tst_VXLogger::folderIsThatOfTheDeployment()
{
    logger()->legacyLog(u"first"_s, true);
    const QString path =
        qEnvironmentVariable("XDG_DATA_HOME") + "/tst_VXLogger/log/application.log"_L1;
    QFile log(path);
    QVERIFY2(log.open(QFile::ReadOnly), qPrintable(path));
    QVERIFY(log.readAll().contains("record: first\n"));
}

void tst_VXLogger::recordIsOneLineWithTime()
{
    logger()->legacyLog(u"TOV NETREQUEST %1 ü"_s, true);
    static const QRegularExpression line(
        u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3} [0-9a-f]+ record: TOV NETREQUEST %1 ü\n$"_s);
    QVERIFY2(line.match(content(u"application.log"_s)).hasMatch(),
             qPrintable(content(u"application.log"_s)));
}

void tst_VXLogger::recordGoesToTheMessageHandlerAsItIs()
{
    QTest::ignoreMessage(QtInfoMsg, "TOV NETREQUEST \"x\"");
    logger()->legacyLog(u"TOV NETREQUEST \"x\""_s, true);
}

void tst_VXLogger::furtherLinesOfARecordAreIndented()
{
    logger()->legacyLog(u"one\n2026-11-21T00:00:00.000 1 record: forged\r\x1b[2J"_s, true);
    const QStringList lines = content(u"application.log"_s).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1), u"\t2026-11-21T00:00:00.000 1 record: forged\\x0d\\x1b[2J"_s);
}

void tst_VXLogger::uploadActionsHaveTheirOwnFile()
{
    logger()->logQRUpload(u"ACTION:startService"_s);
    QVERIFY(content(u"qrupload.log"_s).endsWith(u" ACTION:startService\n"_s));
    QCOMPARE(content(u"application.log"_s), QString());
}

void tst_VXLogger::uploadActionStaysOneLine()
{
    logger()->logQRUpload(u"ACTION:saveFile VALUE:a\nACTION:saveFile VALUE:b\u2028c\u0085"_s);
    const QString text = content(u"qrupload.log"_s);
    QCOMPARE(text.count(u'\n'), 1);
    QVERIFY2(text.endsWith(u"VALUE:a\\x0aACTION:saveFile VALUE:b\\x2028c\\x85\n"_s),
             qPrintable(text));
}

void tst_VXLogger::filesAreForTheirOwnerOnly()
{
    logger()->legacyLog(u"a"_s, true);
    logger()->logQRUpload(u"b"_s);
    for (const QString& name : {u"application.log"_s, u"qrupload.log"_s})
        QCOMPARE(QFile::permissions(file(name)) & foreign, QFile::Permissions());
}

void tst_VXLogger::sinkTakesThePlaceOfTheFile()
{
    QStringList records;
    logger()->setSink([&records](const QString& theChannel, const QString& theText) {
        records += theChannel + u'|' + theText;
    });
    logger()->legacyLog(u"a\nb"_s, true);
    logger()->logQRUpload(u"c"_s);
    QCOMPARE(records, QStringList({u"application|a\nb"_s, u"qrupload|c"_s}));
    QCOMPARE(content(u"application.log"_s), QString());
}

void tst_VXLogger::sinkMayLogItself()
{
    QStringList records;
    logger()->setSink([&records](const QString&, const QString& theText) {
        records += theText;
        if (records.size() < 3)
            logger()->legacyLog(u"again"_s, false);
    });
    logger()->legacyLog(u"once"_s, false);
    QCOMPARE(records, QStringList({u"once"_s, u"again"_s, u"again"_s}));
}

void tst_VXLogger::signalTellsEachRecord()
{
    const QSignalSpy spy(logger(), &VXLogger::recordWritten);
    logger()->legacyLog(u"a"_s, true);
    logger()->logQRUpload(u"b"_s);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0), QVariantList({u"application"_s, u"a"_s}));
    QCOMPARE(spy.at(1), QVariantList({u"qrupload"_s, u"b"_s}));
}

void tst_VXLogger::clockOffsetsAreKeptInOrder()
{
    logger()->addToOffSetTimes(1500);
    logger()->addToOffSetTimes(-3);
    logger()->addToOffSetTimes(0);
    QCOMPARE(logger()->offSetTimes(), QList<int>({1500, -3, 0}));
}

void tst_VXLogger::clockOffsetsAreBounded()
{
    for (int number = 0; number < 1500; ++number)
        logger()->addToOffSetTimes(number);
    QCOMPARE(logger()->offSetTimes().size(), 1000);
    QCOMPARE(logger()->offSetTimes().first(), 500);
    QCOMPARE(logger()->offSetTimes().last(), 1499);
}

void tst_VXLogger::longFileIsPutAside()
{
    logger()->setMaximumSize(1000);
    const QString text(100, u'x');
    for (int number = 0; number < 60; ++number)
        logger()->legacyLog(u"%1 %2"_s.arg(number).arg(text), true);

    QStringList names = QDir(myFolder->path()).entryList(QDir::Files, QDir::Name);
    names.removeOne(u"application.log"_s); // there unless the last line filled it
    QCOMPARE(names,
             QStringList({u"application.log.1"_s, u"application.log.2"_s, u"application.log.3"_s}));
    for (const QString& name : names)
        QVERIFY(QFileInfo(file(name)).size() < 1300);
    const QString newest = content(u"application.log.1"_s) + content(u"application.log"_s);
    QVERIFY(newest.contains(u": 59 xxx"_s));
    QVERIFY(!newest.contains(u": 0 xxx"_s));
}

void tst_VXLogger::fullDiskStopsNobody()
{
    QVERIFY(QFile::link(u"/dev/full"_s, file(u"application.log"_s)));
    const QSignalSpy spy(logger(), &VXLogger::recordWritten);
    for (int number = 0; number < 3; ++number)
        logger()->legacyLog(u"lost"_s, true);
    QCOMPARE(spy.count(), 3);

    QVERIFY(QFile::remove(file(u"application.log"_s))); // room again
    logger()->legacyLog(u"kept"_s, true);
    QVERIFY(content(u"application.log"_s).endsWith(u"record: kept\n"_s));
}

void tst_VXLogger::folderThatCannotBeMadeStopsNobody()
{
    QFile blocker(file(u"blocker"_s));
    QVERIFY(blocker.open(QFile::WriteOnly));
    logger()->setFolder(file(u"blocker/log"_s));
    const QSignalSpy spy(logger(), &VXLogger::recordWritten);
    logger()->legacyLog(u"lost"_s, true);
    logger()->logQRUpload(u"lost"_s);
    QCOMPARE(spy.count(), 2);
}

void tst_VXLogger::threadsWriteWholeLines()
{
    constexpr int count = 200;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int number = 0; number < count; ++number) {
                logger()->logQRUpload(
                    u"line %1 of %2 %3"_s.arg(number).arg(thread).arg(QString(200, u'x')));
                logger()->addToOffSetTimes(number);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const QStringList lines = content(u"qrupload.log"_s).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 4 * count);
    static const QRegularExpression whole(u"^\\S+ line \\d+ of \\d x{200}$"_s);
    for (const QString& line : lines)
        QVERIFY2(whole.match(line).hasMatch(), qPrintable(line));
}

// From here on the handler stays installed.
void tst_VXLogger::messagesOfQtAreLoggedAfterInstallation()
{
    VXLogger::installMessageHandler();
    VXLogger::installMessageHandler(); // twice is no harm
    QTest::ignoreMessage(QtWarningMsg, "from Qt");
    qWarning("from Qt");
    QVERIFY2(content(u"application.log"_s).endsWith(u" warning: from Qt\n"_s),
             qPrintable(content(u"application.log"_s)));
    QCOMPARE(content(u"application.log"_s).count(u"from Qt"_s), 1);
}

void tst_VXLogger::recordStandsOnceInTheFile()
{
    VXLogger::installMessageHandler();
    logger()->legacyLog(u"record of a request"_s, true);
    QCOMPARE(content(u"application.log"_s).count(u"record of a request"_s), 1);
}

VX_TEST_MAIN(QCoreApplication, tst_VXLogger)

#include "tst_VXLogger.moc"
