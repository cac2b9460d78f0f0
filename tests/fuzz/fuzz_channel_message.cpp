#include "VXFuzzTarget.h"

#include <VXNetworking/VXWebSocketTransport.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWebSockets/QWebSocket>

using namespace Qt::StringLiterals;

namespace {

/// What the channel gets to hear.
struct Heard
{
    int count = 0;
    int type = 0; // of the last one, as id
    int id = 0;
    bool isObject = true;

    void take(const QJsonObject& theMessage)
    {
        ++count;
        type = theMessage.value(u"type"_s).toInt();
        id = theMessage.value(u"id"_s).toInt();
        isObject = isObject && !QJsonDocument(theMessage).isNull();
        VXFuzzTarget::saw("keys", theMessage.size());
        VXFuzzTarget::saw("type", type);
        VXFuzzTarget::saw("id", id);
    }
};

void receive(VXWebSocketTransport& theTransport, const QString& theMessage)
{
    const bool isTaken = QMetaObject::invokeMethod(
        &theTransport, "textMessageReceived", Qt::DirectConnection, Q_ARG(QString, theMessage));
    VXFuzzTarget::check(isTaken, "the transport takes messages");
    theTransport.sendMessage({{u"type"_s, 1}});
}

} // namespace

/// The first messages of a page on the web channel, one a line; the word TOKEN stands for what
/// only a page of ours knows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    static QWebSocket ourSocket; // never connected: what would be sent is dropped
    const QString token = u"{6fa9c0a8-0d4c-4c3e-9b0e-3f1d7b1c2a55}"_s;
    VXWebSocketTransport transport(&ourSocket, token);
    Heard heard;
    QObject::connect(&transport, &QWebChannelAbstractTransport::messageReceived, &transport,
                     [&heard](const QJsonObject& theMessage) { heard.take(theMessage); });

    QStringList messages;
    for (const QByteArray& line : VXFuzzTarget::input(theData, theSize).split('\n'))
        messages.append(QString::fromUtf8(line).replace("TOKEN"_L1, token));
    for (const QString& message : messages)
        receive(transport, message);

    const bool isAdmitted = messages.constFirst().startsWith(u"VXSecToken:"_s + token);
    VXFuzzTarget::check(isAdmitted || heard.count == 0, "who has no token is not heard");
    VXFuzzTarget::check(heard.isObject, "only objects are delivered");
    VXFuzzTarget::saw("heard", heard.count);
    VXFuzzTarget::planted(heard.type > 4 || heard.id > 1);
    return 0;
}
