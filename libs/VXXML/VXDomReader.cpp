#include "VXDomReader.h"

#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

using namespace Qt::StringLiterals;

namespace {

/// Goes through the document without building anything, entities included; stands at the element
/// that is too deep, or at the end. What is not well-formed is none of its business.
bool isTooDeep(QXmlStreamReader& theReader)
{
    int depth = 0;
    while (!theReader.atEnd()) {
        const QXmlStreamReader::TokenType token = theReader.readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > VXDomReader::maximalDepth)
            return true;
        if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    return false;
}

} // namespace

bool VXDomReader::setContent(QDomDocument& theDocument, const QByteArray& theData,
                             QString& theMessage, int& theLine, int& theColumn)
{
    QXmlStreamReader reader(theData);
    reader.setNamespaceProcessing(false); // as the tree is built: no prefix ends the count early
    if (isTooDeep(reader)) {
        theMessage = u"elements nested too deep"_s;
        theLine = static_cast<int>(reader.lineNumber());
        theColumn = static_cast<int>(reader.columnNumber());
        return false;
    }
    return theDocument.setContent(theData, &theMessage, &theLine, &theColumn);
}
