<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB" sourcelanguage="de_DE">
<context>
    <name>VXAutoCloseMessageBox</name>
    <message>
        <source>Verbleibende Zeit</source>
        <translation>Time remaining</translation>
    </message>
    <message>
        <source>Automatische Fortsetzung in %1:%2</source>
        <translation>Continuing automatically in %1:%2</translation>
    </message>
    <message>
        <source>Automatische Fortsetzung in 1 Sekunde</source>
        <translation>Continuing automatically in 1 second</translation>
    </message>
    <message>
        <source>Automatische Fortsetzung in %1 Sekunden</source>
        <translation>Continuing automatically in %1 seconds</translation>
    </message>
</context>
<context>
    <name>VXBrowserDialog</name>
    <message>
        <source>VXBrowserDialog</source>
        <translation>Browser</translation>
    </message>
    <message>
        <source>URL laden</source>
        <translation>Load URL</translation>
    </message>
    <message>
        <source>Drucken</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>Speichern</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Sichern als...</source>
        <translation>Save as...</translation>
    </message>
    <message>
        <source>PDF-Files (*.pdf)</source>
        <translation>PDF files (*.pdf)</translation>
    </message>
</context>
<context>
    <name>VXLocalUploadService</name>
    <message>
        <source>Kopierte Fotos</source>
        <translation>Copied photos</translation>
    </message>
    <message>
        <source>Wählen Sie Fotos von Ihrem Mobiltelefon</source>
        <translation>Choose photos from your mobile phone</translation>
    </message>
    <message>
        <source>Fotos werden übertragen</source>
        <translation>Transferring photos</translation>
    </message>
    <message>
        <source>Die Fotos wurden erfolgreich übertragen</source>
        <translation>Your photos have been transferred successfully</translation>
    </message>
    <message>
        <source>Verbindung konnte nicht hergestellt werden.&lt;br&gt; Bitte scannen Sie erneut den QR-Code.</source>
        <translation>The connection could not be established.&lt;br&gt; Please scan the QR code again.</translation>
    </message>
    <message>
        <source>Fotos auswählen</source>
        <translation>Select photos</translation>
    </message>
    <message>
        <source>Norvo – Fotos übertragen</source>
        <translation>Norvo – Transfer photos</translation>
    </message>
    <message>
        <source>Es konnte keine Schnittstelle für eingehende Netzwerkverbindungen bereitgestellt werden.
Bitte überprüfen sie Ihre Firewall und Netzwerkeinstellungen.</source>
        <translation>No interface could be made available for incoming network connections.
Please check your firewall and network settings.</translation>
    </message>
</context>
<context>
    <name>VXLocalUploadServiceView</name>
    <message>
        <source>QR-Code scannen</source>
        <translation>Scan QR code</translation>
    </message>
    <message>
        <source>Scannen Sie den QR-Code, um Fotos von Ihrem Mobiltelefon auf dieses Gerät zu übertragen.</source>
        <translation>Scan the QR code to transfer photos from your mobile phone to this device.</translation>
    </message>
    <message>
        <source>Andere Verbindung probieren</source>
        <translation>Try another connection</translation>
    </message>
    <message>
        <source>Beide Geräte benötigen dasselbe WLAN</source>
        <translation>Both devices must be on the same Wi-Fi network</translation>
    </message>
    <message>
        <source>Speicherort</source>
        <translation>Save to</translation>
    </message>
    <message>
        <source>Ändern</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>Zielverzeichnis wählen</source>
        <translation>Choose target folder</translation>
    </message>
    <message>
        <source>Verbindung %1 von %2</source>
        <translation>Connection %1 of %2</translation>
    </message>
</context>
<context>
    <name>VXMessageBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Wiederholen</source>
        <translation>Retry</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Ja</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>Nein</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Schließen</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Details verbergen</source>
        <translation>Hide details</translation>
    </message>
    <message>
        <source>Details anzeigen</source>
        <translation>Show details</translation>
    </message>
</context>
<context>
    <name>VXNetworkingError</name>
    <message>
        <source>HTTP-Fehler %1 bei der Übertragung.</source>
        <translation>HTTP error %1 during the transfer.</translation>
    </message>
    <message>
        <source>Bitte überprüfen Sie die Netzwerkeinstellungen Ihres Systems und die Proxyeinstellungen im Menü Extras/Optionen/Netzwerk. Bitte beachten Sie, dass in der Firewall die Ports 80 und 443 freigeschaltet sein müssen.</source>
        <translation>Please check your system&apos;s network settings and the proxy settings in the menu Tools/Options/Network. Please note that ports 80 and 443 must be open in your firewall.</translation>
    </message>
    <message>
        <source>Fehlercode: %1</source>
        <translation>Error code: %1</translation>
    </message>
    <message>
        <source>Quelle: %1</source>
        <translation>Source: %1</translation>
    </message>
    <message>
        <source>Detail: %1</source>
        <translation>Detail: %1</translation>
    </message>
</context>
<context>
    <name>VXNetworkingErrorMessageMap</name>
    <message>
        <source>Kein Fehler.</source>
        <translation>No error.</translation>
    </message>
    <message>
        <source>Client Version ist zu alt. Kommunikation verweigert. Bitte installieren Sie eine neuere Version dieser Software.</source>
        <translation>This version of the software is too old, so the server has refused the connection. Please install a newer version.</translation>
    </message>
    <message>
        <source>Ungültige Session ID.</source>
        <translation>Invalid session ID.</translation>
    </message>
    <message>
        <source>Ihre E-Mail-Adresse ist nicht korrekt.</source>
        <translation>Your email address is not correct.</translation>
    </message>
    <message>
        <source>Die Validierung der Sicherheitsfrage ist fehlgeschlagen</source>
        <translation>The security question could not be validated</translation>
    </message>
    <message>
        <source>Die Validierung der Sicherheitsantwort ist fehlgeschlagen</source>
        <translation>The security answer could not be validated</translation>
    </message>
    <message>
        <source>Wir haben in den letzten zwei Stunden einen Auftrag von Ihnen erhalten, der diesem sehr ähnlich ist.</source>
        <translation>In the last two hours we have received an order from you that is very similar to this one.</translation>
    </message>
    <message>
        <source>Die Validierung der Straße ist fehlgeschlagen</source>
        <translation>The street could not be validated</translation>
    </message>
    <message>
        <source>Die Validierung der Straße fehlgeschlagen</source>
        <translation>The street could not be validated</translation>
    </message>
    <message>
        <source>Die Validierung der Postleitzahl ist fehlgeschlagen</source>
        <translation>The postcode could not be validated</translation>
    </message>
    <message>
        <source>Die Validierung der Stadt ist fehlgeschlagen</source>
        <translation>The town or city could not be validated</translation>
    </message>
    <message>
        <source>Die Ländereinstellung stimmt nicht. Die Funktion &apos;Update&apos; korrigiert die Länderliste im Zuge eines Preisupdates.</source>
        <translation>The country setting is not correct. The &apos;Update&apos; function corrects the list of countries as part of a price update.</translation>
    </message>
    <message>
        <source>Ihr Konto kann leider nicht gelöscht werden, solange offene Bestellungen vorhanden sind.</source>
        <translation>Unfortunately, your account cannot be deleted while there are open orders.</translation>
    </message>
    <message>
        <source>Der Upload musste abgebrochen werden. Bitte beenden Sie den Vorgang und starten Sie von vorne.</source>
        <translation>The upload had to be cancelled. Please end the process and start again from the beginning.</translation>
    </message>
    <message>
        <source>Sie können kein Produkt ohne Fotos bestellen!</source>
        <translation>You cannot order a product without photos!</translation>
    </message>
    <message>
        <source>Das angegebene Dateiformat für ein Foto wird nicht vom Server akzeptiert.</source>
        <translation>The server does not accept the file format of one of the photos.</translation>
    </message>
    <message>
        <source>Der Partnercode ist nicht gültig.</source>
        <translation>The partner code is not valid.</translation>
    </message>
    <message>
        <source>Die von Ihnen eingegebenen Gutscheine können nicht zusammen eingelöst werden.</source>
        <translation>The vouchers you entered cannot be redeemed together.</translation>
    </message>
    <message>
        <source>Der Gutschein wurde bereits benutzt.</source>
        <translation>This voucher has already been used.</translation>
    </message>
    <message>
        <source>Es können leider nur %1 Rabattgutscheine eingelöst werden.</source>
        <translation>Unfortunately, no more than %1 discount vouchers can be redeemed.</translation>
    </message>
    <message>
        <source>Der Gutschein ist nur für Kundenkartenbesitzer gültig.</source>
        <translation>This voucher is valid for loyalty card holders only.</translation>
    </message>
    <message>
        <source>Der eingegebene Gutschein kann mit dieser Bestellsoftware leider nicht eingelöst werden.</source>
        <translation>Unfortunately, the voucher you entered cannot be redeemed with this ordering software.</translation>
    </message>
    <message>
        <source>Sie haben sich bereits einmal registriert. Eine mehrfache Registrierung mit derselben E-Mail-Adresse ist nicht möglich. Bitte nutzen Sie ggf. die &quot;Passwort vergessen&quot;-Funktion.</source>
        <translation>You have already registered. It is not possible to register more than once with the same email address. If necessary, please use the &quot;Forgotten password&quot; function.</translation>
    </message>
    <message>
        <source>Der Gutscheincode ist nicht gültig.</source>
        <translation>The voucher code is not valid.</translation>
    </message>
    <message>
        <source>Der Gutschein benötigt eine Mindestbestellmenge.</source>
        <translation>This voucher requires a minimum order quantity.</translation>
    </message>
    <message>
        <source>Die Gutscheinaktion ist bereits abgelaufen.</source>
        <translation>This voucher promotion has already ended.</translation>
    </message>
    <message>
        <source>Der Gutschein benötigt einen Mindestbestellwert.</source>
        <translation>This voucher requires a minimum order value.</translation>
    </message>
    <message>
        <source>Der Gutschein kann nur von Neukunden eingelöst werden.</source>
        <translation>This voucher can be redeemed by new customers only.</translation>
    </message>
    <message>
        <source>Der Gutschein kann für diesen Lieferweg nicht eingelöst werden.</source>
        <translation>This voucher cannot be redeemed for this delivery method.</translation>
    </message>
    <message>
        <source>Der Gutschein kann nur von Bestandskunden eingelöst werden.</source>
        <translation>This voucher can be redeemed by existing customers only.</translation>
    </message>
    <message>
        <source>Der Gutschein wurde bereits eingelöst.</source>
        <translation>This voucher has already been redeemed.</translation>
    </message>
    <message>
        <source>Die Antwort auf die Sicherheitsfrage ist nicht korrekt.</source>
        <translation>The answer to the security question is not correct.</translation>
    </message>
    <message>
        <source>Unbekannter Benutzer.  Prüfen Sie Ihre Eingabe. Wenn Sie noch kein Benutzerkonto besitzen, registrieren Sie sich bitte.</source>
        <translation>Unknown user. Please check what you entered. If you do not have an account yet, please register.</translation>
    </message>
    <message>
        <source>Die Software befindet sich auf dem neuesten Stand.</source>
        <translation>The software is up to date.</translation>
    </message>
    <message>
        <source>Die von Ihnen eingegebene Kundenkartennummer ist nicht gültig.</source>
        <translation>The loyalty card number you entered is not valid.</translation>
    </message>
    <message>
        <source>Die von Ihnen eingegebene PAYBACK Kundennummer ist nicht gültig.</source>
        <translation>The PAYBACK customer number you entered is not valid.</translation>
    </message>
    <message>
        <source>Eine benötigte Angabe wurde nicht ausgefüllt.</source>
        <translation>A required field has not been filled in.</translation>
    </message>
    <message>
        <source>Die eingesetzte Softwareversion wird nicht unterstützt</source>
        <translation>The software version you are using is not supported</translation>
    </message>
    <message>
        <source>Die von Ihnen eingegebene Adresse ist ungültig.</source>
        <translation>The address you entered is not valid.</translation>
    </message>
    <message>
        <source>Die von Ihnen ausgewählte Versandart ist mit der ausgewählten Zahlart nicht möglich.</source>
        <translation>The shipping method you selected is not available with the selected payment method.</translation>
    </message>
    <message>
        <source>Der von Ihnen ausgewählte Abholort ist ungültig.</source>
        <translation>The collection point you selected is not valid.</translation>
    </message>
    <message>
        <source>Die von Ihnen ausgewählte Adresse ist nicht als Rechnungsadresse zulässig.</source>
        <translation>The address you selected cannot be used as a billing address.</translation>
    </message>
    <message>
        <source>Die angegebene Postleitzahl wird vom ausgewählten Versender nicht beliefert.</source>
        <translation>The selected carrier does not deliver to this postcode.</translation>
    </message>
    <message>
        <source>Die von Ihnen eingegebene Postnummer ist nicht gültig.</source>
        <translation>The post number you entered is not valid.</translation>
    </message>
    <message>
        <source>Das von Ihnen gewählte Passwort entspricht nicht unseren Datenschutzrichtlinien. Bitte wählen Sie ein stärkeres Passwort. </source>
        <translation>The password you chose does not comply with our data protection guidelines. Please choose a stronger password. </translation>
    </message>
    <message>
        <source>Allgemeiner unbekannter Fehler. Bitte wenden Sie sich an den Kundendienst, falls das Problem bestehen bleibt.</source>
        <translation>An unknown error has occurred. Please contact customer service if the problem persists.</translation>
    </message>
    <message>
        <source>Die Filiale existiert nicht bzw. wurde geschlossen. Falls Sie per Mail Order bestellt haben, wurde das Zahlverfahren gestrichen. Bitte wählen Sie ein anderes Zahlverfahren oder eine andere Filiale.</source>
        <translation>The store does not exist or has been closed. If you ordered by mail order, the payment method has been withdrawn. Please choose another payment method or another store.</translation>
    </message>
    <message>
        <source>Bei der Zusammenstellung des Warenkorbs ist ein Programmfehler aufgetreten. Bitte löschen Sie alle Artikel aus dem Warenkorb und legen Sie sie erneut hinein.</source>
        <translation>A program error occurred while your basket was being put together. Please remove all items from the basket and add them again.</translation>
    </message>
    <message>
        <source>Sie können nicht 0 Dinge einer Sorte bestellen.</source>
        <translation>You cannot order an item in a quantity of 0.</translation>
    </message>
    <message>
        <source>Das Preismodell hat sich geändert. Bitte starten Sie das Programm neu und bestellen Sie noch einmal.</source>
        <translation>The price model has changed. Please restart the program and place your order again.</translation>
    </message>
    <message>
        <source>Inkonsistente Discount-Daten</source>
        <translation>Inconsistent discount data</translation>
    </message>
    <message>
        <source>Die Anzahl der Fotos in einer Bestellung ist begrenzt. Leider haben Sie dieses Limit überschritten. Löschen Sie bitte ein paar Fotos aus Ihrer Bestellung und starten Sie die Bestellung neu.</source>
        <translation>The number of photos in an order is limited, and unfortunately you have exceeded this limit. Please remove some photos from your order and start the order again.</translation>
    </message>
    <message>
        <source>Eine Warengruppe unterstützt dieses Zahlverfahren nicht. Bitte suchen Sie eine andere Zahlmethode aus und melden den Fehler an den Kundendienst. Bitte geben Sie an, was Sie bestellt haben.</source>
        <translation>One of the product groups does not support this payment method. Please choose another payment method and report the error to customer service, stating what you ordered.</translation>
    </message>
    <message>
        <source>Sie können diese Zahlungsart momentan nicht verwenden, weil eine Rechnung von Ihnen aussteht.</source>
        <translation>You cannot use this payment method at present because you have an unpaid invoice.</translation>
    </message>
    <message>
        <source>Sie haben eine falsche Postleitzahl angegeben. Bitte kontrollieren Sie, ob Sie diese korrekt angegeben haben. Falls ja, wählen Sie bitte ein anderes Zahlungsverfahren.</source>
        <translation>The postcode you entered is not correct. Please check that you entered it correctly. If you did, please choose another payment method.</translation>
    </message>
    <message>
        <source>Dieser Kreditkartentyp wird nicht unterstützt.</source>
        <translation>This type of credit card is not supported.</translation>
    </message>
    <message>
        <source>Leider ist die Zahlung mit Klarna Rechnung nicht möglich. Bitte wählen Sie ein anderes Zahlungsverfahren aus.</source>
        <translation>Unfortunately, it is not possible to pay by Klarna invoice. Please choose another payment method.</translation>
    </message>
    <message>
        <source>Die eingegebenen Adress- und Mobilephone-Daten können nicht von Klarna bestätigt werden. Bitte überprüfen Sie Ihre Eingabe, insbesondere auf die korrekte Schreibweise und Vollständigkeit, und versuchen Sie es noch einmal.</source>
        <translation>Klarna cannot confirm the address and mobile phone details you entered. Please check them, making sure in particular that they are complete and spelled correctly, and try again.</translation>
    </message>
    <message>
        <source>Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Bitte wählen Sie ein anderes Zahlungsverfahren aus.</source>
        <translation>Unfortunately, your purchase cannot be completed. Please choose another payment method.</translation>
    </message>
    <message>
        <source>Leider kann Ihr Einkauf nicht erfolgreich abgeschlossen werden. Der von Ihnen angegebene Name stimmt nicht mit den Angaben im Melderegister überein. Bitte prüfen Sie, ob Vor- und Nachname richtig angegeben sind.</source>
        <translation>Unfortunately, your purchase cannot be completed. The name you entered does not match the details in the population register. Please check that your first name and surname are correct.</translation>
    </message>
    <message>
        <source>Für diesen Online-Partner existieren zuviele Filialen.</source>
        <translation>There are too many stores for this online partner.</translation>
    </message>
    <message>
        <source>Wöchentliche Wartungsarbeiten auf dem Server. Versuchen Sie es später noch einmal.</source>
        <translation>The server is undergoing its weekly maintenance. Please try again later.</translation>
    </message>
    <message>
        <source>Der Server kann derzeit die Anfrage nicht beantworten.</source>
        <translation>The server cannot answer the request at the moment.</translation>
    </message>
    <message>
        <source>Server lehnt Auftrag aufgrund falschen Formats ab.</source>
        <translation>The server has rejected the order because its format is incorrect.</translation>
    </message>
    <message>
        <source>Datenbankfehler auf dem Server.</source>
        <translation>Database error on the server.</translation>
    </message>
    <message>
        <source>Unsere Services sind im Moment voll ausgelastet.&lt;br&gt;Das Programm wird in %2 Minuten die Verbindung erneut aufbauen.</source>
        <translation>Our services are very busy at the moment.&lt;br&gt;The program will reconnect in %2 minutes.</translation>
    </message>
    <message>
        <source>Anmeldefehler auf dem Server des Online-Partners.</source>
        <translation>Login error on the online partner&apos;s server.</translation>
    </message>
    <message>
        <source>Serverfehler. Nicht unterstützte Anfrage.</source>
        <translation>Server error. Unsupported request.</translation>
    </message>
    <message>
        <source>Serverfehler. Entfernter Server antwortet nicht.</source>
        <translation>Server error. The remote server is not responding.</translation>
    </message>
    <message>
        <source>Serverfehler. Falsch konfigurierter Online-Partner.</source>
        <translation>Server error. The online partner is not configured correctly.</translation>
    </message>
    <message>
        <source>Serverfehler. Für diesen Benutzer konnten keine Adressdaten gefunden werden.</source>
        <translation>Server error. No address details could be found for this user.</translation>
    </message>
    <message>
        <source>Serverfehler. Umwandlungs bzw Anordnungsfehler in der Datenübertragung.</source>
        <translation>Server error. Conversion or ordering error during the data transfer.</translation>
    </message>
    <message>
        <source>Serverfehler. Netzwerk-Ausnahmefehler.</source>
        <translation>Server error. A network exception occurred.</translation>
    </message>
    <message>
        <source>Das Zielverzeichnis existiert nicht.</source>
        <translation>The target folder does not exist.</translation>
    </message>
    <message>
        <source>Die Datei ist leer.</source>
        <translation>The file is empty.</translation>
    </message>
    <message>
        <source>Die Datei kann nicht geschrieben werden.</source>
        <translation>The file cannot be written.</translation>
    </message>
    <message>
        <source>Die Datei kann nicht gelesen werden.</source>
        <translation>The file cannot be read.</translation>
    </message>
    <message>
        <source>Der Server verweigert die Verbindung (der Server akzeptiert keine Anfragen).</source>
        <translation>The server refused the connection (it is not accepting requests).</translation>
    </message>
    <message>
        <source>Der Server hat die Verbindung vorzeitig unterbrochen.</source>
        <translation>The server closed the connection prematurely.</translation>
    </message>
    <message>
        <source>Der Servername konnte nicht gefunden werden (ungültiger Servername).</source>
        <translation>The server name could not be found (invalid server name).</translation>
    </message>
    <message>
        <source>Der Server antwortet nicht (Timeout).</source>
        <translation>The server is not responding (timeout).</translation>
    </message>
    <message>
        <source>Der SSL/TLS Handshake ist fehlgeschlagen und es konnte keine verschlüsselte Verbindung hergestellt werden.</source>
        <translation>The SSL/TLS handshake failed, so an encrypted connection could not be established.</translation>
    </message>
    <message>
        <source>Ein unbekannter Netwerkfehler ist aufgetreten.</source>
        <translation>An unknown network error has occurred.</translation>
    </message>
    <message>
        <source>Die Verbindung zum Proxy Server wurde verweigert (der Proxy Server akzeptiert keine Anfragen).</source>
        <translation>The proxy server refused the connection (it is not accepting requests).</translation>
    </message>
    <message>
        <source>Der Proxyserver hat die Verbindung vorzeitig beendet.</source>
        <translation>The proxy server closed the connection prematurely.</translation>
    </message>
    <message>
        <source>Der Proxyname konnte nicht gefunden werden (ungültiger Proxyname).</source>
        <translation>The proxy name could not be found (invalid proxy name).</translation>
    </message>
    <message>
        <source>Operation zurückgesetzt. Der Proxy Server antwortet nicht (Timeout).</source>
        <translation>Operation reset. The proxy server is not responding (timeout).</translation>
    </message>
    <message>
        <source>Die Authentifizierung gegenüber den Proxy ist nicht gelungen.</source>
        <translation>Authentication with the proxy failed.</translation>
    </message>
    <message>
        <source>Ein unbekannter Fehler beim Proxy Server ist aufgetreten.</source>
        <translation>An unknown error occurred on the proxy server.</translation>
    </message>
    <message>
        <source>Der Zugang zum Inhalt wurde verweigert (ähnlich HTTP error 401).</source>
        <translation>Access to the content was denied (similar to HTTP error 401).</translation>
    </message>
    <message>
        <source>Die angeforderte Operation ist auf dem Inhalt nicht erlaubt.</source>
        <translation>The requested operation is not permitted on the content.</translation>
    </message>
    <message>
        <source>Der angeforderte Inhalt wurde nicht gefunden (ähnlich HTTP error 404).</source>
        <translation>The requested content was not found (similar to HTTP error 404).</translation>
    </message>
    <message>
        <source>Die Authentifizierung gegenüber dem Server ist nicht gelungen.</source>
        <translation>Authentication with the server failed.</translation>
    </message>
    <message>
        <source>Ein unbekannter Fehler im Zusammenhang mit dem Inhalt ist aufgetreten.</source>
        <translation>An unknown error occurred in connection with the content.</translation>
    </message>
    <message>
        <source>Diese Netzwerk API unterstützt diese unbekannte Protokoll nicht.</source>
        <translation>The protocol is unknown and is not supported by this network API.</translation>
    </message>
    <message>
        <source>Die angeforderte Operation ist für dieses Protokoll nicht verfügbar.</source>
        <translation>The requested operation is not available for this protocol.</translation>
    </message>
    <message>
        <source>Im Protokoll ist ein Fehler aufgetreten (Parsing Fehler, ungültiger oder unerwartete Reaktionen, etc.).</source>
        <translation>A protocol error occurred (parsing error, invalid or unexpected responses, etc.).</translation>
    </message>
    <message>
        <source>Keine Antwort vom Server beim Abschließen der Bestellung. Es kann sein, dass die Bestellung trotzdem richtig abgeschlossen wurde. In diesem Fall erreicht Sie in etwa 5-30 Minuten eine Bestätigungsmail. Wenn Sie den Vorgang abbrechen, senden Sie bitte innerhalb dieses Zeitraums die Bestellung &lt;b&gt;nicht&lt;/b&gt; noch einmal, ansonsten kann es eine Doppelbestellung geben!</source>
        <translation>The server did not respond while your order was being completed. The order may have been completed correctly nevertheless. In that case you will receive a confirmation email in about 5–30 minutes. If you cancel now, please do &lt;b&gt;not&lt;/b&gt; send the order again within this time; otherwise you may end up ordering twice!</translation>
    </message>
    <message>
        <source>Das Login kann nicht durchgeführt werden, da der Server nicht erreichbar ist.</source>
        <translation>You cannot be logged in because the server cannot be reached.</translation>
    </message>
    <message>
        <source>Es ist keine Netzwerkverbindung vorhanden.</source>
        <translation>There is no network connection.</translation>
    </message>
    <message>
        <source>Der Server antwortet nicht (Ungültiges XML).</source>
        <translation>The server is not responding (invalid XML).</translation>
    </message>
    <message>
        <source>Das Login kann nicht durchgeführt werden, da der Server nicht erreichbar ist. Bitte wenden Sie sich an den Kundendienst.</source>
        <translation>You cannot be logged in because the server cannot be reached. Please contact customer service.</translation>
    </message>
    <message>
        <source>Fehler beim Parsen eines JSON-Dokuments.</source>
        <translation>Error while parsing a JSON document.</translation>
    </message>
    <message>
        <source>Fehler beim Parsen eines XML-Dokuments.</source>
        <translation>Error while parsing an XML document.</translation>
    </message>
    <message>
        <source>Derzeit ist keine Bestellung per Mailorder möglich (Default Mail Order Location fehlt)</source>
        <translation>Ordering by mail order is not possible at present (the default mail order location is missing).</translation>
    </message>
    <message>
        <source>Fehlerhafte Daten vom Server. Bitte wenden Sie sich an den Kundendienst.</source>
        <translation>The server sent incorrect data. Please contact customer service.</translation>
    </message>
    <message>
        <source>&lt;style&gt;.nobr {white-space: nowrap}&lt;/style&gt;Sie konnten sich nicht anmelden.&lt;p&gt;Mögliche Lösungen:&lt;ul&gt;&lt;li&gt;Haben Sie sich beim Login und Passwort vertippt?&lt;/li&gt;&lt;li&gt;Nutzen Sie die &apos;Passwort vergessen&apos;-Funktion&lt;/li&gt;&lt;li&gt;Bitte beachten Sie, dass Ihre Anmeldedaten bei anderen Handelspartnern nicht verwendet werden können.&lt;br&gt;&lt;p class=nobr&gt;%1 &lt;img src=&quot;%2&quot; alt=&quot;Logo&quot; style=&quot;vertical-align:top&quot;/&gt;&lt;/p&gt;&lt;/li&gt;&lt;/ul&gt;</source>
        <translation>&lt;style&gt;.nobr {white-space: nowrap}&lt;/style&gt;You could not be logged in.&lt;p&gt;Possible solutions:&lt;ul&gt;&lt;li&gt;Did you mistype your user name or password?&lt;/li&gt;&lt;li&gt;Use the &apos;Forgotten password&apos; function&lt;/li&gt;&lt;li&gt;Please note that your login details cannot be used with other retail partners.&lt;br&gt;&lt;p class=nobr&gt;%1 &lt;img src=&quot;%2&quot; alt=&quot;Logo&quot; style=&quot;vertical-align:top&quot;/&gt;&lt;/p&gt;&lt;/li&gt;&lt;/ul&gt;</translation>
    </message>
    <message>
        <source>Sie konnten sich nicht anmelden.&lt;p&gt;Mögliche Lösungen:&lt;ul&gt;&lt;li&gt;Haben Sie sich beim Login und Passwort vertippt?&lt;/li&gt;&lt;li&gt;Nutzen Sie die &apos;Passwort vergessen&apos;-Funktion&lt;/li&gt;&lt;/ul&gt;</source>
        <translation>You could not be logged in.&lt;p&gt;Possible solutions:&lt;ul&gt;&lt;li&gt;Did you mistype your user name or password?&lt;/li&gt;&lt;li&gt;Use the &apos;Forgotten password&apos; function&lt;/li&gt;&lt;/ul&gt;</translation>
    </message>
</context>
<context>
    <name>VXNetworkingErrorSeverityMessageMap</name>
    <message>
        <source>Kein Fehler</source>
        <translation>No error</translation>
    </message>
    <message>
        <source>Unbehebbarer Fehler.</source>
        <translation>Unrecoverable error.</translation>
    </message>
    <message>
        <source>Programmfehler!</source>
        <translation>Program error!</translation>
    </message>
    <message>
        <source>Fehlerhafte Daten! Bitte überpüfen Sie Ihre Eingaben</source>
        <translation>Incorrect data! Please check what you entered</translation>
    </message>
    <message>
        <source>Remote System Fehler. Bitte versuchen Sie es später erneut</source>
        <translation>Remote system error. Please try again later</translation>
    </message>
    <message>
        <source>Keine Verbindung zum Server. Bitte überprüfen Sie Ihre Internetverbindung und versuchen Sie es erneut</source>
        <translation>No connection to the server. Please check your internet connection and try again</translation>
    </message>
    <message>
        <source>Bitte versuchen Sie es erneut!</source>
        <translation>Please try again!</translation>
    </message>
    <message>
        <source>Programmfehler bei der Deklaration der Bestellung.</source>
        <translation>Program error in the declaration of the order.</translation>
    </message>
    <message>
        <source>Bitte wenden Sie sich an den Kundendienst!</source>
        <translation>Please contact customer service!</translation>
    </message>
</context>
<context>
    <name>VXOAuth2ExternalLoginDialog</name>
    <message>
        <source>Sie können diese Seite jetzt schließen und zu &lt;strong&gt;%3&lt;/strong&gt; zurückkehren.</source>
        <translation>You can now close this page and return to &lt;strong&gt;%3&lt;/strong&gt;.</translation>
    </message>
</context>
<context>
    <name>VXOAuth2ExternalLoginDialogBase</name>
    <message>
        <source>Anmeldung mit:</source>
        <translation>Log in with:</translation>
    </message>
    <message>
        <source>Für den Login mit %1 ist ein neues Fenster Ihres
Internetbrowsers geöffnet worden. Bitte melden Sie sich dort an.

Nach erfolgreicher Anmeldung wird dieser Hinweisdialog
automatisch geschlossen.</source>
        <translation>A new window has been opened in your web browser
for you to log in with %1. Please log in there.

Once you have logged in, this message
will close automatically.</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>VXOAuth2LoginDialog</name>
    <message>
        <source>Autorisierung speichern und beim nächsten Mal automatisch anmelden</source>
        <translation>Save the authorisation and log in automatically next time</translation>
    </message>
    <message>
        <source>Bitte warten, Verbindung zu %1 wird hergestellt ...</source>
        <translation>Please wait, connecting to %1...</translation>
    </message>
    <message>
        <source>%1 nicht erreichbar</source>
        <translation>%1 cannot be reached</translation>
    </message>
    <message>
        <source>Leider konnte keine Verbindung zu %1 hergestellt werden.
Bitte überprüfen Sie Ihre Netzwerkverbindung.</source>
        <translation>Unfortunately, a connection to %1 could not be established.
Please check your network connection.</translation>
    </message>
</context>
<context>
    <name>VXPasswordDialog</name>
    <message>
        <source>Anmeldung erforderlich</source>
        <translation>Login required</translation>
    </message>
    <message>
        <source>Passwort an&amp;zeigen</source>
        <translation>&amp;Show password</translation>
    </message>
    <message>
        <source>&amp;Benutzername</source>
        <translation>&amp;User name</translation>
    </message>
    <message>
        <source>&amp;Passwort</source>
        <translation>&amp;Password</translation>
    </message>
</context>
<context>
    <name>VXPreferencesProxy</name>
    <message>
        <source>Proxy Einstellungen</source>
        <translation>Proxy settings</translation>
    </message>
    <message>
        <source>Falls Ihr Provider einen HTTP-Proxy vorsieht, können Sie ihn hier angeben:</source>
        <comment>LABEL</comment>
        <translation>If your provider requires an HTTP proxy, you can enter it here:</translation>
    </message>
    <message>
        <source>Keinen Proxy benutzen</source>
        <comment>RADIOBUTTON</comment>
        <translation>Do not use a proxy</translation>
    </message>
    <message>
        <source>System-Proxy benutzen</source>
        <comment>RADIOBUTTON</comment>
        <translation>Use the system proxy</translation>
    </message>
    <message>
        <source>Eigenen Proxy benutzen</source>
        <comment>RADIOBUTTON</comment>
        <translation>Use a custom proxy</translation>
    </message>
    <message>
        <source>Proxy</source>
        <comment>LABEL</comment>
        <translation>Proxy</translation>
    </message>
    <message>
        <source>Port</source>
        <comment>LABEL</comment>
        <translation>Port</translation>
    </message>
    <message>
        <source>Typ</source>
        <comment>LABEL</comment>
        <translation>Type</translation>
    </message>
    <message>
        <source>Login</source>
        <comment>GROUPBOX</comment>
        <translation>User name</translation>
    </message>
    <message>
        <source>Password</source>
        <comment>GROUPBOX</comment>
        <translation>Password</translation>
    </message>
    <message>
        <source>HTTP</source>
        <comment>COMBOBOX</comment>
        <translation>HTTP</translation>
    </message>
    <message>
        <source>HTTP Caching</source>
        <comment>COMBOBOX</comment>
        <translation>HTTP caching</translation>
    </message>
    <message>
        <source>Socks5</source>
        <comment>COMBOBOX</comment>
        <translation>SOCKS5</translation>
    </message>
</context>
<context>
    <name>VXProgramUpdateDescriptionDialog</name>
    <message>
        <source>Aktualisierung gefunden</source>
        <translation>Update available</translation>
    </message>
    <message>
        <source>Jetzt aktualisieren</source>
        <comment>BUTTON &apos;update&apos; instead of &apos;install&apos;</comment>
        <translation>Update now</translation>
    </message>
    <message>
        <source>Später erinnern</source>
        <comment>BUTTON</comment>
        <translation>Remind me later</translation>
    </message>
</context>
<context>
    <name>VXProgressDialogController</name>
    <message>
        <source>Bitte warten</source>
        <translation>Please wait</translation>
    </message>
</context>
<context>
    <name>VXQRCodeWidget</name>
    <message>
        <source>QR-Code</source>
        <translation>QR code</translation>
    </message>
</context>
<context>
    <name>VXRequest</name>
    <message>
        <source>Achtung</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>Hinweis</source>
        <translation>Note</translation>
    </message>
</context>
<context>
    <name>VXRequestNetwork</name>
    <message>
        <source>Ein Fehler ist aufgetreten (%1)</source>
        <translation>An error has occurred (%1)</translation>
    </message>
    <message>
        <source>Einen Moment bitte</source>
        <translation>One moment, please</translation>
    </message>
    <message>
        <source>Netzwerkeinstellungen ändern...</source>
        <comment>CMDLNKTITLE</comment>
        <translation>Change network settings...</translation>
    </message>
    <message>
        <source>Startet den Dialog &quot;Netzwerkeinstellungen&quot;</source>
        <comment>CMDLINKTEXT</comment>
        <translation>Opens the &quot;Network settings&quot; dialog</translation>
    </message>
    <message>
        <source>&lt;p&gt;Wollen Sie es noch einmal versuchen?</source>
        <translation>&lt;p&gt;Would you like to try again?</translation>
    </message>
    <message>
        <source>Noch einmal versuchen</source>
        <comment>CMDLNKTITLE</comment>
        <translation>Try again</translation>
    </message>
    <message>
        <source>Führt die Aktion noch einmal durch</source>
        <comment>CMDLINKTEXT</comment>
        <translation>Carries out the action again</translation>
    </message>
    <message>
        <source>Sie haben mehrfach falsche Login-Daten eingegeben. Bitte warten Sie einen Moment.</source>
        <translation>You have entered incorrect login details several times. Please wait a moment.</translation>
    </message>
    <message>
        <source>Für die URL &quot;%1&quot; wird eine Authentifizierung benötigt.&lt;br&gt;Bitte gebe Sie Ihren Benutzernamen und Ihr Passwort ein.</source>
        <translation>The URL &quot;%1&quot; requires authentication.&lt;br&gt;Please enter your user name and password.</translation>
    </message>
    <message>
        <source>Für den Proxy &quot;%1&quot; wird eine Authentifizierung benötigt.&lt;br&gt;Bitte geben Sie Ihren Benutzernamen und Ihr Passwort ein.</source>
        <translation>The proxy &quot;%1&quot; requires authentication.&lt;br&gt;Please enter your user name and password.</translation>
    </message>
    <message>
        <source>SSL Fehler</source>
        <translation>SSL error</translation>
    </message>
    <message>
        <source>&lt;html&gt;Bei der Daten&amp;uuml;bertragung mit dem Server&lt;br&gt;&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;sind die folgenden Fehler aufgetreten:%2M&amp;ouml;chten Sie diese Fehler &lt;b&gt;ignorieren&lt;/b&gt;?&lt;/html&gt;</source>
        <translation>&lt;html&gt;During data transfer with the server&lt;br&gt;&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;the following errors occurred:%2Would you like to &lt;b&gt;ignore&lt;/b&gt; these errors?&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;Bei der Daten&amp;uuml;bertragung mit dem Server&lt;br&gt;&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;ist folgender Fehler aufgetreten:&lt;ul&gt;&lt;li&gt;%2&lt;/li&gt;&lt;/ul&gt;Dieser Fehler kann nicht ignoriert werden. Die Daten&amp;uuml;bertragung wird abgebrochen.&lt;/html&gt;</source>
        <translation>&lt;html&gt;During data transfer with the server&lt;br&gt;&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;the following error occurred:&lt;ul&gt;&lt;li&gt;%2&lt;/li&gt;&lt;/ul&gt;This error cannot be ignored. The data transfer will be cancelled.&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Aktualisierung wurde erfolgreich heruntergeladen.</source>
        <translation>The update has been downloaded successfully.</translation>
    </message>
    <message>
        <source>Um das Update zu starten, muss das Programm beendet werden. Der Installationsprozess wird dann automatisch gestartet. Wollen Sie das Programm jetzt beenden?</source>
        <translation>The program must be closed before the update can start. The installation will then begin automatically. Would you like to close the program now?</translation>
    </message>
    <message>
        <source>Fertig</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>Die Software befindet sich auf dem neuesten Stand.</source>
        <translation>The software is up to date.</translation>
    </message>
    <message>
        <source>Das Update konnte nicht durchgeführt werden.
Stellen Sie sicher, dass das dazu benötigte Programm &quot;perl&quot; sowie eines der Terminals &quot;konsole&quot;, &quot;gnome-terminal&quot;, &quot;xfce4-terminal&quot;, &quot;lxterminal&quot; oder &quot;xterm&quot; auf Ihrem System installiert ist.</source>
        <translation>The update could not be carried out.
Please make sure that the required program &quot;perl&quot; and one of the terminals &quot;konsole&quot;, &quot;gnome-terminal&quot;, &quot;xfce4-terminal&quot;, &quot;lxterminal&quot; or &quot;xterm&quot; are installed on your system.</translation>
    </message>
    <message>
        <source>Diese Software wird nicht mehr unterstützt.</source>
        <translation>This software is no longer supported.</translation>
    </message>
    <message>
        <source>Die Preisliste wurde erfolgreich aktualisiert.</source>
        <translation>The price list has been updated successfully.</translation>
    </message>
    <message>
        <source>Das Programm konnte die Preisliste nicht updaten.</source>
        <translation>The program could not update the price list.</translation>
    </message>
    <message>
        <source>Die Software muss neu gestartet werden. </source>
        <translation>The software must be restarted. </translation>
    </message>
    <message>
        <source>Die Größe der Seitenpakete hat sich geändert. Die Software muss leider neu gestartet werden.</source>
        <translation>The size of the page packs has changed. Unfortunately, the software must be restarted.</translation>
    </message>
</context>
<context>
    <name>VXSampleBasket</name>
    <message>
        <source>Fotobuch „Sommer am See“, A4, 48 Seiten</source>
        <translation>Photo book “Summer at the lake”, A4, 48 pages</translation>
    </message>
    <message>
        <source>Abzüge 10 x 15 cm, glänzend</source>
        <translation>Prints 10 x 15 cm, glossy</translation>
    </message>
    <message>
        <source>Zwischensumme</source>
        <translation>Subtotal</translation>
    </message>
    <message>
        <source>Gutschein %1</source>
        <translation>Voucher %1</translation>
    </message>
    <message>
        <source>Versand</source>
        <translation>Shipping</translation>
    </message>
    <message>
        <source>Der Gutschein „%1“ wurde eingelöst.</source>
        <translation>The voucher “%1” has been redeemed.</translation>
    </message>
    <message>
        <source>Den Gutschein „%1“ gibt es nicht. Bitte prüfen Sie die Schreibweise.</source>
        <translation>There is no voucher “%1”. Please check the spelling.</translation>
    </message>
    <message>
        <source>Der Gutschein „%1“ ist abgelaufen.</source>
        <translation>The voucher “%1” has expired.</translation>
    </message>
    <message>
        <source>Für den Gutschein „%1“ ist der Bestellwert zu niedrig.</source>
        <translation>The order value is too low for the voucher “%1”.</translation>
    </message>
</context>
<context>
    <name>VXSampleHttpPanel</name>
    <message>
        <source>Was der Dienst empfängt</source>
        <translation>What the service receives</translation>
    </message>
    <message>
        <source>JSON senden</source>
        <translation>Send JSON</translation>
    </message>
    <message>
        <source>Langsamer Download mit Fortschritt</source>
        <translation>Slow download with progress</translation>
    </message>
    <message>
        <source>Keine Antwort</source>
        <translation>No response</translation>
    </message>
    <message>
        <source>Seite fehlt</source>
        <translation>Page not found</translation>
    </message>
    <message>
        <source>Passwort verlangt (demo, demo)</source>
        <translation>Password required (demo, demo)</translation>
    </message>
    <message>
        <source>Antwort bricht ab</source>
        <translation>Response cut short</translation>
    </message>
    <message>
        <source>HTTP</source>
        <translation>HTTP</translation>
    </message>
    <message>
        <source>Ein Austausch mit einem Server: eine Adresse mit / am Anfang meint den eingebauten Dienst. Das Fenster bleibt dabei bedienbar.</source>
        <translation>One exchange with a server. An address that begins with / goes to the built-in service. The window stays responsive in the meantime.</translation>
    </message>
    <message>
        <source>Noch nichts gesendet.</source>
        <translation>Nothing sent yet.</translation>
    </message>
    <message>
        <source>Methode</source>
        <translation>Method</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>keine</source>
        <translation>none</translation>
    </message>
    <message>
        <source>Arbeits&amp;threads:</source>
        <translation>&amp;Worker threads:</translation>
    </message>
    <message>
        <source>&amp;Beispiel:</source>
        <translation>&amp;Example:</translation>
    </message>
    <message>
        <source>A&amp;dresse:</source>
        <translation>&amp;Address:</translation>
    </message>
    <message>
        <source>&amp;Inhalt:</source>
        <translation>&amp;Body:</translation>
    </message>
    <message>
        <source>&amp;Zeitgrenze:</source>
        <translation>&amp;Time limit:</translation>
    </message>
    <message>
        <source>&amp;Senden</source>
        <translation>Sen&amp;d</translation>
    </message>
    <message>
        <source>Datei &amp;hochladen ...</source>
        <translation>&amp;Upload a file...</translation>
    </message>
    <message>
        <source>Fortschritt</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>Abbre&amp;chen</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>Erfolgreich: Status %1, %2 Bytes in %3 ms.</source>
        <translation>Success: status %1, %2 bytes in %3 ms.</translation>
    </message>
    <message>
        <source>Alle %1 Arbeitsthreads hatten Erfolg.</source>
        <translation>All %1 worker threads succeeded.</translation>
    </message>
    <message>
        <source>Datei hochladen</source>
        <translation>Upload a file</translation>
    </message>
    <message>
        <source>Die Datei %1 ist nicht lesbar.</source>
        <translation>The file %1 cannot be read.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; ist keine Adresse.</source>
        <translation>&quot;%1&quot; is not an address.</translation>
    </message>
</context>
<context>
    <name>VXSampleLoginPanel</name>
    <message>
        <source>Anmeldung</source>
        <translation>Login</translation>
    </message>
    <message>
        <source>Der eingebaute Anbieter kennt den Kunden &quot;demo&quot; mit dem Passwort &quot;demo&quot;. Die Sitzung erneuert sich selbst, bevor sie abläuft.</source>
        <translation>The built-in provider knows the customer &quot;demo&quot; with the password &quot;demo&quot;. The session renews itself before it expires.</translation>
    </message>
    <message>
        <source>Noch nicht angemeldet.</source>
        <translation>Not logged in yet.</translation>
    </message>
    <message>
        <source>&amp;Benutzer:</source>
        <translation>&amp;User name:</translation>
    </message>
    <message>
        <source>Pass&amp;wort:</source>
        <translation>Pass&amp;word:</translation>
    </message>
    <message>
        <source>An&amp;melden</source>
        <translation>Log &amp;in</translation>
    </message>
    <message>
        <source>Sitzung e&amp;rneuern</source>
        <translation>&amp;Renew session</translation>
    </message>
    <message>
        <source>Abmel&amp;den</source>
        <translation>Log &amp;out</translation>
    </message>
    <message>
        <source>Angemeldet als %1.</source>
        <translation>Logged in as %1.</translation>
    </message>
    <message>
        <source>Die Sitzung wurde nicht erneuert.</source>
        <translation>The session could not be renewed.</translation>
    </message>
    <message>
        <source>Die Sitzung wurde erneuert.</source>
        <translation>The session has been renewed.</translation>
    </message>
    <message>
        <source>Abgemeldet.</source>
        <translation>Logged out.</translation>
    </message>
    <message>
        <source>Der Anbieter hat die Anmeldung bestätigt.</source>
        <translation>The provider has confirmed the login.</translation>
    </message>
    <message>
        <source>Die Anmeldung wurde nicht abgeschlossen.</source>
        <translation>The login was not completed.</translation>
    </message>
    <message>
        <source>keine</source>
        <translation>none</translation>
    </message>
    <message>
        <source>abgelaufen</source>
        <translation>expired</translation>
    </message>
    <message>
        <source>offen</source>
        <translation>open</translation>
    </message>
    <message>
        <source>Sitzung: %1</source>
        <translation>Session: %1</translation>
    </message>
    <message>
        <source>Auf der &amp;Seite des Anbieters ...</source>
        <translation>On the provider&apos;s pa&amp;ge...</translation>
    </message>
    <message>
        <source>&amp;Im eigenen Browser ...</source>
        <translation>In your own &amp;browser...</translation>
    </message>
    <message>
        <source>Die Anmeldung konnte nicht beginnen. Der Port 1031 ist belegt, oder der eingebaute Dienst fehlt.</source>
        <translation>The login could not be started. Port 1031 is in use, or the built-in service is missing.</translation>
    </message>
</context>
<context>
    <name>VXSampleMainWindow</name>
    <message>
        <source>&amp;Netzwerkprobleme</source>
        <translation>&amp;Network problems</translation>
    </message>
    <message>
        <source>&amp;Einstellungen</source>
        <translation>&amp;Settings</translation>
    </message>
    <message>
        <source>&amp;Anmeldung und Aktualisierung</source>
        <translation>&amp;Login and updates</translation>
    </message>
    <message>
        <source>Was die Bibliothek kann</source>
        <translation>What the library can do</translation>
    </message>
    <message>
        <source>&amp;Programm</source>
        <translation>&amp;Program</translation>
    </message>
    <message>
        <source>&amp;Über dieses Programm</source>
        <translation>&amp;About this program</translation>
    </message>
    <message>
        <source>&amp;Beenden</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>&amp;Netzwerk ...</source>
        <translation>&amp;Network...</translation>
    </message>
    <message>
        <source>&amp;Aussehen</source>
        <translation>&amp;Appearance</translation>
    </message>
    <message>
        <source>&amp;Sprache</source>
        <translation>&amp;Language</translation>
    </message>
    <message>
        <source>&amp;Hell</source>
        <translation>&amp;Light</translation>
    </message>
    <message>
        <source>&amp;Dunkel</source>
        <translation>&amp;Dark</translation>
    </message>
    <message>
        <source>Sprache</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Die Sprache wechselt mit einem Neustart. Jetzt neu starten?</source>
        <translation>The language will change when the program restarts. Restart now?</translation>
    </message>
    <message>
        <source>Über dieses Programm</source>
        <translation>About this program</translation>
    </message>
    <message>
        <source>%1 %2

Das Beispielprogramm der Netzwerkbibliothek VXNetworking. Es spricht nur mit dem eingebauten Dienst auf diesem Rechner, außer wenn Sie eine andere Adresse eingeben.</source>
        <translation>%1 %2

The sample program of the networking library VXNetworking. It talks only to the built-in service on this computer, unless you enter another address.</translation>
    </message>
    <message>
        <source>&amp;Fotos vom Telefon empfangen ...</source>
        <translation>Receive &amp;photos from a phone...</translation>
    </message>
    <message>
        <source>Anmelden auf der &amp;Seite des Anbieters ...</source>
        <translation>Log in on the &amp;provider&apos;s page...</translation>
    </message>
    <message>
        <source>Anmelden im eigenen &amp;Browser ...</source>
        <translation>Log in with your own &amp;browser...</translation>
    </message>
    <message>
        <source>&amp;Aktualisierung ...</source>
        <translation>&amp;Update...</translation>
    </message>
    <message>
        <source>&amp;Notwendige Aktualisierung ...</source>
        <translation>&amp;Mandatory update...</translation>
    </message>
</context>
<context>
    <name>VXSampleOrderPanel</name>
    <message>
        <source>Bestellung</source>
        <translation>Order</translation>
    </message>
    <message>
        <source>Eine Bestellung im XML-Protokoll. Der eingebaute Dienst antwortet mit dem gewünschten Fehler; 0 bedeutet Erfolg.</source>
        <translation>An order in the XML protocol. The built-in service answers with the error you choose; 0 means success.</translation>
    </message>
    <message>
        <source>&amp;Bestellen</source>
        <translation>&amp;Order</translation>
    </message>
    <message>
        <source>Noch nichts bestellt.</source>
        <translation>Nothing ordered yet.</translation>
    </message>
    <message>
        <source> min</source>
        <translation> min</translation>
    </message>
    <message>
        <source>Den &amp;Kunden mit einem Dialog unterrichten</source>
        <translation>Tell the customer in a &amp;dialog</translation>
    </message>
    <message>
        <source>&amp;Fehlercode:</source>
        <translation>Error &amp;code:</translation>
    </message>
    <message>
        <source>Fehler&amp;text:</source>
        <translation>Error &amp;text:</translation>
    </message>
    <message>
        <source>&amp;Gutschein:</source>
        <translation>&amp;Voucher:</translation>
    </message>
    <message>
        <source>&amp;Wartezeit:</source>
        <translation>&amp;Waiting time:</translation>
    </message>
    <message>
        <source>Die Bestellung ist angekommen, Zeit des Servers: %1.</source>
        <translation>The order has been received; server time: %1.</translation>
    </message>
</context>
<context>
    <name>VXSampleOrderWindow</name>
    <message>
        <source>Bestellübersicht</source>
        <translation>Order summary</translation>
    </message>
</context>
<context>
    <name>VXSampleOutcomeView</name>
    <message>
        <source>Antwort</source>
        <translation>Response</translation>
    </message>
</context>
<context>
    <name>VXSamplePreferencesDialog</name>
    <message>
        <source>Netzwerkeinstellungen</source>
        <translation>Network settings</translation>
    </message>
</context>
<context>
    <name>VXSampleProblemPanel</name>
    <message>
        <source>Netzwerkprobleme</source>
        <translation>Network problems</translation>
    </message>
    <message>
        <source>Jeder Eintrag führt einen echten Fehler herbei. Die Bibliothek fragt oder unterrichtet den Kunden.</source>
        <translation>Each entry causes a real error. The library informs the customer or asks what to do.</translation>
    </message>
    <message>
        <source>&amp;Herbeiführen</source>
        <translation>&amp;Trigger</translation>
    </message>
    <message>
        <source>Noch kein Fehlercode nachgeschlagen.</source>
        <translation>No error code looked up yet.</translation>
    </message>
    <message>
        <source>Text zum &amp;Fehlercode:</source>
        <translation>Text for error &amp;code:</translation>
    </message>
    <message>
        <source>Nach&amp;schlagen</source>
        <translation>Look &amp;up</translation>
    </message>
    <message>
        <source>Der Code %1 ist kein Fehler.</source>
        <translation>Code %1 is not an error.</translation>
    </message>
</context>
<context>
    <name>VXSampleProblems</name>
    <message>
        <source>Keine Verbindung</source>
        <translation>No connection</translation>
    </message>
    <message>
        <source>Server gestört</source>
        <translation>Server failure</translation>
    </message>
    <message>
        <source>Server überlastet</source>
        <translation>Server overloaded</translation>
    </message>
    <message>
        <source>Sitzung ungültig</source>
        <translation>Invalid session</translation>
    </message>
    <message>
        <source>Falsche Eingabe</source>
        <translation>Incorrect input</translation>
    </message>
    <message>
        <source>Bezahlung abgelehnt</source>
        <translation>Payment declined</translation>
    </message>
    <message>
        <source>Login abgelehnt</source>
        <translation>Login refused</translation>
    </message>
    <message>
        <source>Login mehrfach abgelehnt</source>
        <translation>Login refused several times</translation>
    </message>
    <message>
        <source>Zertifikat unbekannt</source>
        <translation>Unknown certificate</translation>
    </message>
    <message>
        <source>Zertifikat abgelaufen</source>
        <translation>Expired certificate</translation>
    </message>
    <message>
        <source>Server verlangt ein Passwort</source>
        <translation>Server asks for a password</translation>
    </message>
    <message>
        <source>Proxy verlangt ein Passwort</source>
        <translation>Proxy asks for a password</translation>
    </message>
    <message>
        <source>Kein Update nötig</source>
        <translation>No update needed</translation>
    </message>
    <message>
        <source>Update fehlgeschlagen</source>
        <translation>Update failed</translation>
    </message>
    <message>
        <source>Update geladen</source>
        <translation>Update downloaded</translation>
    </message>
    <message>
        <source>Software zu alt</source>
        <translation>Software too old</translation>
    </message>
    <message>
        <source>Preisliste geladen</source>
        <translation>Price list updated</translation>
    </message>
    <message>
        <source>Preisliste nicht geladen</source>
        <translation>Price list not updated</translation>
    </message>
    <message>
        <source>Neustart nötig</source>
        <translation>Restart needed</translation>
    </message>
</context>
<context>
    <name>VXSampleRecordTabs</name>
    <message>
        <source>Anfragen</source>
        <translation>Requests</translation>
    </message>
    <message>
        <source>Noch keine Anfrage.</source>
        <translation>No request yet.</translation>
    </message>
    <message>
        <source>Foto-Protokoll</source>
        <translation>Photo log</translation>
    </message>
    <message>
        <source>Noch kein Foto empfangen.</source>
        <translation>No photo received yet.</translation>
    </message>
    <message>
        <source>Protokoll</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>Noch nichts geschehen.</source>
        <translation>Nothing has happened yet.</translation>
    </message>
    <message>
        <source>Was der Dienst empfing</source>
        <translation>What the service received</translation>
    </message>
    <message>
        <source>Dienst</source>
        <translation>Service</translation>
    </message>
</context>
<context>
    <name>VXSampleServiceModel</name>
    <message>
        <source>Nr.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Eingang</source>
        <translation>Listener</translation>
    </message>
    <message>
        <source>Methode</source>
        <translation>Method</translation>
    </message>
    <message>
        <source>Adresse</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Bytes</translation>
    </message>
</context>
<context>
    <name>VXSampleUploadPanel</name>
    <message>
        <source>Fotos vom Telefon</source>
        <translation>Photos from a phone</translation>
    </message>
    <message>
        <source>Das Telefon liest einen QR-Code und sendet Fotos über das lokale Netz. Der Empfang geht weiter, wenn der Dialog zu ist.</source>
        <translation>The phone scans a QR code and sends photos over the local network. Photos keep arriving even when the dialog is closed.</translation>
    </message>
    <message>
        <source>Fotos emp&amp;fangen ...</source>
        <translation>&amp;Receive photos...</translation>
    </message>
    <message>
        <source>Noch keine Fotos. Öffnen Sie den Dialog und halten Sie die Kamera des Telefons vor den Code.</source>
        <translation>No photos yet. Open the dialog and point your phone&apos;s camera at the code.</translation>
    </message>
    <message>
        <source>Empfangene Fotos</source>
        <translation>Received photos</translation>
    </message>
    <message>
        <source>%1
%2</source>
        <comment>file name and size</comment>
        <translation>%1
%2</translation>
    </message>
</context>
<context>
    <name>VXSampleWebPanel</name>
    <message>
        <source>Webinhalte</source>
        <translation>Web content</translation>
    </message>
    <message>
        <source>Seiten der Anwendung in einer Webansicht. Links ins Netz öffnen sich draußen, im Browser des Kunden.</source>
        <translation>The application&apos;s pages in a web view. Links to the web open outside, in the customer&apos;s browser.</translation>
    </message>
    <message>
        <source>&amp;Startbildschirm</source>
        <translation>Start s&amp;creen</translation>
    </message>
    <message>
        <source>&amp;3D-Szene</source>
        <translation>&amp;3D scene</translation>
    </message>
    <message>
        <source>&amp;Buchvorschlag</source>
        <translation>&amp;Book proposal</translation>
    </message>
    <message>
        <source>&amp;Quittung ...</source>
        <translation>&amp;Receipt...</translation>
    </message>
    <message>
        <source>Beste&amp;llübersicht ...</source>
        <translation>Order su&amp;mmary...</translation>
    </message>
    <message>
        <source>Adresse der Seite</source>
        <translation>Page address</translation>
    </message>
    <message>
        <source>Fortschritt</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>Skript</source>
        <translation>Script</translation>
    </message>
    <message>
        <source>Skript aus&amp;führen</source>
        <translation>R&amp;un script</translation>
    </message>
    <message>
        <source>Noch kein Skript ausgeführt.</source>
        <translation>No script has been run yet.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; ist keine Adresse.</source>
        <translation>&quot;%1&quot; is not an address.</translation>
    </message>
    <message>
        <source>Die Bestellübersicht ist geschlossen.</source>
        <translation>The order summary is closed.</translation>
    </message>
    <message>
        <source>Die Bestellübersicht ließ sich nicht öffnen.</source>
        <translation>The order summary could not be opened.</translation>
    </message>
    <message>
        <source>Ergebnis: %1</source>
        <translation>Result: %1</translation>
    </message>
    <message>
        <source>Die Webansicht ist abgestürzt. Laden Sie die Seite neu. Hilft das nicht, starten Sie das Programm neu.</source>
        <translation>The web view has crashed. Reload the page. If that does not help, restart the program.</translation>
    </message>
    <message>
        <source>Neu la&amp;den</source>
        <translation>Rel&amp;oad</translation>
    </message>
</context>
<context>
    <name>VXSampleWizardScreen</name>
    <message>
        <source>Vielen Dank für Ihre Bestellung über %1.</source>
        <translation>Thank you for your order of %1.</translation>
    </message>
</context>
<context>
    <name>VXUrlSearchBar</name>
    <message>
        <source>Adresse der Seite</source>
        <translation>Page address</translation>
    </message>
    <message>
        <source>Verschlüsselte Verbindung</source>
        <translation>Encrypted connection</translation>
    </message>
    <message>
        <source>Unverschlüsselte Verbindung</source>
        <translation>Unencrypted connection</translation>
    </message>
</context>
</TS>
