#include <VXNetworking/VXProxyChoice.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXProxyChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesHaveTheirNumbersAndTexts_data();
    void valuesHaveTheirNumbersAndTexts();
    void theDefaultIsNone();
    void unknownTextsAreNone_data();
    void unknownTextsAreNone();
    void unknownValuesHaveNoText();
};

void tst_VXProxyChoice::valuesHaveTheirNumbersAndTexts_data()
{
    QTest::addColumn<VXProxyChoiceEnum>("value");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << ProxyChoiceNone << 0 << u"no"_s;
    QTest::newRow("system") << ProxyChoiceSystem << 1 << u"sys"_s;
    QTest::newRow("manual") << ProxyChoiceManual << 2 << u"my"_s;
}

void tst_VXProxyChoice::valuesHaveTheirNumbersAndTexts()
{
    QFETCH(VXProxyChoiceEnum, value);
    QFETCH(int, number);
    QFETCH(QString, text);

    QCOMPARE(static_cast<int>(value), number);
    QCOMPARE(VXProxyChoice(value).encode(), text);
    QVERIFY(VXProxyChoice().decode(text) == value);
    QVERIFY(VXProxyChoice().decode(text.toUpper()) == value);
}

void tst_VXProxyChoice::theDefaultIsNone()
{
    QVERIFY(VXProxyChoice() == ProxyChoiceNone);
}

void tst_VXProxyChoice::unknownTextsAreNone_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text : {"", "yes", "system", " my", "2"})
        QTest::addRow("'%s'", text) << QString::fromLatin1(text);
}

void tst_VXProxyChoice::unknownTextsAreNone()
{
    QFETCH(QString, text);
    QVERIFY(VXProxyChoice(ProxyChoiceManual).decode(text) == ProxyChoiceNone);
}

void tst_VXProxyChoice::unknownValuesHaveNoText()
{
    QVERIFY(VXProxyChoice(static_cast<VXProxyChoiceEnum>(3)).encode().isEmpty());
}

VX_TEST_MAIN(QCoreApplication, tst_VXProxyChoice)

#include "tst_VXProxyChoice.moc"
