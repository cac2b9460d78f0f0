#include "VXSimulatorTargets.h"

#include "VXSimulatorState.h"

using namespace Qt::StringLiterals;

VXSimulatorTargets::VXSimulatorTargets(const VXSimulatorState& theState,
                                       const QHostAddress& theOwnAddress)
    : myState(theState)
    , myAddress(theOwnAddress)
{
}

void VXSimulatorTargets::setPorts(quint16 theHttp, quint16 theHttps, const QList<quint16>& theAll)
{
    myHttp = theHttp;
    myHttps = theHttps;
    myAll = theAll;
}

std::optional<VXSimulatorTargets::Target> VXSimulatorTargets::find(const QString& theHost,
                                                                   quint16 thePort) const
{
    if (thePort == 0)
        return std::nullopt;
    const QHostAddress literal(theHost);
    if (literal.isLoopback())
        return Target{literal, thePort};
    if (theHost.compare(u"localhost"_s, Qt::CaseInsensitive) == 0)
        return Target{myAddress, thePort};
    if (!literal.isNull() || !myState.isKnownHost(theHost))
        return std::nullopt;
    if (myAll.contains(thePort))
        return Target{myAddress, thePort};
    return Target{myAddress, thePort == 443 ? myHttps : myHttp};
}
