#include <VXCore/VXCommandLineParser.h>
#include <VXCore/VXInitializer.h>
#include <VXCore/VXInitializerAbstract.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QStringList calls;

class Probe : public VXInitializerAbstract
{
public:
    explicit Probe(const QString& theName)
        : myName(theName)
    {
        VXInitializer::instance()->registerInitializer(this);
    }

    void addCommandLineOptionHandlers(VXCommandLineParserAbstract* theParser) override
    {
        calls += myName + (theParser ? u" options"_s : u" no parser"_s);
    }
    void setup(VXInitializerOption theOption) override
    {
        calls += myName + u" setup %1"_s.arg(static_cast<int>(theOption));
    }
    void teardown() override { calls += myName + u" teardown"_s; }

private:
    QString myName;
};

// A library's own, registered before main().
std::unique_ptr<Probe>& early()
{
    static std::unique_ptr<Probe> ourProbe;
    return ourProbe;
}
const bool isRegistered = [] {
    early() = std::make_unique<Probe>(u"early"_s);
    return true;
}();

} // namespace

class tst_VXInitializer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { calls.clear(); }

    void staticObjectIsRegistered();
    void stepsRunInOrderAndBackwards();
    void sameInitialiserRunsOnce();
    void initialiserThatGoesIsTakenOut();
    void nullIsNoInitialiser();
};

void tst_VXInitializer::staticObjectIsRegistered()
{
    QVERIFY(isRegistered);
    QCOMPARE(VXInitializer::instance()->initializers(),
             QList<VXInitializerAbstract*>{early().get()});
}

void tst_VXInitializer::stepsRunInOrderAndBackwards()
{
    const Probe late(u"late"_s);
    VXCommandLineParser parser;
    VXInitializer::instance()->runCommandLine(&parser);
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless);
    VXInitializer::instance()->runTeardown();
    QCOMPARE(calls, QStringList({u"early options"_s, u"late options"_s, u"early setup 1"_s,
                                 u"late setup 1"_s, u"late teardown"_s, u"early teardown"_s}));
}

void tst_VXInitializer::sameInitialiserRunsOnce()
{
    VXInitializer::instance()->registerInitializer(early().get());
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
    QCOMPARE(calls, QStringList(u"early setup 0"_s));
}

void tst_VXInitializer::initialiserThatGoesIsTakenOut()
{
    {
        const Probe passing(u"passing"_s);
        QCOMPARE(VXInitializer::instance()->initializers().size(), 2);
    }
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
    QCOMPARE(calls, QStringList(u"early setup 0"_s));
}

void tst_VXInitializer::nullIsNoInitialiser()
{
    VXInitializer::instance()->registerInitializer(nullptr);
    QCOMPARE(VXInitializer::instance()->initializers().size(), 1);
}

VX_TEST_MAIN(QCoreApplication, tst_VXInitializer)

#include "tst_VXInitializer.moc"
