#include "VXBenchStatistics.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>

#include <cmath>

class tst_VXBenchStatistics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void medianOfAnOddCountIsTheMiddle();
    void medianOfAnEvenCountIsTheMeanOfTheTwoInTheMiddle();
    void orderDoesNotMatter();
    void nothingHasNoFigure();
    void percentileLiesBetweenTheNearestRanks_data();
    void percentileLiesBetweenTheNearestRanks();
    void percentOutsideTheScaleIsTheNearestEnd();
    void smallestAndLargestAreTheEnds();
    void ratiosAreTakenRoundByRound();
    void ratiosLeaveOutWhatHasNoPartner();
    void ratiosLeaveOutAYardstickOfZero();
};

void tst_VXBenchStatistics::medianOfAnOddCountIsTheMiddle()
{
    QCOMPARE(VXBenchStatistics::median({1, 2, 100}), 2.0);
}

void tst_VXBenchStatistics::medianOfAnEvenCountIsTheMeanOfTheTwoInTheMiddle()
{
    QCOMPARE(VXBenchStatistics::median({1, 2, 4, 100}), 3.0);
}

void tst_VXBenchStatistics::orderDoesNotMatter()
{
    QCOMPARE(VXBenchStatistics::median({100, 1, 2}), 2.0);
    QCOMPARE(VXBenchStatistics::percentile({30, 10, 20}, 100), 30.0);
}

void tst_VXBenchStatistics::nothingHasNoFigure()
{
    QVERIFY(std::isnan(VXBenchStatistics::median({})));
    QVERIFY(std::isnan(VXBenchStatistics::percentile({}, 95)));
}

void tst_VXBenchStatistics::percentileLiesBetweenTheNearestRanks_data()
{
    QTest::addColumn<QList<double>>("values");
    QTest::addColumn<double>("percent");
    QTest::addColumn<double>("expected");

    QTest::newRow("one value") << QList<double>{7} << 95.0 << 7.0;
    QTest::newRow("on a rank") << QList<double>{1, 2, 3, 4, 5} << 75.0 << 4.0;
    QTest::newRow("between two ranks") << QList<double>{10, 20} << 95.0 << 19.5;
    QTest::newRow("near the end") << QList<double>{0, 10, 20, 30, 40} << 95.0 << 38.0;
    QTest::newRow("lowest") << QList<double>{3, 1, 2} << 0.0 << 1.0;
    QTest::newRow("highest") << QList<double>{3, 1, 2} << 100.0 << 3.0;
}

void tst_VXBenchStatistics::percentileLiesBetweenTheNearestRanks()
{
    QFETCH(QList<double>, values);
    QFETCH(double, percent);
    QFETCH(double, expected);
    QCOMPARE(VXBenchStatistics::percentile(values, percent), expected);
}

void tst_VXBenchStatistics::percentOutsideTheScaleIsTheNearestEnd()
{
    QCOMPARE(VXBenchStatistics::percentile({1, 2, 3}, -5), 1.0);
    QCOMPARE(VXBenchStatistics::percentile({1, 2, 3}, 105), 3.0);
}

void tst_VXBenchStatistics::smallestAndLargestAreTheEnds()
{
    QCOMPARE(VXBenchStatistics::smallest({2, -1, 5}), -1.0);
    QCOMPARE(VXBenchStatistics::largest({2, -1, 5}), 5.0);
}

void tst_VXBenchStatistics::ratiosAreTakenRoundByRound()
{
    QCOMPARE(VXBenchStatistics::ratios({2, 30}, {1, 10}), (QList<double>{2, 3}));
}

void tst_VXBenchStatistics::ratiosLeaveOutWhatHasNoPartner()
{
    QCOMPARE(VXBenchStatistics::ratios({2, 30, 4}, {1}), QList<double>{2});
    QCOMPARE(VXBenchStatistics::ratios({}, {1}), QList<double>());
}

void tst_VXBenchStatistics::ratiosLeaveOutAYardstickOfZero()
{
    QCOMPARE(VXBenchStatistics::ratios({2, 30}, {0, 10}), QList<double>{3});
}

VX_TEST_MAIN(QCoreApplication, tst_VXBenchStatistics)

#include "tst_VXBenchStatistics.moc"
