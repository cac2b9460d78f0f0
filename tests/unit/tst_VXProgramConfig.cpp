#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXProgramConfig.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXProgramConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberIsThatOfTheDeployment();
    void setterWins();
};

void tst_VXProgramConfig::numberIsThatOfTheDeployment()
{
    QCOMPARE(VXProgramConfig::programID(), 1);
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Program/id"_s, u"42"_s));
    QCOMPARE(VXProgramConfig::programID(), 42);
}

void tst_VXProgramConfig::setterWins()
{
    VXProgramConfig::setProgramID(VXProgramConfig::ProgramIdNoWebContent);
    QCOMPARE(VXProgramConfig::programID(), 8);
}

VX_TEST_MAIN(QCoreApplication, tst_VXProgramConfig)

#include "tst_VXProgramConfig.moc"
