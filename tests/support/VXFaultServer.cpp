#include "VXFaultServer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

VXFaultServer::VXFaultServer()
{
    myProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    myProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    myProcess.start(QCoreApplication::applicationDirPath() + u"/vx_fault_server"_s, QStringList());
    while (!myProcess.canReadLine() && myProcess.waitForReadyRead(30000)) {
    }
    myPorts = QJsonDocument::fromJson(myProcess.readLine()).object();
    if (myPorts.isEmpty())
        qFatal("the fault server did not start: %s", qPrintable(myProcess.errorString()));
}

VXFaultServer::~VXFaultServer()
{
    myProcess.closeWriteChannel();
    if (!myProcess.waitForFinished(10000))
        myProcess.kill();
}

quint16 VXFaultServer::port(const QString& theName) const
{
    return static_cast<quint16>(myPorts[theName].toInt());
}

quint16 VXFaultServer::proxyPort(const QString& theName) const
{
    return static_cast<quint16>(myPorts[u"proxies"_s][theName].toInt());
}

QUrl VXFaultServer::url(const QString& thePort, const QString& thePath) const
{
    const bool isTls = thePort == u"tls"_s || thePort == u"untrusted"_s;
    return QUrl(u"%1://%2:%3%4"_s.arg(isTls ? u"https"_s : u"http"_s,
                                      thePort == u"ipv6"_s ? u"[::1]"_s : u"127.0.0.1"_s,
                                      QString::number(port(thePort)), thePath));
}

QString VXFaultServer::authorityFile() const
{
    return myPorts[u"authority"_s].toString();
}
