#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <vector>

class QProcess;

/// A D-Bus daemon of the test's own, on which fake services run. All end with this object.
class VXPrivateBus
{
    Q_DISABLE_COPY_MOVE(VXPrivateBus)

public:
    VXPrivateBus();
    ~VXPrivateBus();

    /// Starts the daemon and makes it the system bus of this process: call it before anything
    /// asks for that bus. The reason of a failure is returned; empty is success.
    [[nodiscard]] QString start();

    /// The address of the daemon.
    [[nodiscard]] QString address() const;

    /// Starts fake-wifi-services with theArguments and waits until it can be asked. Null when it
    /// does not come up. The bus owns it.
    QProcess* startFake(const QStringList& theArguments);

private:
    QTemporaryDir myFolder;
    std::unique_ptr<QProcess> myDaemon;
    std::vector<std::unique_ptr<QProcess>> myFakes;
};
