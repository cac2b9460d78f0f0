#pragma once

/// Says whether this process could reach anything beyond its own networks.
class VXSimulatorNamespace
{
public:
    /// Whether the network namespace of the process has a default route, IPv4 or IPv6. True, too,
    /// when the kernel's tables cannot be read.
    [[nodiscard]] static bool hasDefaultRoute();
};
