#include <VXCore/VXMath.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>

#include <limits>
#include <thread>
#include <vector>

class tst_VXMath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXMath::setRandomSource({}); }

    void bothEndsOccurAndNothingBeyond();
    void emptyRangeGivesTheSmallest();
    void widestRangeWorks();
    void newSequencesDiffer();
    void sourceCanBeReplaced();
    void threadsMayDrawAtOnce();
};

void tst_VXMath::bothEndsOccurAndNothingBeyond()
{
    QSet<int> seen;
    for (int count = 0; count < 10000; ++count)
        seen.insert(VXMath::randomNumber(-1, 2));
    QCOMPARE(seen, QSet<int>({-1, 0, 1, 2}));
}

void tst_VXMath::emptyRangeGivesTheSmallest()
{
    QCOMPARE(VXMath::randomNumber(5, 5), 5);
    QCOMPARE(VXMath::randomNumber(5, 4), 5);
}

void tst_VXMath::widestRangeWorks()
{
    bool isNegativeSeen = false;
    bool isPositiveSeen = false;
    for (int count = 0; count < 1000; ++count) {
        const int number =
            VXMath::randomNumber(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
        (number < 0 ? isNegativeSeen : isPositiveSeen) = true;
    }
    QVERIFY(isNegativeSeen && isPositiveSeen);
}

void tst_VXMath::newSequencesDiffer()
{
    const auto sequence = [] {
        VXMath::seedRandom();
        QList<int> numbers;
        for (int count = 0; count < 16; ++count)
            numbers.append(VXMath::randomNumber(0, 1000000));
        return numbers;
    };
    QVERIFY(sequence() != sequence());
}

void tst_VXMath::sourceCanBeReplaced()
{
    VXMath::setRandomSource([](int theMinimum, int theMaximum) { return theMinimum + theMaximum; });
    QCOMPARE(VXMath::randomNumber(3, 4), 7);
}

void tst_VXMath::threadsMayDrawAtOnce()
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([] {
            for (int count = 0; count < 1000; ++count)
                (void)VXMath::randomNumber(0, 120);
            VXMath::seedRandom();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(VXMath::randomNumber(0, 120) <= 120);
}

VX_TEST_MAIN(QCoreApplication, tst_VXMath)

#include "tst_VXMath.moc"
