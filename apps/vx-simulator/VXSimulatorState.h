#pragma once

#include "VXSimulatorBehaviour.h"

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QStringList>

/// What the scenario file and the control port set: users, proxy passwords, host names, clock,
/// token rules and planned behaviours. All operations that read JSON return an error text, empty
/// on success; after an error nothing has changed.
class VXSimulatorState
{
public:
    /// A name with a password.
    struct Credentials
    {
        QString user;
        QString password;
    };
    /// How tokens are given out.
    struct OAuth
    {
        int expiresIn = 3600;         ///< seconds that an access token lives
        bool rotateRefresh = true;    ///< each renewal replaces the refresh token
        bool sendRefreshToken = true; ///< replies name a refresh token at all
    };

    [[nodiscard]] QString applyScenario(const QJsonObject& theObject);
    [[nodiscard]] QString addBehaviour(const QJsonObject& theObject);
    [[nodiscard]] QString applyOAuth(const QJsonObject& theObject);
    [[nodiscard]] QString applyClock(const QJsonObject& theObject);
    /// An empty object: no password. Otherwise "user" and "password".
    [[nodiscard]] QString applyProxy(const QJsonObject& theObject);
    [[nodiscard]] QString applySocks(const QJsonObject& theObject);
    void clearBehaviours() { myBehaviours.clear(); }

    /// The behaviour for a request, counted as used.
    [[nodiscard]] std::optional<VXSimulatorBehaviour>
    takeBehaviour(const VXSimulatorRequest& theRequest);
    [[nodiscard]] bool isUser(const QString& theName, const QString& thePassword) const;
    /// Whether the proxies map this host name to the simulator's own ports.
    [[nodiscard]] bool isKnownHost(const QString& theHost) const;
    [[nodiscard]] QStringList hosts() const { return myHosts; }
    [[nodiscard]] OAuth oauth() const { return myOAuth; }
    /// Empty when the proxy asks for no password.
    [[nodiscard]] std::optional<Credentials> proxyCredentials() const { return myProxy; }
    [[nodiscard]] std::optional<Credentials> socksCredentials() const { return mySocks; }
    /// Whether the clock was set, so that all answers carry "Date".
    [[nodiscard]] bool hasClock() const { return myClockOffsetMs.has_value(); }
    /// The service's time, in UTC.
    [[nodiscard]] QDateTime now() const;

private:
    QHash<QString, QString> myUsers{{QStringLiteral("demo"), QStringLiteral("demo")}};
    QStringList myHosts{QStringLiteral("*.test")};
    QList<VXSimulatorBehaviour> myBehaviours;
    OAuth myOAuth;
    std::optional<Credentials> myProxy;
    std::optional<Credentials> mySocks;
    std::optional<qint64> myClockOffsetMs;
};
