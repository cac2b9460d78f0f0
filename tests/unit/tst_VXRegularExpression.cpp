#include <VXCore/VXRegularExpression.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// Made before main(), as libraries do.
const VXRegularExpression early(u"^(\\d+)$"_s);

} // namespace

class tst_VXRegularExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matches();
    void takesOptionsAndOffset();
    void brokenPatternMatchesNothing();
    void threadsMayUseOne();
};

void tst_VXRegularExpression::matches()
{
    QCOMPARE(early.match(u"123"_s).captured(1), u"123"_s);
    QVERIFY(!early.match(u"12a"_s).hasMatch());
    QVERIFY(early.isValid());
}

void tst_VXRegularExpression::takesOptionsAndOffset()
{
    const VXRegularExpression expression(u"a"_s, QRegularExpression::CaseInsensitiveOption);
    QCOMPARE(expression.match(u"A-a"_s).capturedStart(), 0);
    QCOMPARE(expression.match(u"A-a"_s, 1).capturedStart(), 2);
    QVERIFY(!expression
                 .match(u"-a"_s, 0, QRegularExpression::NormalMatch,
                        QRegularExpression::AnchorAtOffsetMatchOption)
                 .hasMatch());
}

void tst_VXRegularExpression::brokenPatternMatchesNothing()
{
    const VXRegularExpression expression(u"("_s);
    QVERIFY(!expression.isValid());
    QTest::ignoreMessage(QtWarningMsg, "QRegularExpressionPrivate::doMatch(): called on an invalid "
                                       "QRegularExpression object (pattern is '(')");
    QVERIFY(!expression.match(u"("_s).hasMatch());
}

void tst_VXRegularExpression::threadsMayUseOne()
{
    const VXRegularExpression expression(u"^x(\\d+)y$"_s);
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&expression, &failures] {
            for (int number = 0; number < 500; ++number) {
                const QString text = QString::number(number);
                if (expression.match(u'x' + text + u'y').captured(1) != text)
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
}

VX_TEST_MAIN(QCoreApplication, tst_VXRegularExpression)

#include "tst_VXRegularExpression.moc"
