#include <VXNetworking/VXUrlQueryItemList.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QUrlQuery>

#include <type_traits>

using namespace Qt::StringLiterals;

class tst_VXUrlQueryItemList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshListIsEmpty();
    void itemsKeepTheirOrderAndDuplicates();
    void valuesOfAQueryAreDecodedOnceMore_data();
    void valuesOfAQueryAreDecodedOnceMore();
    void addToUrlQueryKeepsTheOrderAndDropsDuplicates();
    void aLongListIsAddedLikeItemsOneByOne_data();
    void aLongListIsAddedLikeItemsOneByOne();
    void aQuerySurvivesTheRoundTrip();
    void aCopyIsIndependent();
};

void tst_VXUrlQueryItemList::aFreshListIsEmpty()
{
    const VXUrlQueryItemList list;
    QVERIFY(list.isEmpty());
    QCOMPARE(list.size(), 0);
    QVERIFY(VXUrlQueryItemList(QUrlQuery()).isEmpty());
}

void tst_VXUrlQueryItemList::itemsKeepTheirOrderAndDuplicates()
{
    const VXUrlQueryItemList list = QUrlQuery(u"b=2&a=1&b=2&b=3"_s); // a query is such a list
    QCOMPARE(list.size(), 4);
    const QList<VXUrlQueryItem> expected{
        {u"b"_s, u"2"_s}, {u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}, {u"b"_s, u"3"_s}};
    QVERIFY(list.items() == expected);
    QVERIFY(list.at(1) == VXUrlQueryItem(u"a"_s, u"1"_s));
}

void tst_VXUrlQueryItemList::valuesOfAQueryAreDecodedOnceMore_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("value");

    QTest::newRow("blank") << u"q=a%20b"_s << u"a b"_s;
    QTest::newRow("plus") << u"q=a%2Bb"_s << u"a+b"_s;
    QTest::newRow("plain plus") << u"q=a+b"_s << u"a+b"_s;
    QTest::newRow("umlaut") << u"q=%C3%A4"_s << u"ä"_s;
    QTest::newRow("encoded percent") << u"q=%2541"_s << u"%41"_s;
    QTest::newRow("no value") << u"q"_s << u""_s;
}

void tst_VXUrlQueryItemList::valuesOfAQueryAreDecodedOnceMore()
{
    QFETCH(QString, query);
    QFETCH(QString, value);

    const VXUrlQueryItemList list{QUrlQuery(query)};
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.at(0).name(), u"q"_s);
    QCOMPARE(list.at(0).value(), value);
}

void tst_VXUrlQueryItemList::addToUrlQueryKeepsTheOrderAndDropsDuplicates()
{
    VXUrlQueryItemList list;
    list.append({u"q"_s, u"a b"_s});
    list.append({u"q"_s, u"a b"_s});
    list.append({u"empty"_s, u""_s});
    list.append({u"p"_s, u"1"_s});
    list.append({u"q"_s, u"c"_s});
    QUrlQuery query(u"first=0"_s);
    list.addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), u"first=0&q=a%20b&p=1&q=c"_s);
}

void tst_VXUrlQueryItemList::aLongListIsAddedLikeItemsOneByOne_data()
{
    QTest::addColumn<QString>("query");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("value of an item") << u"plain=1&a%20b=%C3%A4"_s;
    QTest::newRow("another value first") << u"plain=0&plain=1"_s;
    QTest::newRow("name without a value") << u"plain&a+b"_s;
    QTest::newRow("lower-case escapes") << u"%c3%a4=%2f&a%20b=%3d"_s;
    QTest::newRow("delimiters") << u"a%26b=1&a%3Db=2"_s;
}

void tst_VXUrlQueryItemList::aLongListIsAddedLikeItemsOneByOne()
{
    QFETCH(QString, query);

    const QStringList names{u"plain"_s,   u"a b"_s, u"a%20b"_s, u"a+b"_s,  u"ä"_s,      u"%C3%A4"_s,
                            u"%c3%a4"_s,  u"a&b"_s, u"a=b"_s,   u"/?#"_s,  u"100 %"_s,  u"~-_."_s,
                            u"é\u0301"_s, u"%"_s,   u"%zz"_s,   u"'\"<"_s, u"[x]{y}"_s, u""_s};
    const QStringList values{u"1"_s, u"0"_s, u"ä"_s, u"/"_s, u"="_s, u"a b"_s, u"%41"_s, u""_s};
    VXUrlQueryItemList list;
    QUrlQuery oneByOne(query);
    for (int round = 0; round < 2; ++round) {
        for (const QString& value : values) {
            for (const QString& name : names) {
                list.append({name, value});
                VXUrlQueryItem(name, value).addToUrlQuery(oneByOne);
            }
        }
    }

    QUrlQuery atOnce(query);
    list.addToUrlQuery(atOnce);
    QCOMPARE(atOnce.toString(QUrl::FullyEncoded), oneByOne.toString(QUrl::FullyEncoded));
    QVERIFY(atOnce == oneByOne);
}

void tst_VXUrlQueryItemList::aQuerySurvivesTheRoundTrip()
{
    const QString text = u"z=%C3%A4%26&a=1%2B1&m=%22x%22"_s;
    QUrlQuery query;
    VXUrlQueryItemList(QUrlQuery(text)).addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), text);
}

void tst_VXUrlQueryItemList::aCopyIsIndependent()
{
    static_assert(std::has_virtual_destructor_v<VXUrlQueryItemList>);
    const VXUrlQueryItemList original(QUrlQuery(u"a=1"_s));
    VXUrlQueryItemList copy = original;
    copy.append({u"b"_s, u"2"_s});
    QCOMPARE(original.size(), 1);
    QCOMPARE(copy.size(), 2);
}

VX_TEST_MAIN(QCoreApplication, tst_VXUrlQueryItemList)

#include "tst_VXUrlQueryItemList.moc"
