#include <VXNetworking/VXUploadAdmission.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXUploadAdmission : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeQueryAdmits_data();
    void theWholeQueryAdmits();
    void theCookieAdmits_data();
    void theCookieAdmits();
    void theQueryComesBeforeTheCookie();
    void withoutTokensNobodyIsAdmitted();
    void everySessionIdIsRead();
};

void tst_VXUploadAdmission::theWholeQueryAdmits_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("expected");

    QTest::newRow("a token") << u"A+B-7"_s << u"A+B-7"_s;
    QTest::newRow("another one") << u"CCCCC"_s << u"CCCCC"_s;
    QTest::newRow("other case") << u"ccccc"_s << QString();
    QTest::newRow("more than the token") << u"CCCCC&x=1"_s << QString();
    QTest::newRow("less") << u"CCCC"_s << QString();
    QTest::newRow("empty") << u""_s << QString();
}

void tst_VXUploadAdmission::theWholeQueryAdmits()
{
    QFETCH(QString, query);

    QTEST(VXUploadAdmission::token({u"A+B-7"_s, u"CCCCC"_s}, query, {}), "expected");
}

void tst_VXUploadAdmission::theCookieAdmits_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("alone") << "Cookie"_ba
                           << "sid=CCCCC"_ba << u"CCCCC"_s;
    QTest::newRow("second pair") << "Cookie"_ba
                                 << "a=b; sid=CCCCC"_ba << u"CCCCC"_s;
    QTest::newRow("after a wrong one") << "Cookie"_ba
                                       << "sid=x;sid=CCCCC"_ba << u"CCCCC"_s;
    QTest::newRow("blanks") << "Cookie"_ba
                            << " sid = CCCCC "_ba << u"CCCCC"_s;
    QTest::newRow("lower-case header") << "cookie"_ba
                                       << "sid=CCCCC"_ba << QString();
    QTest::newRow("upper-case name") << "Cookie"_ba
                                     << "SID=CCCCC"_ba << QString();
    QTest::newRow("in quotes") << "Cookie"_ba
                               << "sid=\"CCCCC\""_ba << QString();
    QTest::newRow("no value") << "Cookie"_ba
                              << "sid"_ba << QString();
    QTest::newRow("empty value") << "Cookie"_ba
                                 << "sid="_ba << QString();
    QTest::newRow("comma for a semicolon") << "Cookie"_ba
                                           << "a=b,sid=CCCCC"_ba << QString();
    QTest::newRow("end cut by NUL") << "Cookie"_ba
                                    << "sid=CCCCC\0"_ba << QString();
}

void tst_VXUploadAdmission::theCookieAdmits()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);

    const VXUploadAdmission::Headers headers{{"Host", "h"}, {name, value}};
    QTEST(VXUploadAdmission::token({u"A+B-7"_s, u"CCCCC"_s}, u"file=a"_s, headers), "expected");
}

void tst_VXUploadAdmission::theQueryComesBeforeTheCookie()
{
    QCOMPARE(
        VXUploadAdmission::token({u"A+B-7"_s, u"CCCCC"_s}, u"A+B-7"_s, {{"Cookie", "sid=CCCCC"}}),
        u"A+B-7"_s);
}

void tst_VXUploadAdmission::withoutTokensNobodyIsAdmitted()
{
    QCOMPARE(VXUploadAdmission::token({}, QString(), {{"Cookie", "sid="}}), QString());
}

void tst_VXUploadAdmission::everySessionIdIsRead()
{
    QCOMPARE(VXUploadAdmission::sessionIds("sid=1; a=2; sid=3;sid"), (QStringList{u"1"_s, u"3"_s}));
}

VX_TEST_MAIN(QCoreApplication, tst_VXUploadAdmission)

#include "tst_VXUploadAdmission.moc"
