#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The network that script/in-namespace makes for a test: this computer at 10.77.0.1 on the
/// interface lan0, phones of their own, and no way to anybody else.
class VXLan
{
public:
    VXLan() = delete;

    /// Empty inside such a network; outside, what the person at the terminal has to do.
    [[nodiscard]] static QString missingRight();

    /// Runs "ip" with the words of theCommand. Empty is success, otherwise what it said.
    [[nodiscard]] static QString ip(const QString& theCommand);

    /// Adds an interface with a peer that is up in the namespace of phone1, and waits until it
    /// runs; theAddresses are "10.1.0.1/24" and the like. Empty is success.
    [[nodiscard]] static QString addInterface(const QString& theName,
                                              const QStringList& theAddresses);

    /// Cuts the cable of such an interface and waits until it no longer runs. Empty is success.
    [[nodiscard]] static QString unplugInterface(const QString& theName);

    /// Removes an interface, if it is there.
    static void removeInterface(const QString& theName);

    /// The program and arguments that run a command as that phone, from 1.
    [[nodiscard]] static QStringList asPhone(int theNumber, const QStringList& theCommand);
};
