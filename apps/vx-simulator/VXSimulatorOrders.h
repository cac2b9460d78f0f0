#pragma once

#include "VXSimulatorRouter.h"

class VXSimulatorState;

/// The addresses of the XML order protocol.
class VXSimulatorOrders
{
public:
    /// The state must outlive the routes.
    explicit VXSimulatorOrders(const VXSimulatorState& theState);
    [[nodiscard]] QList<VXSimulatorRoute> routes() const;

private:
    [[nodiscard]] VXSimulatorResponse order(const VXSimulatorRequest& theRequest,
                                            const QString& theName) const;

    const VXSimulatorState& myState;
};
