#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXKeyAccountTexts.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXKeyAccountTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textOneIsTheDisplayName();
    void missingTextIsEmpty();
    void setterWins();
};

void tst_VXKeyAccountTexts::textOneIsTheDisplayName()
{
    QCOMPARE(VXKeyAccountTexts::instance()->text(1), u"VX Sample"_s);
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"KeyAccount/text1"_s, u"Fotowelt"_s));
    QCOMPARE(VXKeyAccountTexts::instance()->text(1), u"Fotowelt"_s);
}

void tst_VXKeyAccountTexts::missingTextIsEmpty()
{
    for (const int number : {0, 2, -1, 1000000})
        QCOMPARE(VXKeyAccountTexts::instance()->text(number), QString());
}

void tst_VXKeyAccountTexts::setterWins()
{
    VXKeyAccountTexts::instance()->setText(1, u"Eigene"_s);
    VXKeyAccountTexts::instance()->setText(7, u"Sieben"_s);
    QCOMPARE(VXKeyAccountTexts::instance()->text(1), u"Eigene"_s);
    QCOMPARE(VXKeyAccountTexts::instance()->text(7), u"Sieben"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXKeyAccountTexts)

#include "tst_VXKeyAccountTexts.moc"
