#include "VXSimulatorResponse.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Reason
{
    int status;
    const char* text;
};

constexpr std::array reasons{
    Reason{200, "OK"},
    Reason{201, "Created"},
    Reason{204, "No Content"},
    Reason{206, "Partial Content"},
    Reason{301, "Moved Permanently"},
    Reason{302, "Found"},
    Reason{303, "See Other"},
    Reason{304, "Not Modified"},
    Reason{307, "Temporary Redirect"},
    Reason{308, "Permanent Redirect"},
    Reason{400, "Bad Request"},
    Reason{401, "Unauthorized"},
    Reason{403, "Forbidden"},
    Reason{404, "Not Found"},
    Reason{405, "Method Not Allowed"},
    Reason{407, "Proxy Authentication Required"},
    Reason{413, "Content Too Large"},
    Reason{416, "Range Not Satisfiable"},
    Reason{431, "Request Header Fields Too Large"},
    Reason{500, "Internal Server Error"},
    Reason{501, "Not Implemented"},
    Reason{502, "Bad Gateway"},
    Reason{503, "Service Unavailable"},
    Reason{504, "Gateway Timeout"},
    Reason{505, "HTTP Version Not Supported"},
};
static_assert(std::ranges::is_sorted(reasons, {}, &Reason::status));

QByteArray reasonOf(int theStatus)
{
    const auto row = std::ranges::lower_bound(reasons, theStatus, {}, &Reason::status);
    return row == reasons.end() || row->status != theStatus ? "Simulated" : row->text;
}

} // namespace

VXSimulatorResponse VXSimulatorResponse::text(int theStatus, const QByteArray& theBody,
                                              const QByteArray& theType)
{
    VXSimulatorResponse response;
    response.status = theStatus;
    response.body = theBody;
    response.addHeader("Content-Type", theType);
    return response;
}

VXSimulatorResponse VXSimulatorResponse::json(const QJsonObject& theObject, int theStatus)
{
    return text(theStatus, QJsonDocument(theObject).toJson(QJsonDocument::Compact),
                "application/json");
}

VXSimulatorResponse VXSimulatorResponse::error(int theStatus, const QString& theText)
{
    return json({{u"error"_s, theText}}, theStatus);
}

void VXSimulatorResponse::addHeader(const QByteArray& theName, const QByteArray& theValue)
{
    headers.append(qMakePair(theName, theValue));
}

qint64 VXSimulatorResponse::size() const
{
    return generated ? generated->size() : body.size();
}

QByteArray VXSimulatorResponse::read(qint64 thePosition, qint64 theCount) const
{
    return generated ? generated->read(thePosition, theCount) : body.mid(thePosition, theCount);
}

bool VXSimulatorResponse::isBodyless() const
{
    return status < 200 || status == 204 || status == 304;
}

QByteArray VXSimulatorResponse::head() const
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonOf(status) + "\r\n";
    for (const auto& [name, value] : headers)
        text += name + ": " + value + "\r\n";
    if (!isBodyless())
        text += "Content-Length: " + QByteArray::number(size()) + "\r\n";
    if (isClosing)
        text += "Connection: close\r\n";
    return text + "\r\n";
}
