#include "VXPlatformIndependent.h"

#include "VXDeploymentConfig.h"
#include "VXWifiNameQuery.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtGui/QDesktopServices>

using namespace Qt::StringLiterals;

namespace {

const VXDeploymentConfig& deployment()
{
    return *VXDeploymentConfig::instance();
}

bool isApplicationThread()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

} // namespace

VXPlatformIndependent::VXPlatformIndependent() = default;
VXPlatformIndependent::~VXPlatformIndependent() = default;

bool VXPlatformIndependent::usesPlatformCertificatesOnly() const
{
    return deployment().isEnabled(u"Platform/platformCertificatesOnly"_s);
}

bool VXPlatformIndependent::forcesHttps() const
{
    return deployment().isEnabled(u"Platform/forceHttps"_s);
}

bool VXPlatformIndependent::allowsHttp2() const
{
    return deployment().isEnabled(u"Platform/allowHttp2"_s);
}

QString VXPlatformIndependent::mapTileHostFragment() const
{
    return deployment().text(u"Hosts/mapTileHostFragment"_s);
}

QString VXPlatformIndependent::analyticsHostFragment() const
{
    return deployment().text(u"Hosts/analyticsHostFragment"_s);
}

QUrl VXPlatformIndependent::downloadServerUrl() const
{
    return deployment().url(u"Hosts/downloadServerUrl"_s);
}

void VXPlatformIndependent::fileWritten(const QFileInfo&) {}

void VXPlatformIndependent::fileWriteFailed(const QFileInfo&) {}

bool VXPlatformIndependent::openUrl(const QUrl& theUrl)
{
    const QString opener = deployment().text(u"Platform/urlOpener"_s);
    if (opener.isEmpty())
        return QDesktopServices::openUrl(theUrl);
    return QProcess::startDetached(opener, {QString::fromLatin1(theUrl.toEncoded())});
}

QString VXPlatformIndependent::wifiNameForInterface(const QString& theInterfaceName) const
{
    const QString prefix = theInterfaceName + u'=';
    for (const QString& item : deployment().list(u"Platform/wifiNames"_s)) {
        if (item.startsWith(prefix))
            return item.sliced(prefix.size());
    }
    const QMutexLocker locker(&myWifiMutex);
    if (!myWifiNames)
        myWifiNames = std::make_unique<VXWifiNameQuery>();
    return myWifiNames->wifiName(theInterfaceName);
}

void VXPlatformIndependent::sleep(int theMilliseconds)
{
    if (theMilliseconds <= 0)
        return;
    if (!isApplicationThread()) {
        QThread::msleep(static_cast<unsigned long>(theMilliseconds));
        return;
    }
    // A plain sleep would leave the windows unpainted.
    QEventLoop loop;
    QTimer::singleShot(theMilliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}
