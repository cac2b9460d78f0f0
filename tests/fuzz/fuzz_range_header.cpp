#include "VXFuzzTarget.h"

#include <VXNetworking/VXHttpRangeHeaderInfo.h>

#include <cstring>

/// A request's Range header; the first eight bytes are the size of the resource.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    qint64 total = 0;
    if (theSize < sizeof(total))
        return 0;
    std::memcpy(&total, theData, sizeof(total));
    const QByteArray header = VXFuzzTarget::input(theData, theSize).sliced(sizeof(total));

    const VXHttpRangeHeaderInfo info(QString::fromLatin1(header), total);
    VXFuzzTarget::check(info.isPartial() || info.start() == -1, "no range is -1");
    VXFuzzTarget::check(!info.isPartial() || header.contains("bytes="), "a range is in bytes");
    VXFuzzTarget::check(info.isPartial() || info.size() == 1, "no range has size 1");
    VXFuzzTarget::check(info.rangeResponse().endsWith(u'/' + QString::number(total)),
                        "the answer names the size");
    VXFuzzTarget::saw("start", info.start());
    VXFuzzTarget::saw("size", info.size());
    VXFuzzTarget::planted(info.start() > 1000 && info.size() < 0);
    return 0;
}
