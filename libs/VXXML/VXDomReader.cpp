#include "VXDomReader.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QStringConverter>
#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

using namespace Qt::StringLiterals;

namespace {

/// How many values in quotation marks follow, before the tag ends.
int countAttributes(QByteArrayView theTag)
{
    int count = 0;
    char mark = 0;
    for (const char byte : theTag) {
        if (mark != 0) {
            mark = byte == mark ? char(0) : mark;
        } else if (byte == '>') {
            break;
        } else if (byte == '"' || byte == '\'') {
            mark = byte;
            ++count;
        }
    }
    return count;
}

/// Where the element stands that has too many attributes; -1 without one. No "<" lies within a
/// tag, so each begins anew with it.
qsizetype indexOfCrowdedElement(QByteArrayView theText)
{
    for (qsizetype start = theText.indexOf('<'), next = 0; start >= 0; start = next) {
        next = theText.indexOf('<', start + 1);
        const qsizetype end = next < 0 ? theText.size() : next;
        const QByteArrayView markup = theText.sliced(start + 1, end - start - 1);
        const bool isElement = !markup.startsWith('!') && !markup.startsWith('?');
        if (isElement && countAttributes(markup) > VXDomReader::maximalAttributes)
            return start;
    }
    return -1;
}

/// As UTF-8, where the bytes of markup stand for nothing else.
QByteArray searchable(const QByteArray& theData)
{
    const auto encoding = QStringConverter::encodingForData(theData, u'<');
    if (!encoding || *encoding == QStringConverter::Utf8)
        return theData;
    const QString text = QStringDecoder(*encoding).decode(theData);
    return text.toUtf8();
}

/// Attributes that a document type adds to every element of a name.
bool hasCrowdedDeclarations(QStringView theDocumentType)
{
    const qsizetype marks = theDocumentType.count(u'"') + theDocumentType.count(u'\'');
    return theDocumentType.contains("<!ATTLIST"_L1) && marks > 2 * VXDomReader::maximalAttributes;
}

/// Goes through the document without building anything, entities included; stands where it must
/// not be built, and says why, or at the end. What is not well-formed is none of its business.
QString reasonToRefuse(QXmlStreamReader& theReader)
{
    int depth = 0;
    while (!theReader.atEnd()) {
        const QXmlStreamReader::TokenType token = theReader.readNext();
        if (token == QXmlStreamReader::DTD && hasCrowdedDeclarations(theReader.text()))
            return u"too many attributes"_s;
        if (token == QXmlStreamReader::StartElement && ++depth > VXDomReader::maximalDepth)
            return u"elements nested too deep"_s;
        if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    return {};
}

} // namespace

bool VXDomReader::setContent(QDomDocument& theDocument, const QByteArray& theData,
                             QString& theMessage, int& theLine, int& theColumn)
{
    const QByteArray text = searchable(theData);
    if (const qsizetype index = indexOfCrowdedElement(text); index >= 0) {
        const QByteArrayView before = QByteArrayView(text).first(index);
        theMessage = u"too many attributes"_s;
        theLine = static_cast<int>(before.count('\n')) + 1;
        theColumn = static_cast<int>(index - before.lastIndexOf('\n'));
        return false;
    }

    QXmlStreamReader reader(theData);
    reader.setNamespaceProcessing(false); // as the tree is built: no prefix ends the count early
    if (const QString reason = reasonToRefuse(reader); !reason.isEmpty()) {
        theMessage = reason;
        theLine = static_cast<int>(reader.lineNumber());
        theColumn = static_cast<int>(reader.columnNumber());
        return false;
    }
    return theDocument.setContent(theData, &theMessage, &theLine, &theColumn);
}
