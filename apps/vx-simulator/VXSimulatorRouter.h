#pragma once

#include "VXSimulatorResponse.h"

/// One row of a route table.
struct VXSimulatorRoute
{
    using Handler =
        std::function<VXSimulatorResponse(const VXSimulatorRequest&, const QString& theRest)>;

    QString path;           ///< decoded; with a slash at the end all that begin so
    QByteArrayList methods; ///< admitted ones; empty: any
    Handler handler;        ///< theRest is what follows the path
};

/// Finds the route of a request. A plain value.
class VXSimulatorRouter
{
public:
    /// Adds rows; the first that fits answers.
    void add(const QList<VXSimulatorRoute>& theRoutes);
    /// The route's answer; 404 when no path and 405 when no method fits.
    [[nodiscard]] VXSimulatorResponse answer(const VXSimulatorRequest& theRequest) const;

private:
    QList<VXSimulatorRoute> myRoutes;
};
