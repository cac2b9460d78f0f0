#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXKeyAccount.h>
#include <VXCore/VXSingleton.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXKeyAccount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isGenericUnlessDeployedOtherwise();
    void nameAndLogoAreThoseOfTheDeployment();
};

void tst_VXKeyAccount::isGenericUnlessDeployedOtherwise()
{
    QVERIFY(VXSingleton<VXKeyAccount>::instance()->isGeneric());
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"KeyAccount/generic"_s, u"false"_s));
    QVERIFY(!VXKeyAccount::instance()->isGeneric());
    VXKeyAccount::instance()->setGeneric(true);
    QVERIFY(VXKeyAccount::instance()->isGeneric());
    VXKeyAccount::instance()->setGeneric(false);
    QVERIFY(!VXKeyAccount::instance()->isGeneric());
}

void tst_VXKeyAccount::nameAndLogoAreThoseOfTheDeployment()
{
    QCOMPARE(VXKeyAccount::instance()->name(), QString());
    QCOMPARE(VXKeyAccount::instance()->logoFile(), QString());
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"KeyAccount/name"_s, u"Drogerie & Söhne"_s));
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"KeyAccount/logo"_s, u"/a/logo.png"_s));
    QCOMPARE(VXKeyAccount::instance()->name(), u"Drogerie & Söhne"_s);
    QCOMPARE(VXKeyAccount::instance()->logoFile(), u"/a/logo.png"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXKeyAccount)

#include "tst_VXKeyAccount.moc"
