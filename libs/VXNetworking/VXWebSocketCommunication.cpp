#include "VXWebSocketCommunication.h"

#include "VXWebSocketTransport.h"

#include <QtCore/QDebug>
#include <QtCore/QUuid>
#include <QtNetwork/QHostAddress>

using namespace Qt::StringLiterals;

VXWebSocketCommunication::VXWebSocketCommunication(const QString& theServerName)
    : myServer(theServerName, QWebSocketServer::NonSecureMode)
    , mySecurityToken(QUuid::createUuid().toString())
    , myClientWrapper(&myServer, mySecurityToken)
{
    if (!myServer.listen(QHostAddress::LocalHost, 0)) {
        qWarning() << "unable to open web socket server:" << theServerName;
        return;
    }
    QObject::connect(&myClientWrapper, &VXWebSocketClientWrapper::clientConnected, &webChannel(),
                     &QWebChannel::connectTo);
    qInfo() << "opened web socket server" << theServerName << myServer.serverPort();
}

VXWebSocketCommunication::~VXWebSocketCommunication() = default;

QUrl VXWebSocketCommunication::serverUrl() const
{
    return myServer.serverUrl();
}

QUrlQuery VXWebSocketCommunication::addServerParameter(const QUrlQuery& theQuery) const
{
    QUrlQuery query = VXAbstractCommunication::addServerParameter(theQuery);
    query.addQueryItem(u"webChannelToken"_s, mySecurityToken);
    return query;
}

QString VXWebSocketCommunication::securityToken() const
{
    return mySecurityToken;
}
