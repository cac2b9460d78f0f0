#include <VXNetworking/VXJavaScriptExecutor.h>

#include "VXProbe.h"
#include "VXRenderer.h"
#include "VXWebTest.h"

#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Sees every pause, which is the platform's.
class Platform : public VXPlatformIndependent
{
public:
    void sleep(int theMilliseconds) override
    {
        pauses << theMilliseconds;
        if (isPlainSleep)
            QThread::msleep(static_cast<unsigned long>(theMilliseconds));
        else
            VXPlatformIndependent::sleep(theMilliseconds);
    }

    QList<int> pauses;
    bool isPlainSleep = false; // no events run meanwhile, as hosts may have it
};

/// Makes the page busy for that long.
QString busy(int theMilliseconds)
{
    return u"for (const end = Date.now() + %1; Date.now() < end;) ;"_s.arg(theMilliseconds);
}

Platform* installPlatform()
{
    auto platform = std::make_unique<Platform>();
    Platform* const installed = platform.get();
    VXPlatformIndependent::setInstance(std::move(platform));
    return installed;
}

/// Executes a script in a page whose process it killed, and says so after some seconds.
int waitForDeadPage()
{
    Platform* const platform = installPlatform();
    VXWebTest::Page page;
    if (!page.load(u"<p>Text"_s))
        return 1;
    if (!VXRenderer::kill(page))
        return 2;

    VXJavaScriptExecutor executor(page.view.get());
    executor.addScriptSource(u"1 + 1"_s);
    QTimer::singleShot(3000, qApp, [platform] {
        VXProbe::print(platform->pauses.size() > 20 ? u"still waiting"_s : u"hanging"_s);
        std::fflush(stdout);
        ::_exit(0); // nothing else ends the wait
    });
    executor.execute();
    VXProbe::print(u"returned"_s);
    return 0;
}

} // namespace

class tst_VXJavaScriptExecutor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void noScriptReturnsAtOnce();
    void oneScriptDeliversItsResult();
    void pauseIsThePlatforms();
    void hundredScriptsRunInTheirOrder();
    void sameScriptTwiceRunsTwice();
    void valueWithoutMeaningEndsTheWait_data();
    void valueWithoutMeaningEndsTheWait();
    void scriptThatNeverRanHasNoResult();
    void scriptThatWasOnlyAddedHasNoResult();
    void resultIsKeyedByTheExactText();
    void laterResultReplacesTheEarlierOne();
    void slowScriptIsWaitedFor();
    void eventsRunWhileWaiting();
    void secondExecutorWorksInTheMiddleOfTheWait();
    void signalOfThePageMayExecute_data();
    void signalOfThePageMayExecute();
    void batchMayGrowInTheMiddleOfTheWait();
    void resultsOfEarlierBatchesStay();
    void textOfAnEarlierBatchCountsAsAnswered();
    void answerAfterTheEndDoesNoHarm();
    void answerAfterOneByHandDoesNoHarm();
    void executorMayGoWithAPendingBatch();
    void engineThatGoesAnswersEverything();
    void deadPageIsWaitedForForever();

private:
    [[nodiscard]] QVariant valueOf(const QString& theScript) const;

    std::unique_ptr<VXWebTest::Page> myPage;
    Platform* myPlatform = nullptr;
};

void tst_VXJavaScriptExecutor::initTestCase()
{
    myPlatform = installPlatform();
}

void tst_VXJavaScriptExecutor::init()
{
    myPage = std::make_unique<VXWebTest::Page>();
    QVERIFY(myPage->load(u"<p>Text"_s));
    myPlatform->pauses.clear();
    myPlatform->isPlainSleep = false;
}

void tst_VXJavaScriptExecutor::cleanup()
{
    myPage.reset();
}

QVariant tst_VXJavaScriptExecutor::valueOf(const QString& theScript) const
{
    return myPage->view->runJavascriptSync(theScript);
}

void tst_VXJavaScriptExecutor::noScriptReturnsAtOnce()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.execute();
    QCOMPARE(myPlatform->pauses, QList<int>());
}

void tst_VXJavaScriptExecutor::oneScriptDeliversItsResult()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(u"'a' + 1"_s);
    executor.execute();
    QCOMPARE(executor.result(u"'a' + 1"_s), QVariant(u"a1"_s));
}

void tst_VXJavaScriptExecutor::pauseIsThePlatforms()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(busy(120));
    executor.execute();
    QVERIFY(myPlatform->pauses.size() >= 2);
    for (const int pause : std::as_const(myPlatform->pauses))
        QCOMPARE(pause, 50);
}

void tst_VXJavaScriptExecutor::hundredScriptsRunInTheirOrder()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    const auto script = [](int theNumber) {
        return u"window.all = (window.all || []).concat(%1); all.length"_s.arg(theNumber);
    };
    for (int i = 1; i <= 100; ++i)
        executor.addScriptSource(script(i));
    executor.execute();

    for (int i = 1; i <= 100; ++i)
        QCOMPARE(executor.result(script(i)).toInt(), i);
    // Results arrive while it pauses, not one a round.
    QVERIFY2(myPlatform->pauses.size() < 50, QByteArray::number(myPlatform->pauses.size()));
}

void tst_VXJavaScriptExecutor::sameScriptTwiceRunsTwice()
{
    const QString script = u"window.n = (window.n || 0) + 1"_s;
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(script);
    executor.addScriptSource(script);
    executor.execute();
    QCOMPARE(valueOf(u"window.n"_s).toInt(), 2);
    QVERIFY(executor.result(script).toInt() >= 1);

    executor.execute(); // nothing is left to run
    QCOMPARE(valueOf(u"window.n"_s).toInt(), 2);
}

void tst_VXJavaScriptExecutor::valueWithoutMeaningEndsTheWait_data()
{
    QTest::addColumn<QString>("script");

    QTest::newRow("undefined") << u"undefined"_s;
    QTest::newRow("null") << u"null"_s;
    QTest::newRow("exception") << u"throw new Error('no')"_s;
    QTest::newRow("syntax error") << u"var = ;"_s;
    QTest::newRow("no number") << u"NaN"_s;
    QTest::newRow("function") << u"(function() {})"_s;
    QTest::newRow("empty script") << u""_s;
}

void tst_VXJavaScriptExecutor::valueWithoutMeaningEndsTheWait()
{
    QFETCH(QString, script);
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(script);
    executor.addScriptSource(u"6 * 7"_s);
    executor.execute();
    QVERIFY(!executor.result(script).isValid());
    QCOMPARE(executor.result(u"6 * 7"_s).toInt(), 42);
}

void tst_VXJavaScriptExecutor::scriptThatNeverRanHasNoResult()
{
    const VXJavaScriptExecutor executor(myPage->view.get());
    QVERIFY(!executor.result(u"1 + 1"_s).isValid());
}

void tst_VXJavaScriptExecutor::scriptThatWasOnlyAddedHasNoResult()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(u"window.touched = 1"_s);
    QVERIFY(!executor.result(u"window.touched = 1"_s).isValid());
    QVERIFY(!valueOf(u"window.touched"_s).isValid());
}

void tst_VXJavaScriptExecutor::resultIsKeyedByTheExactText()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(u"1 + 1"_s);
    executor.execute();
    QVERIFY(!executor.result(u"1+1"_s).isValid());
    QVERIFY(!executor.result(u" 1 + 1"_s).isValid());
}

void tst_VXJavaScriptExecutor::laterResultReplacesTheEarlierOne()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.resultCallback(u"title"_s, u"old"_s);
    executor.resultCallback(u"title"_s, u"new"_s);
    QCOMPARE(executor.result(u"title"_s).toString(), u"new"_s);
}

void tst_VXJavaScriptExecutor::slowScriptIsWaitedFor()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    const QString slow = busy(700) + u"'late'"_s;
    executor.addScriptSource(slow);
    executor.addScriptSource(u"'behind it'"_s);
    QElapsedTimer clock;
    clock.start();
    executor.execute();
    QVERIFY(clock.elapsed() >= 650);
    QCOMPARE(executor.result(slow).toString(), u"late"_s);
    QCOMPARE(executor.result(u"'behind it'"_s).toString(), u"behind it"_s);
}

void tst_VXJavaScriptExecutor::eventsRunWhileWaiting()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(busy(500));
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
    timer.start(10);
    executor.execute();
    QVERIFY2(ticks > 2, QByteArray::number(ticks)); // of 50 on an idle machine
}

void tst_VXJavaScriptExecutor::secondExecutorWorksInTheMiddleOfTheWait()
{
    VXJavaScriptExecutor outer(myPage->view.get());
    outer.addScriptSource(busy(300) + u"'outer'"_s);
    QVariant inner;
    QTimer::singleShot(0, this, [&] {
        VXJavaScriptExecutor executor(myPage->view.get());
        executor.addScriptSource(u"'inner'"_s);
        executor.execute();
        inner = executor.result(u"'inner'"_s);
    });
    outer.execute();
    QCOMPARE(inner.toString(), u"inner"_s);
    QCOMPARE(outer.result(busy(300) + u"'outer'"_s).toString(), u"outer"_s);
}

void tst_VXJavaScriptExecutor::signalOfThePageMayExecute_data()
{
    QTest::addColumn<Qt::ConnectionType>("type");

    QTest::newRow("directly") << Qt::DirectConnection;
    QTest::newRow("behind it") << Qt::QueuedConnection;
}

/// The engine's events that were posted before the slot was called have to go on as well.
void tst_VXJavaScriptExecutor::signalOfThePageMayExecute()
{
    QFETCH(Qt::ConnectionType, type);
    myPlatform->isPlainSleep = true;
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(u"document.title"_s);
    executor.addScriptSource(u"6 * 7"_s);
    connect(
        myPage->view.get(), &VXWebView::loadFinished, myPage->window.get(),
        [&executor] { executor.execute(); }, type);
    myPage->view->setHtml(u"<title>page</title>"_s);
    QTRY_COMPARE(executor.result(u"6 * 7"_s), QVariant(42));
    QCOMPARE(executor.result(u"document.title"_s), QVariant(u"page"_s));
}

void tst_VXJavaScriptExecutor::batchMayGrowInTheMiddleOfTheWait()
{
    auto executor = std::make_unique<VXJavaScriptExecutor>(myPage->view.get());
    executor->addScriptSource(busy(200) + u"'first'"_s);
    QTimer::singleShot(0, this, [&] {
        executor->addScriptSource(u"'second'"_s);
        executor->execute(); // starts what is still pending once more
    });
    executor->execute();
    QCOMPARE(executor->result(busy(200) + u"'first'"_s).toString(), u"first"_s);
    QCOMPARE(executor->result(u"'second'"_s).toString(), u"second"_s);
}

void tst_VXJavaScriptExecutor::resultsOfEarlierBatchesStay()
{
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(u"'first batch'"_s);
    executor.execute();
    executor.addScriptSource(u"'second batch'"_s);
    executor.execute();
    QCOMPARE(executor.result(u"'first batch'"_s).toString(), u"first batch"_s);
    QCOMPARE(executor.result(u"'second batch'"_s).toString(), u"second batch"_s);
}

void tst_VXJavaScriptExecutor::textOfAnEarlierBatchCountsAsAnswered()
{
    const QString script = u"if (window.n) { %1 } window.n = (window.n || 0) + 1"_s.arg(busy(800));
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(script);
    executor.execute();
    executor.addScriptSource(script);
    executor.execute();
    QCOMPARE(executor.result(script).toInt(), 1); // the old value: the new one is on its way
    QTRY_COMPARE(executor.result(script).toInt(), 2);
}

void tst_VXJavaScriptExecutor::answerAfterTheEndDoesNoHarm()
{
    const QString script = u"if (window.n) { %1 } window.n = (window.n || 0) + 1"_s.arg(busy(500));
    auto executor = std::make_unique<VXJavaScriptExecutor>(myPage->view.get());
    executor->addScriptSource(script);
    executor->addScriptSource(script);
    executor->execute();
    executor.reset();                            // the second run still works
    QCOMPARE(valueOf(u"window.n"_s).toInt(), 2); // comes behind the second answer
}

/// Whoever loses patience gives the result himself; the engine's own may come after all.
void tst_VXJavaScriptExecutor::answerAfterOneByHandDoesNoHarm()
{
    const QString script = busy(500) + u"window.n = 1"_s;
    auto executor = std::make_unique<VXJavaScriptExecutor>(myPage->view.get());
    executor->addScriptSource(script);
    QTimer::singleShot(0, this, [&] { executor->resultCallback(script, u"by hand"_s); });
    executor->execute();
    QCOMPARE(executor->result(script).toString(), u"by hand"_s);
    executor.reset();                            // the script still works
    QCOMPARE(valueOf(u"window.n"_s).toInt(), 1); // comes behind its answer
}

void tst_VXJavaScriptExecutor::executorMayGoWithAPendingBatch()
{
    auto executor = std::make_unique<VXJavaScriptExecutor>(myPage->view.get());
    executor->addScriptSource(u"window.touched = 1"_s);
    executor.reset();
    QVERIFY(!valueOf(u"window.touched"_s).isValid());
}

void tst_VXJavaScriptExecutor::engineThatGoesAnswersEverything()
{
    const QString endless = u"for (;;) ;"_s;
    VXJavaScriptExecutor executor(myPage->view.get());
    executor.addScriptSource(endless);
    executor.addScriptSource(u"1 + 1"_s);
    QTimer::singleShot(100, this, [this] { myPage->window.reset(); });
    executor.execute();
    QVERIFY(!executor.result(endless).isValid());
    QVERIFY(!executor.result(u"1 + 1"_s).isValid());
}

void tst_VXJavaScriptExecutor::deadPageIsWaitedForForever()
{
    QCOMPARE(VXProbe::run(u"deadPage"_s), QStringList{u"still waiting"_s});
}

VX_PROBE_TEST_MAIN(QApplication, tst_VXJavaScriptExecutor, {u"deadPage"_s, waitForDeadPage})

#include "tst_VXJavaScriptExecutor.moc"
