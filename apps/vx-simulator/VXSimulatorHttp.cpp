#include "VXSimulatorHttp.h"

#include "VXSimulatorMultipart.h"
#include "VXSimulatorState.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Request = VXSimulatorRequest;
using Response = VXSimulatorResponse;

constexpr qint64 largestEcho = 1024 * 1024;
constexpr qint64 longestOffsetMs = 100LL * 365 * 24 * 3600 * 1000;

/// A whole number in a range, or nothing.
std::optional<qint64> number(const QString& theText, qint64 theLeast, qint64 theMost)
{
    bool isNumber = false;
    const qint64 value = theText.toLongLong(&isNumber);
    if (!isNumber || value < theLeast || value > theMost)
        return std::nullopt;
    return value;
}

/// As above, for a query item that may be missing.
std::optional<qint64> queryNumber(const Request& theRequest, const QString& theName,
                                  qint64 theDefault, qint64 theLeast, qint64 theMost)
{
    return number(theRequest.queryValue(theName, QString::number(theDefault)), theLeast, theMost);
}

Response badNumber(const QString& theName)
{
    return Response::error(400, u"%1 is missing, no number or out of range"_s.arg(theName));
}

bool isHeaderText(const QString& theText)
{
    return !theText.contains(u'\r') && !theText.contains(u'\n') && !theText.contains(QChar(0));
}

QByteArray typeOf(const Request& theRequest, const QString& theDefault)
{
    const QString type = theRequest.queryValue(u"type"_s, theDefault);
    return isHeaderText(type) ? type.toUtf8() : "text/plain";
}

Response echo(const Request& theRequest, const QString&)
{
    QJsonArray query;
    for (const auto& [name, value] : theRequest.query().queryItems(QUrl::FullyDecoded))
        query.append(QJsonArray{name, value});
    QJsonObject object{
        {u"method"_s, QString::fromLatin1(theRequest.method)},
        {u"target"_s, QString::fromLatin1(theRequest.target)},
        {u"path"_s, theRequest.path()},
        {u"query"_s, query},
        {u"headers"_s, theRequest.headersToJson()},
        {u"bodySize"_s, theRequest.body.size()},
        {u"bodySha256"_s,
         QString::fromLatin1(
             QCryptographicHash::hash(theRequest.body, QCryptographicHash::Sha256).toHex())},
        {u"peer"_s, theRequest.peer},
        {u"listener"_s, theRequest.listener},
    };
    if (theRequest.body.size() <= largestEcho)
        object.insert(u"body"_s, QString::fromLatin1(theRequest.body.toBase64()));
    return Response::json(object);
}

Response status(const Request& theRequest, const QString& theRest)
{
    const auto code = number(theRest, 200, 999);
    if (!code)
        return badNumber(u"the status"_s);
    Response response =
        Response::text(static_cast<int>(*code), theRequest.queryValue(u"body"_s).toUtf8(),
                       typeOf(theRequest, u"text/plain; charset=utf-8"_s));
    const QString location = theRequest.queryValue(u"location"_s);
    if (!isHeaderText(location))
        return Response::error(400, u"the location holds a line end"_s);
    if (!location.isEmpty())
        response.addHeader("Location", location.toUtf8());
    return response;
}

/// First and last byte of a "Range" header (RFC 9110, 14.1.2) for a body of that size.
struct Range
{
    enum class Kind
    {
        Whole,
        Part,
        Unsatisfiable
    };
    Kind kind = Kind::Whole;
    qint64 first = 0;
    qint64 last = -1;
};

Range rangeFrom(const QByteArray& theHeader, qint64 theSize)
{
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    const QList<QByteArray> ends = theHeader.mid(6).split('-');
    if (!theHeader.startsWith("bytes=") || ends.size() != 2)
        return {}; // another unit or several ranges: the whole body may be sent
    const auto first = number(QString::fromLatin1(ends[0].trimmed()), 0, most);
    const auto last = number(QString::fromLatin1(ends[1].trimmed()), 0, most);
    if (first && (last || ends[1].trimmed().isEmpty())) {
        if (last && *last < *first)
            return {};
        if (*first >= theSize)
            return {Range::Kind::Unsatisfiable};
        return {Range::Kind::Part, *first, std::min(last.value_or(most), theSize - 1)};
    }
    if (!ends[0].trimmed().isEmpty() || !last)
        return {};
    if (*last == 0 || theSize == 0)
        return {Range::Kind::Unsatisfiable};
    return {Range::Kind::Part, std::max<qint64>(0, theSize - *last), theSize - 1};
}

Response bytes(const Request& theRequest, const QString& theRest)
{
    const auto size = number(theRest, 0, VXSimulatorHttp::maximumBytes);
    const auto seed = queryNumber(theRequest, u"seed"_s, 1, 0, std::numeric_limits<qint64>::max());
    const auto rate = queryNumber(theRequest, u"rate"_s, 0, 0, 1'000'000'000'000);
    if (!size || !seed || !rate)
        return badNumber(u"size, seed or rate"_s);
    Response response;
    response.addHeader("Content-Type", typeOf(theRequest, u"application/octet-stream"_s));
    response.addHeader("Accept-Ranges", "bytes");
    response.bytesPerSecond = *rate;
    const Range range = rangeFrom(theRequest.header("Range"), *size);
    const QByteArray total = QByteArray::number(*size);
    if (range.kind == Range::Kind::Unsatisfiable) {
        response.status = 416;
        response.addHeader("Content-Range", "bytes */" + total);
        return response;
    }
    if (range.kind == Range::Kind::Whole) {
        response.generated = VXSimulatorBytes(static_cast<quint64>(*seed), 0, *size);
        return response;
    }
    response.status = 206;
    response.addHeader("Content-Range", "bytes " + QByteArray::number(range.first) + '-' +
                                            QByteArray::number(range.last) + '/' + total);
    response.generated =
        VXSimulatorBytes(static_cast<quint64>(*seed), range.first, range.last - range.first + 1);
    return response;
}

Response slow(const Request& theRequest, const QString&)
{
    const auto delay = queryNumber(theRequest, u"ms"_s, 1000, 0, VXSimulatorHttp::longestDelayMs);
    if (!delay)
        return badNumber(u"ms"_s);
    Response response = Response::json({{u"delayMs"_s, *delay}});
    response.delayMs = static_cast<int>(*delay);
    return response;
}

Response never(const Request&, const QString&)
{
    Response response;
    response.fault = Response::Fault::Never;
    return response;
}

Response reset(const Request& theRequest, const QString&)
{
    const auto after = queryNumber(theRequest, u"after"_s, -1, -1, 64 * 1024 * 1024);
    if (!after)
        return badNumber(u"after"_s);
    Response response;
    response.fault = Response::Fault::Reset;
    response.faultAfter = *after;
    response.addHeader("Content-Type", "application/octet-stream");
    response.generated = VXSimulatorBytes(1, 0, *after + 1000); // announces more than will come
    return response;
}

Response cutShort(const Request& theRequest, const QString& theRest)
{
    const auto size = number(theRest, 1, VXSimulatorHttp::maximumBytes);
    if (!size)
        return badNumber(u"the size"_s);
    const auto sent = queryNumber(theRequest, u"sent"_s, *size / 2, 0, *size - 1);
    if (!sent)
        return badNumber(u"sent"_s);
    Response response;
    response.fault = Response::Fault::Truncate;
    response.faultAfter = *sent;
    response.addHeader("Content-Type", "application/octet-stream");
    response.generated = VXSimulatorBytes(1, 0, *size);
    return response;
}

Response redirect(const Request& theRequest, const QString& theRest)
{
    const auto count = number(theRest, 0, 1000);
    const auto status = queryNumber(theRequest, u"status"_s, 302, 300, 399);
    const QString to = theRequest.queryValue(u"to"_s);
    if (!count || !status || !isHeaderText(to))
        return badNumber(u"count, status or target"_s);
    if (*count == 0)
        return echo(theRequest, {});
    QByteArray location = "/redirect/" + QByteArray::number(*count - 1);
    if (!theRequest.rawQuery().isEmpty())
        location += '?' + theRequest.rawQuery();
    if (*count == 1 && !to.isEmpty())
        location = to.toUtf8();
    Response response;
    response.status = static_cast<int>(*status);
    response.addHeader("Location", location);
    return response;
}

Response setCookies(const Request& theRequest, const QString&)
{
    Response response = Response::text(200, "cookies set\n");
    for (const auto& [name, value] : theRequest.query().queryItems(QUrl::FullyEncoded))
        response.addHeader("Set-Cookie", (name + u'=' + value + u"; Path=/"_s).toUtf8());
    return response;
}

Response showCookies(const Request& theRequest, const QString&)
{
    QJsonObject cookies;
    for (const QByteArray& pair : theRequest.header("Cookie").split(';')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0)
            cookies.insert(QString::fromUtf8(pair.first(equals).trimmed()),
                           QString::fromUtf8(pair.sliced(equals + 1)));
    }
    return Response::json({{u"cookies"_s, cookies}});
}

Response basicAuth(const Request& theRequest, const QString& theRest)
{
    const QStringList wanted = theRest.split(u'/');
    if (wanted.size() != 2 || wanted[0].isEmpty())
        return Response::error(400, u"the address must name user and password"_s);
    const QByteArray expected = "Basic " + (wanted[0] + u':' + wanted[1]).toUtf8().toBase64();
    if (theRequest.header("Authorization") == expected)
        return Response::json({{u"authenticated"_s, true}, {u"user"_s, wanted[0]}});
    Response response = Response::error(401, u"user or password is wrong"_s);
    response.addHeader("WWW-Authenticate", "Basic realm=\"vx-simulator\"");
    return response;
}

Response multipart(const Request& theRequest, const QString&)
{
    const auto parts =
        VXSimulatorMultipart::parts(theRequest.header("Content-Type"), theRequest.body);
    if (!parts)
        return Response::error(400, u"this is no multipart body"_s);
    return Response::json({{u"parts"_s, *parts}});
}

Response goodJson(const Request&, const QString&)
{
    return Response::json(
        {{u"resultCode"_s, 0}, {u"message"_s, u"Grüße"_s}, {u"items"_s, QJsonArray{1, 2, 3}}});
}

Response badJson(const Request&, const QString&)
{
    return Response::text(200, R"({"resultCode": 0, "items": [1, 2)", "application/json");
}

Response jsonError(const Request& theRequest, const QString&)
{
    const auto code = queryNumber(theRequest, u"code"_s, 1, std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max());
    const auto http = queryNumber(theRequest, u"http"_s, 200, 200, 999);
    if (!code || !http)
        return badNumber(u"code or http"_s);
    return Response::json({{u"resultCode"_s, *code}, {u"message"_s, u"simulated error"_s}},
                          static_cast<int>(*http));
}

Response noDate(const Request&, const QString&)
{
    return Response::text(200, "no date\n");
}

} // namespace

VXSimulatorHttp::VXSimulatorHttp(const VXSimulatorState& theState)
    : myState(theState)
{
}

QByteArray VXSimulatorHttp::dateText(const QDateTime& theTime)
{
    return QLocale::c().toString(theTime.toUTC(), u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s).toLatin1();
}

QList<VXSimulatorRoute> VXSimulatorHttp::routes() const
{
    const auto date = [this](const Request& theRequest, const QString&) {
        const auto offset =
            queryNumber(theRequest, u"offset"_s, 0, -longestOffsetMs, longestOffsetMs);
        if (!offset)
            return badNumber(u"offset"_s);
        Response response = Response::text(200, "dated\n");
        response.addHeader("Date", dateText(myState.now().addMSecs(*offset)));
        return response;
    };
    return {
        {u"/echo"_s, {}, echo},
        {u"/status/"_s, {}, status},
        {u"/date"_s, {}, date},
        {u"/nodate"_s, {}, noDate},
        {u"/bytes/"_s, {}, bytes},
        {u"/slow"_s, {}, slow},
        {u"/never"_s, {}, never},
        {u"/reset"_s, {}, reset},
        {u"/truncate/"_s, {}, cutShort},
        {u"/redirect/"_s, {}, redirect},
        {u"/cookie/set"_s, {}, setCookies},
        {u"/cookie/show"_s, {}, showCookies},
        {u"/auth/basic/"_s, {}, basicAuth},
        {u"/multipart"_s, {"POST", "PUT"}, multipart},
        {u"/json/good"_s, {}, goodJson},
        {u"/json/bad"_s, {}, badJson},
        {u"/json/error"_s, {}, jsonError},
    };
}
