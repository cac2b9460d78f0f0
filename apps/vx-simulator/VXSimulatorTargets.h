#pragma once

#include <QtNetwork/QHostAddress>

#include <optional>

class VXSimulatorState;

/// Where the proxies connect to: nothing but the simulator's own ports and loopback addresses.
/// No name is ever looked up.
class VXSimulatorTargets
{
public:
    /// An address to connect to.
    struct Target
    {
        QHostAddress address;
        quint16 port = 0;
    };

    /// The state must outlive this object.
    VXSimulatorTargets(const VXSimulatorState& theState, const QHostAddress& theOwnAddress);
    /// Names the own ports. Known host names lead with port 443 to the https port, with the number
    /// of any own port to that one, and with every other number to the http port.
    void setPorts(quint16 theHttp, quint16 theHttps, const QList<quint16>& theAll);
    /// Empty when the proxies must not go there.
    [[nodiscard]] std::optional<Target> find(const QString& theHost, quint16 thePort) const;

private:
    const VXSimulatorState& myState;
    QHostAddress myAddress;
    quint16 myHttp = 0;
    quint16 myHttps = 0;
    QList<quint16> myAll;
};
