#pragma once

#include "VXNetworkingError.h"
#include "VXNetworkingExport.h"

class QString;
class QUrl;

/// Asks whether a server answers, by a HEAD request. Blocks the calling thread, which may be any,
/// and asks the user's questions like every exchange.
class VXNETWORKING_EXPORT VXNetworkTester
{
public:
    VXNetworkTester() = delete;

    /// The outcome of the request; theTimeout in seconds: 0 aborts at once, negative = no limit.
    static VXNetworkingError testConnection(const QUrl& theUrl, int theTimeout);
    /// True when the server answered without an error; a page that is missing (404) is one.
    /// theServer is a whole URL, for example "https://photos.test/".
    static bool testServer(const QString& theServer, int theTimeout);
};
