#include "VXDomReader.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QStringConverter>
#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

#include <algorithm>

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

/// Why a piece of markup, without its "<", must not be read; empty otherwise. theDeclared counts
/// the bytes of all declarations so far.
QString reasonToRefuse(QByteArrayView theMarkup, qsizetype& theDeclared)
{
    if (theMarkup.startsWith("!ATTLIST") || theMarkup.startsWith("!ENTITY")) {
        theDeclared += theMarkup.size();
        return theDeclared > VXDomReader::maximalDeclarations ? u"too many declarations"_s
                                                              : QString();
    }
    const bool isElement = !theMarkup.startsWith('!') && !theMarkup.startsWith('?');
    return isElement && countAttributes(theMarkup) > VXDomReader::maximalAttributes
               ? u"too many attributes"_s
               : QString();
}

/// Where the first markup stands that must not be read, with the reason; -1 without one. No "<"
/// lies within a tag, so each begins anew with it.
qsizetype indexOfRefusal(QByteArrayView theText, QString& theReason)
{
    qsizetype declared = 0;
    for (qsizetype start = theText.indexOf('<'), next = 0; start >= 0; start = next) {
        next = theText.indexOf('<', start + 1);
        const qsizetype end = next < 0 ? theText.size() : next;
        theReason = reasonToRefuse(theText.sliced(start + 1, end - start - 1), declared);
        if (!theReason.isEmpty())
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

/// Attributes of the element that only the document type names.
qsizetype countAddedAttributes(const QXmlStreamReader& theReader)
{
    const QXmlStreamAttributes attributes = theReader.attributes();
    return std::ranges::count_if(attributes, &QXmlStreamAttribute::isDefault);
}

/// Goes through the document without building anything, entities included; stands where it must
/// not be built, and says why, or at the end. What is not well-formed is none of its business.
QString reasonToRefuse(QXmlStreamReader& theReader)
{
    int depth = 0;
    qsizetype added = 0;
    bool hasDocumentType = false;
    while (!theReader.atEnd()) {
        const QXmlStreamReader::TokenType token = theReader.readNext();
        if (token == QXmlStreamReader::DTD)
            hasDocumentType = true;
        if (token == QXmlStreamReader::StartElement && ++depth > VXDomReader::maximalDepth)
            return u"elements nested too deep"_s;
        if (token == QXmlStreamReader::StartElement && hasDocumentType)
            added += countAddedAttributes(theReader);
        if (added > VXDomReader::maximalAttributes)
            return u"too many attributes"_s;
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
    QString reason;
    if (const qsizetype index = indexOfRefusal(text, reason); index >= 0) {
        const QByteArrayView before = QByteArrayView(text).first(index);
        theMessage = reason;
        theLine = static_cast<int>(before.count('\n')) + 1;
        theColumn = static_cast<int>(index - before.lastIndexOf('\n'));
        return false;
    }

    QXmlStreamReader reader(theData);
    reader.setNamespaceProcessing(false); // as the tree is built: no prefix ends the count early
    reason = reasonToRefuse(reader);
    if (!reason.isEmpty()) {
        theMessage = reason;
        theLine = static_cast<int>(reader.lineNumber());
        theColumn = static_cast<int>(reader.columnNumber());
        return false;
    }
    return theDocument.setContent(theData, &theMessage, &theLine, &theColumn);
}
