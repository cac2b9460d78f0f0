#include "VXSimulatorOrders.h"

#include "VXSimulatorState.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace {

/// Without the characters that no XML document may hold.
QString xmlText(QString theText)
{
    static const QRegularExpression forbidden(u"[^\\t\\n\\r\\x{20}-\\x{D7FF}\\x{E000}-\\x{FFFD}"
                                              "\\x{10000}-\\x{10FFFF}]"_s);
    return theText.remove(forbidden);
}

void writeHead(QXmlStreamWriter& theWriter, const VXSimulatorRequest& theRequest)
{
    if (theRequest.queryValue(u"head"_s) == u"none"_s)
        return;
    theWriter.writeStartElement(u"head"_s);
    theWriter.writeStartElement(u"errorcode"_s);
    const std::pair<QString, QString> attributes[]{
        {u"coupon"_s, u"coupon_code"_s},
        {u"wait"_s, u"wait_time"_s},
    };
    for (const auto& [item, attribute] : attributes) {
        const QString value = theRequest.queryValue(item);
        if (!value.isEmpty())
            theWriter.writeAttribute(attribute, xmlText(value));
    }
    theWriter.writeCharacters(xmlText(theRequest.queryValue(u"errorcode"_s, u"0"_s)));
    theWriter.writeEndElement();
    theWriter.writeTextElement(u"errortext"_s, xmlText(theRequest.queryValue(u"text"_s)));
    theWriter.writeEndElement();
}

void writeContent(QXmlStreamWriter& theWriter, const VXSimulatorRequest& theRequest,
                  const QString& theName)
{
    if (theRequest.queryValue(u"content"_s) == u"none"_s)
        return;
    theWriter.writeStartElement(u"content"_s);
    theWriter.writeTextElement(u"name"_s, theName);
    theWriter.writeTextElement(u"method"_s, QString::fromLatin1(theRequest.method));
    theWriter.writeTextElement(u"received"_s, QString::number(theRequest.body.size()));
    theWriter.writeEndElement();
}

} // namespace

VXSimulatorOrders::VXSimulatorOrders(const VXSimulatorState& theState)
    : myState(theState)
{
}

QList<VXSimulatorRoute> VXSimulatorOrders::routes() const
{
    const auto broken = [](const VXSimulatorRequest&, const QString&) {
        return VXSimulatorResponse::text(200, "<answer><head></answer>", "text/xml");
    };
    const auto empty = [](const VXSimulatorRequest&, const QString&) {
        return VXSimulatorResponse::text(200, "", "text/xml");
    };
    const auto named = [this](const VXSimulatorRequest& theRequest, const QString& theRest) {
        return order(theRequest, theRest);
    };
    return {
        {u"/xtci/broken"_s, {}, broken},
        {u"/xtci/empty"_s, {}, empty},
        {u"/xtci/"_s, {}, named},
    };
}

VXSimulatorResponse VXSimulatorOrders::order(const VXSimulatorRequest& theRequest,
                                             const QString& theName) const
{
    static const QRegularExpression admitted(u"\\A[A-Za-z_][A-Za-z0-9_.-]{0,63}\\z"_s);
    if (!admitted.match(theName).hasMatch())
        return VXSimulatorResponse::error(400, u"this is no order name"_s);
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartDocument();
    writer.writeStartElement(u"answer"_s);
    writer.writeAttribute(u"name"_s, theName);
    writer.writeAttribute(u"server_timestamp"_s, myState.now().toString(Qt::ISODate));
    writeHead(writer, theRequest);
    writeContent(writer, theRequest, theName);
    writer.writeEndDocument();
    return VXSimulatorResponse::text(200, xml, "text/xml; charset=utf-8");
}
