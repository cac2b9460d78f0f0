#include <VXNetworking/VXNetworkingErrorMessageMap.h>

#include "VXMarkingTranslator.h"
#include "VXProbe.h"
#include "VXTestMain.h"

#include <VXCore/VXKeyAccount.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSemaphore>
#include <QtGui/QImage>

#include <algorithm>
#include <array>
#include <barrier>
#include <latch>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct MessageText
{
    int code;
    const char* text;
};

// Slips and double blanks are meant.
constexpr std::array messageTexts{
    MessageText{0, "Kein Fehler."},
    MessageText{1, "Client Version ist zu alt. Kommunikation verweigert. Bitte installieren Sie "
                   "eine neuere Version dieser Software."},
    MessageText{
        2, "Sie konnten sich nicht anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login "
           "und Passwort vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li></ul>"},
    MessageText{4, "Ungültige Session ID."},
    MessageText{5, "Ihre E-Mail-Adresse ist nicht korrekt."},
    MessageText{8, "Die Validierung der Sicherheitsfrage ist fehlgeschlagen"},
    MessageText{9, "Die Validierung der Sicherheitsantwort ist fehlgeschlagen"},
    MessageText{10, "Wir haben in den letzten zwei Stunden einen Auftrag von Ihnen erhalten, der "
                    "diesem sehr ähnlich ist."},
    MessageText{12, "Die Validierung der Straße ist fehlgeschlagen"},
    MessageText{13, "Die Validierung der Straße fehlgeschlagen"},
    MessageText{14, "Die Validierung der Postleitzahl ist fehlgeschlagen"},
    MessageText{15, "Die Validierung der Stadt ist fehlgeschlagen"},
    MessageText{16, "Die Ländereinstellung stimmt nicht. Die Funktion 'Update' korrigiert die "
                    "Länderliste im Zuge eines Preisupdates."},
    MessageText{
        20,
        "Ihr Konto kann leider nicht gelöscht werden, solange offene Bestellungen vorhanden sind."},
    MessageText{27, "Der Upload musste abgebrochen werden. Bitte beenden Sie den Vorgang und "
                    "starten Sie von vorne."},
    MessageText{34, "Sie können kein Produkt ohne Fotos bestellen!"},
    MessageText{
        50,
        "Sie konnten sich nicht anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login "
        "und Passwort vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li></ul>"},
    MessageText{60, "Das angegebene Dateiformat für ein Foto wird nicht vom Server akzeptiert."},
    MessageText{62, "Der Partnercode ist nicht gültig."},
    MessageText{63,
                "Die von Ihnen eingegebenen Gutscheine können nicht zusammen eingelöst werden."},
    MessageText{64, "Der Gutschein wurde bereits benutzt."},
    MessageText{65, "Es können leider nur %1 Rabattgutscheine eingelöst werden."},
    MessageText{66, "Der Gutschein ist nur für Kundenkartenbesitzer gültig."},
    MessageText{
        67,
        "Der eingegebene Gutschein kann mit dieser Bestellsoftware leider nicht eingelöst werden."},
    MessageText{68, "Sie haben sich bereits einmal registriert. Eine mehrfache Registrierung mit "
                    "derselben E-Mail-Adresse ist nicht möglich. Bitte nutzen Sie ggf. die "
                    "\"Passwort vergessen\"-Funktion."},
    MessageText{70, "Der Gutscheincode ist nicht gültig."},
    MessageText{71, "Der Gutschein benötigt eine Mindestbestellmenge."},
    MessageText{72, "Die Gutscheinaktion ist bereits abgelaufen."},
    MessageText{73, "Der Gutschein benötigt einen Mindestbestellwert."},
    MessageText{75, "Der Gutschein kann nur von Neukunden eingelöst werden."},
    MessageText{77, "Der Gutschein kann für diesen Lieferweg nicht eingelöst werden."},
    MessageText{78, "Der Gutschein kann nur von Bestandskunden eingelöst werden."},
    MessageText{79, "Der Gutschein wurde bereits eingelöst."},
    MessageText{80, "Die Antwort auf die Sicherheitsfrage ist nicht korrekt."},
    MessageText{81, "Unbekannter Benutzer.  Prüfen Sie Ihre Eingabe. Wenn Sie noch kein "
                    "Benutzerkonto besitzen, registrieren Sie sich bitte."},
    MessageText{85, "Die Software befindet sich auf dem neuesten Stand."},
    MessageText{87, "Die von Ihnen eingegebene Kundenkartennummer ist nicht gültig."},
    MessageText{89, "Die von Ihnen eingegebene PAYBACK Kundennummer ist nicht gültig."},
    MessageText{93, "Eine benötigte Angabe wurde nicht ausgefüllt."},
    MessageText{94, "Die eingesetzte Softwareversion wird nicht unterstützt"},
    MessageText{95, "Die von Ihnen eingegebene Adresse ist ungültig."},
    MessageText{
        96, "Die von Ihnen ausgewählte Versandart ist mit der ausgewählten Zahlart nicht möglich."},
    MessageText{97, "Der von Ihnen ausgewählte Abholort ist ungültig."},
    MessageText{98, "Die von Ihnen ausgewählte Adresse ist nicht als Rechnungsadresse zulässig."},
    MessageText{99, "Die angegebene Postleitzahl wird vom ausgewählten Versender nicht beliefert."},
    MessageText{121, "Die von Ihnen eingegebene Postnummer ist nicht gültig."},
    MessageText{130, "Das von Ihnen gewählte Passwort entspricht nicht unseren "
                     "Datenschutzrichtlinien. Bitte wählen Sie ein stärkeres Passwort. "},
    MessageText{500, "Allgemeiner unbekannter Fehler. Bitte wenden Sie sich an den Kundendienst, "
                     "falls das Problem bestehen bleibt."},
    MessageText{501, "Die Filiale existiert nicht bzw. wurde geschlossen. Falls Sie per Mail Order "
                     "bestellt haben, wurde das Zahlverfahren gestrichen. Bitte wählen Sie ein "
                     "anderes Zahlverfahren oder eine andere Filiale."},
    MessageText{503,
                "Bei der Zusammenstellung des Warenkorbs ist ein Programmfehler aufgetreten. Bitte "
                "löschen Sie alle Artikel aus dem Warenkorb und legen Sie sie erneut hinein."},
    MessageText{504, "Sie können nicht 0 Dinge einer Sorte bestellen."},
    MessageText{508, "Das Preismodell hat sich geändert. Bitte starten Sie das Programm neu und "
                     "bestellen Sie noch einmal."},
    MessageText{510, "Inkonsistente Discount-Daten"},
    MessageText{511, "Die Anzahl der Fotos in einer Bestellung ist begrenzt. Leider haben Sie "
                     "dieses Limit überschritten. Löschen Sie bitte ein paar Fotos aus Ihrer "
                     "Bestellung und starten Sie die Bestellung neu."},
    MessageText{516,
                "Bei der Zusammenstellung des Warenkorbs ist ein Programmfehler aufgetreten. Bitte "
                "löschen Sie alle Artikel aus dem Warenkorb und legen Sie sie erneut hinein."},
    MessageText{518, "Eine Warengruppe unterstützt dieses Zahlverfahren nicht. Bitte suchen Sie "
                     "eine andere Zahlmethode aus und melden den Fehler an den Kundendienst. Bitte "
                     "geben Sie an, was Sie bestellt haben."},
    MessageText{531, "Sie können diese Zahlungsart momentan nicht verwenden, weil eine Rechnung "
                     "von Ihnen aussteht."},
    MessageText{
        565, "Sie haben eine falsche Postleitzahl angegeben. Bitte kontrollieren Sie, ob Sie diese "
             "korrekt angegeben haben. Falls ja, wählen Sie bitte ein anderes Zahlungsverfahren."},
    MessageText{601, "Dieser Kreditkartentyp wird nicht unterstützt."},
    MessageText{653, "Leider ist die Zahlung mit Klarna Rechnung nicht möglich. Bitte wählen Sie "
                     "ein anderes Zahlungsverfahren aus."},
    MessageText{654,
                "Die eingegebenen Adress- und Mobilephone-Daten können nicht von Klarna bestätigt "
                "werden. Bitte überprüfen Sie Ihre Eingabe, insbesondere auf die korrekte "
                "Schreibweise und Vollständigkeit, und versuchen Sie es noch einmal."},
    MessageText{655, "Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Bitte wählen "
                     "Sie ein anderes Zahlungsverfahren aus."},
    MessageText{657, "Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Der von "
                     "Ihnen angegebene Name stimmt nicht mit den Angaben im Melderegister überein. "
                     "Bitte prüfen Sie, ob Vor- und Nachname richtig angegeben sind."},
    MessageText{804,
                "Derzeit ist keine Bestellung per Mailorder möglich (Default Mail Order Location "
                "fehlt) Fehlerhafte Daten vom Server. Bitte wenden Sie sich an den Kundendienst."},
    MessageText{806, "Für diesen Online-Partner existieren zuviele Filialen."},
    MessageText{
        999, "Wöchentliche Wartungsarbeiten auf dem Server. Versuchen Sie es später noch einmal."},
    MessageText{1000, "Der Server kann derzeit die Anfrage nicht beantworten."},
    MessageText{1002, "Server lehnt Auftrag aufgrund falschen Formats ab."},
    MessageText{1004, "Datenbankfehler auf dem Server."},
    MessageText{1005, "Unsere Services sind im Moment voll ausgelastet.<br>Das Programm wird in %2 "
                      "Minuten die Verbindung erneut aufbauen."},
    MessageText{1008, "Anmeldefehler auf dem Server des Online-Partners."},
    MessageText{1009, "Serverfehler. Nicht unterstützte Anfrage."},
    MessageText{1011, "Serverfehler. Entfernter Server antwortet nicht."},
    MessageText{1012, "Serverfehler. Falsch konfigurierter Online-Partner."},
    MessageText{1013,
                "Serverfehler. Für diesen Benutzer konnten keine Adressdaten gefunden werden."},
    MessageText{1014, "Serverfehler. Umwandlungs bzw Anordnungsfehler in der Datenübertragung."},
    MessageText{1015, "Serverfehler. Netzwerk-Ausnahmefehler."},
    MessageText{2000, "Das Zielverzeichnis existiert nicht."},
    MessageText{2001, "Die Datei ist leer."},
    MessageText{2002, "Die Datei kann nicht geschrieben werden."},
    MessageText{2003, "Die Datei kann nicht gelesen werden."},
    MessageText{3501,
                "Der Server verweigert die Verbindung (der Server akzeptiert keine Anfragen)."},
    MessageText{3502, "Der Server hat die Verbindung vorzeitig unterbrochen."},
    MessageText{3503, "Der Servername konnte nicht gefunden werden (ungültiger Servername)."},
    MessageText{3504, "Der Server antwortet nicht (Timeout)."},
    MessageText{3505, "Der Server antwortet nicht (Timeout)."},
    MessageText{3506, "Der SSL/TLS Handshake ist fehlgeschlagen und es konnte keine verschlüsselte "
                      "Verbindung hergestellt werden."},
    MessageText{3599, "Ein unbekannter Netwerkfehler ist aufgetreten."},
    MessageText{3601, "Die Verbindung zum Proxy Server wurde verweigert (der Proxy Server "
                      "akzeptiert keine Anfragen)."},
    MessageText{3602, "Der Proxyserver hat die Verbindung vorzeitig beendet."},
    MessageText{3603, "Der Proxyname konnte nicht gefunden werden (ungültiger Proxyname)."},
    MessageText{3604, "Operation zurückgesetzt. Der Proxy Server antwortet nicht (Timeout)."},
    MessageText{3605, "Die Authentifizierung gegenüber den Proxy ist nicht gelungen."},
    MessageText{3699, "Ein unbekannter Fehler beim Proxy Server ist aufgetreten."},
    MessageText{3701, "Der Zugang zum Inhalt wurde verweigert (ähnlich HTTP error 401)."},
    MessageText{3702, "Die angeforderte Operation ist auf dem Inhalt nicht erlaubt."},
    MessageText{3703, "Der angeforderte Inhalt wurde nicht gefunden (ähnlich HTTP error 404)."},
    MessageText{3704, "Die Authentifizierung gegenüber dem Server ist nicht gelungen."},
    MessageText{3799, "Ein unbekannter Fehler im Zusammenhang mit dem Inhalt ist aufgetreten."},
    MessageText{3801, "Diese Netzwerk API unterstützt diese unbekannte Protokoll nicht."},
    MessageText{3802, "Die angeforderte Operation ist für dieses Protokoll nicht verfügbar."},
    MessageText{3899, "Im Protokoll ist ein Fehler aufgetreten (Parsing Fehler, ungültiger oder "
                      "unerwartete Reaktionen, etc.)."},
    MessageText{5002, "Unsere Services sind im Moment voll ausgelastet.<br>Das Programm wird in %2 "
                      "Minuten die Verbindung erneut aufbauen."},
    MessageText{5003,
                "Keine Antwort vom Server beim Abschließen der Bestellung. Es kann sein, dass die "
                "Bestellung trotzdem richtig abgeschlossen wurde. In diesem Fall erreicht Sie in "
                "etwa 5-30 Minuten eine Bestätigungsmail. Wenn Sie den Vorgang abbrechen, senden "
                "Sie bitte innerhalb dieses Zeitraums die Bestellung <b>nicht</b> noch einmal, "
                "ansonsten kann es eine Doppelbestellung geben!"},
    MessageText{5004,
                "Das Login kann nicht durchgeführt werden, da der Server nicht erreichbar ist."},
    MessageText{5005, "Es ist keine Netzwerkverbindung vorhanden."},
    MessageText{5006, "Der Server antwortet nicht (Ungültiges XML)."},
    MessageText{5009, "Das Login kann nicht durchgeführt werden, da der Server nicht erreichbar "
                      "ist. Bitte wenden Sie sich an den Kundendienst."},
    MessageText{5010, "Fehler beim Parsen eines JSON-Dokuments."},
    MessageText{5011, "Fehler beim Parsen eines XML-Dokuments."},
};

// Server numbers without a text, one code of each family, and neighbours.
constexpr std::array codesWithoutText{
    -1,   3,    6,     7,     11,    17,    19,    21,     26,   28,   32,   33,   35,   49,
    51,   52,   57,    59,    61,    69,    74,    76,     82,   84,   86,   88,   90,   92,
    100,  120,  122,   129,   131,   499,   502,   505,    507,  509,  512,  513,  515,  517,
    519,  530,  532,   533,   537,   564,   566,   600,    602,  652,  656,  658,  750,  803,
    805,  807,  920,   998,   1001,  1003,  1006,  1007,   1010, 1016, 1999, 2004, 3500, 3507,
    3598, 3600, 3606,  3698,  3700,  3705,  3798,  3800,   3803, 3898, 3900, 5001, 5007, 5008,
    5012, 7777, 10404, 10499, 10500, 20000, 20001, 1000000};

QString messageOf(int theCode)
{
    return VXNetworkingErrorMessageMap().message(static_cast<VXNetworkingErrorCode>(theCode));
}

template <size_t Count>
int countFound(const std::array<int, Count>& theCodes, const std::array<QString, Count>& theTexts)
{
    int found = 0;
    for (size_t i = 0; i < Count; ++i) {
        const auto* row = std::ranges::find(messageTexts, theCodes[i], &MessageText::code);
        found += theTexts[i] == QString::fromUtf8(row->text) ? 1 : 0;
    }
    return found;
}

/// The first look-up of the process happens in eight threads at once, each for another part of the
/// table. Prints how many of them found their text.
int raceForTheFirstLookUp()
{
    constexpr std::array codes{0, 2, 50, 516, 804, 3503, 5002, 5011};
    std::barrier start(std::ssize(codes));
    std::array<QString, codes.size()> texts;
    std::vector<std::thread> threads;
    for (size_t i = 0; i < codes.size(); ++i) {
        threads.emplace_back([&start, &texts, &codes, i] {
            start.arrive_and_wait();
            texts[i] = messageOf(codes[i]);
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    VXProbe::print(QString::number(countFound(codes, texts)));
    return 0;
}

QImage twoRedPixels()
{
    QImage image(2, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QString plainLoginText()
{
    return QString::fromUtf8(
        "Sie konnten sich nicht anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login "
        "und Passwort vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li></ul>");
}

/// The partner's text is installed before anything was looked up.
int updateBeforeTheFirstLookUp()
{
    VXKeyAccount::instance()->setGeneric(true);
    const VXNetworkingErrorMessageMap map;
    map.updateInvalidLoginMessage(u"Partner"_s, twoRedPixels());
    VXProbe::print(messageOf(2).contains(u"Partner"_s) ? u"true"_s : u"false"_s);
    VXProbe::print(messageOf(0));
    VXProbe::print(messageOf(50));
    VXProbe::print(QString::number(map.messagesDump().count(u"Code: "_s)));
    return 0;
}

/// Lets the others look up while the table is half filled.
class HalfwayTranslator : public QTranslator
{
    Q_OBJECT

public:
    explicit HalfwayTranslator(std::latch& theHalfway)
        : myHalfway(theHalfway)
    {
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char*, const char*, const char*, int) const override
    {
        if (++myCalls == 50) {
            myHalfway.count_down();
            // A look-up that does not wait for the whole table returns within this time.
            (void)lookUpReturned.tryAcquire(1, 200);
        }
        return {};
    }

    mutable QSemaphore lookUpReturned;

private:
    std::latch& myHalfway;
    mutable int myCalls = 0;
};

/// Seven threads look up the last entries while an eighth one fills the table. Prints how many of
/// all of them found their text.
int lookUpWhileTheTableFills()
{
    constexpr std::array codes{804, 5002, 5003, 5004, 5005, 5006, 5010, 5011};
    std::latch halfway(1);
    HalfwayTranslator translator(halfway);
    QCoreApplication::installTranslator(&translator);
    std::array<QString, codes.size()> texts;
    std::vector<std::thread> threads;
    for (size_t i = 1; i < codes.size(); ++i) {
        threads.emplace_back([&, i] {
            halfway.wait();
            texts[i] = messageOf(codes[i]);
            translator.lookUpReturned.release();
        });
    }
    texts[0] = messageOf(codes[0]);
    for (std::thread& thread : threads)
        thread.join();
    QCoreApplication::removeTranslator(&translator);
    VXProbe::print(QString::number(countFound(codes, texts)));
    return 0;
}

/// The first look-up happens under a translator that is gone at the next one.
int translateTheFirstLookUp()
{
    VXMarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    VXProbe::print(messageOf(0));
    QCoreApplication::removeTranslator(&translator);
    for (const int code : {0, 5, 503, 516, 804})
        VXProbe::print(messageOf(code));
    return 0;
}

} // namespace

class tst_VXNetworkingErrorMessageMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void codesHaveTheirTexts_data();
    void codesHaveTheirTexts();
    void otherCodesHaveNone();
    void cancellingIsShownAsATimeout();
    void theDumpListsAllInAscendingOrder();
    void imagesBecomeInlinePngs();
    void aNullImageHasNoBytes();
    void theGenericAccountShowsThePartner();
    void thePartnersNameIsNotExpandedAgain();
    void theCopyOfTheLoginTextStaysPlain();
    void aNullImageMakesTheTextPlain();
    void anotherAccountMakesTheTextPlain();
    void updatingFillsTheTableFirst();
    void theLanguageOfTheFirstLookUpStays();
    void aLaterLanguageChangesNothing();
    void threadsMayRaceForTheFirstLookUp();
    void aHalfFilledTableIsNeverSeen();
};

void tst_VXNetworkingErrorMessageMap::init()
{
    VXNetworkingErrorMessageMap().updateInvalidLoginMessage(QString(), QImage());
}

void tst_VXNetworkingErrorMessageMap::codesHaveTheirTexts_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    for (const MessageText& row : messageTexts)
        QTest::addRow("%d", row.code) << row.code << QString::fromUtf8(row.text);
}

void tst_VXNetworkingErrorMessageMap::codesHaveTheirTexts()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QCOMPARE(messageOf(code), text);
}

void tst_VXNetworkingErrorMessageMap::otherCodesHaveNone()
{
    for (const int code : codesWithoutText)
        QVERIFY2(messageOf(code).isNull(), qPrintable(QString::number(code)));
}

void tst_VXNetworkingErrorMessageMap::cancellingIsShownAsATimeout()
{
    const VXNetworkingErrorMessageMap map;
    QCOMPARE(map.message(NetOperationCanceled), map.message(NetTimeout));
    QCOMPARE(map.message(NetOperationCanceled), u"Der Server antwortet nicht (Timeout)."_s);
}

void tst_VXNetworkingErrorMessageMap::theDumpListsAllInAscendingOrder()
{
    QStringList lines;
    for (const MessageText& row : messageTexts)
        lines << u"Code: "_s + QString::number(row.code).rightJustified(4) + u"  => "_s +
                     QString::fromUtf8(row.text);

    const QString dump = VXNetworkingErrorMessageMap().messagesDump();
    QVERIFY(dump.startsWith(u"Code:    0  => Kein Fehler.\n\nCode:    1  => Client Version"_s));
    QVERIFY(dump.contains(u"\n\nCode:    5  => Ihre E-Mail-Adresse ist nicht korrekt.\n\n"_s));
    QVERIFY(dump.endsWith(u"\n\nCode: 5010  => Fehler beim Parsen eines JSON-Dokuments."
                          u"\n\nCode: 5011  => Fehler beim Parsen eines XML-Dokuments."_s));
    QCOMPARE(lines.size(), 110);
    QCOMPARE(dump.split(u"\n\n"_s), lines);
}

void tst_VXNetworkingErrorMessageMap::imagesBecomeInlinePngs()
{
    const QString url = VXNetworkingErrorMessageMap().toBase64DataURL(twoRedPixels());
    const QString prefix = u"data:image/PNG;base64,"_s;
    QVERIFY2(url.startsWith(prefix), qPrintable(url));

    const auto decoded = QByteArray::fromBase64Encoding(url.mid(prefix.size()).toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    QVERIFY(decoded);
    QVERIFY((*decoded).startsWith("\x89PNG\r\n\x1A\n"));
    QCOMPARE(QImage::fromData(*decoded, "PNG").convertToFormat(QImage::Format_RGB32),
             twoRedPixels());
    QCOMPARE(url.size() - prefix.size(), ((*decoded).size() + 2) / 3 * 4); // padded
}

void tst_VXNetworkingErrorMessageMap::aNullImageHasNoBytes()
{
    QCOMPARE(VXNetworkingErrorMessageMap().toBase64DataURL(QImage()), u"data:image/PNG;base64,"_s);
}

void tst_VXNetworkingErrorMessageMap::theGenericAccountShowsThePartner()
{
    VXKeyAccount::instance()->setGeneric(true);
    const VXNetworkingErrorMessageMap map;
    map.updateInvalidLoginMessage(u"Foto <b>Müller</b>"_s, twoRedPixels());
    QCOMPARE(messageOf(2),
             QString::fromUtf8(
                 "<style>.nobr {white-space: nowrap}</style>Sie konnten sich nicht "
                 "anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login und Passwort "
                 "vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li><li>Bitte "
                 "beachten Sie, dass Ihre Anmeldedaten bei anderen Handelspartnern nicht verwendet "
                 "werden können.<br><p class=nobr>Foto <b>Müller</b> <img src=\"") +
                 map.toBase64DataURL(twoRedPixels()) +
                 QString::fromUtf8("\" alt=\"Logo\" style=\"vertical-align:top\"/></p></li></ul>"));
}

void tst_VXNetworkingErrorMessageMap::thePartnersNameIsNotExpandedAgain()
{
    VXKeyAccount::instance()->setGeneric(true);
    VXNetworkingErrorMessageMap().updateInvalidLoginMessage(u"A %2 B %1"_s, twoRedPixels());
    const QString text = messageOf(2);
    QVERIFY2(text.contains(u"<p class=nobr>A %2 B %1 <img src=\"data:image/PNG;base64,"_s),
             qPrintable(text));
    QCOMPARE(text.count(u"data:image/PNG"_s), 1);
}

void tst_VXNetworkingErrorMessageMap::theCopyOfTheLoginTextStaysPlain()
{
    VXKeyAccount::instance()->setGeneric(true);
    VXNetworkingErrorMessageMap().updateInvalidLoginMessage(u"Partner"_s, twoRedPixels());
    QVERIFY(messageOf(2).contains(u"Partner"_s));
    QCOMPARE(messageOf(50), plainLoginText());
}

void tst_VXNetworkingErrorMessageMap::aNullImageMakesTheTextPlain()
{
    VXKeyAccount::instance()->setGeneric(true);
    const VXNetworkingErrorMessageMap map;
    map.updateInvalidLoginMessage(u"Partner"_s, twoRedPixels());
    map.updateInvalidLoginMessage(u"Partner"_s, QImage());
    QCOMPARE(messageOf(2), plainLoginText());
}

void tst_VXNetworkingErrorMessageMap::anotherAccountMakesTheTextPlain()
{
    VXKeyAccount::instance()->setGeneric(true);
    const VXNetworkingErrorMessageMap map;
    map.updateInvalidLoginMessage(u"Partner"_s, twoRedPixels());
    VXKeyAccount::instance()->setGeneric(false);
    map.updateInvalidLoginMessage(u"Partner"_s, twoRedPixels());
    QCOMPARE(messageOf(2), plainLoginText());
}

void tst_VXNetworkingErrorMessageMap::updatingFillsTheTableFirst()
{
    QCOMPARE(VXProbe::run(u"update"_s),
             (QStringList{u"true"_s, u"Kein Fehler."_s, plainLoginText(), u"110"_s}));
}

void tst_VXNetworkingErrorMessageMap::theLanguageOfTheFirstLookUpStays()
{
    const QString context = u"[VXNetworkingErrorMessageMap]"_s;
    const QString cart =
        context + u"Bei der Zusammenstellung des Warenkorbs ist ein Programmfehler aufgetreten. "
                  u"Bitte löschen Sie alle Artikel aus dem Warenkorb und legen Sie sie erneut "
                  u"hinein."_s;
    QCOMPARE(VXProbe::run(u"translate"_s),
             (QStringList{context + u"Kein Fehler."_s, context + u"Kein Fehler."_s,
                          context + u"Ihre E-Mail-Adresse ist nicht korrekt."_s, cart, cart,
                          context +
                              u"Derzeit ist keine Bestellung per Mailorder möglich (Default Mail "
                              u"Order Location fehlt) "_s +
                              context +
                              u"Fehlerhafte Daten vom Server. Bitte wenden Sie sich an den "
                              u"Kundendienst."_s}));
}

void tst_VXNetworkingErrorMessageMap::aLaterLanguageChangesNothing()
{
    QCOMPARE(messageOf(0), u"Kein Fehler."_s);
    VXMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QString text = messageOf(0);
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(text, u"Kein Fehler."_s);
}

void tst_VXNetworkingErrorMessageMap::threadsMayRaceForTheFirstLookUp()
{
    for (int i = 0; i < 20; ++i)
        QCOMPARE(VXProbe::run(u"race"_s), QStringList{u"8"_s});
}

void tst_VXNetworkingErrorMessageMap::aHalfFilledTableIsNeverSeen()
{
    QCOMPARE(VXProbe::run(u"halfway"_s), QStringList{u"8"_s});
}

VX_PROBE_TEST_MAIN(QCoreApplication, tst_VXNetworkingErrorMessageMap,
                   {u"halfway"_s, &lookUpWhileTheTableFills}, {u"race"_s, &raceForTheFirstLookUp},
                   {u"translate"_s, &translateTheFirstLookUp},
                   {u"update"_s, &updateBeforeTheFirstLookUp})

#include "tst_VXNetworkingErrorMessageMap.moc"
