#include <VXXML/VXDomReader.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
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

VX_TEST_MAIN(QCoreApplication, tst_VXDomReader)

#include "tst_VXDomReader.moc"
