#include <VXCore/VXNetworkManagerWifiName.h>

#include "VXPrivateBus.h"
#include "VXStoppedService.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>

using namespace Qt::StringLiterals;

namespace {

const QStringList interfaces{
    u"wlan0=wifi:57c3a4686c6572"_s,   // "Wähler"
    u"wlan1=wifi:3c623e783c2f623e"_s, // "<b>x</b>"
    u"wlan2=wifi:fffe"_s,             // no UTF-8
    u"wlan3=wifi"_s,                  // hidden: an empty name
    u"wlan4=old:616c74"_s,            // "alt"
    u"wlan5=idle"_s,
    u"wlan6=broken"_s,
    u"eth0=ethernet"_s,
};

} // namespace

/// Asks a fake NetworkManager on a bus of the test's own.
class tst_VXNetworkManagerWifiName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theNetworkOfAnInterfaceIsTold_data();
    void theNetworkOfAnInterfaceIsTold();
    void aStoppedServiceCostsItsAllowanceOnceAMinute();
    void aServiceThatIsAbsentGivesNothingAtOnce();
    void withoutABusThereIsNothing();

private:
    VXPrivateBus myBus;
    QProcess* myNetworkManager = nullptr;
};

void tst_VXNetworkManagerWifiName::initTestCase()
{
    QCOMPARE(myBus.start(), QString());
    myNetworkManager = myBus.startFake(QStringList{u"networkmanager"_s} + interfaces);
    QVERIFY2(myNetworkManager, "no fake service (Debian package python3-dbusmock)");
}

void tst_VXNetworkManagerWifiName::theNetworkOfAnInterfaceIsTold_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<std::optional<QString>>("name");

    using Name = std::optional<QString>;
    QTest::newRow("umlaut") << u"wlan0"_s << Name(u"W\u00e4hler"_s);
    QTest::newRow("markup") << u"wlan1"_s << Name(u"<b>x</b>"_s);
    QTest::newRow("bytes that are no UTF-8") << u"wlan2"_s << Name(u"\u00ff\u00fe"_s);
    QTest::newRow("empty name") << u"wlan3"_s << Name(QString());
    QTest::newRow("told by the connection only") << u"wlan4"_s << Name(u"alt"_s);
    QTest::newRow("joined to nothing") << u"wlan5"_s << Name();
    QTest::newRow("answers of other types") << u"wlan6"_s << Name(QString());
    QTest::newRow("wired") << u"eth0"_s << Name(QString());
    QTest::newRow("unknown interface") << u"wlan9"_s << Name();
    QTest::newRow("no interface") << QString() << Name();
}

void tst_VXNetworkManagerWifiName::theNetworkOfAnInterfaceIsTold()
{
    QFETCH(QString, interface);
    QFETCH(std::optional<QString>, name);

    // A fresh source each time: on a busy computer the fake service may miss the time limit.
    QTRY_COMPARE(VXNetworkManagerWifiName(QDBusConnection::systemBus()).wifiName(interface), name);
}

void tst_VXNetworkManagerWifiName::aStoppedServiceCostsItsAllowanceOnceAMinute()
{
    VXNetworkManagerWifiName source(QDBusConnection::systemBus());
    {
        const VXStoppedService stopped(*myNetworkManager);
        stopped.costsItsAllowanceOnce(source);
    }

    // It answers again, but the minute is not over.
    QCOMPARE(source.wifiName(u"wlan0"_s), std::nullopt);

    // With no pause it is asked again at once.
    VXNetworkManagerWifiName impatient(QDBusConnection::systemBus());
    impatient.service().setPause(std::chrono::milliseconds(0));
    {
        const VXStoppedService stopped(*myNetworkManager);
        QCOMPARE(impatient.wifiName(u"wlan0"_s), std::nullopt);
    }
    QTRY_COMPARE(impatient.wifiName(u"wlan0"_s), std::optional(u"W\u00e4hler"_s));
}

void tst_VXNetworkManagerWifiName::aServiceThatIsAbsentGivesNothingAtOnce()
{
    VXPrivateBus empty;
    QCOMPARE(empty.start(), QString());
    const QDBusConnection bus = QDBusConnection::connectToBus(empty.address(), u"empty"_s);
    QVERIFY(bus.isConnected());

    const auto isNothingAtOnce = [&bus] {
        VXNetworkManagerWifiName source(bus);
        // Who has waited in vain leaves the service alone.
        return !source.wifiName(u"wlan0"_s) && source.service().begin();
    };
    QTRY_VERIFY(isNothingAtOnce());
    QDBusConnection::disconnectFromBus(u"empty"_s);
}

void tst_VXNetworkManagerWifiName::withoutABusThereIsNothing()
{
    const QDBusConnection bus =
        QDBusConnection::connectToBus(u"unix:path=/nonexistent/bus"_s, u"none"_s);
    QVERIFY(!bus.isConnected());

    VXNetworkManagerWifiName source(bus);
    QCOMPARE(source.wifiName(u"wlan0"_s), std::nullopt);
    QDBusConnection::disconnectFromBus(u"none"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetworkManagerWifiName)
#include "tst_VXNetworkManagerWifiName.moc"
