#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXKeyAccount.h>
#include <VXCore/VXSingleton.h>

#include "VXSingletonProbe.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

class Counted : public VXSingleton<Counted>
{
public:
    Counted() { ++ourMade; }

    int setUp = 0;

    inline static std::atomic<int> ourMade = 0;

protected:
    void setupInstance() override { ++setUp; }
};

// Derives from nothing: VXSingleton only makes and keeps it.
struct Plain
{
    int number = 7;
};

struct Replaced
{
    explicit Replaced(int theNumber = 0)
        : number(theNumber)
    {
    }

    int number = 0;
};

// Made before main(), in whatever order the linker chose.
Plain* const ourEarly = VXSingleton<Plain>::instance();

} // namespace

class tst_VXSingleton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void threadsThatStartTogetherGetOneInstance();
    void hookRunsOnce();
    void classThatDoesNotDeriveWorksToo();
    void worksDuringStaticInitialisation();
    void instanceCanBeReplaced();
    void libraryAndProgramShareTheInstance();
    void libraryWithHiddenVisibilitySharesTheInstance();
};

void tst_VXSingleton::threadsThatStartTogetherGetOneInstance()
{
    QVERIFY(!Counted::hasInstance());
    std::array<Counted*, 8> seen{};
    std::atomic<bool> go = false;
    std::vector<std::thread> threads;
    for (Counted*& instance : seen) {
        threads.emplace_back([&go, &instance] {
            go.wait(false);
            instance = Counted::instance();
        });
    }
    go = true;
    go.notify_all();
    for (std::thread& thread : threads)
        thread.join();

    QCOMPARE(Counted::ourMade.load(), 1);
    for (const Counted* instance : seen)
        QCOMPARE(instance, Counted::instance());
    QVERIFY(Counted::hasInstance());
}

void tst_VXSingleton::hookRunsOnce()
{
    QCOMPARE(Counted::instance()->setUp, 1);
    QCOMPARE(Counted::instance()->setUp, 1);
}

void tst_VXSingleton::classThatDoesNotDeriveWorksToo()
{
    QCOMPARE(VXSingleton<Plain>::instance()->number, 7);
}

void tst_VXSingleton::worksDuringStaticInitialisation()
{
    QVERIFY(ourEarly);
    QCOMPARE(VXSingleton<Plain>::instance(), ourEarly);
}

void tst_VXSingleton::instanceCanBeReplaced()
{
    using Single = VXSingleton<Replaced>;
    QVERIFY(!Single::setInstance(std::make_unique<Replaced>(1)));
    QCOMPARE(Single::instance()->number, 1);

    const std::unique_ptr<Replaced> former = Single::setInstance(std::make_unique<Replaced>(2));
    QCOMPARE(former->number, 1);
    QCOMPARE(Single::instance()->number, 2);

    Single::setInstance(nullptr);
    QVERIFY(!Single::hasInstance());
    QCOMPARE(Single::instance()->number, 0);
}

void tst_VXSingleton::libraryAndProgramShareTheInstance()
{
    // The library asks its own instance for the value that was set through ours.
    QVERIFY(VXDeploymentConfig::instance()->setValue(u"KeyAccount/name"_s, u"Partner"_s));
    QCOMPARE(VXKeyAccount::instance()->name(), u"Partner"_s);
}

void tst_VXSingleton::libraryWithHiddenVisibilitySharesTheInstance()
{
    QCOMPARE(singletonProbeInLibrary(), VXSingleton<VXSingletonProbe>::instance());
    QCOMPARE(singletonProbeInLibrary(), VXSingletonProbe::instance());
}

VX_TEST_MAIN(QCoreApplication, tst_VXSingleton)

#include "tst_VXSingleton.moc"
