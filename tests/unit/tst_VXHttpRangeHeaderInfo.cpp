#include <VXNetworking/VXHttpRangeHeaderInfo.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <atomic>
#include <limits>
#include <thread>
#include <type_traits>
#include <vector>

using namespace Qt::StringLiterals;

class tst_VXHttpRangeHeaderInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headersAreParsed_data();
    void headersAreParsed();
    void theLargestRangeDoesNotOverflow();
    void aCopyHoldsTheSameNumbers();
    void threadsMayParseAtTheSameTime();
};

void tst_VXHttpRangeHeaderInfo::headersAreParsed_data()
{
    QTest::addColumn<QString>("header");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<bool>("isPartial");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("response");

    const auto row = [](const char* theName, const QString& theHeader, qint64 theTotal,
                        bool theIsPartial, qint64 theStart, qint64 theSize,
                        const QString& theResponse) {
        QTest::newRow(theName) << theHeader << theTotal << theIsPartial << theStart << theSize
                               << theResponse;
    };
    row("closed", u"bytes=100-199"_s, 1000, true, 100, 100, u"bytes 100-199/1000"_s);
    row("open", u"bytes=500-"_s, 1000, true, 500, 500, u"bytes 500-999/1000"_s);
    row("one byte", u"bytes=0-0"_s, 1000, true, 0, 1, u"bytes 0-0/1000"_s);
    row("suffix", u"bytes=-500"_s, 1000, false, -1, 1, u"bytes -1--1/1000"_s);
    row("no header", QString(), 1000, false, -1, 1, u"bytes -1--1/1000"_s);
    row("other unit", u"lines=1-2"_s, 1000, false, -1, 1, u"bytes -1--1/1000"_s);
    row("blank", u"bytes = 1-2"_s, 1000, false, -1, 1, u"bytes -1--1/1000"_s);
    row("upper case", u"Bytes=1-2"_s, 1000, false, -1, 1, u"bytes -1--1/1000"_s);
    row("several ranges", u"bytes=1-2,5-9"_s, 1000, true, 1, 2, u"bytes 1-2/1000"_s);
    row("within a text", u"x bytes=1-2 y"_s, 1000, true, 1, 2, u"bytes 1-2/1000"_s);
    row("beyond the end", u"bytes=900-5000"_s, 1000, true, 900, 4101, u"bytes 900-5000/1000"_s);
    row("backwards", u"bytes=200-100"_s, 1000, true, 200, -99, u"bytes 200-100/1000"_s);
    row("open, empty resource", u"bytes=0-"_s, 0, true, 0, 0, u"bytes 0--1/0"_s);
    row("start beyond 64 bits", u"bytes=9223372036854775808-9"_s, 10, true, 0, 10,
        u"bytes 0-9/10"_s);
    row("end beyond 64 bits", u"bytes=5-9223372036854775808"_s, 10, true, 5, -4, u"bytes 5-0/10"_s);
    row("open, smallest total", u"bytes=1-"_s, std::numeric_limits<qint64>::min(), true, 1,
        std::numeric_limits<qint64>::max(), // wraps; a sanitizer is silent
        u"bytes 1-9223372036854775807/-9223372036854775808"_s);
    row("other digits", u"bytes=\u0661-\u0662"_s, 10, false, -1, 1, u"bytes -1--1/10"_s);
}

void tst_VXHttpRangeHeaderInfo::headersAreParsed()
{
    QFETCH(QString, header);
    QFETCH(qint64, total);
    QFETCH(bool, isPartial);
    QFETCH(qint64, start);
    QFETCH(qint64, size);
    QFETCH(QString, response);

    const VXHttpRangeHeaderInfo range(header, total);
    QCOMPARE(range.isPartial(), isPartial);
    QCOMPARE(range.start(), start);
    QCOMPARE(range.size(), size);
    QCOMPARE(range.rangeResponse(), response);
}

void tst_VXHttpRangeHeaderInfo::theLargestRangeDoesNotOverflow()
{
    const VXHttpRangeHeaderInfo range(u"bytes=0-9223372036854775807"_s, 1000);
    QVERIFY(range.isPartial());
    QCOMPARE(range.rangeResponse(), u"bytes 0-9223372036854775807/1000"_s);
    QCOMPARE(range.size(), std::numeric_limits<qint64>::min()); // wraps; a sanitizer is silent
}

void tst_VXHttpRangeHeaderInfo::aCopyHoldsTheSameNumbers()
{
    static_assert(std::has_virtual_destructor_v<VXHttpRangeHeaderInfo>);
    const VXHttpRangeHeaderInfo range(u"bytes=100-199"_s, 1000);
    VXHttpRangeHeaderInfo copy(QString(), 5);
    copy = range;
    QCOMPARE(copy.rangeResponse(), u"bytes 100-199/1000"_s);
}

void tst_VXHttpRangeHeaderInfo::threadsMayParseAtTheSameTime()
{
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&right, i] {
            for (int j = 0; j < 100; ++j) {
                const VXHttpRangeHeaderInfo range(u"bytes=%1-"_s.arg(i), 1000);
                right += range.start() == i && range.size() == 1000 - i ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(right.load(), 400);
}

VX_TEST_MAIN(QCoreApplication, tst_VXHttpRangeHeaderInfo)

#include "tst_VXHttpRangeHeaderInfo.moc"
