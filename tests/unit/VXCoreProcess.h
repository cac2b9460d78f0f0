#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Runs a command of VXCoreChild under the name of this application and returns its answer; a
/// text that begins with "failed" when it did not end well.
inline QString answerOfOtherProcess(const QStringList& theCommand)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/VXCoreChild"),
                  QStringList{QCoreApplication::applicationName()} + theCommand);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return QStringLiteral("failed: ") + process.errorString();
    return QString::fromUtf8(process.readAllStandardOutput());
}
