#include "VXSimulatorPages.h"

#include "VXSimulatorHttp.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

using Request = VXSimulatorRequest;
using Response = VXSimulatorResponse;

QByteArray typeOf(const QString& theName)
{
    if (theName.endsWith(u".css"_s))
        return "text/css; charset=utf-8";
    if (theName.endsWith(u".js"_s))
        return "text/javascript; charset=utf-8";
    return "text/html; charset=utf-8";
}

Response page(const Request& theRequest, const QString& theRest)
{
    static const QRegularExpression admitted(u"\\A[a-z-]{1,32}\\.(html|css|js)\\z"_s);
    const QString name = theRest.isEmpty() ? u"index.html"_s : theRest;
    QFile file(u":/vx-simulator/pages/"_s + name);
    if (!admitted.match(name).hasMatch() || !file.open(QFile::ReadOnly))
        return Response::error(404, u"there is no such page"_s);
    Response response = Response::text(200, file.readAll(), typeOf(name));
    // slow.html is slow without being asked
    const QString delay =
        theRequest.queryValue(u"ms"_s, name == u"slow.html"_s ? u"3000"_s : u"0"_s);
    bool isNumber = false;
    response.delayMs = delay.toInt(&isNumber);
    if (!isNumber || response.delayMs < 0 || response.delayMs > VXSimulatorHttp::longestDelayMs)
        return Response::error(400, u"ms is no number or out of range"_s);
    if (name == u"cookies.html"_s)
        response.addHeader("Set-Cookie", "page=cookies; Path=/");
    return response;
}

Response update(const Request& theRequest, const QString&)
{
    return page(theRequest, u"update.html"_s);
}

Response tile(const Request& theRequest, const QString& theRest)
{
    return Response::json(
        {{u"tile"_s, theRest}, {u"query"_s, QString::fromLatin1(theRequest.rawQuery())}});
}

} // namespace

QList<VXSimulatorRoute> VXSimulatorPages::routes()
{
    return {
        {u"/pages/"_s, {}, page},
        {u"/update"_s, {}, update},
        {u"/tiles/"_s, {}, tile},
    };
}
