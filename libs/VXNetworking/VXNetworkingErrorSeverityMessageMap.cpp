#include "VXNetworkingErrorSeverityMessageMap.h"

#include <QtCore/QMutexLocker>

#include <algorithm>
#include <array>

namespace {

struct Row
{
    VXNetworkingErrorSeverity severity;
    const char* text;
    bool asksForSupport; // the sentence about the customer service follows
};

// The product's vocabulary, slips included: the catalogues look the texts up by these spellings.
// SeverityAutoRecover and SeverityPayment have no text of their own.
constexpr std::array rows{
    Row{SeverityNoError, QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap", "Kein Fehler"),
        false},
    Row{SeverityUnrecoverable,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap", "Unbehebbarer Fehler."), true},
    Row{SeverityProgramError,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap", "Programmfehler!"), true},
    Row{SeverityUserInput,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap",
                          "Fehlerhafte Daten! Bitte überpüfen Sie Ihre Eingaben"),
        false},
    Row{SeverityRemoteSystem,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap",
                          "Remote System Fehler. Bitte versuchen Sie es später erneut"),
        false},
    Row{SeverityNoNetwork,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap",
                          "Keine Verbindung zum Server. Bitte überprüfen Sie Ihre "
                          "Internetverbindung und versuchen Sie es erneut"),
        false},
    Row{SeverityTemporary,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap", "Bitte versuchen Sie es erneut!"),
        false},
    Row{SeverityOrderDeclaration,
        QT_TRANSLATE_NOOP("VXNetworkingErrorSeverityMessageMap",
                          "Programmfehler bei der Deklaration der Bestellung."),
        true},
};
static_assert(std::ranges::is_sorted(rows, {}, &Row::severity));

} // namespace

constinit QMap<VXNetworkingErrorSeverity, QString>
    VXNetworkingErrorSeverityMessageMap::myMessageMap;
constinit QMutex VXNetworkingErrorSeverityMessageMap::myInitMutex;
constinit QAtomicInt VXNetworkingErrorSeverityMessageMap::ourIsFilled;

VXNetworkingErrorSeverityMessageMap::VXNetworkingErrorSeverityMessageMap(QObject* theParent)
    : QObject(theParent)
{
}

VXNetworkingErrorSeverityMessageMap::~VXNetworkingErrorSeverityMessageMap() = default;

QString VXNetworkingErrorSeverityMessageMap::message(VXNetworkingErrorSeverity theSeverity,
                                                     const QString& theDefaultText) const
{
    initMap();
    return myMessageMap.value(theSeverity, theDefaultText);
}

void VXNetworkingErrorSeverityMessageMap::initMap() const
{
    if (ourIsFilled.loadAcquire())
        return;
    const QMutexLocker locker(&myInitMutex);
    if (ourIsFilled.loadRelaxed())
        return;
    myMessageMap = filledMap(); // complete before the flag lets another thread read it
    ourIsFilled.storeRelease(1);
}

QMap<VXNetworkingErrorSeverity, QString> VXNetworkingErrorSeverityMessageMap::filledMap()
{
    const QString support = u' ' + tr("Bitte wenden Sie sich an den Kundendienst!");
    QMap<VXNetworkingErrorSeverity, QString> map;
    for (const Row& row : rows)
        map.insert(row.severity, row.asksForSupport ? tr(row.text) + support : tr(row.text));
    return map;
}
