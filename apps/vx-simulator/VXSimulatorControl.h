#pragma once

#include "VXSimulatorRouter.h"

#include <QtCore/QJsonObject>

class VXSimulatorOAuth;
class VXSimulatorRecorder;
class VXSimulatorState;

/// The control port: what was received, and what is to happen.
class VXSimulatorControl
{
    Q_DISABLE_COPY_MOVE(VXSimulatorControl)

public:
    /// All of them must outlive this object. The last two: the TLS handshakes, and the way out.
    VXSimulatorControl(VXSimulatorState& theState, VXSimulatorRecorder& theRecorder,
                       VXSimulatorOAuth& theOAuth, std::function<QJsonObject()> theHandshakes,
                       std::function<void()> theQuit);
    /// This object must outlive the routes.
    [[nodiscard]] QList<VXSimulatorRoute> routes();

private:
    using Setter = QString (VXSimulatorState::*)(const QJsonObject&);
    VXSimulatorRoute setting(const QString& thePath, Setter theSetter);
    VXSimulatorResponse requests(const VXSimulatorRequest& theRequest) const;
    VXSimulatorResponse clearRequests();
    VXSimulatorResponse expireTokens(const VXSimulatorRequest& theRequest);
    VXSimulatorResponse quit() const;

    VXSimulatorState& myState;
    VXSimulatorRecorder& myRecorder;
    VXSimulatorOAuth& myOAuth;
    std::function<QJsonObject()> myHandshakes;
    std::function<void()> myQuit;
};
