#include <VXXML/VXXMLParser.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtXml/QDomDocument>

using namespace Qt::StringLiterals;

class tst_VXXMLParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readIntAttributeReadsDecimalNumbers_data();
    void readIntAttributeReadsDecimalNumbers();
    void aMissingAttributeGivesTheDefault();
    void aNullElementGivesTheDefault();
};

void tst_VXXMLParser::readIntAttributeReadsDecimalNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("plain") << u"5"_s << 5;
    QTest::newRow("negative") << u"-1"_s << -1;
    QTest::newRow("with sign and blanks") << u" +70 "_s << 70;
    QTest::newRow("leading zero is decimal") << u"070"_s << 70;
    QTest::newRow("largest") << u"2147483647"_s << 2147483647;
    QTest::newRow("outside the range") << u"2147483648"_s << 42;
    QTest::newRow("hexadecimal") << u"0x46"_s << 42;
    QTest::newRow("fraction") << u"70.0"_s << 42;
    QTest::newRow("empty") << u""_s << 42;
    QTest::newRow("word") << u"soon"_s << 42;
}

void tst_VXXMLParser::readIntAttributeReadsDecimalNumbers()
{
    QFETCH(QString, text);
    QFETCH(int, expected);

    QDomDocument document;
    QDomElement element = document.createElement(u"errorcode"_s);
    element.setAttribute(u"wait_time"_s, text);
    QCOMPARE(VXXMLParser::readIntAttribute(element, u"wait_time"_s, 42), expected);
}

void tst_VXXMLParser::aMissingAttributeGivesTheDefault()
{
    QDomDocument document;
    const QDomElement element = document.createElement(u"errorcode"_s);
    QCOMPARE(VXXMLParser::readIntAttribute(element, u"wait_time"_s, 7), 7);
}

void tst_VXXMLParser::aNullElementGivesTheDefault()
{
    QCOMPARE(VXXMLParser::readIntAttribute(QDomElement(), u"wait_time"_s, 7), 7);
}

VX_TEST_MAIN(QCoreApplication, tst_VXXMLParser)

#include "tst_VXXMLParser.moc"
