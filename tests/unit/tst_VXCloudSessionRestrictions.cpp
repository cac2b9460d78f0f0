#include <VXNetworking/VXCloudSessionRestrictions.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

class tst_VXCloudSessionRestrictions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshRecordRestrictsNothing();
    void settersReachTheirFields();
    void theDelayKeepsAMarginOf15Minutes();
    void theDelayIsNeverBelow100Ms_data();
    void theDelayIsNeverBelow100Ms();
    void movingCarriesEverything();
};

void tst_VXCloudSessionRestrictions::aFreshRecordRestrictsNothing()
{
    const VXCloudSessionRestrictions restrictions;
    QVERIFY(restrictions.waitUntilRetry().isNull());
    QVERIFY(restrictions.sessionValidUntil().isNull());
    QVERIFY(!restrictions.sessionRestricted());
    QVERIFY(!restrictions.termsUpdated());
    QVERIFY(!restrictions.privacyStatementUpdated());
    QCOMPARE(restrictions.termsVersion(), 0);
    QCOMPARE(restrictions.privacyStatementVersion(), 0);
}

void tst_VXCloudSessionRestrictions::settersReachTheirFields()
{
    const QDateTime now = QDateTime::currentDateTime();
    VXCloudSessionRestrictions restrictions;
    restrictions.setWaitUntilRetry(now);
    restrictions.setSessionValidUntil(now.addSecs(1));
    restrictions.setSessionRestricted(true);
    restrictions.setTermsUpdated(true);
    restrictions.setPrivacyStatementUpdated(true);
    restrictions.setTermsVersion(3);
    restrictions.setPrivacyStatementVersion(4);
    QCOMPARE(restrictions.waitUntilRetry(), now);
    QCOMPARE(restrictions.sessionValidUntil(), now.addSecs(1));
    QVERIFY(restrictions.sessionRestricted());
    QVERIFY(restrictions.termsUpdated());
    QVERIFY(restrictions.privacyStatementUpdated());
    QCOMPARE(restrictions.termsVersion(), 3);
    QCOMPARE(restrictions.privacyStatementVersion(), 4);
}

void tst_VXCloudSessionRestrictions::theDelayKeepsAMarginOf15Minutes()
{
    VXCloudSessionRestrictions restrictions;
    restrictions.setSessionValidUntil(QDateTime::currentDateTime().addSecs(3600));
    const qint64 delay = restrictions.expiresInMSec();
    QVERIFY2(delay > 2'690'000 && delay <= 2'700'000, qPrintable(QString::number(delay)));
}

void tst_VXCloudSessionRestrictions::theDelayIsNeverBelow100Ms_data()
{
    QTest::addColumn<QDateTime>("end");

    const QDateTime now = QDateTime::currentDateTime();
    QTest::newRow("ten minutes ahead") << now.addSecs(600);
    QTest::newRow("past") << now.addDays(-1);
    QTest::newRow("unknown") << QDateTime();
}

void tst_VXCloudSessionRestrictions::theDelayIsNeverBelow100Ms()
{
    QFETCH(QDateTime, end);

    VXCloudSessionRestrictions restrictions;
    restrictions.setSessionValidUntil(end);
    QCOMPARE(restrictions.expiresInMSec(), 100);
}

void tst_VXCloudSessionRestrictions::movingCarriesEverything()
{
    const QDateTime now = QDateTime::currentDateTime();
    VXCloudSessionRestrictions source;
    source.setWaitUntilRetry(now);
    source.setSessionRestricted(true);
    source.setTermsVersion(3);
    VXCloudSessionRestrictions target = std::move(source);
    QCOMPARE(target.waitUntilRetry(), now);
    QVERIFY(target.sessionRestricted());
    QCOMPARE(target.termsVersion(), 3);

    VXCloudSessionRestrictions assigned;
    assigned = std::move(target);
    QCOMPARE(assigned.waitUntilRetry(), now);
    QCOMPARE(assigned.termsVersion(), 3);
}

VX_TEST_MAIN(QCoreApplication, tst_VXCloudSessionRestrictions)

#include "tst_VXCloudSessionRestrictions.moc"
