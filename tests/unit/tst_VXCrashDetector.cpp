#include <VXCore/VXCrashDetector.h>

#include "VXCoreProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXCrashDetector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void nothingIsRecordedAtFirst();
    void laterRunKnowsTheCrash_data();
    void laterRunKnowsTheCrash();
    void thisRunKeepsItsAnswer();
    void recordCanBeForgotten();
};

void tst_VXCrashDetector::init()
{
    VXCrashDetector::instance()->setDidCrash(true, false);
    VXCrashDetector::instance()->setDidCrash(false, false);
}

void tst_VXCrashDetector::nothingIsRecordedAtFirst()
{
    QCOMPARE(answerOfOtherProcess({u"crashes"_s}), u"false false"_s);
}

void tst_VXCrashDetector::laterRunKnowsTheCrash_data()
{
    QTest::addColumn<bool>("gpuWasOn");
    QTest::addColumn<QString>("answer");

    QTest::newRow("acceleration on") << true << u"true false"_s;
    QTest::newRow("acceleration off") << false << u"false true"_s;
}

void tst_VXCrashDetector::laterRunKnowsTheCrash()
{
    QFETCH(bool, gpuWasOn);
    QFETCH(QString, answer);
    VXCrashDetector::instance()->recordCrashedQtWebEngineProcess(gpuWasOn);
    QCOMPARE(answerOfOtherProcess({u"crashes"_s}), answer);
}

void tst_VXCrashDetector::thisRunKeepsItsAnswer()
{
    VXCrashDetector::instance()->recordCrashedQtWebEngineProcess(true);
    QVERIFY(!VXCrashDetector::instance()->qtWebEngineDidCrashWithGpuOn());
    VXCrashDetector::instance()->setDidCrash(true, true);
    QVERIFY(VXCrashDetector::instance()->qtWebEngineDidCrashWithGpuOn());
    QVERIFY(!VXCrashDetector::instance()->qtWebEngineDidCrashWithGpuOff());
}

void tst_VXCrashDetector::recordCanBeForgotten()
{
    VXCrashDetector::instance()->recordCrashedQtWebEngineProcess(false);
    VXCrashDetector::instance()->setDidCrash(false, false);
    QCOMPARE(answerOfOtherProcess({u"crashes"_s}), u"false false"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXCrashDetector)

#include "tst_VXCrashDetector.moc"
