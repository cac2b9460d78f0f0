#include "VXXMLParser.h"

#include <QtXml/QDomElement>

int VXXMLParser::readIntAttribute(const QDomElement& theElement, const QString& theName,
                                  int theDefault)
{
    bool isNumber = false;
    const int value = theElement.attribute(theName).toInt(&isNumber);
    return isNumber ? value : theDefault;
}
