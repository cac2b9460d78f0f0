#pragma once

#include "VXCoreExport.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QString>
#include <QtCore/QVariantList>

#include <chrono>
#include <memory>
#include <optional>

class QDBusConnection;

/// Asks a service on D-Bus short questions without ever starting it or waiting long for it.
///
/// Calls block, but all calls since begin() together at most 300 ms. A service that let us wait
/// that long is left alone for a minute: a hung one would otherwise freeze the caller again and
/// again. For one thread at a time.
class VXCORE_EXPORT VXDBusService
{
    Q_DISABLE_COPY_MOVE(VXDBusService)

public:
    /// theServiceName is the well-known name, such as "org.freedesktop.NetworkManager".
    VXDBusService(const QDBusConnection& theBus, const QString& theServiceName);
    ~VXDBusService();

    /// How long a service that timed out is left alone; a minute unless set.
    void setPause(std::chrono::milliseconds thePause) { myPause = thePause; }

    /// Starts a chain of calls with a fresh allowance of time. False when the bus is not there or
    /// the service is being left alone; do not call it then.
    [[nodiscard]] bool begin();

    /// The first value of the answer; nothing on any error and when the time is used up.
    [[nodiscard]] std::optional<QVariant> call(const QString& thePath, const QString& theInterface,
                                               const QString& theMethod,
                                               const QVariantList& theArguments = {});

    /// A property's value; nothing on any error and when the time is used up.
    [[nodiscard]] std::optional<QVariant>
    property(const QString& thePath, const QString& theInterface, const QString& theName);

private:
    std::unique_ptr<QDBusConnection> myBus;
    QString myServiceName;
    std::chrono::milliseconds myPause{std::chrono::minutes(1)};
    QDeadlineTimer myDeadline; // of the present chain of calls
    QDeadlineTimer myPauseEnd; // the service is left alone until then; expired at first
};
