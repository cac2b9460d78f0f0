#include <VXNetworking/VXUrlQueryItem.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QUrlQuery>

#include <type_traits>

using namespace Qt::StringLiterals;

class tst_VXUrlQueryItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshItemIsEmpty();
    void copiesAndMovesKeepBothTexts();
    void equalityIsCaseSensitive();
    void hashAddsTheUnseededHashes();
    void addingTwiceChangesNothing_data();
    void addingTwiceChangesNothing();
    void anotherValueOfTheNameIsAppended();
    void onlyTheFirstItemOfTheNameIsComparedWith();
    void anEmptyNameOrValueIsNeverAdded();
    void theValueIsPercentEncoded_data();
    void theValueIsPercentEncoded();
};

void tst_VXUrlQueryItem::aFreshItemIsEmpty()
{
    const VXUrlQueryItem item;
    QVERIFY(item.name().isEmpty());
    QVERIFY(item.value().isEmpty());
}

void tst_VXUrlQueryItem::copiesAndMovesKeepBothTexts()
{
    static_assert(std::has_virtual_destructor_v<VXUrlQueryItem>);
    const VXUrlQueryItem original(u"q"_s, u"a b"_s);
    VXUrlQueryItem copy(original);
    VXUrlQueryItem moved(std::move(copy));
    QVERIFY(moved == original);
    VXUrlQueryItem assigned;
    assigned = original;
    QVERIFY(assigned == original);
    VXUrlQueryItem moveAssigned;
    moveAssigned = std::move(assigned);
    QVERIFY(moveAssigned == original);
    QCOMPARE(original.name(), u"q"_s);
    QCOMPARE(original.value(), u"a b"_s);
}

void tst_VXUrlQueryItem::equalityIsCaseSensitive()
{
    const VXUrlQueryItem item(u"q"_s, u"a"_s);
    QVERIFY(item == VXUrlQueryItem(u"q"_s, u"a"_s));
    QVERIFY(item != VXUrlQueryItem(u"Q"_s, u"a"_s));
    QVERIFY(item != VXUrlQueryItem(u"q"_s, u"A"_s));
}

void tst_VXUrlQueryItem::hashAddsTheUnseededHashes()
{
    const VXUrlQueryItem item(u"q"_s, u"a b"_s);
    QCOMPARE(item.hash(), qHash(u"q"_s, 0) + qHash(u"a b"_s, 0));
    QCOMPARE(item.hash(), VXUrlQueryItem(u"a b"_s, u"q"_s).hash());
}

void tst_VXUrlQueryItem::addingTwiceChangesNothing_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("encoded");

    QTest::newRow("blank") << u"a b"_s << u"q=a%20b"_s;
    QTest::newRow("plain") << u"a"_s << u"q=a"_s;
    QTest::newRow("plus") << u"a+b"_s << u"q=a%2Bb"_s;
    QTest::newRow("percent") << u"100%"_s << u"q=100%25"_s;
    QTest::newRow("umlaut") << u"ä"_s << u"q=%C3%A4"_s;
    QTest::newRow("delimiters") << u"a&b=c#d"_s << u"q=a%26b%3Dc%23d"_s;
    QTest::newRow("quotation mark") << u"\"<>{}\""_s << u"q=%22%3C%3E%7B%7D%22"_s;
}

void tst_VXUrlQueryItem::addingTwiceChangesNothing()
{
    QFETCH(QString, value);
    QFETCH(QString, encoded);

    QUrlQuery query;
    VXUrlQueryItem(u"q"_s, value).addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), encoded);
    VXUrlQueryItem(u"q"_s, value).addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), encoded);
}

void tst_VXUrlQueryItem::anotherValueOfTheNameIsAppended()
{
    QUrlQuery query;
    VXUrlQueryItem(u"q"_s, u"a b"_s).addToUrlQuery(query);
    VXUrlQueryItem(u"q"_s, u"c"_s).addToUrlQuery(query);
    VXUrlQueryItem(u"q"_s, u"A b"_s).addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), u"q=a%20b&q=c&q=A%20b"_s);
}

void tst_VXUrlQueryItem::onlyTheFirstItemOfTheNameIsComparedWith()
{
    QUrlQuery query(u"q=a&q=b"_s);
    VXUrlQueryItem(u"q"_s, u"b"_s).addToUrlQuery(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded), u"q=a&q=b&q=b"_s);
}

void tst_VXUrlQueryItem::anEmptyNameOrValueIsNeverAdded()
{
    QUrlQuery query;
    VXUrlQueryItem(u"q"_s, QString()).addToUrlQuery(query);
    VXUrlQueryItem(u"q"_s, u""_s).addToUrlQuery(query);
    VXUrlQueryItem(QString(), u"a"_s).addToUrlQuery(query);
    VXUrlQueryItem().addToUrlQuery(query);
    QVERIFY(query.isEmpty());
}

void tst_VXUrlQueryItem::theValueIsPercentEncoded_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("encoded");

    QTest::newRow("unreserved stay") << u"azAZ09-._~"_s << u"azAZ09-._~"_s;
    QTest::newRow("reserved") << u":/?#[]@!$&'()*+,;="_s
                              << u"%3A%2F%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D"_s;
    QTest::newRow("encoded already") << u"a%20b"_s << u"a%2520b"_s;
    QTest::newRow("beyond the BMP") << u"\U0001F4F7"_s << u"%F0%9F%93%B7"_s;
    QTest::newRow("line feed") << u"a\r\nb"_s << u"a%0D%0Ab"_s;
}

void tst_VXUrlQueryItem::theValueIsPercentEncoded()
{
    QFETCH(QString, value);
    QFETCH(QString, encoded);

    QUrlQuery query;
    VXUrlQueryItem(u"q"_s, value).addToUrlQuery(query);
    QCOMPARE(query.queryItemValue(u"q"_s, QUrl::FullyEncoded), encoded);
    QCOMPARE(query.queryItemValue(u"q"_s, QUrl::FullyDecoded), value);
}

VX_TEST_MAIN(QCoreApplication, tst_VXUrlQueryItem)

#include "tst_VXUrlQueryItem.moc"
