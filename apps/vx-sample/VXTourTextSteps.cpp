#include "VXTourTextSteps.h"

#include "VXTourRun.h"

#include <VXNetworking/VXNetworkingError.h>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Text
{
    int code;
    const char* family;
    QStringView message;
};

constexpr std::array texts{
    Text{70, "order protocol", u"Der Gutscheincode ist nicht gültig."},
    Text{85, "order protocol, informational",
         u"Die Software befindet sich auf dem neuesten Stand."},
    Text{2000, "file", u"Das Zielverzeichnis existiert nicht."},
    Text{3503, "connection",
         u"Der Servername konnte nicht gefunden werden (ungültiger Servername)."},
    Text{5010, "client", u"Fehler beim Parsen eines JSON-Dokuments."},
    Text{10500, "HTTP",
         u"HTTP-Fehler 500 bei der Übertragung. Bitte überprüfen Sie die Netzwerkeinstellungen "
         u"Ihres Systems und die Proxyeinstellungen im Menü Extras/Optionen/Netzwerk. Bitte "
         u"beachten Sie, dass in der Firewall die Ports 80 und 443 freigeschaltet sein müssen."},
    Text{20017, "cloud", u"Programmfehler! Bitte wenden Sie sich an den Kundendienst!"},
};

void textIsRight(VXTourRun& theRun, const Text& theText)
{
    const VXNetworkingError error(static_cast<VXNetworkingErrorCode>(theText.code));
    theRun.expectEqual<QString>(u"text"_s, error.errorMessage(),
                                theText.message.toString() + u"<br>"_s);
    theRun.expectEqual<QString>(u"details"_s, error.errorDetails(),
                                u"Fehlercode: %1"_s.arg(theText.code));
    theRun.expectReceived({});
    theRun.came(error.errorMessage().remove(u"<br>"_s));
}

} // namespace

QList<VXTourStep> VXTourTextSteps::steps()
{
    QList<VXTourStep> steps;
    for (const Text& text : texts) {
        steps << VXTourStep{u"texts"_s,
                            u"German text of code %1 (%2)"_s.arg(QString::number(text.code),
                                                                 QLatin1StringView(text.family)),
                            [&text](VXTourRun& theRun) { textIsRight(theRun, text); }};
    }
    return steps;
}
