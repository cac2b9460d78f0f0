#pragma once

#include "VXXMLExport.h"

#include <QtCore/QString>

class QDomElement;

/// Reads typed values from XML elements. Static operations only; reentrant.
class VXXML_EXPORT VXXMLParser
{
public:
    VXXMLParser() = delete;

    /// The attribute as a decimal int; theDefault when it is missing, no number,
    /// or outside the int range. Blanks around the number are allowed.
    [[nodiscard]] static int readIntAttribute(const QDomElement& theElement, const QString& theName,
                                              int theDefault);
};
