#include <VXGUIWidgets/VXQRCode.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

/// That the modules mean the text is proven by the widget's test, with a decoder.
class tst_VXQRCode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSizeFollowsTheLength_data();
    void theSizeFollowsTheLength();
    void whatNoCodeHoldsGivesNothing();
    void theCornersHoldTheFinderPattern();
    void outsideTheCodeEverythingIsLight();
};

void tst_VXQRCode::theSizeFollowsTheLength_data()
{
    QTest::addColumn<int>("length"); // bytes
    QTest::addColumn<int>("size");   // modules; ISO/IEC 18004, table 7, level M

    QTest::newRow("1") << 1 << 21;
    QTest::newRow("14, version 1") << 14 << 21;
    QTest::newRow("15, version 2") << 15 << 25;
    QTest::newRow("42, version 3") << 42 << 29;
    QTest::newRow("2331, version 40") << 2331 << 177;
}

void tst_VXQRCode::theSizeFollowsTheLength()
{
    QFETCH(int, length);
    QFETCH(int, size);
    const auto code = VXQRCode::fromText(QByteArray(length, 'x'));
    QVERIFY(code);
    QCOMPARE(code->size(), size);
}

void tst_VXQRCode::whatNoCodeHoldsGivesNothing()
{
    QVERIFY(!VXQRCode::fromText({}));
    QVERIFY(!VXQRCode::fromText(QByteArray(2332, 'x')));
}

void tst_VXQRCode::theCornersHoldTheFinderPattern()
{
    const auto code = VXQRCode::fromText("http://10.0.0.1:1/?ABCDE");
    QVERIFY(code);
    const QByteArrayList pattern{"XXXXXXX ", "X     X ", "X XXX X ", "X XXX X ",
                                 "X XXX X ", "X     X ", "XXXXXXX ", "        "};
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column)
            QCOMPARE(code->isDark(row, column), pattern.at(row).at(column) == 'X');
    }
}

void tst_VXQRCode::outsideTheCodeEverythingIsLight()
{
    const auto code = VXQRCode::fromText("x");
    QVERIFY(code);
    QVERIFY(code->isDark(0, 0));
    for (const auto& [row, column] : {std::pair(-1, 0), std::pair(0, -1), std::pair(21, 0),
                                      std::pair(0, 21), std::pair(1000000, 1000000)})
        QVERIFY(!code->isDark(row, column));
}

VX_TEST_MAIN(QCoreApplication, tst_VXQRCode)
#include "tst_VXQRCode.moc"
