#include <VXNetworking/VXEnumToStringTable.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

enum class Color
{
    None = 0,
    Red = 1,
    Green = 2,
    Blue = 4
};

} // namespace

class tst_VXEnumToStringTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstTextOfAValueEncodesIt();
    void everyTextOfAValueDecodes();
    void aLaterInsertOfATextWins();
    void decodingIgnoresTheCase();
    void unknownTextsAreZero();
    void unknownValuesHaveNoText();
    void theEmptyTextMayStandForAValue();
};

void tst_VXEnumToStringTable::theFirstTextOfAValueEncodesIt()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Red"_s, Color::Red);
    table.insert(u"Crimson"_s, Color::Red);
    QCOMPARE(table.encode(Color::Red), u"Red"_s);
}

void tst_VXEnumToStringTable::everyTextOfAValueDecodes()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Red"_s, Color::Red);
    table.insert(u"Crimson"_s, Color::Red);
    QVERIFY(table.decode(u"Red"_s) == Color::Red);
    QVERIFY(table.decode(u"Crimson"_s) == Color::Red);
}

void tst_VXEnumToStringTable::aLaterInsertOfATextWins()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Red"_s, Color::Red);
    table.insert(u"RED"_s, Color::Blue);
    QVERIFY(table.decode(u"red"_s) == Color::Blue);
    QCOMPARE(table.encode(Color::Red), u"Red"_s);
    QCOMPARE(table.encode(Color::Blue), u"RED"_s);
}

void tst_VXEnumToStringTable::decodingIgnoresTheCase()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Grün"_s, Color::Green);
    for (const QString& text : {u"Grün"_s, u"GRÜN"_s, u"grün"_s, u"gRüN"_s})
        QVERIFY2(table.decode(text) == Color::Green, qPrintable(text));
    QCOMPARE(table.encode(Color::Green), u"Grün"_s);
}

void tst_VXEnumToStringTable::unknownTextsAreZero()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Red"_s, Color::Red);
    QVERIFY(table.decode(u"Pink"_s) == Color::None);
    QVERIFY(table.decode(u" Red"_s) == Color::None);
    QVERIFY(table.decode(QString()) == Color::None);
}

void tst_VXEnumToStringTable::unknownValuesHaveNoText()
{
    VXEnumToStringTable<Color> table;
    table.insert(u"Red"_s, Color::Red);
    QVERIFY(table.encode(Color::Blue).isEmpty());
    QVERIFY(table.encode(static_cast<Color>(3)).isEmpty());
}

void tst_VXEnumToStringTable::theEmptyTextMayStandForAValue()
{
    VXEnumToStringTable<Color> table;
    table.insert(u""_s, Color::Blue);
    QVERIFY(table.decode(QString()) == Color::Blue);
    QVERIFY(table.encode(Color::Blue).isEmpty());
}

VX_TEST_MAIN(QCoreApplication, tst_VXEnumToStringTable)

#include "tst_VXEnumToStringTable.moc"
