#include <VXNetworking/VXHttpParameter.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QUrlQuery>

using namespace Qt::StringLiterals;

class tst_VXHttpParameter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreCaseSensitive();
    void insertReplacesTheValueOfAName();
    void keysAreSortedByCodeUnit();
    void aRepeatedQueryItemKeepsItsLastValue();
    void queryItemsArePrettyDecoded();
    void aCopyIsIndependent();
};

void tst_VXHttpParameter::namesAreCaseSensitive()
{
    VXHttpParameter parameters;
    parameters.insert(u"content-type"_s, u"text/xml"_s);
    QCOMPARE(parameters.value(u"Content-Type"_s, u"none"_s), u"none"_s);
    QCOMPARE(parameters.value(u"content-type"_s, u"none"_s), u"text/xml"_s);
    QVERIFY(parameters.value(u"Accept"_s).isNull());
}

void tst_VXHttpParameter::insertReplacesTheValueOfAName()
{
    VXHttpParameter parameters;
    parameters.insert(u"a"_s, u"1"_s);
    parameters.insert(u"a"_s, u"2"_s);
    QCOMPARE(parameters.keys(), QStringList{u"a"_s});
    QCOMPARE(parameters.value(u"a"_s), u"2"_s);
}

void tst_VXHttpParameter::keysAreSortedByCodeUnit()
{
    VXHttpParameter parameters;
    for (const QString& name : {u"b"_s, u"ä"_s, u"B"_s, u"a"_s})
        parameters.insert(name, name);
    QCOMPARE(parameters.keys(), (QStringList{u"B"_s, u"a"_s, u"b"_s, u"ä"_s}));
}

void tst_VXHttpParameter::aRepeatedQueryItemKeepsItsLastValue()
{
    const auto parameters = VXHttpParameter::createFromUrlQuery(QUrlQuery(u"a=1&a=2"_s));
    QCOMPARE(parameters.keys(), QStringList{u"a"_s});
    QCOMPARE(parameters.value(u"a"_s), u"2"_s);
}

void tst_VXHttpParameter::queryItemsArePrettyDecoded()
{
    const auto parameters = VXHttpParameter::createFromUrlQuery(QUrlQuery(u"q=a%20b&r=a%2Bb"_s));
    QCOMPARE(parameters.value(u"q"_s), u"a b"_s);
    QCOMPARE(parameters.value(u"r"_s), u"a%2Bb"_s);
}

void tst_VXHttpParameter::aCopyIsIndependent()
{
    VXHttpParameter original;
    original.insert(u"a"_s, u"1"_s);
    VXHttpParameter copy = original;
    copy.insert(u"a"_s, u"2"_s);
    QCOMPARE(original.value(u"a"_s), u"1"_s);
}

VX_TEST_MAIN(QCoreApplication, tst_VXHttpParameter)

#include "tst_VXHttpParameter.moc"
