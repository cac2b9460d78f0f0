#include <VXCore/VXDBusService.h>

#include "VXPrivateBus.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusObjectPath>

using namespace Qt::StringLiterals;

class tst_VXDBusService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theFirstValueOfAnAnswerIsReturned();
    void aPropertyIsReadWithoutItsWrapping();
    void anErrorGivesNothing();
    void beforeTheChainBeginsNothingIsAsked();
    void anAbsentServiceIsNotStartedAndMayBeAskedAgain();

private:
    VXPrivateBus myBus;
};

void tst_VXDBusService::initTestCase()
{
    QCOMPARE(myBus.start(), QString());
    QVERIFY2(myBus.startFake({u"networkmanager"_s, u"eth0=ethernet"_s}),
             "no fake service (Debian package python3-dbusmock)");
}

void tst_VXDBusService::theFirstValueOfAnAnswerIsReturned()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
    QVERIFY(service.begin());
    const auto device =
        service.call(u"/org/freedesktop/NetworkManager"_s, u"org.freedesktop.NetworkManager"_s,
                     u"GetDeviceByIpIface"_s, {u"eth0"_s});
    QVERIFY(device);
    QCOMPARE(device->value<QDBusObjectPath>().path(),
             u"/org/freedesktop/NetworkManager/Devices/0"_s);
}

void tst_VXDBusService::aPropertyIsReadWithoutItsWrapping()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
    QVERIFY(service.begin());
    QCOMPARE(service.property(u"/org/freedesktop/NetworkManager/Devices/0"_s,
                              u"org.freedesktop.NetworkManager.Device"_s, u"DeviceType"_s),
             std::optional<QVariant>(1U));
}

void tst_VXDBusService::anErrorGivesNothing()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
    QVERIFY(service.begin());
    QVERIFY(!service.call(u"/nowhere"_s, u"no.such.Interface"_s, u"Nothing"_s));
    QVERIFY(!service.property(u"/org/freedesktop/NetworkManager/Devices/0"_s,
                              u"org.freedesktop.NetworkManager.Device"_s, u"NoSuchThing"_s));
    QVERIFY(service.begin()); // an error is no reason to leave it alone
}

void tst_VXDBusService::beforeTheChainBeginsNothingIsAsked()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
    QVERIFY(!service.call(u"/org/freedesktop/NetworkManager"_s, u"org.freedesktop.NetworkManager"_s,
                          u"GetDeviceByIpIface"_s, {u"eth0"_s}));
}

void tst_VXDBusService::anAbsentServiceIsNotStartedAndMayBeAskedAgain()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.example.Absent"_s);
    QVERIFY(service.begin());
    QVERIFY(!service.call(u"/"_s, u"org.example.Absent"_s, u"Anything"_s));
    QVERIFY(service.begin());
}

VX_TEST_MAIN(QCoreApplication, tst_VXDBusService)
#include "tst_VXDBusService.moc"
