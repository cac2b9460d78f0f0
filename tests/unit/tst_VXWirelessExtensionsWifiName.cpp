#include <VXCore/VXWirelessExtensionsWifiName.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <optional>

using namespace Qt::StringLiterals;

class tst_VXWirelessExtensionsWifiName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNotWirelessGivesNothing_data();
    void whatIsNotWirelessGivesNothing();
};

void tst_VXWirelessExtensionsWifiName::whatIsNotWirelessGivesNothing_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("loopback") << u"lo"_s;
    QTest::newRow("unknown") << u"nosuch0"_s;
    QTest::newRow("no name") << QString();
    QTest::newRow("15 bytes, the most") << QString(15, u'w');
    QTest::newRow("16 bytes") << QString(16, u'w');
    QTest::newRow("5000 bytes") << QString(5000, u'w');
    QTest::newRow("U+0000 inside") << u"lo\0x"_s;
}

void tst_VXWirelessExtensionsWifiName::whatIsNotWirelessGivesNothing()
{
    QFETCH(QString, name);
    QCOMPARE(VXWirelessExtensionsWifiName().wifiName(name), std::nullopt);
}

VX_TEST_MAIN(QCoreApplication, tst_VXWirelessExtensionsWifiName)
#include "tst_VXWirelessExtensionsWifiName.moc"
