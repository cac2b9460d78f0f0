#include "VXAbstractCommunication.h"

using namespace Qt::StringLiterals;

VXAbstractCommunication::VXAbstractCommunication() = default;

VXAbstractCommunication::~VXAbstractCommunication() = default;

QUrl VXAbstractCommunication::serverUrl() const
{
    return QUrl(u"tov://localhost:0"_s);
}

QUrlQuery VXAbstractCommunication::addServerParameter(const QUrlQuery& theQuery) const
{
    QUrlQuery query = theQuery;
    query.addQueryItem(u"webChannelBaseUrl"_s, serverUrl().toString());
    return query;
}

QString VXAbstractCommunication::securityToken() const
{
    return {};
}

void VXAbstractCommunication::registerObject(const QString& theName, QObject* theObject)
{
    myWebChannel.registerObject(theName, theObject);
}
