#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXVersionConfig.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXVersionConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versionIsThatOfTheLibrariesUnlessDeployed();
};

void tst_VXVersionConfig::versionIsThatOfTheLibrariesUnlessDeployed()
{
    QCOMPARE(VXVersionConfig::versionString(), u"0.1.0"_s);
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"Program/version"_s, u"7.4.1 (Test)"_s));
    QCOMPARE(VXVersionConfig::versionString(), u"7.4.1 (Test)"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXVersionConfig)

#include "tst_VXVersionConfig.moc"
