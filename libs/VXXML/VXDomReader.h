#pragma once

#include "VXXMLExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDomDocument;

/// Reads documents that came from a server. Static operations only; reentrant.
class VXXML_EXPORT VXDomReader
{
public:
    VXDomReader() = delete;

    /// Elements that may lie within each other. Qt builds a tree in a time that grows with the
    /// square of its depth, and destroys it by recursion: with 100,000 elements within each other
    /// half a megabyte of answer takes minutes and then the stack.
    static constexpr int maximalDepth = 256;

    /// Attributes of one element. Qt compares each with all others: 40,000 of them, 400 KB, take 20
    /// seconds. Also of all elements together those that the document type adds: a megabyte would
    /// become gigabytes.
    static constexpr int maximalAttributes = 1000;

    /// Bytes of all declarations of attributes and entities. Qt compares the attributes of a
    /// declaration, too.
    static constexpr int maximalDeclarations = 8192;

    /// As QDomDocument::setContent(): the encoding is the document's own, and after a failure, of
    /// which theMessage, theLine and theColumn tell, the document may hold what was read before
    /// it. A document beyond these limits is refused before anything is built.
    static bool setContent(QDomDocument& theDocument, const QByteArray& theData,
                           QString& theMessage, int& theLine, int& theColumn);
};
