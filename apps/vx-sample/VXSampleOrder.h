#pragma once

#include <VXNetworking/VXNetworkingResult.h>

class VXHttpOperation;

/// One exchange of the XML order protocol, as the command and the window do it.
class VXSampleOrder
{
public:
    /// Sends `theOperation` and reads the answer, which tells its own error; without an answer the
    /// result has the error of the exchange.
    static VXNetworkingResult exchange(VXHttpOperation& theOperation);

    /// The answer's content as XML text.
    static QString contentText(const VXNetworkingResult& theResult);
};
