#include <VXXML/VXDomReader.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringConverter>
#include <QtXml/QDomDocument>

using namespace Qt::StringLiterals;

namespace {

/// What a reading of a document came to.
struct Outcome
{
    bool isRead = false;
    QString message;
    int line = 0;
    int column = 0;
    QDomDocument document;
};

Outcome read(const QByteArray& theData)
{
    Outcome outcome;
    outcome.isRead = VXDomReader::setContent(outcome.document, theData, outcome.message,
                                             outcome.line, outcome.column);
    return outcome;
}

QByteArray attributes(int theCount)
{
    QByteArray text;
    for (int number = 0; number < theCount; ++number)
        text += " a" + QByteArray::number(number) + "='>'";
    return text;
}

QByteArray nested(int theDepth)
{
    return "<a>"_ba.repeated(theDepth) + "</a>"_ba.repeated(theDepth);
}

} // namespace

class tst_VXDomReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsRead();
    void theEncodingIsTheDocumentsOwn();
    void aBrokenDocumentHasQtsMessage();
    void nestingCountsToItsLimit_data();
    void nestingCountsToItsLimit();
    void siblingsMayBeMany();
    void entitiesCountWhereTheyAreUsed();
    void anUndeclaredPrefixHidesNoDepth();
    void aDeepDocumentIsRefusedBeforeItIsBuilt();
    void attributesCountToTheirLimit_data();
    void attributesCountToTheirLimit();
    void attributesOfSeveralElementsAreNotAdded();
    void textIsNoAttribute_data();
    void textIsNoAttribute();
    void apostrophesHideNoAttributes();
    void wideCharactersHideNoAttributes_data();
    void wideCharactersHideNoAttributes();
    void declaredAttributesCount_data();
    void declaredAttributesCount();
    void attributesOfADeclaredEntityCount();
    void ownAttributesBesideADocumentTypeMayBeMany();
    void declarationsCountToTheirLimit_data();
    void declarationsCountToTheirLimit();
};

void tst_VXDomReader::aDocumentIsRead()
{
    const Outcome outcome = read("<r><b x='1'/></r>");
    QVERIFY(outcome.isRead);
    QCOMPARE(outcome.message, QString());
    QCOMPARE(outcome.document.documentElement().firstChildElement(u"b"_s).attribute(u"x"_s),
             u"1"_s);
}

void tst_VXDomReader::theEncodingIsTheDocumentsOwn()
{
    const Outcome outcome = read("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xfc</r>");
    QVERIFY(outcome.isRead);
    QCOMPARE(outcome.document.documentElement().text(), u"ü"_s);
}

void tst_VXDomReader::aBrokenDocumentHasQtsMessage()
{
    const Outcome outcome = read("<a><b></a>");
    QVERIFY(!outcome.isRead);
    QCOMPARE(outcome.message, u"Opening and ending tag mismatch."_s);
    QCOMPARE(outcome.line, 1);
    QCOMPARE(outcome.column, 10);
}

void tst_VXDomReader::nestingCountsToItsLimit_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("expected");

    QTest::newRow("at the limit") << 256 << true;
    QTest::newRow("beyond") << 257 << false;
}

void tst_VXDomReader::nestingCountsToItsLimit()
{
    QFETCH(int, depth);
    QFETCH(bool, expected);

    QCOMPARE(VXDomReader::maximalDepth, 256);
    const Outcome outcome = read(nested(depth));
    QCOMPARE(outcome.isRead, expected);
    QCOMPARE(outcome.message, expected ? QString() : u"elements nested too deep"_s);
}

void tst_VXDomReader::siblingsMayBeMany()
{
    const Outcome outcome = read("<r>" + "<a></a>"_ba.repeated(10000) + "</r>");
    QVERIFY(outcome.isRead);
    QCOMPARE(outcome.document.documentElement().childNodes().size(), 10000);
}

void tst_VXDomReader::entitiesCountWhereTheyAreUsed()
{
    const QByteArray entities = "<!DOCTYPE r [<!ENTITY e '" + nested(200) + "'>]>";
    QVERIFY(read(entities + "<r>&e;</r>").isRead);
    const Outcome outcome =
        read(entities + "<a>"_ba.repeated(100) + "&e;" + "</a>"_ba.repeated(100));
    QVERIFY(!outcome.isRead);
    QCOMPARE(outcome.message, u"elements nested too deep"_s);
}

void tst_VXDomReader::anUndeclaredPrefixHidesNoDepth()
{
    QVERIFY(read("<p:a/>").isRead); // Qt's tree takes a prefix as a part of the name
    const Outcome outcome = read("<p:a>" + nested(256) + "</p:a>");
    QVERIFY(!outcome.isRead);
    QCOMPARE(outcome.message, u"elements nested too deep"_s);
}

void tst_VXDomReader::aDeepDocumentIsRefusedBeforeItIsBuilt()
{
    // Built, it would take minutes and then the stack.
    const Outcome outcome = read(nested(1000000));
    QVERIFY(!outcome.isRead);
    QVERIFY(outcome.document.isNull());
    QCOMPARE(outcome.line, 1);
    QCOMPARE(outcome.column, 771);
}

void tst_VXDomReader::attributesCountToTheirLimit_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("message");

    const QString refused = u"too many attributes"_s;
    QTest::newRow("at the limit") << "<r>\n <b" + attributes(1000) + "/></r>" << QString();
    QTest::newRow("beyond") << "<r>\n <b" + attributes(1001) + "/></r>" << refused;
    QTest::newRow("blanks") << "<r>\n <b" + attributes(1001).replace("=", " =\n\t") + "/></r>"
                            << refused;
    QTest::newRow("many") << "<r>\n <b" + attributes(100000) + "/></r>" << refused;
}

void tst_VXDomReader::attributesCountToTheirLimit()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, message);

    QCOMPARE(VXDomReader::maximalAttributes, 1000);
    const Outcome outcome = read(data);
    QCOMPARE(outcome.message, message);
    QCOMPARE(outcome.isRead, message.isEmpty());
    if (message.isEmpty())
        return;
    QVERIFY(outcome.document.isNull());
    QCOMPARE(outcome.line, 2);
    QCOMPARE(outcome.column, 2);
}

void tst_VXDomReader::attributesOfSeveralElementsAreNotAdded()
{
    const Outcome outcome =
        read("<r>" + ("<b" + attributes(700) + "/><c" + attributes(700) + ">x</c>") + "</r>");
    QVERIFY2(outcome.isRead, qPrintable(outcome.message));
}

void tst_VXDomReader::textIsNoAttribute_data()
{
    QTest::addColumn<QByteArray>("data");

    const QByteArray values = "a='b' c=\"d\" "_ba.repeated(1001);
    QTest::newRow("text") << "<r x='1'>" + values + "</r>";
    QTest::newRow("apostrophes") << "<r x='1'>" + "it's "_ba.repeated(1001) + "</r>";
    QTest::newRow("comment") << "<r><!-- it's " + values + "--></r>";
    QTest::newRow("CDATA") << "<r><![CDATA[" + values + "]]></r>";
    QTest::newRow("instruction") << "<r><?x " + values + "?></r>";
}

void tst_VXDomReader::textIsNoAttribute()
{
    QFETCH(QByteArray, data);
    const Outcome outcome = read(data);
    QVERIFY2(outcome.isRead, qPrintable(outcome.message));
}

void tst_VXDomReader::apostrophesHideNoAttributes()
{
    for (const QByteArray& before : {"<!-- it's -->"_ba, "<?x '?>"_ba, "<b>it's</b>"_ba}) {
        const Outcome outcome = read("<r>" + before + "<c" + attributes(1001) + "/></r>");
        QCOMPARE(outcome.message, u"too many attributes"_s);
    }
}

void tst_VXDomReader::wideCharactersHideNoAttributes_data()
{
    QTest::addColumn<QStringConverter::Encoding>("encoding");

    QTest::newRow("UTF-16, small end first") << QStringConverter::Utf16LE;
    QTest::newRow("UTF-16, big end first") << QStringConverter::Utf16BE;
    QTest::newRow("UTF-8") << QStringConverter::Utf8;
}

void tst_VXDomReader::wideCharactersHideNoAttributes()
{
    QFETCH(QStringConverter::Encoding, encoding);
    // One of the two bytes of U+3C3C and of U+3C00 is that of "<".
    QString text = u"\uFEFF<r%1/>"_s.arg(QString::fromLatin1(attributes(1001)));
    text.replace(u"='>'"_s, u"='\u3C3C\u3C00'"_s);
    const Outcome outcome = read(QStringEncoder(encoding).encode(text));
    QCOMPARE(outcome.message, u"too many attributes"_s);
}

void tst_VXDomReader::declaredAttributesCount_data()
{
    QTest::addColumn<int>("declared");
    QTest::addColumn<int>("elements");
    QTest::addColumn<QString>("message");

    QTest::newRow("few") << 2 << 10 << QString();
    QTest::newRow("at the limit") << 10 << 100 << QString();
    QTest::newRow("beyond") << 10 << 101 << u"too many attributes"_s;
    // Built, it would take gigabytes.
    QTest::newRow("many elements") << 400 << 200000 << u"too many attributes"_s;
    QTest::newRow("many declarations") << 50000 << 1 << u"too many declarations"_s;
}

void tst_VXDomReader::declaredAttributesCount()
{
    QFETCH(int, declared);
    QFETCH(int, elements);
    QFETCH(QString, message);

    QByteArray text = "<!DOCTYPE r [<!ATTLIST b";
    for (int number = 0; number < declared; ++number)
        text += " a" + QByteArray::number(number) + " CDATA 'x'";
    const Outcome outcome = read(text + ">]><r>" + "<b/>"_ba.repeated(elements) + "</r>");
    QCOMPARE(outcome.message, message);
    QCOMPARE(outcome.isRead, message.isEmpty());
}

void tst_VXDomReader::attributesOfADeclaredEntityCount()
{
    // The declaration of the attributes is written by number and so not seen as one.
    QByteArray entity = "<!ENTITY % e \"&#60;!ATTLIST b";
    for (int number = 0; number < 100; ++number)
        entity += " a" + QByteArray::number(number) + " CDATA 'x'";
    const QByteArray start = "<!DOCTYPE r [" + entity + ">\">%e;]><r>";
    QVERIFY(read(start + "<b/>"_ba.repeated(10) + "</r>").isRead);
    QCOMPARE(read(start + "<b/>"_ba.repeated(11) + "</r>").message, u"too many attributes"_s);
}

void tst_VXDomReader::ownAttributesBesideADocumentTypeMayBeMany()
{
    const Outcome outcome = read("<!DOCTYPE r [<!ATTLIST b c CDATA 'x'>]><r>" +
                                 ("<b" + attributes(90) + "/>").repeated(100) + "</r>");
    QVERIFY2(outcome.isRead, qPrintable(outcome.message));
}

void tst_VXDomReader::declarationsCountToTheirLimit_data()
{
    QTest::addColumn<QByteArray>("declaration");
    QTest::addColumn<int>("times");
    QTest::addColumn<bool>("expected");

    // With "<" each takes 64 bytes; that one does not count.
    const QByteArray entity = "<!ENTITY e%1 '" + QByteArray(47, 'x') + "'>";
    const QByteArray attribute = "<!ATTLIST b a%1 CDATA '" + QByteArray(38, 'x') + "'>";
    QTest::newRow("entities at the limit") << entity << 130 << true;
    QTest::newRow("entities beyond") << entity << 131 << false;
    QTest::newRow("attributes at the limit") << attribute << 130 << true;
    QTest::newRow("attributes beyond") << attribute << 131 << false;
    // An entity that declares attributes: its markup is written by number.
    QTest::newRow("hidden") << "<!ENTITY % e%1 \"&#60;!ATTLIST b c%1 CDATA 'x'>\">%e%1;"_ba << 200
                            << false;
}

void tst_VXDomReader::declarationsCountToTheirLimit()
{
    QFETCH(QByteArray, declaration);
    QFETCH(int, times);
    QFETCH(bool, expected);

    QCOMPARE(VXDomReader::maximalDeclarations, 8192);
    QByteArray text = "<!DOCTYPE r [";
    for (int number = 100; number < 100 + times; ++number)
        text += QByteArray(declaration).replace("%1", QByteArray::number(number));
    const Outcome outcome = read(text + "]><r/>");
    QCOMPARE(outcome.message, expected ? QString() : u"too many declarations"_s);
    QCOMPARE(outcome.isRead, expected);
}

VX_TEST_MAIN(QCoreApplication, tst_VXDomReader)

#include "tst_VXDomReader.moc"
