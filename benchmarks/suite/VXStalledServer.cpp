#include "VXStalledServer.h"

using namespace Qt::StringLiterals;

VXStalledServer::VXStalledServer()
{
    // Connections stay in the backlog, which therefore holds those of a whole benchmark.
    myServer.setListenBacklogSize(1024);
    if (!myServer.listen(QHostAddress::LocalHost))
        qFatal("no free port: %s", qPrintable(myServer.errorString()));
    myServer.pauseAccepting(); // not before: Qt 6.4 dereferences what listen() makes
}

QUrl VXStalledServer::url() const
{
    return QUrl(u"http://127.0.0.1:%1/"_s.arg(myServer.serverPort()));
}
