#include <VXNetworking/VXCloudSessionAbstract.h>

#include <VXNetworking/VXNetworkingError.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaMethod>
#include <QtTest/QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

class PlainSession : public VXCloudSessionAbstract
{
    Q_OBJECT

public:
    VXNetworkingError open(const VXCredentials& theCredentials,
                           VXCloudSessionRestrictions*) override
    {
        setCredentials(theCredentials);
        setAccessToken(u"access"_s);
        setRefreshToken(u"refresh"_s);
        return {};
    }
    void updateAccessToken() override { ++updates; }
    void close() override
    {
        ++closings;
        VXCloudSessionAbstract::close();
    }

    int updates = 0;
    int closings = 0;
};

} // namespace

class tst_VXCloudSessionAbstract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void methodsStandInTheirOrder();
    void aFreshSessionIsClosedAndExpired();
    void theTimerRenewsOnce();
    void zeroAndNegativeIntervalsChangeNothing();
    void closingEmptiesTokensAndKeepsCredentials();
    void credentialsAreCopiedWhole();
    void logoutOnCloseIsConnectedOnce();
    void logoutOnCloseCanBeTakenBack();
    void defaultsOfConcreteSessionsAreFalse();
};

void tst_VXCloudSessionAbstract::methodsStandInTheirOrder()
{
    const QMetaObject& meta = VXCloudSessionAbstract::staticMetaObject;
    QByteArrayList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        methods.append(meta.method(index).methodSignature());
    QCOMPARE(methods, QByteArrayList({"sessionExpired()", "close()", "updateAccessToken()"}));
}

void tst_VXCloudSessionAbstract::aFreshSessionIsClosedAndExpired()
{
    PlainSession session;
    QCOMPARE(session.parent(), nullptr);
    QVERIFY(!session.isOpen());
    QVERIFY(session.isSessionExpired());
    QVERIFY(session.accessToken().isEmpty());
    QVERIFY(session.refreshToken().isEmpty());
    QVERIFY(session.username().isEmpty());
}

void tst_VXCloudSessionAbstract::theTimerRenewsOnce()
{
    PlainSession session;
    session.restartTimer(1);
    QVERIFY(!session.isSessionExpired());
    QTRY_COMPARE(session.updates, 1);
    QVERIFY(session.isSessionExpired());

    PlainSession later; // its timer starts after the first would have fired again
    later.restartTimer(20);
    QTRY_COMPARE(later.updates, 1);
    QCOMPARE(session.updates, 1);
}

void tst_VXCloudSessionAbstract::zeroAndNegativeIntervalsChangeNothing()
{
    PlainSession session;
    session.restartTimer(0);
    session.restartTimer(-5);
    QVERIFY(session.isSessionExpired());
    session.restartTimer(60'000);
    session.restartTimer(0);
    QVERIFY(!session.isSessionExpired());
}

void tst_VXCloudSessionAbstract::closingEmptiesTokensAndKeepsCredentials()
{
    PlainSession session;
    session.open(VXCredentials(u"karl"_s, u"geheim"_s), nullptr);
    session.restartTimer(60'000);
    QVERIFY(session.isOpen());
    session.close();
    QVERIFY(!session.isOpen());
    QVERIFY(session.refreshToken().isEmpty());
    QVERIFY(session.isSessionExpired());
    QCOMPARE(session.username(), u"karl"_s);
}

void tst_VXCloudSessionAbstract::credentialsAreCopiedWhole()
{
    VXCredentials credentials(u"karl"_s, u"token"_s, QDateTime::currentDateTime());
    credentials.setPassword(u"geheim"_s);
    credentials.setAuthOnceToken(u"once"_s);
    credentials.setTwoFactorAuthentificationCode(u"123456"_s);
    PlainSession session;
    session.setCredentials(credentials);
    QVERIFY(session.credentials() == credentials);
    QCOMPARE(session.credentials().authOnceToken(), u"once"_s);
    QCOMPARE(session.credentials().twoFactorAuthentificationCode(), u"123456"_s);
}

void tst_VXCloudSessionAbstract::logoutOnCloseIsConnectedOnce()
{
    PlainSession session;
    session.setLogoutOnClose(true);
    session.setLogoutOnClose(true);
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QCOMPARE(session.closings, 1);
}

void tst_VXCloudSessionAbstract::logoutOnCloseCanBeTakenBack()
{
    PlainSession session;
    session.setLogoutOnClose(true);
    session.setLogoutOnClose(false);
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QCOMPARE(session.closings, 0);
}

void tst_VXCloudSessionAbstract::defaultsOfConcreteSessionsAreFalse()
{
    PlainSession session;
    QVERIFY(!session.doubleOptInPending());
    QVERIFY(!session.changeToSecureSession(u"geheim"_s));
}

VX_TEST_MAIN(QCoreApplication, tst_VXCloudSessionAbstract)

#include "tst_VXCloudSessionAbstract.moc"
