#include <VXCore/VXIwdWifiName.h>

#include "VXPrivateBus.h"
#include "VXStoppedService.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>

using namespace Qt::StringLiterals;

/// Asks a fake iwd on a bus of the test's own.
class tst_VXIwdWifiName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theNetworkOfAnInterfaceIsTold_data();
    void theNetworkOfAnInterfaceIsTold();
    void aStoppedServiceCostsItsAllowanceOnceAMinute();
    void aServiceThatIsAbsentGivesNothing();

private:
    VXPrivateBus myBus;
    QProcess* myIwd = nullptr;
};

void tst_VXIwdWifiName::initTestCase()
{
    QCOMPARE(myBus.start(), QString());
    myIwd = myBus.startFake({u"iwd"_s, u"wlan0=wifi:57c3a4686c6572"_s, u"wlan1=idle"_s,
                             u"wlan2=wifi:3c623e0a3c2f623e"_s});
    QVERIFY2(myIwd, "no fake service (Debian package python3-dbusmock)");
}

void tst_VXIwdWifiName::theNetworkOfAnInterfaceIsTold_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<std::optional<QString>>("name");

    using Name = std::optional<QString>;
    QTest::newRow("umlaut") << u"wlan0"_s << Name(u"W\u00e4hler"_s);
    QTest::newRow("joined to nothing") << u"wlan1"_s << Name(QString());
    QTest::newRow("markup and a line break") << u"wlan2"_s << Name(u"<b></b>"_s);
    QTest::newRow("unknown interface") << u"wlan9"_s << Name();
}

void tst_VXIwdWifiName::theNetworkOfAnInterfaceIsTold()
{
    QFETCH(QString, interface);
    QFETCH(std::optional<QString>, name);

    // A fresh source each time: on a busy computer the fake service may miss the time limit.
    QTRY_COMPARE(VXIwdWifiName(QDBusConnection::systemBus()).wifiName(interface), name);
}

void tst_VXIwdWifiName::aStoppedServiceCostsItsAllowanceOnceAMinute()
{
    VXIwdWifiName source(QDBusConnection::systemBus());
    const VXStoppedService stopped(*myIwd);
    stopped.costsItsAllowanceOnce(source);
}

void tst_VXIwdWifiName::aServiceThatIsAbsentGivesNothing()
{
    VXPrivateBus empty;
    QCOMPARE(empty.start(), QString());
    const QDBusConnection bus = QDBusConnection::connectToBus(empty.address(), u"empty"_s);

    VXIwdWifiName source(bus);
    QCOMPARE(source.wifiName(u"wlan0"_s), std::nullopt);
    QDBusConnection::disconnectFromBus(u"empty"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXIwdWifiName)
#include "tst_VXIwdWifiName.moc"
