#include "VXSimulatorBehaviour.h"

#include "VXSimulatorJsonReader.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestDelayMs = 600'000;

bool isHeaderText(const QString& theText)
{
    return !theText.contains(u'\r') && !theText.contains(u'\n') && !theText.contains(u'\0');
}

VXSimulatorResponse::Fault faultFrom(VXSimulatorJsonReader& theReader)
{
    using Fault = VXSimulatorResponse::Fault;
    const QString name = theReader.text(u"fault"_s, u"none"_s);
    if (name == u"never"_s)
        return Fault::Never;
    if (name == u"reset"_s)
        return Fault::Reset;
    if (name == u"truncate"_s)
        return Fault::Truncate;
    if (name != u"none"_s)
        theReader.fail(u"fault"_s, u"must be none, never, reset or truncate"_s);
    return Fault::None;
}

VXSimulatorHeaders headersFrom(VXSimulatorJsonReader& theReader)
{
    VXSimulatorHeaders headers;
    const QJsonObject object = theReader.object(u"headers"_s);
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const QString value = entry.value().toString();
        if (entry.key().isEmpty() || !isHeaderText(entry.key() + value))
            theReader.fail(u"headers"_s, u"must not hold line ends"_s);
        headers.append(qMakePair(entry.key().toUtf8(), value.toUtf8()));
    }
    return headers;
}

} // namespace

std::optional<VXSimulatorBehaviour> VXSimulatorBehaviour::fromJson(const QJsonObject& theObject,
                                                                   QString* theError)
{
    VXSimulatorJsonReader reader(u"behaviour"_s, theObject);
    VXSimulatorBehaviour behaviour;
    behaviour.path = reader.text(u"path"_s);
    if (!behaviour.path.startsWith(u'/'))
        reader.fail(u"path"_s, u"must begin with a slash"_s);
    behaviour.method = reader.text(u"method"_s).toLatin1();
    behaviour.status = static_cast<int>(reader.number(u"status"_s, 0, 0, 999));
    if (behaviour.status != 0 && behaviour.status < 200)
        reader.fail(u"status"_s, u"must be 0 or from 200 to 999"_s);
    behaviour.delayMs = static_cast<int>(reader.number(u"delayMs"_s, 0, 0, longestDelayMs));
    behaviour.times = static_cast<int>(reader.number(u"times"_s, 1, -1, 1'000'000));
    if (behaviour.times == 0)
        reader.fail(u"times"_s, u"must not be 0"_s);
    if (reader.has(u"body"_s))
        behaviour.body = reader.text(u"body"_s).toUtf8();
    const QString type = reader.text(u"type"_s, QString::fromLatin1(behaviour.type));
    if (!isHeaderText(type))
        reader.fail(u"type"_s, u"must not hold line ends"_s);
    behaviour.type = type.toUtf8();
    behaviour.headers = headersFrom(reader);
    behaviour.fault = faultFrom(reader);
    behaviour.faultAfter = reader.number(u"after"_s, 0, -1, std::numeric_limits<qint32>::max());
    *theError = reader.error();
    if (!theError->isEmpty())
        return std::nullopt;
    return behaviour;
}

bool VXSimulatorBehaviour::matches(const VXSimulatorRequest& theRequest) const
{
    if (!method.isEmpty() && method != theRequest.method)
        return false;
    if (path.endsWith(u'*'))
        return theRequest.path().startsWith(QStringView(path).chopped(1));
    return theRequest.path() == path;
}

VXSimulatorResponse VXSimulatorBehaviour::answer() const
{
    return VXSimulatorResponse::text(status == 0 ? 200 : status, body.value_or(QByteArray()), type);
}

void VXSimulatorBehaviour::applyTo(VXSimulatorResponse& theResponse) const
{
    theResponse.delayMs += delayMs;
    theResponse.headers += headers;
    if (fault == VXSimulatorResponse::Fault::None)
        return;
    theResponse.fault = fault;
    theResponse.faultAfter = faultAfter;
}
