#pragma once

#include "VXNetworkingError.h"
#include "VXNetworkingExport.h"

class QString;
class QUrl;

/// Asks whether a server answers, by a HEAD request. Blocks the calling thread.
class VXNETWORKING_EXPORT VXNetworkTester
{
public:
    VXNetworkTester() = delete;

    /// The outcome of the request; theTimeout in seconds.
    static VXNetworkingError testConnection(const QUrl& theUrl, int theTimeout);
    /// True when the server answered without an error.
    static bool testServer(const QString& theServer, int theTimeout);
};
