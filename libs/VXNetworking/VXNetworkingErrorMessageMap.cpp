#include "VXNetworkingErrorMessageMap.h"

#include <VXCore/VXKeyAccount.h>

#include <QtCore/QBuffer>
#include <QtCore/QMutexLocker>
#include <QtCore/QStringList>
#include <QtGui/QImage>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    VXNetworkingErrorCode code;
    const char* text;
};

// The product's vocabulary, slips and double blanks included: the catalogues look the texts up
// by these spellings.
constexpr std::array rows{
    Row{NoError, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Kein Fehler.")},
    Row{ClientVersionTooOld,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Client Version ist zu alt. Kommunikation verweigert. Bitte installieren "
                          "Sie eine neuere Version dieser Software.")},
    Row{InvalidSessionId,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Ungültige Session ID.")},
    Row{InvalidEmailAddress,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Ihre E-Mail-Adresse ist nicht korrekt.")},
    Row{SecurityQuestionInvalid,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Validierung der Sicherheitsfrage ist fehlgeschlagen")},
    Row{SecurityAnswerInvalid,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Validierung der Sicherheitsantwort ist fehlgeschlagen")},
    Row{SimilarOrderRecentlyReceived,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Wir haben in den letzten zwei Stunden einen Auftrag von Ihnen erhalten, "
                          "der diesem sehr ähnlich ist.")},
    Row{StreetValidationFailed, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                  "Die Validierung der Straße ist fehlgeschlagen")},
    Row{StreetValidationFailed2, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                   "Die Validierung der Straße fehlgeschlagen")},
    Row{ZipCodeValidationFailed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Validierung der Postleitzahl ist fehlgeschlagen")},
    Row{CityValidationFailed, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                "Die Validierung der Stadt ist fehlgeschlagen")},
    Row{CountrySettingMismatch,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Ländereinstellung stimmt nicht. Die Funktion 'Update' korrigiert "
                          "die Länderliste im Zuge eines Preisupdates.")},
    Row{AccountHasOpenOrders, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                "Ihr Konto kann leider nicht gelöscht werden, "
                                                "solange offene Bestellungen vorhanden sind.")},
    Row{UploadAborted, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                         "Der Upload musste abgebrochen werden. Bitte beenden Sie "
                                         "den Vorgang und starten Sie von vorne.")},
    Row{OrderWithoutPhotos, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                              "Sie können kein Produkt ohne Fotos bestellen!")},
    Row{PhotoFileFormatRejected,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Das angegebene Dateiformat für ein Foto wird nicht vom Server akzeptiert.")},
    Row{InvalidPartnerCode,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Partnercode ist nicht gültig.")},
    Row{CouponsNotCombinable,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Die von Ihnen eingegebenen Gutscheine können nicht zusammen eingelöst werden.")},
    Row{CouponAlreadyUsed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Gutschein wurde bereits benutzt.")},
    Row{TooManyDiscountCoupons,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Es können leider nur %1 Rabattgutscheine eingelöst werden.")},
    Row{CouponOnlyForCardHolders,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein ist nur für Kundenkartenbesitzer gültig.")},
    Row{CouponNotForThisSoftware,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der eingegebene Gutschein kann mit dieser Bestellsoftware leider nicht "
                          "eingelöst werden.")},
    Row{AlreadyRegistered,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Sie haben sich bereits einmal registriert. Eine mehrfache Registrierung "
                          "mit derselben E-Mail-Adresse ist nicht möglich. Bitte nutzen Sie ggf. "
                          "die \"Passwort vergessen\"-Funktion.")},
    Row{InvalidCouponCode,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Gutscheincode ist nicht gültig.")},
    Row{CouponMinimumQuantity,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein benötigt eine Mindestbestellmenge.")},
    Row{CouponCampaignExpired, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                 "Die Gutscheinaktion ist bereits abgelaufen.")},
    Row{CouponMinimumOrderValue,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein benötigt einen Mindestbestellwert.")},
    Row{CouponOnlyForNewCustomers,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein kann nur von Neukunden eingelöst werden.")},
    Row{CouponNotForDeliveryMethod,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein kann für diesen Lieferweg nicht eingelöst werden.")},
    Row{CouponOnlyForExistingCustomers,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Gutschein kann nur von Bestandskunden eingelöst werden.")},
    Row{CouponAlreadyRedeemed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Gutschein wurde bereits eingelöst.")},
    Row{SecurityAnswerWrong,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Antwort auf die Sicherheitsfrage ist nicht korrekt.")},
    Row{UnknownUser,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Unbekannter Benutzer.  Prüfen Sie Ihre Eingabe. Wenn Sie noch kein "
                          "Benutzerkonto besitzen, registrieren Sie sich bitte.")},
    Row{SoftwareUpToDate, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                            "Die Software befindet sich auf dem neuesten Stand.")},
    Row{InvalidCustomerCardNumber,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die von Ihnen eingegebene Kundenkartennummer ist nicht gültig.")},
    Row{InvalidPaybackNumber,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die von Ihnen eingegebene PAYBACK Kundennummer ist nicht gültig.")},
    Row{RequiredFieldMissing, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                                "Eine benötigte Angabe wurde nicht ausgefüllt.")},
    Row{SoftwareVersionNotSupported,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die eingesetzte Softwareversion wird nicht unterstützt")},
    Row{InvalidAddress, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                          "Die von Ihnen eingegebene Adresse ist ungültig.")},
    Row{ShippingNotPossibleWithPayment,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die von Ihnen ausgewählte Versandart ist mit der ausgewählten Zahlart "
                          "nicht möglich.")},
    Row{InvalidPickupLocation,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der von Ihnen ausgewählte Abholort ist ungültig.")},
    Row{InvalidBillingAddress,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Die von Ihnen ausgewählte Adresse ist nicht als Rechnungsadresse zulässig.")},
    Row{ZipCodeNotServedByCarrier,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Die angegebene Postleitzahl wird vom ausgewählten Versender nicht beliefert.")},
    Row{InvalidPostNumber,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die von Ihnen eingegebene Postnummer ist nicht gültig.")},
    Row{PasswordTooWeak,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Das von Ihnen gewählte Passwort entspricht nicht unseren "
                          "Datenschutzrichtlinien. Bitte wählen Sie ein stärkeres Passwort. ")},
    Row{GeneralUnknownError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Allgemeiner unbekannter Fehler. Bitte wenden Sie sich an den "
                          "Kundendienst, falls das Problem bestehen bleibt.")},
    Row{StoreClosedOrMissing,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Filiale existiert nicht bzw. wurde geschlossen. Falls Sie per Mail "
                          "Order bestellt haben, wurde das Zahlverfahren gestrichen. Bitte wählen "
                          "Sie ein anderes Zahlverfahren oder eine andere Filiale.")},
    Row{ShoppingCartProgramError,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Bei der Zusammenstellung des Warenkorbs ist ein Programmfehler aufgetreten. Bitte "
            "löschen Sie alle Artikel aus dem Warenkorb und legen Sie sie erneut hinein.")},
    Row{ZeroQuantityOrdered, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                               "Sie können nicht 0 Dinge einer Sorte bestellen.")},
    Row{PriceModelChanged, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                             "Das Preismodell hat sich geändert. Bitte starten Sie "
                                             "das Programm neu und bestellen Sie noch einmal.")},
    Row{InconsistentDiscountData,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Inkonsistente Discount-Daten")},
    Row{TooManyPhotosInOrder,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Anzahl der Fotos in einer Bestellung ist begrenzt. Leider haben Sie "
                          "dieses Limit überschritten. Löschen Sie bitte ein paar Fotos aus Ihrer "
                          "Bestellung und starten Sie die Bestellung neu.")},
    Row{ProductGroupPaymentNotSupported,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Eine Warengruppe unterstützt dieses Zahlverfahren nicht. Bitte suchen "
                          "Sie eine andere Zahlmethode aus und melden den Fehler an den "
                          "Kundendienst. Bitte geben Sie an, was Sie bestellt haben.")},
    Row{PaymentBlockedOpenInvoice,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Sie können diese Zahlungsart momentan nicht verwenden, weil eine "
                          "Rechnung von Ihnen aussteht.")},
    Row{PaymentWrongZipCode,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Sie haben eine falsche Postleitzahl angegeben. Bitte kontrollieren Sie, ob Sie diese "
            "korrekt angegeben haben. Falls ja, wählen Sie bitte ein anderes Zahlungsverfahren.")},
    Row{CreditCardTypeNotSupported,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Dieser Kreditkartentyp wird nicht unterstützt.")},
    Row{KlarnaInvoiceNotPossible,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Leider ist die Zahlung mit Klarna Rechnung nicht möglich. Bitte wählen "
                          "Sie ein anderes Zahlungsverfahren aus.")},
    Row{KlarnaAddressNotConfirmed,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Die eingegebenen Adress- und Mobilephone-Daten können nicht von Klarna bestätigt "
            "werden. Bitte überprüfen Sie Ihre Eingabe, insbesondere auf die korrekte Schreibweise "
            "und Vollständigkeit, und versuchen Sie es noch einmal.")},
    Row{PurchaseNotCompleted,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Bitte "
                          "wählen Sie ein anderes Zahlungsverfahren aus.")},
    Row{PurchaseNameMismatch,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Der von Ihnen "
            "angegebene Name stimmt nicht mit den Angaben im Melderegister überein. Bitte prüfen "
            "Sie, ob Vor- und Nachname richtig angegeben sind.")},
    Row{TooManyStoresForPartner,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Für diesen Online-Partner existieren zuviele Filialen.")},
    Row{WeeklyMaintenance,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Wöchentliche Wartungsarbeiten auf dem Server. Versuchen Sie es später noch einmal.")},
    Row{ServerCannotAnswer,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Server kann derzeit die Anfrage nicht beantworten.")},
    Row{OrderFormatRejected,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Server lehnt Auftrag aufgrund falschen Formats ab.")},
    Row{ServerDatabaseError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Datenbankfehler auf dem Server.")},
    Row{ServicesFullyLoaded,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Unsere Services sind im Moment voll ausgelastet.<br>Das Programm wird "
                          "in %2 Minuten die Verbindung erneut aufbauen.")},
    Row{PartnerLoginError, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                             "Anmeldefehler auf dem Server des Online-Partners.")},
    Row{UnsupportedRequest, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                              "Serverfehler. Nicht unterstützte Anfrage.")},
    Row{RemoteServerNotResponding,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Serverfehler. Entfernter Server antwortet nicht.")},
    Row{PartnerMisconfigured,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Serverfehler. Falsch konfigurierter Online-Partner.")},
    Row{NoAddressDataForUser,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Serverfehler. Für diesen Benutzer konnten keine Adressdaten gefunden werden.")},
    Row{DataConversionError,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Serverfehler. Umwandlungs bzw Anordnungsfehler in der Datenübertragung.")},
    Row{NetworkExceptionError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Serverfehler. Netzwerk-Ausnahmefehler.")},
    Row{TargetDirectoryMissing,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Das Zielverzeichnis existiert nicht.")},
    Row{FileEmpty, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Die Datei ist leer.")},
    Row{FileNotWritable, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                           "Die Datei kann nicht geschrieben werden.")},
    Row{FileNotReadable,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Die Datei kann nicht gelesen werden.")},
    Row{NetConnectionRefused,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Der Server verweigert die Verbindung (der Server akzeptiert keine Anfragen).")},
    Row{NetRemoteHostClosed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Server hat die Verbindung vorzeitig unterbrochen.")},
    Row{NetHostNotFound,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Servername konnte nicht gefunden werden (ungültiger Servername).")},
    Row{NetTimeout,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Server antwortet nicht (Timeout).")},
    Row{NetOperationCanceled,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap", "Der Server antwortet nicht (Timeout).")},
    Row{NetSslHandshakeFailed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der SSL/TLS Handshake ist fehlgeschlagen und es konnte keine "
                          "verschlüsselte Verbindung hergestellt werden.")},
    Row{NetUnknownNetworkError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Ein unbekannter Netwerkfehler ist aufgetreten.")},
    Row{NetProxyConnectionRefused,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Verbindung zum Proxy Server wurde verweigert (der Proxy Server "
                          "akzeptiert keine Anfragen).")},
    Row{NetProxyConnectionClosed,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Proxyserver hat die Verbindung vorzeitig beendet.")},
    Row{NetProxyNotFound,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Proxyname konnte nicht gefunden werden (ungültiger Proxyname).")},
    Row{NetProxyTimeout,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Operation zurückgesetzt. Der Proxy Server antwortet nicht (Timeout).")},
    Row{NetProxyAuthenticationRequired,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Authentifizierung gegenüber den Proxy ist nicht gelungen.")},
    Row{NetUnknownProxyError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Ein unbekannter Fehler beim Proxy Server ist aufgetreten.")},
    Row{NetContentAccessDenied,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Der Zugang zum Inhalt wurde verweigert (ähnlich HTTP error 401).")},
    Row{NetContentOperationNotPermitted,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die angeforderte Operation ist auf dem Inhalt nicht erlaubt.")},
    Row{NetContentNotFound,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Der angeforderte Inhalt wurde nicht gefunden (ähnlich HTTP error 404).")},
    Row{NetAuthenticationRequired,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die Authentifizierung gegenüber dem Server ist nicht gelungen.")},
    Row{NetUnknownContentError,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Ein unbekannter Fehler im Zusammenhang mit dem Inhalt ist aufgetreten.")},
    Row{NetProtocolUnknown,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Diese Netzwerk API unterstützt diese unbekannte Protokoll nicht.")},
    Row{NetProtocolInvalidOperation,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Die angeforderte Operation ist für dieses Protokoll nicht verfügbar.")},
    Row{NetProtocolFailure,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Im Protokoll ist ein Fehler aufgetreten (Parsing Fehler, ungültiger "
                          "oder unerwartete Reaktionen, etc.).")},
    Row{NoAnswerOnOrderCompletion,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Keine Antwort vom Server beim Abschließen der Bestellung. Es kann sein, dass die "
            "Bestellung trotzdem richtig abgeschlossen wurde. In diesem Fall erreicht Sie in etwa "
            "5-30 Minuten eine Bestätigungsmail. Wenn Sie den Vorgang abbrechen, senden Sie bitte "
            "innerhalb dieses Zeitraums die Bestellung <b>nicht</b> noch einmal, ansonsten kann es "
            "eine Doppelbestellung geben!")},
    Row{LoginServerUnreachable,
        QT_TRANSLATE_NOOP(
            "VXNetworkingErrorMessageMap",
            "Das Login kann nicht durchgeführt werden, da der Server nicht erreichbar ist.")},
    Row{NoNetworkConnection, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                               "Es ist keine Netzwerkverbindung vorhanden.")},
    Row{InvalidXmlResponse, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                              "Der Server antwortet nicht (Ungültiges XML).")},
    Row{LoginServerUnreachableContactSupport,
        QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                          "Das Login kann nicht durchgeführt werden, da der Server nicht "
                          "erreichbar ist. Bitte wenden Sie sich an den Kundendienst.")},
    Row{JsonParseError, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                          "Fehler beim Parsen eines JSON-Dokuments.")},
    Row{XmlParseError, QT_TRANSLATE_NOOP("VXNetworkingErrorMessageMap",
                                         "Fehler beim Parsen eines XML-Dokuments.")},
};
static_assert(std::ranges::is_sorted(rows, {}, &Row::code));

} // namespace

constinit QMap<VXNetworkingErrorCode, QString> VXNetworkingErrorMessageMap::myMessageMap;
constinit QMutex VXNetworkingErrorMessageMap::myInitMutex;
constinit QAtomicInt VXNetworkingErrorMessageMap::ourIsFilled;

VXNetworkingErrorMessageMap::VXNetworkingErrorMessageMap(QObject* theParent)
    : QObject(theParent)
{
}

VXNetworkingErrorMessageMap::~VXNetworkingErrorMessageMap() = default;

QString VXNetworkingErrorMessageMap::message(VXNetworkingErrorCode theCode) const
{
    initMap();
    return myMessageMap.value(theCode);
}

void VXNetworkingErrorMessageMap::updateInvalidLoginMessage(const QString& thePartnerName,
                                                            const QImage& theLogo) const
{
    initMap(); // a table with this one entry would count as filled
    myMessageMap.insert(InvalidLogin, invalidLoginMessage(thePartnerName, theLogo));
}

QString VXNetworkingErrorMessageMap::toBase64DataURL(const QImage& theImage) const
{
    QBuffer buffer;
    theImage.save(&buffer, "PNG");
    return u"data:image/PNG;base64,%1"_s.arg(QString::fromLatin1(buffer.data().toBase64()));
}

QString VXNetworkingErrorMessageMap::messagesDump() const
{
    initMap();
    QStringList lines;
    for (auto entry = myMessageMap.cbegin(); entry != myMessageMap.cend(); ++entry)
        lines << u"Code: %1 "_s.arg(entry.key(), 4) + u" => "_s + entry.value();
    return lines.join(u"\n\n"_s);
}

void VXNetworkingErrorMessageMap::initMap() const
{
    if (ourIsFilled.loadAcquire())
        return;
    const QMutexLocker locker(&myInitMutex);
    if (ourIsFilled.loadRelaxed())
        return;
    myMessageMap = filledMap(); // complete before the flag lets another thread read it
    ourIsFilled.storeRelease(1);
}

QMap<VXNetworkingErrorCode, QString> VXNetworkingErrorMessageMap::filledMap()
{
    QMap<VXNetworkingErrorCode, QString> map;
    for (const Row& row : rows)
        map.insert(row.code, tr(row.text));

    // The mail-order sentence comes first, on purpose.
    map.insert(InvalidServerDataNoMailOrder,
               tr("Derzeit ist keine Bestellung per Mailorder möglich (Default Mail Order Location "
                  "fehlt)") +
                   u' ' +
                   tr("Fehlerhafte Daten vom Server. Bitte wenden Sie sich an den Kundendienst."));

    map.insert(InvalidLogin, plainLoginMessage());
    map.insert(InvalidLogin2, map.value(InvalidLogin));
    map.insert(ShoppingCartProgramError2, map.value(ShoppingCartProgramError));
    map.insert(ServicesBusyRetryLater, map.value(ServicesFullyLoaded));
    return map;
}

QString VXNetworkingErrorMessageMap::invalidLoginMessage(const QString& thePartnerName,
                                                         const QImage& theLogo) const
{
    if (theLogo.isNull() || !VXKeyAccount::instance()->isGeneric())
        return plainLoginMessage();
    return tr("<style>.nobr {white-space: nowrap}</style>Sie konnten sich nicht "
              "anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login und Passwort "
              "vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li><li>Bitte "
              "beachten Sie, dass Ihre Anmeldedaten bei anderen Handelspartnern nicht verwendet "
              "werden können.<br><p class=nobr>%1 <img src=\"%2\" alt=\"Logo\" "
              "style=\"vertical-align:top\"/></p></li></ul>")
        .arg(thePartnerName, toBase64DataURL(theLogo));
}

QString VXNetworkingErrorMessageMap::plainLoginMessage()
{
    return tr(
        "Sie konnten sich nicht anmelden.<p>Mögliche Lösungen:<ul><li>Haben Sie sich beim Login "
        "und Passwort vertippt?</li><li>Nutzen Sie die 'Passwort vergessen'-Funktion</li></ul>");
}
