#include <VXNetworking/VXHttpContentType.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXHttpContentType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesHaveTheirNumbersAndTexts_data();
    void valuesHaveTheirNumbersAndTexts();
    void theDefaultIsNone();
    void decodingIgnoresTheCase();
    void combinedAndUnknownValuesHaveNoText();
    void unknownTextsAreNone();
};

void tst_VXHttpContentType::valuesHaveTheirNumbersAndTexts_data()
{
    QTest::addColumn<VXHttpContentTypeEnum>("value");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << ContentNone << 0 << u""_s;
    QTest::newRow("form") << ContentFormUrlEncoded << 1 << u"application/x-www-form-urlencoded"_s;
    QTest::newRow("JSON") << ContentJson << 2 << u"application/json"_s;
    QTest::newRow("XML") << ContentXml << 3 << u"text/xml"_s;
    QTest::newRow("bytes") << ContentOctetStream << 4 << u"application/octet-stream"_s;
}

void tst_VXHttpContentType::valuesHaveTheirNumbersAndTexts()
{
    QFETCH(VXHttpContentTypeEnum, value);
    QFETCH(int, number);
    QFETCH(QString, text);

    QCOMPARE(static_cast<int>(value), number);
    QCOMPARE(VXHttpContentType(value).encode(), text);
    QVERIFY(VXHttpContentType().decode(text) == value);
    QCOMPARE(VXHttpContentType(value).isValid(), number != 0);
}

void tst_VXHttpContentType::theDefaultIsNone()
{
    QVERIFY(VXHttpContentType() == ContentNone);
}

void tst_VXHttpContentType::decodingIgnoresTheCase()
{
    QVERIFY(VXHttpContentType().decode(u"Application/JSON"_s) == ContentJson);
}

void tst_VXHttpContentType::combinedAndUnknownValuesHaveNoText()
{
    VXHttpContentType combined(ContentFormUrlEncoded);
    combined |= ContentOctetStream;
    QCOMPARE(static_cast<int>(combined.value()), 5);
    QVERIFY(combined.encode().isEmpty());
    QVERIFY(VXHttpContentType(static_cast<VXHttpContentTypeEnum>(99)).encode().isEmpty());
}

void tst_VXHttpContentType::unknownTextsAreNone()
{
    QVERIFY(VXHttpContentType().decode(u"text/html"_s) == ContentNone);
    QVERIFY(VXHttpContentType().decode(u"application/json; charset=utf-8"_s) == ContentNone);
}

VX_TEST_MAIN(QCoreApplication, tst_VXHttpContentType)

#include "tst_VXHttpContentType.moc"
