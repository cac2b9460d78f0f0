#pragma once

#include <VXCore/VXWifiNameSource.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <csignal>

/// A service that hangs while this object lives.
class VXStoppedService
{
    Q_DISABLE_COPY_MOVE(VXStoppedService)

public:
    explicit VXStoppedService(const QProcess& theService)
        : myProcess(static_cast<pid_t>(theService.processId()))
    {
        if (::kill(myProcess, SIGSTOP) != 0)
            qFatal("cannot stop the service");
    }
    ~VXStoppedService() { ::kill(myProcess, SIGCONT); }

    /// The source waits for it as long as its allowance, and then leaves it alone.
    void costsItsAllowanceOnce(VXWifiNameSource& theSource) const
    {
        QElapsedTimer timer;
        timer.start();
        const std::optional<QString> hung = theSource.wifiName(QStringLiteral("wlan0"));
        const qint64 first = timer.restart();
        const std::optional<QString> leftAlone = theSource.wifiName(QStringLiteral("wlan0"));
        const qint64 second = timer.elapsed();

        QCOMPARE(hung, std::nullopt);
        QCOMPARE(leftAlone, std::nullopt);
        QVERIFY2(first >= 250, qPrintable(QString::number(first)));
        QVERIFY2(first < 20'000, qPrintable(QString::number(first))); // D-Bus itself waits 25 s
        QVERIFY2(second < 250, qPrintable(QString::number(second)));  // a question takes longer
    }

private:
    const pid_t myProcess;
};
