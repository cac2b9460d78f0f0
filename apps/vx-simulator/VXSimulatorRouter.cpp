#include "VXSimulatorRouter.h"

using namespace Qt::StringLiterals;

namespace {

bool fits(const VXSimulatorRoute& theRoute, const QString& thePath)
{
    return theRoute.path.endsWith(u'/') ? thePath.startsWith(theRoute.path)
                                        : thePath == theRoute.path;
}

} // namespace

void VXSimulatorRouter::add(const QList<VXSimulatorRoute>& theRoutes)
{
    myRoutes += theRoutes;
}

VXSimulatorResponse VXSimulatorRouter::answer(const VXSimulatorRequest& theRequest) const
{
    const QString path = theRequest.path();
    QByteArrayList allowed;
    for (const VXSimulatorRoute& route : myRoutes) {
        if (!fits(route, path))
            continue;
        if (route.methods.isEmpty() || route.methods.contains(theRequest.method))
            return route.handler(theRequest, path.sliced(route.path.size()));
        allowed += route.methods;
    }
    if (allowed.isEmpty())
        return VXSimulatorResponse::error(404, u"there is no such address"_s);
    auto response = VXSimulatorResponse::error(405, u"the method is not admitted here"_s);
    response.addHeader("Allow", allowed.join(", "));
    return response;
}
