#include "VXSampleRun.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>

using namespace Qt::StringLiterals;

namespace {

constexpr int endMilliseconds = 180'000; // the whole tour on a busy machine

} // namespace

VXSampleRun::VXSampleRun(const QStringList& theArguments, const QByteArray& theInput)
{
    QProcess program;
    program.start(QStringLiteral(VX_BINARY_DIR) + u"/bin/vx-sample"_s, theArguments);
    program.write(theInput);
    program.closeWriteChannel();
    if (program.waitForFinished(endMilliseconds) && program.exitStatus() == QProcess::NormalExit)
        myExitCode = program.exitCode();

    myOutput = program.readAllStandardOutput();
    myErrors = QString::fromUtf8(program.readAllStandardError());
    for (const QByteArray& line : myOutput.split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        myIsJson = myIsJson && document.isObject();
        myLines << document.object();
    }
}

QJsonObject VXSampleRun::result() const
{
    return myLines.isEmpty() ? QJsonObject() : myLines.constLast();
}

QList<QJsonObject> VXSampleRun::events(const QString& theName) const
{
    QList<QJsonObject> found;
    for (const QJsonObject& line : myLines)
        if (line.value(u"event"_s).toString() == theName)
            found << line;
    return found;
}
