#include <VXCore/VXCommandLineOptionHandlerAbstract.h>
#include <VXCore/VXCommandLineParser.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

class Recorder : public VXCommandLineOptionHandlerAbstract
{
public:
    explicit Recorder(QStringList& theCalls, bool* theIsGone = nullptr)
        : myCalls(theCalls)
        , myIsGone(theIsGone)
    {
    }
    ~Recorder() override
    {
        if (myIsGone)
            *myIsGone = true;
    }

    void optionUsed(const QString& theValue) override { myCalls += u'[' + theValue + u']'; }

private:
    QStringList& myCalls;
    bool* myIsGone = nullptr;
};

void addSwitch(VXCommandLineParser& theParser, QStringList& theCalls)
{
    theParser.addOption(18, new Recorder(theCalls), // owned by the parser
                        {u"y"_s, u"Y"_s, u"acceptallcertificates"_s}, u"Accept all"_s, QString(),
                        QString());
}

} // namespace

class tst_VXCommandLineParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void handlerIsCalledByAnyName_data();
    void handlerIsCalledByAnyName();
    void handlerIsNotCalledWithoutItsOption();
    void valueReachesTheHandler();
    void unknownOptionCallsNoHandler();
    void missingValueIsAnError();
    void hostAddsItsOwn();
    void handlersGoWithTheParser();
    void optionWithATakenNameIsLeftOut();
    void optionWithoutNameIsLeftOut();
};

void tst_VXCommandLineParser::handlerIsCalledByAnyName_data()
{
    QTest::addColumn<QString>("argument");

    QTest::newRow("y") << u"-y"_s;
    QTest::newRow("Y") << u"-Y"_s;
    QTest::newRow("long") << u"--acceptallcertificates"_s;
}

void tst_VXCommandLineParser::handlerIsCalledByAnyName()
{
    QFETCH(QString, argument);
    QStringList calls;
    VXCommandLineParser parser;
    addSwitch(parser, calls);
    QVERIFY(parser.process({u"program"_s, argument}));
    QCOMPARE(calls, QStringList(u"[]"_s));
}

void tst_VXCommandLineParser::handlerIsNotCalledWithoutItsOption()
{
    QStringList calls;
    VXCommandLineParser parser;
    addSwitch(parser, calls);
    QVERIFY(parser.process({u"program"_s, u"y"_s}));
    QCOMPARE(calls, QStringList());
}

void tst_VXCommandLineParser::valueReachesTheHandler()
{
    QStringList calls;
    VXCommandLineParser parser;
    parser.addOption(1, new Recorder(calls), {u"name"_s}, u"Help"_s, u"text"_s, u"default"_s);
    QVERIFY(parser.process({u"program"_s, u"--name=Grüße %1"_s}));
    QVERIFY(parser.process({u"program"_s}));
    QCOMPARE(calls, QStringList(u"[Grüße %1]"_s));
}

void tst_VXCommandLineParser::unknownOptionCallsNoHandler()
{
    QStringList calls;
    VXCommandLineParser parser;
    addSwitch(parser, calls);
    QVERIFY(!parser.process({u"program"_s, u"-y"_s, u"--colour"_s}));
    QCOMPARE(calls, QStringList());
    QVERIFY(parser.errorText().contains(u"colour"_s));
}

void tst_VXCommandLineParser::missingValueIsAnError()
{
    QStringList calls;
    VXCommandLineParser parser;
    parser.addOption(1, new Recorder(calls), {u"name"_s}, u"Help"_s, u"text"_s, QString());
    QVERIFY(!parser.process({u"program"_s, u"--name"_s}));
    QVERIFY(!parser.errorText().isEmpty());
}

void tst_VXCommandLineParser::hostAddsItsOwn()
{
    QStringList calls;
    VXCommandLineParser parser;
    addSwitch(parser, calls);
    QVERIFY(parser.parser().addOption(QCommandLineOption(u"config"_s, u"Help"_s, u"file"_s)));
    QVERIFY(parser.process({u"program"_s, u"--config"_s, u"a.ini"_s, u"-Y"_s, u"command"_s}));
    QCOMPARE(parser.parser().value(u"config"_s), u"a.ini"_s);
    QCOMPARE(parser.parser().positionalArguments(), QStringList(u"command"_s));
    QCOMPARE(calls.size(), 1);
}

void tst_VXCommandLineParser::handlersGoWithTheParser()
{
    QStringList calls;
    bool isGone = false;
    {
        VXCommandLineParser parser;
        parser.addOption(1, new Recorder(calls, &isGone), {u"a"_s}, QString(), QString(),
                         QString());
        QVERIFY(!isGone);
    }
    QVERIFY(isGone);
}

void tst_VXCommandLineParser::optionWithATakenNameIsLeftOut()
{
    QStringList calls;
    bool isGone = false;
    VXCommandLineParser parser;
    addSwitch(parser, calls);
    QTest::ignoreMessage(QtWarningMsg, "QCommandLineParser: already having an option named \"y\"");
    QTest::ignoreMessage(QtWarningMsg, "command-line option left out: y");
    parser.addOption(2, new Recorder(calls, &isGone), {u"y"_s}, QString(), QString(), QString());
    QVERIFY(isGone);
    QVERIFY(parser.process({u"program"_s, u"-y"_s}));
    QCOMPARE(calls.size(), 1);
}

void tst_VXCommandLineParser::optionWithoutNameIsLeftOut()
{
    QStringList calls;
    bool isGone = false;
    VXCommandLineParser parser;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^QCommandLineOption: .*"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^command-line option left out:"_s));
    parser.addOption(2, new Recorder(calls, &isGone), {}, QString(), QString(), QString());
    QVERIFY(isGone);
}

VX_TEST_MAIN(QCoreApplication, tst_VXCommandLineParser)

#include "tst_VXCommandLineParser.moc"
