#include "VXCloudSessionAbstract.h"

#include <QtCore/QCoreApplication>

VXCloudSessionAbstract::VXCloudSessionAbstract()
    : myTimer(this)
{
    myTimer.setSingleShot(true);
    connect(&myTimer, &QTimer::timeout, this, &VXCloudSessionAbstract::updateAccessToken);
}

VXCloudSessionAbstract::~VXCloudSessionAbstract() = default;

bool VXCloudSessionAbstract::doubleOptInPending() const
{
    return false;
}

void VXCloudSessionAbstract::setLogoutOnClose(bool theIsOn)
{
    disconnect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
               &VXCloudSessionAbstract::close);
    if (theIsOn)
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                &VXCloudSessionAbstract::close);
}

bool VXCloudSessionAbstract::changeToSecureSession(const QString& thePassword)
{
    Q_UNUSED(thePassword)
    return false;
}

bool VXCloudSessionAbstract::isSessionExpired()
{
    return !myTimer.isActive();
}

void VXCloudSessionAbstract::setCredentials(const VXCredentials& theCredentials)
{
    myCredentials = theCredentials;
}

void VXCloudSessionAbstract::restartTimer(int theMilliseconds)
{
    if (theMilliseconds > 0)
        myTimer.start(theMilliseconds);
}

void VXCloudSessionAbstract::close()
{
    myTimer.stop();
    myAccessToken.clear();
    myRefreshToken.clear();
}
