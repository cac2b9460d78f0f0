#include <VXNetworking/VXNetworkingErrorSeverityMessageMap.h>

#include "VXMarkingTranslator.h"
#include "VXProbe.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <barrier>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct SeverityText
{
    int severity;
    const char* text;
};

constexpr std::array severityTexts{
    SeverityText{0, "Kein Fehler"},
    SeverityText{1, "Unbehebbarer Fehler. Bitte wenden Sie sich an den Kundendienst!"},
    SeverityText{2, "Programmfehler! Bitte wenden Sie sich an den Kundendienst!"},
    SeverityText{3, "Fehlerhafte Daten! Bitte überpüfen Sie Ihre Eingaben"},
    SeverityText{4, "Remote System Fehler. Bitte versuchen Sie es später erneut"},
    SeverityText{5, "Keine Verbindung zum Server. Bitte überprüfen Sie Ihre Internetverbindung und "
                    "versuchen Sie es erneut"},
    SeverityText{6, "Bitte versuchen Sie es erneut!"},
    SeverityText{7, "Programmfehler bei der Deklaration der Bestellung. Bitte wenden Sie sich an "
                    "den Kundendienst!"},
};

QString textOf(int theSeverity)
{
    return VXNetworkingErrorSeverityMessageMap().message(
        static_cast<VXNetworkingErrorSeverity>(theSeverity), u"default"_s);
}

/// The first look-up of the process happens in eight threads at once. Prints how many of them
/// found their text.
int raceForTheFirstLookUp()
{
    constexpr int count = 8;
    std::barrier start(count);
    std::vector<QString> texts(count);
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&start, &texts, i] {
            start.arrive_and_wait();
            texts[i] = textOf(i);
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    int found = 0;
    for (int i = 0; i < count; ++i)
        found += texts[i] == QString::fromUtf8(severityTexts[i].text) ? 1 : 0;
    VXProbe::print(QString::number(found));
    return 0;
}

/// The first look-up happens under a translator that is gone at the next one.
int translateTheFirstLookUp()
{
    VXMarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    VXProbe::print(textOf(0));
    QCoreApplication::removeTranslator(&translator);
    VXProbe::print(textOf(0));
    VXProbe::print(textOf(7));
    return 0;
}

} // namespace

class tst_VXNetworkingErrorSeverityMessageMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severitiesHaveTheirTexts_data();
    void severitiesHaveTheirTexts();
    void othersGiveTheDefault_data();
    void othersGiveTheDefault();
    void theLanguageOfTheFirstLookUpStays();
    void aLaterLanguageChangesNothing();
    void threadsMayRaceForTheFirstLookUp();
};

void tst_VXNetworkingErrorSeverityMessageMap::severitiesHaveTheirTexts_data()
{
    QTest::addColumn<int>("severity");
    QTest::addColumn<QString>("text");
    for (const SeverityText& row : severityTexts)
        QTest::addRow("%d", row.severity) << row.severity << QString::fromUtf8(row.text);
}

void tst_VXNetworkingErrorSeverityMessageMap::severitiesHaveTheirTexts()
{
    QFETCH(int, severity);
    QFETCH(QString, text);
    QCOMPARE(textOf(severity), text);
}

void tst_VXNetworkingErrorSeverityMessageMap::othersGiveTheDefault_data()
{
    QTest::addColumn<int>("severity");
    for (const int severity : {8, 9, 10, -1, 1000})
        QTest::addRow("%d", severity) << severity;
}

void tst_VXNetworkingErrorSeverityMessageMap::othersGiveTheDefault()
{
    QFETCH(int, severity);
    QCOMPARE(textOf(severity), u"default"_s);
    QVERIFY(VXNetworkingErrorSeverityMessageMap()
                .message(static_cast<VXNetworkingErrorSeverity>(severity), QString())
                .isNull());
}

void tst_VXNetworkingErrorSeverityMessageMap::theLanguageOfTheFirstLookUpStays()
{
    const QString context = u"[VXNetworkingErrorSeverityMessageMap]"_s;
    QCOMPARE(VXProbe::run(u"translate"_s),
             (QStringList{context + u"Kein Fehler"_s, context + u"Kein Fehler"_s,
                          context + u"Programmfehler bei der Deklaration der Bestellung. "_s +
                              context + u"Bitte wenden Sie sich an den Kundendienst!"_s}));
}

void tst_VXNetworkingErrorSeverityMessageMap::aLaterLanguageChangesNothing()
{
    QCOMPARE(textOf(0), u"Kein Fehler"_s);
    VXMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString text = textOf(0);
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(text, u"Kein Fehler"_s);
}

void tst_VXNetworkingErrorSeverityMessageMap::threadsMayRaceForTheFirstLookUp()
{
    for (int i = 0; i < 20; ++i)
        QCOMPARE(VXProbe::run(u"race"_s), QStringList{u"8"_s});
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_VXNetworkingErrorSeverityMessageMap,
                   {u"race"_s, &raceForTheFirstLookUp}, {u"translate"_s, &translateTheFirstLookUp})

#include "tst_VXNetworkingErrorSeverityMessageMap.moc"
