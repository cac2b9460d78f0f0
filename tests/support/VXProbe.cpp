#include "VXProbe.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString probeOption = u"--probe"_s;

} // namespace

void VXProbe::print(const QString& theLine)
{
    QString line = theLine;
    line.replace(u'\n', u"\\n"_s);
    std::puts(line.toUtf8().constData());
}

QStringList VXProbe::run(const QString& theName, std::chrono::milliseconds theTime)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {probeOption, theName});
    if (!process.waitForFinished(static_cast<int>(theTime.count())))
        return {u"PROBE FAILED: %1"_s.arg(process.errorString())};
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {u"PROBE FAILED: status %1"_s.arg(process.exitCode())};
    QString output = QString::fromUtf8(process.readAllStandardOutput());
    if (output.endsWith(u'\n'))
        output.chop(1);
    return output.split(u'\n');
}

VXProbe::Function VXProbe::wanted(int theArgumentCount, char* theArguments[],
                                  const QHash<QString, Function>& theProbes)
{
    if (theArgumentCount != 3 || QString::fromUtf8(theArguments[1]) != probeOption)
        return nullptr;
    const Function probe = theProbes.value(QString::fromUtf8(theArguments[2]));
    if (probe == nullptr)
        qFatal("unknown probe %s", theArguments[2]);
    return probe;
}
