#include "VXTourExpectation.h"

#include "VXRecordedRequest.h"
#include "VXSampleExchange.h"

using namespace Qt::StringLiterals;

bool VXTourExpectation::isSameRequest(const VXRecordedRequest& theRequest) const
{
    return theRequest.method() == method && theRequest.target() == target &&
           theRequest.listener() == listener &&
           (!hasOwnBody || theRequest.bodySha256() == VXSampleExchange::sha256(body));
}

QStringList VXTourExpectation::headerComplaints(const VXRecordedRequest& theRequest) const
{
    QMap<QString, QString> wanted = headers;
    if (isOwnRequest) {
        wanted.insert(
            u"User-Agent"_s,
            u"Mozilla/5.0 AppleWebKit/538.1 (KHTML, like Gecko) Safari/538.1 - Orvelo Desk"_s);
        wanted.insert(u"Connection"_s, u"disable-keep-alive"_s);
    }

    QStringList complaints;
    for (auto header = wanted.cbegin(); header != wanted.cend(); ++header) {
        const QString received = theRequest.header(header.key());
        if (received != header.value())
            complaints << u"header %1 is \"%2\" and not \"%3\""_s.arg(header.key(), received,
                                                                      header.value());
    }
    return complaints;
}
