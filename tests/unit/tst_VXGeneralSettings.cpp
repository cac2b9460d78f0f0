#include <VXCore/VXGeneralSettings.h>

#include "VXCoreProcess.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXGeneralSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trackingIsNotRefusedAtFirst();
    void choiceSurvivesTheProcess();
};

void tst_VXGeneralSettings::trackingIsNotRefusedAtFirst()
{
    QVERIFY(!VXGeneralSettings::instance()->doNotTrack());
    QCOMPARE(answerOfOtherProcess({u"doNotTrack"_s}), u"false"_s);
}

void tst_VXGeneralSettings::choiceSurvivesTheProcess()
{
    VXGeneralSettings::instance()->setDoNotTrack(true);
    QVERIFY(VXGeneralSettings::instance()->doNotTrack());
    QCOMPARE(answerOfOtherProcess({u"doNotTrack"_s}), u"true"_s);
    VXGeneralSettings::instance()->setDoNotTrack(false);
    QCOMPARE(answerOfOtherProcess({u"doNotTrack"_s}), u"false"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXGeneralSettings)

#include "tst_VXGeneralSettings.moc"
