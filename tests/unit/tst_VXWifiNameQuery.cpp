#include <VXCore/VXWifiNameQuery.h>
#include <VXCore/VXWifiNameSource.h>

#include "VXPrivateBus.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>

using namespace Qt::StringLiterals;

namespace {

/// Answers as told and notes that it was asked.
class Source : public VXWifiNameSource
{
public:
    Source(const QString& theLabel, const std::optional<QString>& theAnswer, QStringList* theAsked)
        : myLabel(theLabel)
        , myAnswer(theAnswer)
        , myAsked(theAsked)
    {
    }

    std::optional<QString> wifiName(const QString& theInterface) override
    {
        myAsked->append(u"%1 for %2"_s.arg(myLabel, theInterface));
        return myAnswer;
    }

private:
    QString myLabel;
    std::optional<QString> myAnswer;
    QStringList* myAsked;
};

} // namespace

class tst_VXWifiNameQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstAnswerEndsTheQuery_data();
    void theFirstAnswerEndsTheQuery();
    void withoutSourcesTheNameIsEmpty();
    void networkManagerIsAskedBeforeIwd();
};

void tst_VXWifiNameQuery::theFirstAnswerEndsTheQuery_data()
{
    using Name = std::optional<QString>;
    QTest::addColumn<Name>("first");
    QTest::addColumn<Name>("second");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("asked");

    const QStringList firstOnly{u"first for wlan0"_s};
    const QStringList both{u"first for wlan0"_s, u"second for wlan0"_s};
    QTest::newRow("first knows") << Name(u"A"_s) << Name(u"B"_s) << u"A"_s << firstOnly;
    QTest::newRow("first knows: none") << Name(QString()) << Name(u"B"_s) << QString() << firstOnly;
    QTest::newRow("only second knows") << Name() << Name(u"B"_s) << u"B"_s << both;
    QTest::newRow("nobody knows") << Name() << Name() << QString() << both;
}

void tst_VXWifiNameQuery::theFirstAnswerEndsTheQuery()
{
    QFETCH(std::optional<QString>, first);
    QFETCH(std::optional<QString>, second);
    QFETCH(QString, name);
    QFETCH(QStringList, asked);

    QStringList log;
    std::vector<std::unique_ptr<VXWifiNameSource>> sources;
    sources.push_back(std::make_unique<Source>(u"first"_s, first, &log));
    sources.push_back(std::make_unique<Source>(u"second"_s, second, &log));
    VXWifiNameQuery query(std::move(sources));

    QCOMPARE(query.wifiName(u"wlan0"_s), name);
    QCOMPARE(log, asked);
}

void tst_VXWifiNameQuery::withoutSourcesTheNameIsEmpty()
{
    VXWifiNameQuery query(std::vector<std::unique_ptr<VXWifiNameSource>>{});
    QCOMPARE(query.wifiName(u"wlan0"_s), QString());
}

void tst_VXWifiNameQuery::networkManagerIsAskedBeforeIwd()
{
    VXPrivateBus bus;
    QCOMPARE(bus.start(), QString());
    QVERIFY(bus.startFake({u"iwd"_s, u"wlan0=wifi:69"_s, u"wlan1=wifi:69"_s}));
    // A fresh query each time: on a busy computer the fake services may miss the time limit.
    QTRY_COMPARE(VXWifiNameQuery().wifiName(u"wlan0"_s), u"i"_s);

    QVERIFY(bus.startFake({u"networkmanager"_s, u"wlan0=wifi:6e"_s, u"wlan2=ethernet"_s}));
    QTRY_COMPARE(VXWifiNameQuery().wifiName(u"wlan0"_s), u"n"_s);
    QTRY_COMPARE(VXWifiNameQuery().wifiName(u"wlan1"_s), u"i"_s); // unknown to NetworkManager
    QTRY_COMPARE(VXWifiNameQuery().wifiName(u"wlan2"_s), QString());
    QTRY_COMPARE(VXWifiNameQuery().wifiName(u"wlan3"_s), QString());
}

VX_TEST_MAIN(QCoreApplication, tst_VXWifiNameQuery)
#include "tst_VXWifiNameQuery.moc"
