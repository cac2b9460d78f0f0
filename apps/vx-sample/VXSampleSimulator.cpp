#include "VXSampleSimulator.h"

#include <VXCore/VXDeploymentConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int startMilliseconds = 20'000; // making the certificates takes most of it
constexpr int endMilliseconds = 3'000;

QUrl addressOf(const QString& theScheme, int thePort, const QString& thePathAndQuery)
{
    return QUrl(u"%1://127.0.0.1:%2%3"_s.arg(theScheme, QString::number(thePort), thePathAndQuery));
}

} // namespace

VXSampleSimulator::VXSampleSimulator(const QString& theMode)
    : myMode(theMode)
{
}

VXSampleSimulator::~VXSampleSimulator()
{
    if (myProcess.state() == QProcess::NotRunning)
        return;
    myProcess.terminate();
    if (!myProcess.waitForFinished(endMilliseconds))
        myProcess.kill();
    myProcess.waitForFinished(endMilliseconds);
}

bool VXSampleSimulator::open()
{
    if (!myReady.isEmpty())
        return true;
    if (myMode == u"none"_s)
        return fail(u"this needs the simulator, and --simulator is none"_s);

    const bool isOpen = myMode == u"auto"_s ? startProcess() : readReadyFile();
    if (isOpen)
        trustCertificateAuthority();
    return isOpen;
}

bool VXSampleSimulator::startProcess()
{
    const QString program = QCoreApplication::applicationDirPath() + u"/vx-simulator"_s;
    if (!QFileInfo(program).isExecutable())
        return fail(u"there is no simulator at %1"_s.arg(program));

    // The service must not outlive this process, however that ends.
    myProcess.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    myProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    myProcess.start(program, {u"--quiet"_s});
    const QDeadlineTimer deadline(startMilliseconds);
    while (!myProcess.canReadLine()) {
        if (!myProcess.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return fail(u"the simulator did not get ready: %1"_s.arg(myProcess.errorString()));
    }
    return acceptReady(myProcess.readLine(), program);
}

bool VXSampleSimulator::readReadyFile()
{
    QFile file(myMode);
    if (!file.open(QIODevice::ReadOnly))
        return fail(u"cannot read the ready file %1: %2"_s.arg(myMode, file.errorString()));
    return acceptReady(file.readAll(), myMode);
}

bool VXSampleSimulator::acceptReady(const QByteArray& theJson, const QString& theSource)
{
    const QJsonObject ready = QJsonDocument::fromJson(theJson).object();
    if (ready.value(u"event"_s).toString() != u"ready"_s || ready.value(u"http"_s).toInt() <= 0)
        return fail(u"%1 is no simulator that is ready"_s.arg(theSource));
    myReady = ready;
    return true;
}

bool VXSampleSimulator::fail(const QString& theText)
{
    myErrorText = theText;
    return false;
}

void VXSampleSimulator::trustCertificateAuthority() const
{
    const QString file = myReady.value(u"caFile"_s).toString();
    if (!file.isEmpty())
        VXDeploymentConfig::instance()->setValue(u"Resources/caBundle"_s, file);
}

quint16 VXSampleSimulator::port(const QString& theName) const
{
    return static_cast<quint16>(myReady.value(theName).toInt());
}

QUrl VXSampleSimulator::http(const QString& thePathAndQuery) const
{
    return addressOf(u"http"_s, port(u"http"_s), thePathAndQuery);
}

QUrl VXSampleSimulator::https(const QString& theCertificate, const QString& thePathAndQuery) const
{
    const int number = myReady.value(u"https"_s).toObject().value(theCertificate).toInt();
    return addressOf(u"https"_s, number, thePathAndQuery);
}

QUrl VXSampleSimulator::address(const QString& theText)
{
    if (!theText.startsWith(u'/'))
        return QUrl(theText);
    return open() ? http(theText) : QUrl();
}
