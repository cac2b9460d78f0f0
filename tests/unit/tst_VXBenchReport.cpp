#include "VXBenchReport.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Figure = VXBenchGoal::Figure;

VXBenchRow row(const QList<double>& theOurs, const QList<double>& theTheirs,
               const VXBenchGoal& theGoal)
{
    return {.id = u"B1"_s,
            .workload = u"GET"_s,
            .metric = u"wall"_s,
            .unit = u"us"_s,
            .yardstick = u"raw"_s,
            .ours = theOurs,
            .theirs = theTheirs,
            .goal = theGoal,
            .note = {}};
}

} // namespace

class tst_VXBenchReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goalsAreJudgedWithSlack_data();
    void goalsAreJudgedWithSlack();
    void whatWasNotMeasuredReachesNoGoal();
    void goalNamesFigureAndLimit();
    void rowJudgesTheFigureOfItsGoal_data();
    void rowJudgesTheFigureOfItsGoal();
    void goodReportHasNoComplaint();
    void complaintNamesRowFigureAndGoal();
    void slackForgivesASmallMiss();
    void failureIsAComplaintWhateverTheSlack();
    void emptyReportIsAComplaint();
    void rowWithoutRoundsIsAComplaint();
    void jsonHoldsEveryRound();
    void markdownShowsVerdicts();
};

void tst_VXBenchReport::goalsAreJudgedWithSlack_data()
{
    QTest::addColumn<bool>("isNoMoreThan");
    QTest::addColumn<double>("limit");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("slack");
    QTest::addColumn<bool>("isReached");

    QTest::newRow("at most, on the limit") << true << 2.0 << 2.0 << 1.0 << true;
    QTest::newRow("at most, above") << true << 2.0 << 2.01 << 1.0 << false;
    QTest::newRow("at most, within 15 %") << true << 2.0 << 2.29 << 1.15 << true;
    QTest::newRow("at most, beyond 15 %") << true << 2.0 << 2.31 << 1.15 << false;
    QTest::newRow("at least, on the limit") << false << 0.9 << 0.9 << 1.0 << true;
    QTest::newRow("at least, below") << false << 0.9 << 0.89 << 1.0 << false;
    QTest::newRow("at least, within the slack") << false << 0.9 << 0.70 << 1.3 << true;
    QTest::newRow("at least, beyond the slack") << false << 0.9 << 0.69 << 1.3 << false;
    QTest::newRow("no slack below zero") << false << 0.0 << -0.01 << 1.3 << false;
}

void tst_VXBenchReport::goalsAreJudgedWithSlack()
{
    QFETCH(bool, isNoMoreThan);
    QFETCH(double, limit);
    QFETCH(double, value);
    QFETCH(double, slack);
    const VXBenchGoal goal =
        isNoMoreThan ? VXBenchGoal::noMoreThan(limit) : VXBenchGoal::noLessThan(limit);
    QTEST(goal.isReachedBy(value, slack), "isReached");
}

void tst_VXBenchReport::whatWasNotMeasuredReachesNoGoal()
{
    constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
    QVERIFY(!VXBenchGoal::noMoreThan(1).isReachedBy(nothing, 1.3));
    QVERIFY(!VXBenchGoal::noLessThan(1).isReachedBy(nothing, 1.3));
    QVERIFY(VXBenchGoal().isReachedBy(nothing));
}

void tst_VXBenchReport::goalNamesFigureAndLimit()
{
    QCOMPARE(VXBenchGoal().text(), u""_s);
    QCOMPARE(VXBenchGoal::noMoreThan(1.15).text(), u"ratio <= 1.15"_s);
    QCOMPARE(VXBenchGoal::noLessThan(0.9).text(), u"ratio >= 0.9"_s);
    QCOMPARE(VXBenchGoal::noMoreThan(10, Figure::Percentile95).text(), u"p95 <= 10"_s);
    QCOMPARE(VXBenchGoal::noMoreThan(1, Figure::Median).text(), u"median <= 1"_s);
    QCOMPARE(VXBenchGoal::noLessThan(0, Figure::Smallest).text(), u"least >= 0"_s);
    QCOMPARE(VXBenchGoal::noMoreThan(20, Figure::Largest).text(), u"most <= 20"_s);
}

void tst_VXBenchReport::rowJudgesTheFigureOfItsGoal_data()
{
    QTest::addColumn<Figure>("figure");
    QTest::addColumn<double>("expected");

    QTest::newRow("ratio") << Figure::RatioMedian << 1.5;
    QTest::newRow("median") << Figure::Median << 3.0;
    QTest::newRow("p95") << Figure::Percentile95 << 7.5;
    QTest::newRow("least") << Figure::Smallest << 1.0;
    QTest::newRow("most") << Figure::Largest << 8.0;
}

void tst_VXBenchReport::rowJudgesTheFigureOfItsGoal()
{
    QFETCH(Figure, figure);
    QTEST(row({1, 3, 8}, {2, 2, 4}, VXBenchGoal::noMoreThan(1, figure)).judged(), "expected");
}

void tst_VXBenchReport::goodReportHasNoComplaint()
{
    VXBenchReport report;
    report.add(row({1, 1}, {1, 1}, VXBenchGoal::noMoreThan(1.15)));
    report.add(row({100}, {1}, VXBenchGoal()));
    QCOMPARE(report.complaints(1), QStringList());
}

void tst_VXBenchReport::complaintNamesRowFigureAndGoal()
{
    VXBenchReport report;
    report.add(row({3, 3}, {2, 2}, VXBenchGoal::noMoreThan(1.15)));
    QCOMPARE(report.complaints(1), QStringList{u"B1: GET, wall: 1.5, goal ratio <= 1.15"_s});
}

void tst_VXBenchReport::slackForgivesASmallMiss()
{
    VXBenchReport report;
    report.add(row({1.2}, {1}, VXBenchGoal::noMoreThan(1.1)));
    QCOMPARE(report.complaints(1).size(), 1);
    QCOMPARE(report.complaints(1.15).size(), 0);
}

void tst_VXBenchReport::failureIsAComplaintWhateverTheSlack()
{
    VXBenchReport report;
    report.add(row({1}, {1}, VXBenchGoal::noMoreThan(1.15)));
    report.addFailure(u"B2"_s, u"the answers differ"_s);
    QCOMPARE(report.complaints(100), QStringList{u"B2: the answers differ"_s});
}

void tst_VXBenchReport::emptyReportIsAComplaint()
{
    QCOMPARE(VXBenchReport().complaints(1), QStringList{u"nothing was measured"_s});
}

void tst_VXBenchReport::rowWithoutRoundsIsAComplaint()
{
    VXBenchReport report;
    report.add(row({}, {}, VXBenchGoal::noMoreThan(1.15)));
    QCOMPARE(report.complaints(1.3).size(), 1);
}

void tst_VXBenchReport::jsonHoldsEveryRound()
{
    VXBenchReport report;
    report.setSetting(u"rounds"_s, u"2"_s);
    report.add(row({1, 4}, {1, 2}, VXBenchGoal::noMoreThan(1.15)));
    report.addFailure(u"B2"_s, u"no answer"_s);

    const QJsonObject json = report.json();
    QCOMPARE(json.value(u"settings"_s).toObject().value(u"rounds"_s).toString(), u"2"_s);
    QCOMPARE(json.value(u"failures"_s).toArray(), QJsonArray{u"B2: no answer"_s});
    const QJsonObject first = json.value(u"rows"_s).toArray().at(0).toObject();
    QCOMPARE(first.value(u"values"_s).toArray(), (QJsonArray{1.0, 4.0}));
    QCOMPARE(first.value(u"yardstickValues"_s).toArray(), (QJsonArray{1.0, 2.0}));
    QCOMPARE(first.value(u"ratioMedian"_s).toDouble(), 1.5);
    QCOMPARE(first.value(u"ratioP95"_s).toDouble(), 1.95);
    QCOMPARE(first.value(u"isReached"_s).toBool(true), false);
}

void tst_VXBenchReport::markdownShowsVerdicts()
{
    VXBenchReport report;
    report.add(row({1.5}, {1}, VXBenchGoal::noMoreThan(1.15)));
    report.add(row({1}, {1}, VXBenchGoal::noMoreThan(1.15)));
    report.addFailure(u"B2"_s, u"no answer"_s);

    const QString text = report.markdown();
    QVERIFY2(text.contains(u"| B1 | GET | wall | 1.50 us | 1.00 us (raw) | 1.50 | 1.50 | "
                           "ratio <= 1.15 | **missed: 1.50** |\n"_s),
             qPrintable(text));
    QVERIFY2(text.contains(u"| ratio <= 1.15 | met |\n"_s), qPrintable(text));
    QVERIFY2(text.contains(u"**Not measured:** B2: no answer\n"_s), qPrintable(text));
}

VX_TEST_MAIN(QCoreApplication, tst_VXBenchReport)

#include "tst_VXBenchReport.moc"
