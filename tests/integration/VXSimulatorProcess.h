#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

/// A running simulator on ports that the system chose; ends with this object.
class VXSimulatorProcess
{
    Q_DISABLE_COPY_MOVE(VXSimulatorProcess)

public:
    /// `theScenario` may be empty. Waits until the simulator is ready.
    explicit VXSimulatorProcess(const QJsonObject& theScenario = {});
    ~VXSimulatorProcess();

    /// Empty when the simulator is ready.
    [[nodiscard]] QString errorText() const { return myErrorText; }

    [[nodiscard]] QString readyFile() const { return myFolder.filePath(QStringLiteral("ready")); }
    [[nodiscard]] QJsonObject ready() const { return myReady; }
    [[nodiscard]] int port(const QString& theName) const { return myReady.value(theName).toInt(); }

private:
    QTemporaryDir myFolder;
    QProcess myProcess;
    QJsonObject myReady;
    QString myErrorText;
};
