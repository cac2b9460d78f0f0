#include "VXSimulatorControl.h"

#include "VXSimulatorJsonReader.h"
#include "VXSimulatorOAuth.h"
#include "VXSimulatorRecorder.h"
#include "VXSimulatorState.h"

#include <QtCore/QJsonDocument>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Request = VXSimulatorRequest;
using Response = VXSimulatorResponse;

/// The body as JSON object; an empty body is an empty object.
std::optional<QJsonObject> bodyOf(const Request& theRequest)
{
    if (theRequest.body.isEmpty())
        return QJsonObject();
    const bool isReadable = theRequest.body.size() <= Request::maximumReadableBytes;
    const auto document = isReadable ? QJsonDocument::fromJson(theRequest.body) : QJsonDocument();
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}

Response noObject()
{
    return Response::error(400, u"the body is no JSON object"_s);
}

Response done()
{
    return Response::json({{u"ok"_s, true}});
}

} // namespace

VXSimulatorControl::VXSimulatorControl(VXSimulatorState& theState, VXSimulatorRecorder& theRecorder,
                                       VXSimulatorOAuth& theOAuth,
                                       std::function<QJsonObject()> theHandshakes,
                                       std::function<void()> theQuit)
    : myState(theState)
    , myRecorder(theRecorder)
    , myOAuth(theOAuth)
    , myHandshakes(std::move(theHandshakes))
    , myQuit(std::move(theQuit))
{
}

QList<VXSimulatorRoute> VXSimulatorControl::routes()
{
    const auto clearBehaviours = [this](const Request&, const QString&) {
        myState.clearBehaviours();
        return done();
    };
    const auto handshakes = [this](const Request&, const QString&) {
        return Response::json(myHandshakes());
    };
    return {
        {u"/requests"_s,
         {"GET"},
         [this](const Request& theRequest, const QString&) { return requests(theRequest); }},
        {u"/requests"_s,
         {"DELETE"},
         [this](const Request&, const QString&) { return clearRequests(); }},
        {u"/handshakes"_s, {"GET"}, handshakes},
        setting(u"/behaviour"_s, &VXSimulatorState::addBehaviour),
        {u"/behaviour"_s, {"DELETE"}, clearBehaviours},
        setting(u"/oauth"_s, &VXSimulatorState::applyOAuth),
        setting(u"/clock"_s, &VXSimulatorState::applyClock),
        setting(u"/proxy"_s, &VXSimulatorState::applyProxy),
        setting(u"/socks"_s, &VXSimulatorState::applySocks),
        setting(u"/scenario"_s, &VXSimulatorState::applyScenario),
        {u"/tokens/expire"_s,
         {"POST"},
         [this](const Request& theRequest, const QString&) { return expireTokens(theRequest); }},
        {u"/quit"_s, {"POST"}, [this](const Request&, const QString&) { return quit(); }},
    };
}

VXSimulatorRoute VXSimulatorControl::setting(const QString& thePath, Setter theSetter)
{
    const auto apply = [this, theSetter](const Request& theRequest, const QString&) {
        const auto object = bodyOf(theRequest);
        if (!object)
            return noObject();
        const QString error = (myState.*theSetter)(*object);
        return error.isEmpty() ? done() : Response::error(400, error);
    };
    return {thePath, {"PUT"}, apply};
}

Response VXSimulatorControl::requests(const Request& theRequest) const
{
    bool isNumber = false;
    const int since = theRequest.queryValue(u"since"_s, u"0"_s).toInt(&isNumber);
    if (!isNumber || since < 0)
        return Response::error(400, u"since is no number"_s);
    return Response::json(
        {{u"last"_s, myRecorder.lastNumber()}, {u"requests"_s, myRecorder.since(since)}});
}

Response VXSimulatorControl::clearRequests()
{
    myRecorder.clear();
    return done();
}

Response VXSimulatorControl::expireTokens(const Request& theRequest)
{
    const auto object = bodyOf(theRequest);
    if (!object)
        return noObject();
    VXSimulatorJsonReader reader(u"tokens"_s, *object);
    const bool refreshToo = reader.flag(u"refresh"_s, false);
    if (!reader.error().isEmpty())
        return Response::error(400, reader.error());
    myOAuth.expireTokens(refreshToo);
    return done();
}

Response VXSimulatorControl::quit() const
{
    Response response = done();
    response.isClosing = true;
    response.whenSent = myQuit;
    return response;
}
