#include "VXHttpContentType.h"

using namespace Qt::StringLiterals;

void VXHttpContentType::fillTable(VXEnumToStringTable<VXHttpContentTypeEnum>* theTable) const
{
    theTable->insert(u""_s, ContentNone);
    theTable->insert(u"application/x-www-form-urlencoded"_s, ContentFormUrlEncoded);
    theTable->insert(u"application/json"_s, ContentJson);
    theTable->insert(u"text/xml"_s, ContentXml);
    theTable->insert(u"application/octet-stream"_s, ContentOctetStream);
}
