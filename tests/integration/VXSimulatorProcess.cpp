#include "VXSimulatorProcess.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int startMilliseconds = 30'000;
constexpr int endMilliseconds = 5'000;

} // namespace

VXSimulatorProcess::VXSimulatorProcess(const QJsonObject& theScenario)
{
    QStringList arguments{u"--quiet"_s, u"--ready-file"_s, readyFile(), u"--exit-after"_s,
                          u"600"_s};
    if (!theScenario.isEmpty()) {
        QFile file(myFolder.filePath(u"scenario.json"_s));
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(theScenario).toJson());
        arguments << u"--scenario"_s << file.fileName();
    }
    myProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    myProcess.start(QStringLiteral(VX_BINARY_DIR) + u"/bin/vx-simulator"_s, arguments);
    while (!myProcess.canReadLine() && myProcess.waitForReadyRead(startMilliseconds)) {
    }
    myReady = QJsonDocument::fromJson(myProcess.readLine()).object();
    if (myReady.value(u"event"_s).toString() != u"ready"_s)
        myErrorText = u"the simulator did not get ready: "_s + myProcess.errorString();
}

VXSimulatorProcess::~VXSimulatorProcess()
{
    myProcess.terminate();
    if (!myProcess.waitForFinished(endMilliseconds))
        myProcess.kill();
    myProcess.waitForFinished(endMilliseconds);
}
