#pragma once

#include "VXRawAnswer.h"
#include "VXRawRequest.h"

/// What servers and proxies do wrong, by name: the paths of the fault server without the slash.
class VXFaults
{
public:
    VXFaults() = delete;

    /// The answer to a request for "/NAME"; 404 when there is no such fault.
    [[nodiscard]] static VXRawAnswer answer(const VXRawRequest& theRequest);

    /// For VXRawPeer::setBodyLimit(): faults that answer before the body has come.
    [[nodiscard]] static qsizetype bodyLimit(const VXRawRequest& theRequest);

    /// The same for a proxy that behaves so to every request, whatever it asks for.
    [[nodiscard]] static VXRawAnswer proxyAnswer(const QByteArray& theName,
                                                 const VXRawRequest& theRequest);
    /// The names of all behaviours of proxies.
    [[nodiscard]] static QList<QByteArray> proxyNames();
};
