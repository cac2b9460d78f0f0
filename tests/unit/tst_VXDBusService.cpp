#include <VXCore/VXDBusService.h>

#include "VXPrivateBus.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusObjectPath>

using namespace Qt::StringLiterals;

/// Each question has a fresh asker until it is as expected: on a busy computer an answer may miss
/// the time limit, and then its asker leaves the service alone.
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
    const auto device = [] {
        VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
        if (!service.begin())
            return QString();
        const auto answer =
            service.call(u"/org/freedesktop/NetworkManager"_s, u"org.freedesktop.NetworkManager"_s,
                         u"GetDeviceByIpIface"_s, {u"eth0"_s});
        return answer ? answer->value<QDBusObjectPath>().path() : QString();
    };
    QTRY_COMPARE(device(), u"/org/freedesktop/NetworkManager/Devices/0"_s);
}

void tst_VXDBusService::aPropertyIsReadWithoutItsWrapping()
{
    const auto type = [] {
        VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
        return service.begin()
                   ? service.property(u"/org/freedesktop/NetworkManager/Devices/0"_s,
                                      u"org.freedesktop.NetworkManager.Device"_s, u"DeviceType"_s)
                   : std::nullopt;
    };
    QTRY_COMPARE(type(), std::optional<QVariant>(1U));
}

void tst_VXDBusService::anErrorGivesNothing()
{
    const auto isErrorNoReasonToLeaveItAlone = [] {
        VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
        return service.begin() &&
               !service.call(u"/nowhere"_s, u"no.such.Interface"_s, u"Nothing"_s) &&
               !service.property(u"/org/freedesktop/NetworkManager/Devices/0"_s,
                                 u"org.freedesktop.NetworkManager.Device"_s, u"NoSuchThing"_s) &&
               service.begin();
    };
    QTRY_VERIFY(isErrorNoReasonToLeaveItAlone());
}

void tst_VXDBusService::beforeTheChainBeginsNothingIsAsked()
{
    VXDBusService service(QDBusConnection::systemBus(), u"org.freedesktop.NetworkManager"_s);
    QVERIFY(!service.call(u"/org/freedesktop/NetworkManager"_s, u"org.freedesktop.NetworkManager"_s,
                          u"GetDeviceByIpIface"_s, {u"eth0"_s}));
}

void tst_VXDBusService::anAbsentServiceIsNotStartedAndMayBeAskedAgain()
{
    const auto mayBeAskedAgain = [] {
        VXDBusService service(QDBusConnection::systemBus(), u"org.example.Absent"_s);
        return service.begin() && !service.call(u"/"_s, u"org.example.Absent"_s, u"Anything"_s) &&
               service.begin();
    };
    QTRY_VERIFY(mayBeAskedAgain());
}

VX_TEST_MAIN(QCoreApplication, tst_VXDBusService)
#include "tst_VXDBusService.moc"
