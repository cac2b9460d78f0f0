#include "VXFuzzTarget.h"

#include <VXNetworking/VXWebSocketTransport.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWebSockets/QWebSocket>

using namespace Qt::StringLiterals;

/// The first messages of a page on the web channel, one a line; the word TOKEN stands for what
/// only a page of ours knows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QString token = u"{6fa9c0a8-0d4c-4c3e-9b0e-3f1d7b1c2a55}"_s;
    QWebSocket socket; // never connected: what would be sent is dropped
    auto* const transport = new VXWebSocketTransport(&socket, token); // the socket's
    int delivered = 0;
    int id = 0;
    bool isObject = true;
    QObject::connect(transport, &QWebChannelAbstractTransport::messageReceived,
                     [&](const QJsonObject& theMessage) {
                         ++delivered;
                         id = theMessage.value(u"id"_s).toInt();
                         isObject = isObject && !QJsonDocument(theMessage).isNull();
                     });

    bool isFirst = true;
    bool isAdmitted = false;
    for (const QByteArray& line : VXFuzzTarget::input(theData, theSize).split('\n')) {
        const QString message = QString::fromUtf8(line).replace("TOKEN"_L1, token);
        if (isFirst)
            isAdmitted = message.startsWith(u"VXSecToken:"_s + token);
        isFirst = false;
        VXFuzzTarget::check(QMetaObject::invokeMethod(transport, "textMessageReceived",
                                                      Qt::DirectConnection,
                                                      Q_ARG(QString, message)),
                            "the transport takes messages");
        transport->sendMessage({{u"type"_s, 1}});
    }
    VXFuzzTarget::check(isAdmitted || delivered == 0, "who has no token is not heard");
    VXFuzzTarget::check(isObject, "only objects are delivered");
    VXFuzzTarget::planted(id > 1 && id < 100);
    return 0;
}
