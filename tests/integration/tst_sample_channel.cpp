#include "VXChannelClient.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 90'000; // milliseconds; the web engine starts slowly on a busy machine

/// A run of "channel" that goes on: its lines so far.
class ChannelRun
{
public:
    explicit ChannelRun(const QStringList& theArguments)
    {
        myProgram.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        myProgram.start(QStringLiteral(VX_BINARY_DIR) + u"/bin/vx-sample"_s,
                        QStringList{u"--offscreen"_s} + theArguments);
    }

    ~ChannelRun()
    {
        myProgram.kill();
        myProgram.waitForFinished();
    }

    /// Every line of standard output until now.
    QList<QJsonObject> lines()
    {
        while (myProgram.canReadLine())
            myLines << QJsonDocument::fromJson(myProgram.readLine()).object();
        return myLines;
    }

    QList<QJsonObject> events(const QString& theName)
    {
        QList<QJsonObject> found;
        for (const QJsonObject& line : lines())
            if (line.value(u"event"_s).toString() == theName)
                found << line;
        return found;
    }

    /// The first line; empty when it does not come.
    QJsonObject first()
    {
        [&] { QTRY_VERIFY_WITH_TIMEOUT(!lines().isEmpty(), patience); }();
        return lines().value(0);
    }

    QProcess& program() { return myProgram; }

private:
    QProcess myProgram;
    QList<QJsonObject> myLines;
};

/// A client in place of a page, which has the published object.
class Client
{
public:
    Client(const QJsonObject& theAddress, const QString& theToken)
        : myClient(QUrl(theAddress.value(u"baseUrl"_s).toString()))
    {
        [&] { QTRY_VERIFY_WITH_TIMEOUT(myClient.isConnected(), patience); }();
        myClient.sendToken(theToken);
        myClient.sendInit();
    }

    explicit Client(const QJsonObject& theAddress)
        : Client(theAddress, theAddress.value(u"token"_s).toString())
    {
        [&] { QTRY_VERIFY_WITH_TIMEOUT(!myClient.received().isEmpty(), patience); }();
        myObject =
            myClient.lastMessage().value(u"data"_s).toObject().value(u"wizardScreen"_s).toObject();
    }

    void call(const QString& theMethod, const QJsonArray& theArguments)
    {
        myClient.send(QJsonObject{{u"type"_s, 6},
                                  {u"id"_s, 2},
                                  {u"object"_s, u"wizardScreen"_s},
                                  {u"method"_s, theMethod},
                                  {u"args"_s, theArguments}});
    }

    /// What the page is told by the signal of that name, from now on.
    void listenTo(const QString& theSignal)
    {
        myClient.send(QJsonObject{
            {u"type"_s, 7}, {u"object"_s, u"wizardScreen"_s}, {u"signal"_s, number(theSignal)}});
    }

    /// The arguments that the signal came with, oldest first.
    QList<QJsonArray> told(const QString& theSignal)
    {
        QList<QJsonArray> found;
        for (const QString& text : myClient.received()) {
            const QJsonObject message = QJsonDocument::fromJson(text.toUtf8()).object();
            if (message.value(u"type"_s).toInt() == 1 &&
                message.value(u"signal"_s).toInt() == number(theSignal))
                found << message.value(u"args"_s).toArray();
        }
        return found;
    }

    VXChannelClient& socket() { return myClient; }

private:
    int number(const QString& theSignal) const
    {
        for (const QJsonValue& row : myObject.value(u"signals"_s).toArray())
            if (row.toArray().at(0).toString() == theSignal)
                return row.toArray().at(1).toInt();
        return -1;
    }

    VXChannelClient myClient;
    QJsonObject myObject;
};

} // namespace

/// The command "channel" of the sample host as its users meet it.
class tst_sample_channel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theFirstLineHasAddressAndToken();
    void aCouponIsAnswered_data();
    void aCouponIsAnswered();
    void aCouponReplacesTheOneBefore();
    void theFieldShowsTheCouponAsItIsWritten();
    void anOrderCountsOnce();
    void aWrongTokenCallsNothing();
    void thePageReachesTheNativeObject();
    void aSecondPageGetsTheFirstValuesToo();
    void anUnknownPageIsRefused();
    void itEndsAfterTheTimeGiven();
    void itEndsBySignal();
};

void tst_sample_channel::initTestCase()
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox --disable-gpu"); // for the program
}

void tst_sample_channel::theFirstLineHasAddressAndToken()
{
    ChannelRun run({u"channel"_s});
    const QJsonObject first = run.first();
    QCOMPARE(first.keys(), (QStringList{u"baseUrl"_s, u"token"_s}));
    QVERIFY(first.value(u"baseUrl"_s).toString().startsWith(u"ws://127.0.0.1:"_s));
    QCOMPARE(first.value(u"token"_s).toString().size(), 38);
}

void tst_sample_channel::aCouponIsAnswered_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("totalCents");

    // Goods 47.45, shipping 4.99
    QTest::newRow("ten percent") << u"SOMMER10"_s << u"accepted"_s << 4769;
    QTest::newRow("lower case and blanks") << u"  sommer10 "_s << u"accepted"_s << 4769;
    QTest::newRow("five euros") << u"WILLKOMMEN5"_s << u"accepted"_s << 4744;
    QTest::newRow("no shipping") << u"VERSANDFREI"_s << u"accepted"_s << 4745;
    QTest::newRow("basket too small") << u"GROSS100"_s << u"basketTooSmall"_s << 5244;
    QTest::newRow("expired") << u"FRUEHLING"_s << u"expired"_s << 5244;
    QTest::newRow("unknown") << u"<b>NIX</b>"_s << u"unknown"_s << 5244;
    QTest::newRow("empty") << u""_s << u"removed"_s << 5244;
}

void tst_sample_channel::aCouponIsAnswered()
{
    QFETCH(QString, text);
    QFETCH(QString, answer);
    QFETCH(int, totalCents);
    ChannelRun run({u"channel"_s});
    Client client(run.first());

    client.call(u"applyCoupon"_s, {text});
    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"coupon"_s),
                              (QList<QJsonObject>{{{u"event"_s, u"coupon"_s},
                                                   {u"text"_s, text},
                                                   {u"answer"_s, answer},
                                                   {u"totalCents"_s, totalCents}}}),
                              patience);
}

void tst_sample_channel::aCouponReplacesTheOneBefore()
{
    ChannelRun run({u"channel"_s});
    Client client(run.first());
    for (const char* text : {"SOMMER10", "VERSANDFREI", "NIX", ""})
        client.call(u"applyCoupon"_s, {QString::fromLatin1(text)});

    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"coupon"_s).size(), 4, patience);
    QList<int> totals;
    for (const QJsonObject& event : run.events(u"coupon"_s))
        totals << event.value(u"totalCents"_s).toInt();
    QCOMPARE(totals, (QList<int>{4769, 4745, 5244, 5244}));
}

void tst_sample_channel::theFieldShowsTheCouponAsItIsWritten()
{
    ChannelRun run({u"channel"_s});
    Client client(run.first());
    client.listenTo(u"setCouponCode"_s);
    client.call(u"applyCoupon"_s, {u" sommer10"_s});
    client.call(u"applyCoupon"_s, {u"nix"_s});

    QTRY_COMPARE_WITH_TIMEOUT(client.told(u"setCouponCode"_s),
                              (QList<QJsonArray>{{u"SOMMER10"_s}, {u"nix"_s}}), patience);
}

void tst_sample_channel::anOrderCountsOnce()
{
    ChannelRun run({u"channel"_s});
    Client client(run.first());
    client.call(u"applyCoupon"_s, {u"SOMMER10"_s});
    client.call(u"placeOrder"_s, {true});
    client.call(u"placeOrder"_s, {false});
    client.call(u"applyCoupon"_s, {u"VERSANDFREI"_s});
    client.call(u"webChannelReady"_s, {});

    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"pageReady"_s).size(), 1, patience);
    QCOMPARE(run.events(u"ordered"_s), (QList<QJsonObject>{{{u"event"_s, u"ordered"_s},
                                                            {u"coupon"_s, u"SOMMER10"_s},
                                                            {u"newsletter"_s, true},
                                                            {u"totalCents"_s, 4769}}}));
    QCOMPARE(run.events(u"coupon"_s).size(), 1);
}

void tst_sample_channel::aWrongTokenCallsNothing()
{
    ChannelRun run({u"channel"_s});
    Client stranger(run.first(), u"{00000000-0000-0000-0000-000000000000}"_s);
    stranger.call(u"applyCoupon"_s, {u"strange"_s});

    Client client(run.first());
    client.call(u"applyCoupon"_s, {u"mine"_s});
    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"coupon"_s).size(), 1, patience);
    QCOMPARE(run.events(u"coupon"_s).constFirst().value(u"text"_s).toString(), u"mine"_s);
    QVERIFY(stranger.socket().received().isEmpty());
}

void tst_sample_channel::thePageReachesTheNativeObject()
{
    ChannelRun run({u"channel"_s, u"--page"_s, u"ordersummary"_s});
    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"pageReady"_s).size(), 1, patience);
    QCOMPARE(run.lines().constFirst().keys(), (QStringList{u"baseUrl"_s, u"token"_s}));
}

void tst_sample_channel::aSecondPageGetsTheFirstValuesToo()
{
    ChannelRun run({u"channel"_s, u"--page"_s, u"ordersummary"_s});
    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"pageReady"_s).size(), 1, patience);
    Client client(run.first());
    client.listenTo(u"setNewsletterVisible"_s);
    client.listenTo(u"setNewsletterChecked"_s);
    client.call(u"webChannelReady"_s, {});

    QTRY_COMPARE_WITH_TIMEOUT(client.told(u"setNewsletterChecked"_s), QList<QJsonArray>{{false}},
                              patience);
    QCOMPARE(client.told(u"setNewsletterVisible"_s), QList<QJsonArray>{{true}});
}

void tst_sample_channel::anUnknownPageIsRefused()
{
    ChannelRun run({u"channel"_s, u"--page"_s, u"../oauth/index"_s});
    QVERIFY(run.program().waitForFinished(patience));
    QCOMPARE(run.program().exitCode(), 2);
    QCOMPARE(run.program().readAllStandardOutput(), QByteArray());
}

void tst_sample_channel::itEndsAfterTheTimeGiven()
{
    ChannelRun run({u"--exit-after"_s, u"1"_s, u"channel"_s});
    QVERIFY(run.program().waitForFinished(patience));
    QCOMPARE(run.program().exitCode(), 0);
}

void tst_sample_channel::itEndsBySignal()
{
    ChannelRun run({u"channel"_s, u"--page"_s, u"ordersummary"_s});
    QTRY_COMPARE_WITH_TIMEOUT(run.events(u"pageReady"_s).size(), 1, patience);
    run.program().terminate();
    QVERIFY(run.program().waitForFinished(patience));
    QCOMPARE(run.program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(run.program().exitCode(), 0);
}

VX_TEST_MAIN(QCoreApplication, tst_sample_channel)
#include "tst_sample_channel.moc"
