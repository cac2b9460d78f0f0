#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// A request's header "Range" (RFC 9110, 14.2): the first range of the forms "bytes=a-b" and
/// "bytes=a-". Anything else, suffix ranges too, counts as no range.
///
/// The numbers stand as they were parsed: nothing says that they lie within the resource. A value;
/// reentrant.
class VXNETWORKING_EXPORT VXHttpRangeHeaderInfo
{
public:
    /// theTotal is the size of the whole resource in bytes. A number beyond 64 bits counts as 0.
    VXHttpRangeHeaderInfo(const QString& theRangeHeader, qint64 theTotal);

    ///@{
    /// Copies three numbers.
    VXHttpRangeHeaderInfo(const VXHttpRangeHeaderInfo&) = default;
    VXHttpRangeHeaderInfo& operator=(const VXHttpRangeHeaderInfo&) = default;
    ///@}

    virtual ~VXHttpRangeHeaderInfo();

    /// Whether the header named a range; else the whole resource is to be sent.
    [[nodiscard]] bool isPartial() const noexcept { return myStart >= 0; }

    /// The first byte's index; -1 without a range.
    [[nodiscard]] qint64 start() const noexcept { return myStart; }

    /// Bytes from start to end, both included; meaningful only when isPartial().
    [[nodiscard]] qint64 size() const noexcept;

    /// The value of the answer's header "Content-Range" (RFC 9110, 14.4).
    [[nodiscard]] QString rangeResponse() const;

private:
    qint64 myTotal = 0;
    qint64 myStart = -1;
    qint64 myEnd = -1; // included
};
