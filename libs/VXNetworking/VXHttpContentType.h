#pragma once

#include "VXEnumWrapper.h"
#include "VXNetworkingExport.h"

/// What the body of a request is.
enum VXNETWORKING_EXPORT VXHttpContentTypeEnum : int
{
    ContentNone = 0,           ///< no content type
    ContentFormUrlEncoded = 1, ///< application/x-www-form-urlencoded
    ContentJson = 2,           ///< application/json
    ContentXml = 3,            ///< text/xml
    ContentOctetStream = 4,    ///< application/octet-stream
};

/// The content type of a request with its MIME text: encode() gives the value of the header
/// "Content-Type", empty for ContentNone. A value; reentrant.
class VXNETWORKING_EXPORT VXHttpContentType : public VXEnumWrapper<VXHttpContentTypeEnum>
{
public:
    /// Implicitly from a value; ContentNone by default.
    using VXEnumWrapper::VXEnumWrapper;

    void fillTable(VXEnumToStringTable<VXHttpContentTypeEnum>* theTable) const override;
};
